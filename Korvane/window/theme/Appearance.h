#pragma once

#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QVariant>

#include <QtQml/qqmlregistration.h>

namespace korvane {

/// What the desktop asks for: dark or light, less motion, the font and its size. The user's own
/// choice comes first, then the desktop's settings portal, then the palette of the platform theme.
class Appearance : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(Mode mode READ mode WRITE setMode NOTIFY changed)
    Q_PROPERTY(bool dark READ dark NOTIFY changed)
    Q_PROPERTY(bool reduceMotion READ reduceMotion NOTIFY changed)
    Q_PROPERTY(QString family READ family CONSTANT)
    /// The text size of the desktop; 1 is 10 points.
    Q_PROPERTY(double scale READ scale NOTIFY changed)

  public:
    enum Mode { System, Light, Dark };
    Q_ENUM(Mode)

    explicit Appearance(QObject* parent = nullptr);

    [[nodiscard]] Mode mode() const { return mode_; }
    void setMode(Mode mode);
    [[nodiscard]] bool dark() const;
    [[nodiscard]] bool reduceMotion() const { return reduceMotion_; }
    [[nodiscard]] QString family() const;
    [[nodiscard]] double scale() const;

    bool eventFilter(QObject* watched, QEvent* event) override;

  signals:
    void changed();

  private slots:
    void portalSettingChanged(const QDBusMessage& message);

  private:
    void ask(const QString& nameSpace, const QString& key);
    void take(const QString& nameSpace, const QString& key, QVariant value);

    Mode mode_ = System;
    int portalScheme_ = 0; ///< 0 no preference, 1 dark, 2 light
    double textScale_ = 0; ///< 0: not told
    bool reduceMotion_ = false;
};

} // namespace korvane
