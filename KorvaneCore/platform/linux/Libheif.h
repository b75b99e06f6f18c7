#pragma once

#include <libheif/heif.h>

namespace korvane {

/// What is used of libheif. Loaded when the first HEIC or AVIF picture is decoded.
struct Libheif {
    decltype(&::heif_context_alloc) allocContext = nullptr;
    decltype(&::heif_context_free) freeContext = nullptr;
    decltype(&::heif_context_read_from_reader) read = nullptr;
    decltype(&::heif_context_get_primary_image_handle) primaryImage = nullptr;
    decltype(&::heif_image_handle_release) releaseHandle = nullptr;
    decltype(&::heif_image_handle_get_width) handleWidth = nullptr;
    decltype(&::heif_image_handle_get_height) handleHeight = nullptr;
    decltype(&::heif_image_handle_has_alpha_channel) hasAlpha = nullptr;
    decltype(&::heif_decode_image) decode = nullptr;
    decltype(&::heif_image_release) releaseImage = nullptr;
    decltype(&::heif_image_get_colorspace) colourSpace = nullptr;
    decltype(&::heif_image_get_width) planeWidth = nullptr;
    decltype(&::heif_image_get_height) planeHeight = nullptr;
    decltype(&::heif_image_get_bits_per_pixel) storedBits = nullptr;
    decltype(&::heif_image_get_bits_per_pixel_range) usedBits = nullptr;
    decltype(&::heif_image_get_plane_readonly) plane = nullptr;
    decltype(&::heif_image_get_nclx_color_profile) colourProfile = nullptr;
    decltype(&::heif_nclx_color_profile_free) freeColourProfile = nullptr;

    /// Null when the library is not installed. Any thread; never unloaded.
    [[nodiscard]] static const Libheif* shared();
};

} // namespace korvane
