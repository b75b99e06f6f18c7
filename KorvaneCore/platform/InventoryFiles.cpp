#include "KorvaneCore/platform/InventoryFiles.h"

#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/foundation/StateFile.h"
#include "KorvaneCore/foundation/Task.h"

#include <cerrno>

#include <fcntl.h>

namespace korvane {

namespace {

// Descriptions of applications are a few kilobytes; what is larger is something else.
constexpr std::int64_t largestFile = 1024L * 1024L;

bool meansAbsent(int error) noexcept {
    // Links in a circle lead to nothing.
    return error == ENOENT || error == ENOTDIR || error == ELOOP;
}

} // namespace

std::vector<std::string> namesForInventory(const FileURL& folder, FoldersRead& foldersRead,
                                           SoftwareListing& listing) {
    if (Task::isCancelled()) {
        listing.isComplete = false;
        return {};
    }
    FileFacts facts;
    if (const int error = readFactsFollowingLinks(AT_FDCWD, folder.path().c_str(), facts);
        error != 0) {
        listing.isComplete = listing.isComplete && meansAbsent(error);
        return {};
    }
    if (facts.kind != DirectoryReader::Kind::folder || !foldersRead.insert(facts.identity).second) {
        return {};
    }
    auto names = namesInFolder(folder.path());
    if (!names) {
        listing.isComplete = listing.isComplete && meansAbsent(errno);
        return {};
    }
    return std::move(*names);
}

std::optional<std::string> readForInventory(const FileURL& file, SoftwareListing& listing) {
    if (Task::isCancelled()) {
        listing.isComplete = false;
        return std::nullopt;
    }
    FileFacts facts;
    if (const int error = readFactsFollowingLinks(AT_FDCWD, file.path().c_str(), facts);
        error != 0) {
        listing.isComplete = listing.isComplete && meansAbsent(error);
        return std::nullopt;
    }
    if (facts.kind == DirectoryReader::Kind::file && facts.sizeBytes <= largestFile) {
        try {
            return readFile(file);
        } catch (const FileError&) {
            // Treated like every other file that does not give its content.
        }
    }
    listing.isComplete = false;
    return std::nullopt;
}

bool isFolderThere(const FileURL& url) noexcept {
    FileFacts facts;
    return readFactsFollowingLinks(AT_FDCWD, url.path().c_str(), facts) == 0 &&
           facts.kind == DirectoryReader::Kind::folder;
}

} // namespace korvane
