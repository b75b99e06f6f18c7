#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/platform/BitmapFile.h"
#include "KorvaneCore/platform/ImageDecoder.h"
#include "KorvaneCore/platform/linux/HeifPicture.h"
#include "KorvaneCore/platform/linux/Libheif.h"
#include "KorvaneCore/platform/linux/Libvips.h"
#include "KorvaneCore/platform/linux/PictureInput.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string_view>
#include <utility>

#include <unistd.h>

#include <fmt/format.h>

namespace korvane {

namespace {

/// Larger than any camera makes, where pixels are decoded row by row.
constexpr std::int64_t maxPixels = 300'000'000;
/// Where the decoder holds the whole picture, several bytes a pixel.
constexpr std::int64_t maxPixelsWhole = 64'000'000;
/// Colours, black and how opaque it is.
constexpr int maxBands = 5;
/// Kinds whose decoder takes the whole file into memory.
constexpr std::int64_t maxFileHeldWhole = 128'000'000;

enum class Kind { unknown, jpeg, png, gif, webp, tiff, heif, bitmap };

/// Told by the first bytes: the name says nothing of what a file will do to a decoder.
Kind kindOf(std::string_view begin) {
    using namespace std::string_view_literals;
    struct Signature {
        std::size_t position;
        std::string_view bytes;
        Kind kind;
    };
    static constexpr std::array signatures{
        Signature{0, "\xFF\xD8\xFF"sv, Kind::jpeg}, Signature{0, "\x89PNG\r\n\x1A\n"sv, Kind::png},
        Signature{0, "GIF8"sv, Kind::gif},          Signature{8, "WEBP"sv, Kind::webp},
        Signature{0, "II*\0"sv, Kind::tiff},        Signature{0, "MM\0*"sv, Kind::tiff},
        Signature{0, "II+\0"sv, Kind::tiff},        Signature{0, "MM\0+"sv, Kind::tiff},
        Signature{4, "ftyp"sv, Kind::heif},         Signature{0, "BM"sv, Kind::bitmap}};
    const auto* found =
        std::find_if(signatures.begin(), signatures.end(), [&](const Signature& signature) {
            return begin.substr(std::min(signature.position, begin.size()))
                .starts_with(signature.bytes);
        });
    return found == signatures.end() ? Kind::unknown : found->kind;
}

bool holdsFileWhole(Kind kind) {
    return kind == Kind::gif || kind == Kind::webp || kind == Kind::heif;
}

/// One picture on its way through the library.
class Decoding {
  public:
    Decoding(const Libvips& api, PictureInput& input, Kind kind)
        : api_(api), input_(input), kind_(kind), source_(api.sourceCustomNew(), api.unref) {
        const auto handle = [&](const char* signal, auto* handler) {
            api_.connect(source_.get(), signal, reinterpret_cast<GCallback>(handler), &input_,
                         nullptr, GConnectFlags{});
        };
        handle("read", &Decoding::read);
        handle("seek", &Decoding::seek);
    }
    ~Decoding() { api_.clearErrors(); }
    Decoding(const Decoding&) = delete;
    Decoding& operator=(const Decoding&) = delete;

    [[nodiscard]] std::optional<Thumbnail> thumbnail(int maxSide) {
        Image image = load("");
        if (!image || !isAcceptable(image.get())) {
            return std::nullopt;
        }
        PixelSize target = PixelSize{api_.width(image.get()), api_.height(image.get())};
        if (api_.orientationSwap(image.get()) != 0) {
            std::swap(target.width, target.height);
        }
        target = target.fitting(maxSide);
        if (const std::string reducing = reducingOptions(image.get(), maxSide); !reducing.empty()) {
            image.reset();
            image = load(reducing.c_str());
        }
        if (!image) {
            return std::nullopt;
        }
        // Forced to the size, which the decoder's own reduction would round away.
        VipsImage* reduced = nullptr;
        api_.thumbnail(image.get(), &reduced, target.width, "height", target.height, "size",
                       VIPS_SIZE_FORCE, nullptr);
        const Image small = own(reduced);
        if (!small) {
            return std::nullopt;
        }
        VipsImage* converted = nullptr;
        api_.toColourSpace(small.get(), &converted, VIPS_INTERPRETATION_sRGB, nullptr);
        const Image colours = own(converted);
        return colours ? pixels(colours.get()) : std::nullopt;
    }

  private:
    static gint64 read(VipsSourceCustom* /*source*/, void* buffer, gint64 length,
                       PictureInput* input) {
        return input->read(buffer, static_cast<std::size_t>(length));
    }
    static gint64 seek(VipsSourceCustom* /*source*/, gint64 offset, int whence,
                       PictureInput* input) {
        return input->seek(offset, whence);
    }

    using Image = std::unique_ptr<VipsImage, void (*)(gpointer)>;

    Image own(VipsImage* image) const { return {image, api_.unref}; }

