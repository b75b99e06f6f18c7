#pragma once

#include "Korvane/window/usage/DiskUsageModel.h"
#include "KorvaneCore/scanners/Treemap.h"

#include <QColor>
#include <QPointer>
#include <QQuickPaintedItem>
#include <QString>
#include <QVariant>
#include <vector>

#include <QtQml/qqmlregistration.h>

namespace korvane {

/// The rows of a model as areas. Painted once for each size, content or theme; what is pointed at
/// and what is current are rectangles for an overlay, so that moving over 5,000 of them paints
/// nothing here.
class TreemapItem : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(korvane::DiskUsageModel* model READ model WRITE setModel NOTIFY modelChanged)
    /// By kind.
    Q_PROPERTY(QVariantList colours READ colours WRITE setColours NOTIFY lookChanged)
    Q_PROPERTY(QColor base MEMBER base_ NOTIFY lookChanged)
    Q_PROPERTY(QString family MEMBER family_ NOTIFY lookChanged)
    Q_PROPERTY(int textSize MEMBER textSize_ NOTIFY lookChanged)
    /// A row, -1 for none; the same goes for `current`.
    Q_PROPERTY(int hovered READ hovered WRITE setHovered NOTIFY hoveredChanged)
    Q_PROPERTY(QRectF hoveredArea READ hoveredArea NOTIFY hoveredChanged)
    Q_PROPERTY(int current READ current WRITE setCurrent NOTIFY currentChanged)
    Q_PROPERTY(QRectF currentArea READ currentArea NOTIFY currentChanged)

  public:
    explicit TreemapItem(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

    [[nodiscard]] DiskUsageModel* model() const { return model_; }
    void setModel(DiskUsageModel* model);
    [[nodiscard]] QVariantList colours() const { return colours_; }
    void setColours(const QVariantList& colours);
    [[nodiscard]] int hovered() const { return hovered_; }
    void setHovered(int row);
    [[nodiscard]] QRectF hoveredArea() const { return area(hovered_); }
    [[nodiscard]] int current() const { return current_; }
    void setCurrent(int row);
    [[nodiscard]] QRectF currentArea() const { return area(current_); }

    /// Empty where a row has no room.
    [[nodiscard]] Q_INVOKABLE QRectF area(int row) const;
    /// Makes the neighbour on that side current: the nearest, at the same height.
    Q_INVOKABLE void move(int dx, int dy);
    /// Lays the rows out now; else that happens before the next frame.
    void updatePolish() override;

  signals:
    void modelChanged();
    void lookChanged();
    void hoveredChanged();
    void currentChanged();
    void opened(int row);
    void menuRequested(int row, const QPointF& place);

  protected:
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    void hoverMoveEvent(QHoverEvent* event) override;
    void hoverLeaveEvent(QHoverEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

  private:
    void restart();
    void paintLabel(QPainter& painter, int row, const QRect& box) const;
    [[nodiscard]] int rowAt(const QPointF& point) const;

    QPointer<DiskUsageModel> model_;
    std::vector<Treemap::Rectangle> places_;
    QVariantList colours_;
    std::vector<QColor> fills_;
    std::vector<QColor> inks_; ///< what can be read on each of the fills
    QColor base_;
    QString family_;
    int textSize_ = 11;
    int hovered_ = -1;
    int current_ = -1;
};

} // namespace korvane
