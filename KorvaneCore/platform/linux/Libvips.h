#pragma once

#include <vips/vips.h>

namespace korvane {

/// What is used of libvips and of GLib below it. Loaded when the first picture is decoded: it
/// brings a hundred libraries, which no other part of the program needs.
struct Libvips {
    decltype(&::vips_source_custom_new) sourceCustomNew = nullptr;
    decltype(&::vips_image_new_from_source) imageFromSource = nullptr;
    decltype(&::vips_image_get_width) width = nullptr;
    decltype(&::vips_image_get_height) height = nullptr;
    decltype(&::vips_image_get_bands) bands = nullptr;
    decltype(&::vips_image_get_orientation_swap) orientationSwap = nullptr;
    decltype(&::vips_image_get_int) metadata = nullptr;
    decltype(&::vips_thumbnail_image) thumbnail = nullptr;
    decltype(&::vips_colourspace) toColourSpace = nullptr;
    decltype(&::vips_image_write_to_memory) writeToMemory = nullptr;
    decltype(&::vips_image_set_progress) setProgress = nullptr;
    decltype(&::vips_image_set_kill) setKill = nullptr;
    decltype(&::vips_error_clear) clearErrors = nullptr;
    decltype(&::g_signal_connect_data) connect = nullptr;
    decltype(&::g_object_unref) unref = nullptr;
    decltype(&::g_free) free = nullptr;

    /// Set up to be quiet, small, and to read nothing but the kinds of pictures wanted. Null when
    /// the library is not installed. Any thread; never unloaded.
    [[nodiscard]] static const Libvips* shared();
};

} // namespace korvane
