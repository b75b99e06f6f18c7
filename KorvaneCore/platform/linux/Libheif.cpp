#include "KorvaneCore/platform/linux/Libheif.h"

#include "KorvaneCore/platform/linux/LibrarySymbols.h"

#include <optional>

namespace korvane {

namespace {

std::optional<Libheif> load() {
    void* library = dlopen("libheif.so.1", RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        return std::nullopt;
    }
    LibrarySymbols symbols(library);
    Libheif api;
    symbols.find("heif_context_alloc", api.allocContext);
    symbols.find("heif_context_free", api.freeContext);
    symbols.find("heif_context_read_from_reader", api.read);
    symbols.find("heif_context_get_primary_image_handle", api.primaryImage);
    symbols.find("heif_image_handle_release", api.releaseHandle);
    symbols.find("heif_image_handle_get_width", api.handleWidth);
    symbols.find("heif_image_handle_get_height", api.handleHeight);
    symbols.find("heif_image_handle_has_alpha_channel", api.hasAlpha);
    symbols.find("heif_decode_image", api.decode);
    symbols.find("heif_image_release", api.releaseImage);
    symbols.find("heif_image_get_colorspace", api.colourSpace);
    symbols.find("heif_image_get_width", api.planeWidth);
    symbols.find("heif_image_get_height", api.planeHeight);
    symbols.find("heif_image_get_bits_per_pixel", api.storedBits);
    symbols.find("heif_image_get_bits_per_pixel_range", api.usedBits);
    symbols.find("heif_image_get_plane_readonly", api.plane);
    symbols.find("heif_image_get_nclx_color_profile", api.colourProfile);
    symbols.find("heif_nclx_color_profile_free", api.freeColourProfile);
    return symbols.complete() ? std::optional(api) : std::nullopt;
}

} // namespace

const Libheif* Libheif::shared() {
    static const std::optional<Libheif> api = load();
    return api ? &*api : nullptr;
}

} // namespace korvane
