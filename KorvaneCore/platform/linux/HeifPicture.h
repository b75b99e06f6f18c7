#pragma once

#include "KorvaneCore/platform/Thumbnail.h"
#include "KorvaneCore/platform/linux/Libheif.h"
#include "KorvaneCore/platform/linux/PictureInput.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace korvane {

/// A HEIC or AVIF file. Its planes are reduced as the library leaves them: through libvips, which
/// wants them interleaved and hands them on in copies, an AVIF takes more than twice the time.
/// One thread at a time.
class HeifPicture {
  public:
    /// Reads what the file says of its first picture; nothing is decoded. Both must outlive this.
    HeifPicture(const Libheif& api, PictureInput& input);

    /// Whether parts of it let shine through what is behind, which is not handled here.
    [[nodiscard]] bool hasAlpha() const;

    /// Upright, its longer side reduced to `maxSide`. Nothing when it is malformed, cut off, or has
    /// more than `maxPixels`.
    [[nodiscard]] std::optional<Thumbnail> thumbnail(int maxSide, std::int64_t maxPixels) const;

  private:
    const Libheif& api_;
    std::unique_ptr<heif_context, decltype(&::heif_context_free)> context_;
    std::unique_ptr<const heif_image_handle, decltype(&::heif_image_handle_release)> handle_;
};

} // namespace korvane
