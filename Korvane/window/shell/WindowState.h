#pragma once

#include <QObject>
#include <QQuickWindow>
#include <QSizeF>
#include <QString>

#include <QtQml/qqmlregistration.h>

namespace korvane {

/// What a window remembers of itself: size, place, whether it filled the screen, and the screen
/// that was open.
class WindowState : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickWindow* window MEMBER window_ NOTIFY changed)
    /// Replaces what is remembered where it is not empty.
    Q_PROPERTY(QSizeF fixedSize MEMBER fixedSize_ NOTIFY changed)
    Q_PROPERTY(QString page MEMBER page_ NOTIFY changed)
    Q_PROPERTY(QString lastPage READ lastPage CONSTANT)

  public:
    using QObject::QObject;

    [[nodiscard]] QString lastPage() const;
    Q_INVOKABLE void save() const;
    Q_INVOKABLE void restore() const;

  signals:
    void changed();

  private:
    QQuickWindow* window_ = nullptr;
    QSizeF fixedSize_;
    QString page_;
};

} // namespace korvane
