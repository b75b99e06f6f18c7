#pragma once

#include <span>
#include <vector>

/// Sizes as areas.
namespace korvane::Treemap {

/// In points, from the container's minimum corner.
struct Rectangle {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    friend bool operator==(const Rectangle&, const Rectangle&) = default;
};

/// The squarified layout of the values in a container: one rectangle a value, in the order of the
/// values, its area in proportion. Give them largest first: nothing is sorted here. All zero where
/// there is no room (a side of at most 1) or nothing to show. Pure; any thread.
[[nodiscard]] std::vector<Rectangle> layout(std::span<const double> values, double width,
                                            double height);

} // namespace korvane::Treemap
