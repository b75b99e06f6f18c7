#include "Korvane/window/components/ProgressRing.h"

#include <QPainter>
#include <QPen>
#include <algorithm>

namespace korvane {

ProgressRing::ProgressRing(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    constexpr int interval = 40; // milliseconds
    timer_.setInterval(interval);
    connect(&timer_, &QTimer::timeout, this, [this] {
        constexpr int step = 12;
        turn_ = (turn_ + step) % 360;
        update();
    });
    connect(this, &ProgressRing::changed, this, &ProgressRing::refresh);
    connect(this, &QQuickItem::visibleChanged, this, &ProgressRing::refresh);
}

void ProgressRing::refresh() {
    if (busy_ && !still_ && isVisible()) {
        timer_.start();
    } else {
        timer_.stop();
    }
    update();
}

void ProgressRing::paint(QPainter* painter) {
    constexpr double fullCircle = 360 * 16; // in the painter's sixteenths of a degree
    constexpr int top = 90 * 16;
    const double margin = thickness_ / 2 + 1;
    const QRectF ring = boundingRect().adjusted(margin, margin, -margin, -margin);
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(QPen(track_, thickness_));
    painter->drawEllipse(ring);
    painter->setPen(QPen(colour_, thickness_, Qt::SolidLine, Qt::RoundCap));
    if (busy_) {
        painter->drawArc(ring, top - turn_ * 16, static_cast<int>(-fullCircle / 4));
    } else if (value_ > 0) {
        painter->drawArc(ring, top, static_cast<int>(-fullCircle * std::clamp(value_, 0.0, 1.0)));
    }
}

} // namespace korvane
