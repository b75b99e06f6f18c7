#pragma once

#include "KorvaneCore/foundation/FileURL.h"

#include <cstdint>

namespace korvane {

/// How one sample picture differs from its siblings.
struct SamplePicture {
    std::uint32_t scene = 0; ///< pictures of one scene look alike
    int width = 640;         ///< pixels; the height is three quarters of it
    int brightness = 0;      ///< added to every channel
    int quality = 85;        ///< of the JPEG, 1…100
};

/// Draws the scene and writes it as a JPEG. Throws FileError.
void writeSamplePicture(const FileURL& file, const SamplePicture& picture);

} // namespace korvane
