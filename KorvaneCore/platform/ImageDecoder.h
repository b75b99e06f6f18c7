#pragma once

#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/platform/Thumbnail.h"

#include <optional>

namespace korvane {

/// Makes small pictures of picture files: JPEG, PNG, HEIC, AVIF, TIFF, GIF, BMP and WebP, told
/// apart by their content. Files are taken to be hostile: what is larger than any camera makes, cut
/// off, or of another kind is refused before its pixels are decoded. Any thread.
class ImageDecoder {
  public:
    virtual ~ImageDecoder() = default;

    /// Whether this system can decode pictures at all. The first question may take a tenth of a
    /// second.
    [[nodiscard]] virtual bool isAvailable() const = 0;

    /// The first picture of a file, upright, its longer side reduced to `maxSide` pixels (never
    /// enlarged). Nothing when it is no regular file, cannot be decoded whole, or takes too long.
    [[nodiscard]] virtual std::optional<Thumbnail> thumbnail(const FileURL& url,
                                                             int maxSide) const = 0;

    /// This system's decoder. Nothing is loaded before it is first asked.
    [[nodiscard]] static const ImageDecoder& shared();

  protected:
    ImageDecoder() = default;
    ImageDecoder(const ImageDecoder&) = default;
    ImageDecoder& operator=(const ImageDecoder&) = default;
};

} // namespace korvane
