#include "Korvane/updater/ScratchFolder.h"

#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/foundation/UUID.h"

#include <cerrno>
#include <exception>

#include <sys/stat.h>

namespace korvane {

ScratchFolder::ScratchFolder(const FileURL& parent, std::string_view prefix, FileManager& files)
    : url_(parent.resolvingSymlinks().appending(std::string(prefix) + UUID::random().text())),
      files_(files) {
    if (mkdir(url_.path().c_str(), 0700) != 0) {
        throw FileError(errno, "create the folder", url_.path());
    }
}

ScratchFolder::~ScratchFolder() {
    try {
        files_.removeItem(url_);
    } catch (const std::exception&) {
        // A temporary folder that will not go is the system's to clean up.
    }
}

} // namespace korvane
