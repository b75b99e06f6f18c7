#include "Korvane/cleaning/PathListFile.h"

#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/foundation/UUID.h"
#include "KorvaneCore/platform/FolderFacts.h"
#include "KorvaneCore/platform/HeldPlace.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace korvane {

namespace {

constexpr mode_t ownerOnly = S_IRUSR | S_IWUSR;
constexpr std::string_view action = "write the list of paths";

} // namespace

PathListFile::PathListFile(const FileURL& temporaryFolder)
    : url_(temporaryFolder.resolvingSymlinks().appending("korvane-privileged-" +
                                                         UUID::random().text())),
      file_(open(url_.path().c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                 ownerOnly)) {
    if (!file_) {
        throw FileError(errno, action, url_.path());
    }
    try {
        // The creation mask may have taken rights away.
        if (fchmod(file_.get(), ownerOnly) != 0) {
            throw FileError(errno, action, url_.path());
        }
        requireItsName();
    } catch (...) {
        unlink(url_.path().c_str());
        throw;
    }
}

PathListFile::~PathListFile() {
    unlink(url_.path().c_str());
}

void PathListFile::write(const std::vector<FileURL>& items) const {
    requireItsName();
    std::string content;
    for (const FileURL& item : items) {
        content += content.empty() ? "" : std::string(1, '\0');
        content += item.path();
    }
    if (ftruncate(file_.get(), 0) != 0) {
        throw FileError(errno, action, url_.path());
    }
    std::size_t done = 0;
    while (done < content.size()) {
        const ssize_t count = pwrite(file_.get(), content.data() + done, content.size() - done,
                                     static_cast<off_t>(done));
        if (count < 0 && errno != EINTR) {
            throw FileError(errno, action, url_.path());
        }
        done += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
}

void PathListFile::requireItsName() const {
    FileFacts facts;
    const bool isThisFile = !HeldPlace::look(url_).trouble() &&
                            readFacts(AT_FDCWD, url_.path().c_str(), facts) == 0 &&
                            facts.identity == identity(file_.get());
    if (!isThisFile) {
        throw FileError(ESTALE, action, url_.path());
    }
}

} // namespace korvane
