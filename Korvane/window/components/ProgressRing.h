#pragma once

#include <QColor>
#include <QQuickPaintedItem>
#include <QTimer>

#include <QtQml/qqmlregistration.h>

namespace korvane {

/// A ring that fills, or turns where nobody can tell how far it is. Painted, so that it looks the
/// same with every renderer.
class ProgressRing : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double value MEMBER value_ NOTIFY changed)
    Q_PROPERTY(bool busy MEMBER busy_ NOTIFY changed)
    /// Does not turn: for people who want nothing to move.
    Q_PROPERTY(bool still MEMBER still_ NOTIFY changed)
    Q_PROPERTY(double thickness MEMBER thickness_ NOTIFY changed)
    Q_PROPERTY(QColor colour MEMBER colour_ NOTIFY changed)
    Q_PROPERTY(QColor track MEMBER track_ NOTIFY changed)

  public:
    explicit ProgressRing(QQuickItem* parent = nullptr);
    void paint(QPainter* painter) override;

  signals:
    void changed();

  private:
    void refresh();

    double value_ = 0;
    bool busy_ = false;
    bool still_ = false;
    double thickness_ = 8;
    QColor colour_ = Qt::blue;
    QColor track_ = Qt::lightGray;
    int turn_ = 0; ///< degrees
    QTimer timer_;
};

} // namespace korvane
