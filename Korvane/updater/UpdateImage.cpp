#include "Korvane/updater/UpdateImage.h"

#include "Korvane/updater/ArchiveExtraction.h"
#include "Korvane/updater/DiskImage.h"
#include "Korvane/updater/UpdateError.h"
#include "Korvane/updater/UpdateSentences.h"
#include "KorvaneCore/foundation/FileError.h"

namespace korvane {

namespace {

/// Unpacked files go with the folder they are in.
class ArchiveImage final : public UpdateImage {
  public:
    ArchiveImage(const FileURL& image, const FileURL& folder) {
        try {
            extractArchive(image, folder);
        } catch (const FileError&) {
            throw UpdateError(UpdateSentences::unopenedImage);
        }
    }
};

} // namespace

std::unique_ptr<UpdateImage> UpdateImage::open(const FileURL& image, const FileURL& folder,
                                               ProcessLauncher& launcher) {
    if (imageExtension(image.path()) == ".dmg") {
        return std::make_unique<DiskImage>(image, folder, launcher);
    }
    return std::make_unique<ArchiveImage>(image, folder);
}

std::string_view imageExtension(std::string_view path) noexcept {
    for (const std::string_view known : {".dmg", ".tar.zst"}) {
        if (path.ends_with(known)) {
            return known;
        }
    }
    return ".tar.gz";
}

} // namespace korvane
