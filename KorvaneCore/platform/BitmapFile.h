#pragma once

#include "KorvaneCore/platform/Thumbnail.h"

#include <cstdint>
#include <optional>

namespace korvane {

/// Makes a small picture of a Windows bitmap (BMP): palettes of 1 to 8 bits, run-length coded ones
/// too, and 16 to 32 bits a pixel. Reads it row by row, so that a bitmap of any size costs little
/// memory. Nothing when it is malformed, cut off, or has more than `maxPixels`. `descriptor` must
/// be a regular file; its position is not used. Any thread.
[[nodiscard]] std::optional<Thumbnail> bitmapThumbnail(int descriptor, int maxSide,
                                                       std::int64_t maxPixels);

} // namespace korvane
