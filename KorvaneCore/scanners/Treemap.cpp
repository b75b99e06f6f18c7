#include "KorvaneCore/scanners/Treemap.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <numeric>

namespace korvane::Treemap {

namespace {

/// Areas placed side by side along the shorter side of the free region.
struct Row {
    std::size_t begin = 0;
    std::size_t end = 0;
    double sum = 0;
    double smallest = std::numeric_limits<double>::infinity();
    double largest = -std::numeric_limits<double>::infinity();

    [[nodiscard]] bool isEmpty() const noexcept { return begin == end; }

    [[nodiscard]] Row with(double area) const noexcept {
        return {begin, end + 1, sum + area, std::min(smallest, area), std::max(largest, area)};
    }

    /// The worst ratio of the longer to the shorter side among the members; never below 1.
    [[nodiscard]] double worst(double side) const noexcept {
        if (isEmpty() || !(smallest > 0) || !(side > 0)) {
            return std::numeric_limits<double>::infinity();
        }
        const double squaredSide = side * side;
        const double squaredSum = sum * sum;
        return std::max(squaredSide * largest / squaredSum, squaredSum / (squaredSide * smallest));
    }
};

/// Takes areas from `begin` on for as long as that makes the row no worse.
Row takeRow(const std::vector<double>& areas, std::size_t begin, double side) {
    Row row{.begin = begin, .end = begin};
    while (row.end < areas.size()) {
        const Row longer = row.with(areas[row.end]);
        if (!row.isEmpty() && !(longer.worst(side) <= row.worst(side))) {
            break;
        }
        row = longer;
    }
    return row;
}

/// Places a row at the region's left or bottom edge and takes its room away from the region.
void place(const Row& row, const std::vector<double>& areas, Rectangle& region,
           std::vector<Rectangle>& rectangles) {
    if (region.height <= region.width) {
        const double width = row.sum / region.height;
        double y = region.y;
        for (std::size_t i = row.begin; i < row.end; ++i) {
            rectangles[i] = {region.x, y, width, region.height * (areas[i] / row.sum)};
            y += rectangles[i].height;
        }
        region.x += width;
        region.width = std::max(0.0, region.width - width);
    } else {
        const double height = row.sum / region.width;
        double x = region.x;
        for (std::size_t i = row.begin; i < row.end; ++i) {
            rectangles[i] = {x, region.y, region.width * (areas[i] / row.sum), height};
            x += rectangles[i].width;
        }
        region.y += height;
        region.height = std::max(0.0, region.height - height);
    }
}

} // namespace

std::vector<Rectangle> layout(std::span<const double> values, double width, double height) {
    std::vector<Rectangle> rectangles(values.size());
    const double total = std::accumulate(values.begin(), values.end(), 0.0);
    if (!(width > 1) || !(height > 1) || !(total > 0)) {
        return rectangles;
    }
    std::vector<double> areas;
    areas.reserve(values.size());
    for (const double value : values) {
        areas.push_back(value * (width * height) / total);
    }
    Rectangle region{0, 0, width, height};
    for (std::size_t next = 0; next < areas.size();) {
        const Row row = takeRow(areas, next, std::min(region.width, region.height));
        if (!(row.sum > 0)) {
            break;
        }
        place(row, areas, region, rectangles);
        next = row.end;
    }
    return rectangles;
}

} // namespace korvane::Treemap
