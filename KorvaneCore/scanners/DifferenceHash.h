#pragma once

#include "KorvaneCore/platform/ImageDecoder.h"

#include <cstdint>
#include <optional>
#include <span>

namespace korvane {

/// Width and height of the grey picture that a difference hash is made of.
inline constexpr PixelSize hashedSize{9, 8};

/// 64 bits that change little when a picture is saved anew, resized or lightly edited: bit 8·row +
/// column, from the least significant, says that a pixel is strictly brighter than its right
/// neighbour. `grey` holds the rows one after another.
[[nodiscard]] std::uint64_t differenceHash(std::span<const std::uint8_t, 72> grey) noexcept;

/// Of a small picture, squeezed to `hashedSize`. What is transparent counts as white: that is the
/// page on which drawings with a transparent ground are seen, most of them dark.
[[nodiscard]] std::uint64_t differenceHash(const Thumbnail& picture);

/// Of a file; nothing when it cannot be decoded.
[[nodiscard]] std::optional<std::uint64_t> differenceHash(const FileURL& url,
                                                          const ImageDecoder& decoder);

} // namespace korvane
