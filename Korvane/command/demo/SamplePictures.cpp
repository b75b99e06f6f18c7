#include "Korvane/command/demo/SamplePictures.h"

#include "KorvaneCore/foundation/FileError.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <memory>
#include <random>
#include <vector>

#include <jpeglib.h>

namespace korvane {

namespace {

struct Disc {
    double x, y, radius; // shares of the picture's width
    int red, green, blue;
};

std::vector<Disc> discs(std::uint32_t scene) {
    std::mt19937 random(scene);
    std::uniform_real_distribution<double> place(0, 1);
    std::uniform_int_distribution<int> colour(0, 255);
    std::vector<Disc> all;
    for (int i = 0; i < 9; ++i) {
        all.push_back({place(random), place(random) * 0.75, 0.05 + place(random) * 0.2,
                       colour(random), colour(random), colour(random)});
    }
    return all;
}

JSAMPLE sample(int value) {
    return static_cast<JSAMPLE>(std::clamp(value, 0, 255));
}

std::vector<JSAMPLE> row(int y, const SamplePicture& picture, const std::vector<Disc>& scene) {
    std::vector<JSAMPLE> samples;
    samples.reserve(static_cast<std::size_t>(picture.width) * 3);
    const double v = static_cast<double>(y) / picture.width;
    for (int x = 0; x < picture.width; ++x) {
        const double u = static_cast<double>(x) / picture.width;
        int red = static_cast<int>(180 * u);
        int green = static_cast<int>(240 * v);
        int blue = 120;
        for (const Disc& disc : scene) {
            if (std::hypot(u - disc.x, v - disc.y) < disc.radius) {
                red = disc.red;
                green = disc.green;
                blue = disc.blue;
            }
        }
        samples.push_back(sample(red + picture.brightness));
        samples.push_back(sample(green + picture.brightness));
        samples.push_back(sample(blue + picture.brightness));
    }
    return samples;
}

} // namespace

void writeSamplePicture(const FileURL& file, const SamplePicture& picture) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> stream(
        std::fopen(file.path().c_str(), "wbxe"), std::fclose);
    if (!stream) {
        throw FileError(errno, "write", file.path());
    }
    jpeg_compress_struct encoder{};
    jpeg_error_mgr errors{};
    encoder.err = jpeg_std_error(&errors);
    jpeg_create_compress(&encoder);
    jpeg_stdio_dest(&encoder, stream.get());
    encoder.image_width = static_cast<JDIMENSION>(picture.width);
    encoder.image_height = encoder.image_width * 3 / 4;
    encoder.input_components = 3;
    encoder.in_color_space = JCS_RGB;
    jpeg_set_defaults(&encoder);
    jpeg_set_quality(&encoder, picture.quality, TRUE);
    jpeg_start_compress(&encoder, TRUE);
    const std::vector<Disc> scene = discs(picture.scene);
    while (encoder.next_scanline < encoder.image_height) {
        std::vector<JSAMPLE> samples = row(static_cast<int>(encoder.next_scanline), picture, scene);
        JSAMPROW line = samples.data();
        jpeg_write_scanlines(&encoder, &line, 1);
    }
    jpeg_finish_compress(&encoder);
    jpeg_destroy_compress(&encoder);
    if (std::fflush(stream.get()) != 0) {
        throw FileError(errno, "write", file.path());
    }
}

} // namespace korvane
