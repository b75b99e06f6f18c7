#include "Korvane/updater/DiskImage.h"

#include "Korvane/updater/UpdateError.h"
#include "Korvane/updater/UpdateSentences.h"

#include <utility>

namespace korvane {

namespace {

constexpr const char* program = "/usr/bin/hdiutil";

bool detach(const FileURL& folder, ProcessLauncher& launcher) {
    ProcessRequest request;
    request.executable = program;
    request.arguments = {"detach", folder.path(), "-quiet"};
    // A cancelled update must not leave its image mounted.
    request.endsWithTask = false;
    return launcher.run(request).succeeded();
}

} // namespace

DiskImage::DiskImage(const FileURL& image, FileURL folder, ProcessLauncher& launcher)
    : folder_(std::move(folder)), launcher_(launcher) {
    ProcessRequest request;
    request.executable = program;
    request.arguments = {"attach",    image.path(),  "-mountpoint", folder_.path(),
                         "-nobrowse", "-noautoopen", "-readonly",   "-quiet"};
    const ProcessOutcome outcome = launcher_.run(request);
    if (!outcome.succeeded()) {
        // Ended early, it may have mounted the image all the same.
        if (outcome.launched && (outcome.cancelled || outcome.signal != 0)) {
            (void)detach(folder_, launcher_);
        }
        throw UpdateError(outcome.cancelled ? UpdateSentences::cancelled
                                            : UpdateSentences::unopenedImage);
    }
}

DiskImage::~DiskImage() {
    (void)detach(folder_, launcher_);
}

} // namespace korvane
