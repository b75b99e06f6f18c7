#include "Korvane/window/usage/TreemapItem.h"

#include <QFontMetrics>
#include <QHoverEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <limits>

namespace korvane {

namespace {

double luminance(const QColor& colour) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

/// Black or white, whichever stands out more: one of them always does by at least 4.5 to 1.
QColor ink(const QColor& fill) {
    const double light = luminance(fill);
    return (light + 0.05) * (light + 0.05) > 1.05 * 0.05 ? QColor(Qt::black) : QColor(Qt::white);
}

/// The pixels of an area; those of neighbours never overlap.
QRect pixels(const Treemap::Rectangle& place) {
    const int left = qRound(place.x);
    const int top = qRound(place.y);
    return {left, top, qRound(place.x + place.width) - left, qRound(place.y + place.height) - top};
}

/// How far a value is outside an interval.
double outside(double value, double from, double to) {
    return std::max({0.0, from - value, value - to});
}

} // namespace

TreemapItem::TreemapItem(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAcceptHoverEvents(true);
    setAcceptedMouseButtons(Qt::LeftButton | Qt::RightButton);
    setOpaquePainting(true);
    connect(this, &TreemapItem::lookChanged, this, [this] { update(); });
}

void TreemapItem::setModel(DiskUsageModel* model) {
    if (model == model_) {
        return;
    }
    if (model_) {
        model_->disconnect(this);
    }
    model_ = model;
    if (model_) {
        connect(model_, &QAbstractItemModel::modelReset, this, &TreemapItem::restart);
    }
    restart();
    emit modelChanged();
}

void TreemapItem::setColours(const QVariantList& colours) {
    colours_ = colours;
    fills_.clear();
    inks_.clear();
    for (const QVariant& colour : colours) {
        fills_.push_back(colour.value<QColor>());
        inks_.push_back(ink(fills_.back()));
    }
    emit lookChanged();
}

// The rows are others than before: nothing may refer to the old ones.
void TreemapItem::restart() {
    places_.clear();
    setHovered(-1);
    setCurrent(-1);
    polish();
    update();
}

void TreemapItem::updatePolish() {
    places_ = model_ ? Treemap::layout(model_->sizes(), width(), height())
                     : std::vector<Treemap::Rectangle>();
    emit hoveredChanged();
    emit currentChanged();
    update();
}

void TreemapItem::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
    QQuickPaintedItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size()) {
        polish();
    }
}

void TreemapItem::paint(QPainter* painter) {
    painter->fillRect(boundingRect(), base_);
    if (!model_ || fills_.empty()) {
        return;
    }
    const int rows = std::min(model_->rowCount(), static_cast<int>(places_.size()));
    for (int row = 0; row < rows; ++row) {
        QRect box = pixels(places_[static_cast<std::size_t>(row)]);
        if (box.isEmpty()) {
            continue;
        }
        if (box.width() > 3 && box.height() > 3) {
            box.adjust(0, 0, -1, -1); // the gap between two
        }
        painter->fillRect(box, fills_[model_->kind(row) % fills_.size()]);
        paintLabel(*painter, row, box);
    }
}

// The name, and the size below it, as far as there is room for them.
void TreemapItem::paintLabel(QPainter& painter, int row, const QRect& box) const {
    const int line = textSize_ + 5;
    const int inset = 6;
    const QRect room = box.adjusted(inset, 4, -inset, -2);
    if (room.width() < 4 * textSize_ || room.height() < line) {
        return;
    }
    QFont font(family_);
    font.setPixelSize(textSize_);
    font.setWeight(QFont::DemiBold);
    painter.setPen(inks_[model_->kind(row) % inks_.size()]);
    painter.setFont(font);
    const QRect nameRoom(room.left(), room.top(), room.width(), line);
    painter.drawText(
        nameRoom, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine,
        QFontMetrics(font).elidedText(model_->name(row), Qt::ElideMiddle, room.width()));
    font.setWeight(QFont::Normal);
    const QString size = model_->sizeText(row);
    if (room.height() >= 2 * line && QFontMetrics(font).horizontalAdvance(size) <= room.width()) {
        painter.setFont(font);
        painter.drawText(nameRoom.translated(0, line),
                         Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, size);
    }
}

QRectF TreemapItem::area(int row) const {
    if (row < 0 || row >= static_cast<int>(places_.size())) {
        return {};
    }
    const QRect box = pixels(places_[static_cast<std::size_t>(row)]);
    return box.isEmpty() ? QRectF() : QRectF(box);
}

int TreemapItem::rowAt(const QPointF& point) const {
    const auto found = std::find_if(places_.begin(), places_.end(), [&](const auto& place) {
        return point.x() >= place.x && point.x() < place.x + place.width && point.y() >= place.y &&
               point.y() < place.y + place.height;
    });
    return found == places_.end() ? -1 : static_cast<int>(found - places_.begin());
}

void TreemapItem::setHovered(int row) {
    if (row != hovered_) {
        hovered_ = row;
        emit hoveredChanged();
    }
}

void TreemapItem::setCurrent(int row) {
    if (row != current_) {
        current_ = row;
        emit currentChanged();
    }
}

void TreemapItem::move(int dx, int dy) {
    setHovered(-1); // the pointer rests, and what the keys reach is what is looked at
    const QRectF from = area(current_);
    if (from.isEmpty()) {
        setCurrent(places_.empty() || area(0).isEmpty() ? -1 : 0);
        return;
    }
    int nearest = -1;
    double shortest = std::numeric_limits<double>::infinity();
    for (int row = 0; row < static_cast<int>(places_.size()); ++row) {
        const QRectF to = area(row);
        const double gap = dx > 0   ? to.left() - from.right()
                           : dx < 0 ? from.left() - to.right()
                           : dy > 0 ? to.top() - from.bottom()
                                    : from.top() - to.bottom();
        if (to.isEmpty() || gap < 0) {
            continue;
        }
        const QPointF middle = from.center();
        const double aside = dx != 0 ? outside(middle.y(), to.top(), to.bottom())
                                     : outside(middle.x(), to.left(), to.right());
        if (gap + 2 * aside < shortest) {
            shortest = gap + 2 * aside;
            nearest = row;
        }
    }
    if (nearest >= 0) {
        setCurrent(nearest);
    }
}

void TreemapItem::hoverMoveEvent(QHoverEvent* event) {
    setHovered(rowAt(event->position()));
}

void TreemapItem::hoverLeaveEvent(QHoverEvent* /*event*/) {
    setHovered(-1);
}

void TreemapItem::mousePressEvent(QMouseEvent* event) {
    forceActiveFocus(Qt::MouseFocusReason);
    setCurrent(rowAt(event->position()));
    if (event->button() == Qt::RightButton && current_ >= 0) {
        emit menuRequested(current_, event->position());
    }
}

void TreemapItem::mouseDoubleClickEvent(QMouseEvent* event) {
    const int row = rowAt(event->position());
    if (event->button() == Qt::LeftButton && row >= 0) {
        emit opened(row);
    }
}

} // namespace korvane
