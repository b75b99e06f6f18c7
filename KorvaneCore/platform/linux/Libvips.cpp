#include "KorvaneCore/platform/linux/Libvips.h"

#include "KorvaneCore/platform/linux/LibrarySymbols.h"

#include <optional>

#include <malloc.h>

namespace korvane {

namespace {

/// What is only needed to set the library up.
struct Setup {
    decltype(&::vips_init) init = nullptr;
    decltype(&::vips_cache_set_max) setCacheSize = nullptr;
    decltype(&::vips_concurrency_set) setConcurrency = nullptr;
    decltype(&::vips_operation_block_set) setBlocked = nullptr;
    decltype(&::g_log_set_handler) setLogHandler = nullptr;

    [[nodiscard]] bool run() const {
        // What is odd about a picture is no news to somebody who looks for similar ones.
        setLogHandler(
            "VIPS", static_cast<GLogLevelFlags>(G_LOG_LEVEL_MASK | G_LOG_FLAG_FATAL),
            [](const gchar*, GLogLevelFlags, const gchar*, gpointer) {}, nullptr);
        if (init("korvane") != 0) {
            return false;
        }
        // Whole pictures go back to the system when they are done with. Left alone, the allocator
        // learns to keep blocks of their size, in pieces that the next picture does not fit into.
        // NOLINTNEXTLINE(concurrency-mt-unsafe): once, under the lock of the first use
        mallopt(M_MMAP_THRESHOLD, 1'048'576);
        // No picture is decoded twice, and one at a time is what a scan promises.
        setCacheSize(0);
        setConcurrency(1);
        // Documents, vector graphics and the like have decoders too that no picture should reach.
        setBlocked("VipsForeignLoad", 1);
        for (const char* wanted :
             {"VipsForeignLoadJpeg", "VipsForeignLoadPng", "VipsForeignLoadNsgif",
              "VipsForeignLoadWebp", "VipsForeignLoadTiff", "VipsForeignLoadHeif"}) {
            setBlocked(wanted, 0);
        }
        return true;
    }
};

std::optional<Libvips> load() {
    void* library = dlopen("libvips.so.42", RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        return std::nullopt;
    }
    LibrarySymbols symbols(library);
    Setup setup;
    symbols.find("vips_init", setup.init);
    symbols.find("vips_cache_set_max", setup.setCacheSize);
    symbols.find("vips_concurrency_set", setup.setConcurrency);
    symbols.find("vips_operation_block_set", setup.setBlocked);
    symbols.find("g_log_set_handler", setup.setLogHandler);
    Libvips api;
    symbols.find("vips_source_custom_new", api.sourceCustomNew);
    symbols.find("vips_image_new_from_source", api.imageFromSource);
    symbols.find("vips_image_get_width", api.width);
    symbols.find("vips_image_get_height", api.height);
    symbols.find("vips_image_get_bands", api.bands);
    symbols.find("vips_image_get_orientation_swap", api.orientationSwap);
    symbols.find("vips_image_get_int", api.metadata);
    symbols.find("vips_thumbnail_image", api.thumbnail);
    symbols.find("vips_colourspace", api.toColourSpace);
    symbols.find("vips_image_write_to_memory", api.writeToMemory);
    symbols.find("vips_image_set_progress", api.setProgress);
    symbols.find("vips_image_set_kill", api.setKill);
    symbols.find("vips_error_clear", api.clearErrors);
    symbols.find("g_signal_connect_data", api.connect);
    symbols.find("g_object_unref", api.unref);
    symbols.find("g_free", api.free);
    return symbols.complete() && setup.run() ? std::optional(api) : std::nullopt;
}

} // namespace

const Libvips* Libvips::shared() {
    static const std::optional<Libvips> api = load();
    return api ? &*api : nullptr;
}

} // namespace korvane
