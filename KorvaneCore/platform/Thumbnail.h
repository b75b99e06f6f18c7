#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace korvane {

/// Width and height in pixels.
struct PixelSize {
    int width = 0;
    int height = 0;

    [[nodiscard]] std::size_t count() const noexcept {
        return static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    }
    /// As large as fits into a square of `maxSide`, at least one pixel, never larger than this.
    [[nodiscard]] PixelSize fitting(int maxSide) const noexcept;

    friend bool operator==(const PixelSize&, const PixelSize&) = default;
};

/// A small picture: rows from the top, four bytes a pixel (red, green, blue, and how opaque it is,
/// by which the colours are not multiplied).
struct Thumbnail {
    PixelSize size;
    std::vector<std::uint8_t> rgba{};

    friend bool operator==(const Thumbnail&, const Thumbnail&) = default;
};

/// Scales a picture of `channels` bytes a pixel with a tent filter, which weighs all the pixels a
/// target pixel covers. The proportions may change. A picture of one shade stays exactly that.
[[nodiscard]] std::vector<std::uint8_t> resampled(std::span<const std::uint8_t> pixels,
                                                  PixelSize from, PixelSize to, int channels);

} // namespace korvane