    /// Only the header is read; pixels are decoded on demand, from the top.
    Image load(const char* options) const {
        return own(api_.imageFromSource(reinterpret_cast<VipsSource*>(source_.get()), options,
                                        "access", VIPS_ACCESS_SEQUENTIAL, "fail_on",
                                        VIPS_FAIL_ON_TRUNCATED, nullptr));
    }

    [[nodiscard]] bool isAcceptable(VipsImage* image) const {
        int isMultiscan = 0;
        int isInterlaced = 0;
        api_.metadata(image, "jpeg-multiscan", &isMultiscan);
        api_.metadata(image, "interlaced", &isInterlaced);
        const bool isHeldWhole = holdsFileWhole(kind_) || isMultiscan != 0 || isInterlaced != 0;
        const std::int64_t pixels = std::int64_t{api_.width(image)} * api_.height(image);
        return pixels <= (isHeldWhole ? maxPixelsWhole : maxPixels) &&
               api_.bands(image) <= maxBands;
    }

    /// Lets the decoder itself leave out what the thumbnail will not show, twice its size kept for
    /// a smooth reduction. Empty when it cannot.
    [[nodiscard]] std::string reducingOptions(VipsImage* image, int maxSide) const {
        const double longest = std::max(api_.width(image), api_.height(image));
        const double shortest = std::min(api_.width(image), api_.height(image));
        // A thin side reduced to nothing would end the process in an assertion of the library.
        const double smallest = std::max(maxSide * 2 / longest, 2 / shortest);
        if (kind_ == Kind::jpeg) {
            for (const int shrink : {8, 4, 2}) {
                if (smallest * shrink <= 1) {
                    return fmt::format("[shrink={}]", shrink);
                }
            }
        }
        if (kind_ == Kind::webp && smallest < 1) {
            return fmt::format("[scale={}]", smallest);
        }
        return "";
    }

    /// Runs everything asked for so far.
    [[nodiscard]] std::optional<Thumbnail> pixels(VipsImage* image) {
        struct Watch {
            const Libvips& api;
            const PictureInput& input;
            static void look(VipsImage* image, VipsProgress* /*progress*/, Watch* watch) {
                if (watch->input.isOverdue() || Task::isCancelled()) {
                    watch->api.setKill(image, 1);
                }
            }
        } watch{api_, input_};
        api_.setProgress(image, 1);
        api_.connect(image, "eval", reinterpret_cast<GCallback>(&Watch::look), &watch, nullptr,
                     GConnectFlags{});
        std::size_t length = 0;
        const std::unique_ptr<void, void (*)(gpointer)> memory(api_.writeToMemory(image, &length),
                                                               api_.free);
        const auto bands = static_cast<std::size_t>(api_.bands(image));
        Thumbnail thumbnail{{api_.width(image), api_.height(image)}};
        const std::size_t count = thumbnail.size.count();
        if (!memory || bands < 3 || length != count * bands) {
            return std::nullopt;
        }
        const auto* bytes = static_cast<const std::uint8_t*>(memory.get());
        thumbnail.rgba.reserve(count * 4);
        for (const auto* pixel = bytes; pixel != bytes + length; pixel += bands) {
            const std::uint8_t opacity = bands > 3 ? pixel[3] : std::uint8_t{255};
            thumbnail.rgba.insert(thumbnail.rgba.end(), {pixel[0], pixel[1], pixel[2], opacity});
        }
        return thumbnail;
    }

    const Libvips& api_;
    PictureInput& input_;
    Kind kind_;
    std::unique_ptr<VipsSourceCustom, void (*)(gpointer)> source_;
};

class VipsImageDecoder final : public ImageDecoder {
  public:
    [[nodiscard]] bool isAvailable() const override { return Libvips::shared() != nullptr; }

    [[nodiscard]] std::optional<Thumbnail> thumbnail(const FileURL& url,
                                                     int maxSide) const override {
        const auto input = PictureInput::open(url);
        std::array<char, 12> begin{};
        if (!input || pread(input->descriptor(), begin.data(), begin.size(), 0) !=
                          static_cast<ssize_t>(begin.size())) {
            return std::nullopt;
        }
        const Kind kind = kindOf({begin.data(), begin.size()});
        if (kind == Kind::bitmap) {
            return bitmapThumbnail(input->descriptor(), maxSide, maxPixels);
        }
        if (kind == Kind::unknown || (holdsFileWhole(kind) && input->size() > maxFileHeldWhole)) {
            return std::nullopt;
        }
        if (const Libheif* heif = kind == Kind::heif ? Libheif::shared() : nullptr) {
            const HeifPicture picture(*heif, *input);
            if (!picture.hasAlpha()) {
                return picture.thumbnail(maxSide, maxPixelsWhole);
            }
            (void)input->seek(0, SEEK_SET);
        }
        const Libvips* api = Libvips::shared();
        return api == nullptr ? std::nullopt : Decoding(*api, *input, kind).thumbnail(maxSide);
    }
};

} // namespace

const ImageDecoder& ImageDecoder::shared() {
    static const VipsImageDecoder decoder;
    return decoder;
}

} // namespace korvane
