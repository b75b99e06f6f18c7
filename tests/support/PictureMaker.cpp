#include "tests/support/PictureMaker.h"

#include <cmath>
#include <memory>
#include <stdexcept>

#include <vips/vips.h>

// What the encoders keep when they are done is no fault of what is tested.
extern "C" const char* __lsan_default_suppressions();  // NOLINT(bugprone-reserved-identifier)
extern "C" const char* __lsan_default_suppressions() { // NOLINT(bugprone-reserved-identifier)
    return "leak:libimagequant\nleak:libx265\n";
}

namespace korvane::testing {

namespace {

using Image = std::unique_ptr<VipsImage, void (*)(gpointer)>;

std::string written(Image image, const std::string& format) {
    void* bytes = nullptr;
    std::size_t length = 0;
    if (!image ||
        vips_image_write_to_buffer(image.get(), format.c_str(), &bytes, &length, nullptr) != 0) {
        throw std::runtime_error("no picture was made: " + std::string(vips_error_buffer()));
    }
    std::string text(static_cast<const char*>(bytes), length);
    g_free(bytes);
    return text;
}

void start() {
    if (vips_init("korvane-tests") != 0) {
        throw std::runtime_error("libvips does not start");
    }
}

} // namespace

Picture Picture::ofShapes(unsigned seed, int width, int height) {
    Picture picture{width, height};
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            for (unsigned band = 0; band < 3; ++band) {
                double shade = 128;
                for (unsigned wave = 1; wave <= 4; ++wave) {
                    const unsigned mixed = (seed * 4 + wave) * 2'654'435'761U;
                    shade += 30 * std::sin(((mixed >> 8U) % 19 + 1) * 1.5 * x / width +
                                           ((mixed >> 16U) % 19 + 1) * 1.5 * y / height +
                                           (mixed >> 24U) + 0.2 * band);
                }
                picture.pixels.push_back(static_cast<std::uint8_t>(shade));
            }
        }
    }
    return picture;
}

Picture Picture::ofShade(std::uint8_t grey, int width, int height) {
    return {width, height, 1,
            std::vector<std::uint8_t>(
                static_cast<std::size_t>(width) * static_cast<std::size_t>(height), grey)};
}

Picture Picture::turnedLeft() const {
    Picture turned{height, width, bands};
    const auto depth = static_cast<std::size_t>(bands);
    for (int y = 0; y < width; ++y) {
        for (int x = 0; x < height; ++x) {
            const auto from = (static_cast<std::size_t>(x) * static_cast<std::size_t>(width) +
                               static_cast<std::size_t>(width - 1 - y)) *
                              depth;
            const auto* pixel = pixels.data() + from;
            turned.pixels.insert(turned.pixels.end(), pixel, pixel + depth);
        }
    }
    return turned;
}

std::string Picture::file(const std::string& format, int orientation) const {
    start();
    const Image raw(vips_image_new_from_memory(pixels.data(), pixels.size(), width, height, bands,
                                               VIPS_FORMAT_UCHAR),
                    g_object_unref);
    VipsImage* copy = nullptr;
    vips_copy(raw.get(), &copy, "interpretation",
              bands == 1 ? VIPS_INTERPRETATION_B_W : VIPS_INTERPRETATION_sRGB, nullptr);
    Image image(copy, g_object_unref);
    if (orientation != 0) {
        vips_image_set_int(image.get(), VIPS_META_ORIENTATION, orientation);
    }
    return written(std::move(image), format);
}

std::string hugeFile(const std::string& format, int width, int height) {
    start();
    VipsImage* black = nullptr;
    vips_black(&black, width, height, nullptr);
    return written(Image(black, g_object_unref), format);
}

} // namespace korvane::testing
