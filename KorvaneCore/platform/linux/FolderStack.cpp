#include "KorvaneCore/platform/linux/FolderStack.h"

#include "KorvaneCore/platform/DirectoryReader.h"

#include <cerrno>

#include <sys/stat.h>

namespace korvane {

namespace {

// Deeper trees are rare; the process as a whole may have as few as 256 descriptors.
constexpr std::size_t openLimit = 40;

} // namespace

int FolderStack::descriptor() const noexcept {
    return frames_.empty() ? base_ : frames_.back().folder.get();
}

int FolderStack::enter(FileDescriptor folder, std::string name) {
    if (frames_.size() - firstOpen_ >= openLimit) {
        if (const int error = closeShallowest(); error != 0) {
            return error;
        }
    }
    frames_.push_back({std::move(folder), std::move(name)});
    return 0;
}

int FolderStack::leave(std::string& name) {
    const std::size_t last = frames_.size() - 1;
    if (last > 0 && last == firstOpen_) {
        if (const int error = openAgain(last - 1); error != 0) {
            return error;
        }
    }
    name = std::move(frames_.back().name);
    frames_.pop_back();
    return 0;
}

std::string FolderStack::relativePath() const {
    std::string path;
    for (const Frame& frame : frames_) {
        if (!path.empty()) {
            path += '/';
        }
        path += frame.name;
    }
    return path;
}

int FolderStack::closeShallowest() {
    Frame& frame = frames_[firstOpen_];
    struct stat facts {};
    if (fstat(frame.folder.get(), &facts) != 0) {
        return errno;
    }
    frame.device = facts.st_dev;
    frame.inode = facts.st_ino;
    frame.folder.reset();
    ++firstOpen_;
    return 0;
}

int FolderStack::openAgain(std::size_t index) {
    Frame& frame = frames_[index];
    FileDescriptor folder = openFolder(frames_[index + 1].folder.get(), "..");
    struct stat facts {};
    if (!folder || fstat(folder.get(), &facts) != 0) {
        return errno;
    }
    // Somebody who moves a folder of the tree away while it is worked in would otherwise lead the
    // work to wherever it was moved.
    if (facts.st_dev != frame.device || facts.st_ino != frame.inode) {
        return ESTALE;
    }
    frame.folder = std::move(folder);
    firstOpen_ = index;
    return 0;
}

} // namespace korvane
