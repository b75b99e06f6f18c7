#include "KorvaneCore/platform/linux/HeifPicture.h"

#include "KorvaneCore/platform/RowReducer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <vector>

#include <unistd.h>

namespace korvane {

namespace {

heif_reader makeReader() {
    heif_reader reader{};
    reader.reader_api_version = 1;
    reader.get_position = [](void* input) { return static_cast<PictureInput*>(input)->position(); };
    reader.read = [](void* data, std::size_t size, void* input) {
        auto* target = static_cast<std::byte*>(data);
        while (size > 0) {
            const std::int64_t count = static_cast<PictureInput*>(input)->read(target, size);
            if (count <= 0) {
                return 1;
            }
            target += count;
            size -= static_cast<std::size_t>(count);
        }
        return 0;
    };
    reader.seek = [](std::int64_t position, void* input) {
        return static_cast<PictureInput*>(input)->seek(position, SEEK_SET) < 0 ? 1 : 0;
    };
    reader.wait_for_file_size = [](std::int64_t size, void* input) {
        return size <= static_cast<PictureInput*>(input)->size()
                   ? heif_reader_grow_status_size_reached
                   : heif_reader_grow_status_size_beyond_eof;
    };
    return reader;
}

using Image = std::unique_ptr<const heif_image, decltype(&::heif_image_release)>;

/// A plane of `Sample`s, resampled to `target`.
template <typename Sample>
std::vector<std::uint8_t> reduced(const std::uint8_t* bytes, std::size_t stride, PixelSize size,
                                  unsigned most, PixelSize target) {
    RowReducer<Sample, 1> reducer(size, std::max(target.width, target.height), most);
    std::vector<Sample> row(static_cast<std::size_t>(size.width));
    for (int y = 0; y < size.height; ++y) {
        std::memcpy(row.data(), bytes + static_cast<std::size_t>(y) * stride,
                    row.size() * sizeof(Sample));
        reducer.add(row);
    }
    return reducer.take(target);
}

/// One plane of a decoded picture, resampled to `target`; one byte a sample. Empty when there is no
/// such plane.
std::vector<std::uint8_t> reducedPlane(const Libheif& api, const heif_image* image,
                                       heif_channel channel, PixelSize target) {
    int stride = 0;
    const std::uint8_t* bytes = api.plane(image, channel, &stride);
    const PixelSize size{api.planeWidth(image, channel), api.planeHeight(image, channel)};
    const int bits = api.usedBits(image, channel);
    const bool isWide = api.storedBits(image, channel) > 8;
    const std::int64_t rowLength = std::int64_t{size.width} * (isWide ? 2 : 1);
    if (bytes == nullptr || size.width <= 0 || size.height <= 0 || rowLength > stride || bits < 1 ||
        bits > 16) {
        return {};
    }
    const unsigned most = (1U << static_cast<unsigned>(bits)) - 1;
    const auto row = static_cast<std::size_t>(stride);
    return isWide ? reduced<std::uint16_t>(bytes, row, size, most, target)
                  : reduced<std::uint8_t>(bytes, row, size, most, target);
}

/// How brightness and two differences of colour make up a pixel (ITU-T H.273).
struct Coding {
    double red = 0.299;
    double blue = 0.114;
    bool isColours = false; ///< the planes are green, blue and red themselves
    bool isFullRange = true;
};

Coding codingOf(const Libheif& api, const heif_image* image) {
    Coding coding;
    heif_color_profile_nclx* found = nullptr;
    if (api.colourProfile(image, &found).code != heif_error_Ok || found == nullptr) {
        return coding;
    }
    const std::unique_ptr<heif_color_profile_nclx, decltype(&::heif_nclx_color_profile_free)>
        profile(found, api.freeColourProfile);
    coding.isFullRange = profile->full_range_flag != 0;
    switch (profile->matrix_coefficients) {
    case heif_matrix_coefficients_RGB_GBR:
        coding.isColours = true;
        break;
    case heif_matrix_coefficients_ITU_R_BT_709_5:
        coding.red = 0.2126;
        coding.blue = 0.0722;
        break;
    case heif_matrix_coefficients_US_FCC_T47:
        coding.red = 0.30;
        coding.blue = 0.11;
        break;
    case heif_matrix_coefficients_SMPTE_240M:
        coding.red = 0.212;
        coding.blue = 0.087;
        break;
    case heif_matrix_coefficients_ITU_R_BT_2020_2_non_constant_luminance:
    case heif_matrix_coefficients_ITU_R_BT_2020_2_constant_luminance:
        coding.red = 0.2627;
        coding.blue = 0.0593;
        break;
    default:
        break;
    }
    return coding;
}

std::uint8_t byteOf(double value) {
    return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0, 255.0)));
}

