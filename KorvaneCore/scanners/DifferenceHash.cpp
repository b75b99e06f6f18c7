#include "KorvaneCore/scanners/DifferenceHash.h"

#include <cstddef>
#include <vector>

namespace korvane {

namespace {

constexpr int thumbnailSide = 64;

std::vector<std::uint8_t> greyOnWhite(const Thumbnail& picture) {
    // How bright the eye finds red, green and blue, in parts of 65,536.
    constexpr std::uint32_t red = 19'595;
    constexpr std::uint32_t green = 38'470;
    constexpr std::uint32_t blue = 7'471;
    static_assert(red + green + blue == 65'536, "grey must stay the same grey");
    std::vector<std::uint8_t> grey;
    grey.reserve(picture.size.count());
    for (std::size_t i = 0; i < picture.rgba.size(); i += 4) {
        const std::uint8_t* pixel = &picture.rgba[i];
        const std::uint32_t bright =
            (red * pixel[0] + green * pixel[1] + blue * pixel[2] + 32'768) >> 16U;
        const std::uint32_t opacity = pixel[3];
        grey.push_back(
            static_cast<std::uint8_t>((bright * opacity + 255 * (255 - opacity) + 127) / 255));
    }
    return grey;
}

} // namespace

std::uint64_t differenceHash(std::span<const std::uint8_t, 72> grey) noexcept {
    std::uint64_t hash = 0;
    for (std::size_t row = 0; row < 8; ++row) {
        for (std::size_t column = 0; column < 8; ++column) {
            const std::uint8_t* pixel = &grey[row * 9 + column];
            hash |= std::uint64_t{pixel[0] > pixel[1]} << (8 * row + column);
        }
    }
    return hash;
}

std::uint64_t differenceHash(const Thumbnail& picture) {
    const auto grey = resampled(greyOnWhite(picture), picture.size, hashedSize, 1);
    return differenceHash(std::span<const std::uint8_t, 72>(grey));
}

std::optional<std::uint64_t> differenceHash(const FileURL& url, const ImageDecoder& decoder) {
    const auto picture = decoder.thumbnail(url, thumbnailSide);
    return picture ? std::optional(differenceHash(*picture)) : std::nullopt;
}

} // namespace korvane