/// The pixel that a sample of each plane stands for.
std::array<std::uint8_t, 3> colourOf(const Coding& coding, std::uint8_t first, std::uint8_t second,
                                     std::uint8_t third) {
    const auto brightness = [&](double sample) {
        return coding.isFullRange ? sample : (sample - 16) * 255 / 219;
    };
    if (coding.isColours) {
        return {byteOf(brightness(third)), byteOf(brightness(first)), byteOf(brightness(second))};
    }
    const auto difference = [&](double sample) {
        return (sample - 128) * (coding.isFullRange ? 1.0 : 255.0 / 224);
    };
    const double y = brightness(first);
    const double r = y + 2 * (1 - coding.red) * difference(third);
    const double b = y + 2 * (1 - coding.blue) * difference(second);
    const double g = (y - coding.red * r - coding.blue * b) / (1 - coding.red - coding.blue);
    return {byteOf(r), byteOf(g), byteOf(b)};
}

/// The decoded picture, reduced.
std::optional<Thumbnail> thumbnailOf(const Libheif& api, const heif_image* image, int maxSide) {
    Coding coding = codingOf(api, image);
    std::array channels{heif_channel_Y, heif_channel_Cb, heif_channel_Cr};
    const heif_colorspace space = api.colourSpace(image);
    if (space == heif_colorspace_RGB) {
        channels = {heif_channel_G, heif_channel_B, heif_channel_R};
        coding = {.isColours = true};
    }
    const PixelSize size{api.planeWidth(image, channels[0]), api.planeHeight(image, channels[0])};
    if (size.width <= 0 || size.height <= 0) {
        return std::nullopt;
    }
    Thumbnail thumbnail{size.fitting(maxSide)};
    std::array<std::vector<std::uint8_t>, 3> planes;
    for (std::size_t i = 0; i < planes.size(); ++i) {
        if (i > 0 && space == heif_colorspace_monochrome) {
            planes[i].assign(thumbnail.size.count(), 128);
            continue;
        }
        planes[i] = reducedPlane(api, image, channels[i], thumbnail.size);
        if (planes[i].empty()) {
            return std::nullopt;
        }
    }
    thumbnail.rgba.reserve(thumbnail.size.count() * 4);
    for (std::size_t i = 0; i < thumbnail.size.count(); ++i) {
        const auto [r, g, b] = colourOf(coding, planes[0][i], planes[1][i], planes[2][i]);
        thumbnail.rgba.insert(thumbnail.rgba.end(), {r, g, b, 255});
    }
    return thumbnail;
}

} // namespace

HeifPicture::HeifPicture(const Libheif& api, PictureInput& input)
    : api_(api), context_(api.allocContext(), api.freeContext),
      handle_(nullptr, api.releaseHandle) {
    static const heif_reader reader = makeReader();
    heif_image_handle* handle = nullptr;
    if (api_.read(context_.get(), &reader, &input, nullptr).code == heif_error_Ok &&
        api_.primaryImage(context_.get(), &handle).code == heif_error_Ok) {
        handle_.reset(handle);
    }
}

bool HeifPicture::hasAlpha() const {
    return handle_ && api_.hasAlpha(handle_.get()) != 0;
}

std::optional<Thumbnail> HeifPicture::thumbnail(int maxSide, std::int64_t maxPixels) const {
    if (!handle_ ||
        std::int64_t{api_.handleWidth(handle_.get())} * api_.handleHeight(handle_.get()) >
            maxPixels) {
        return std::nullopt;
    }
    heif_image* decoded = nullptr;
    const heif_error error = api_.decode(handle_.get(), &decoded, heif_colorspace_undefined,
                                         heif_chroma_undefined, nullptr);
    const Image image(decoded, api_.releaseImage);
    return error.code == heif_error_Ok && image ? thumbnailOf(api_, image.get(), maxSide)
                                                : std::nullopt;
}

} // namespace korvane
