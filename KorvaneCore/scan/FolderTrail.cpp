#include "KorvaneCore/scan/FolderTrail.h"

#include "KorvaneCore/platform/DirectoryReader.h"

#include <algorithm>
#include <cerrno>
#include <utility>

namespace korvane {

namespace {

// Real trees are rarely deeper, and many walks at once stay far below the usual limit of 1024.
constexpr std::size_t openLevels = 24;

void appendName(std::string& path, std::string_view name) {
    if (!path.ends_with('/')) {
        path += '/';
    }
    path += name;
}

} // namespace

void FolderTrail::start(FileDescriptor folder, std::string path) {
    levels_.clear();
    firstOpen_ = 1;
    path_ = std::move(path);
    levels_.push_back({std::move(folder), {}, path_.size(), 0});
}

void FolderTrail::push(FileDescriptor folder, std::string_view name) {
    appendName(path_, name);
    levels_.push_back({std::move(folder), {}, path_.size(), 0});
    if (levels_.size() - firstOpen_ > openLevels) {
        giveUpOne();
    }
}

void FolderTrail::giveUpOne() {
    Level& level = levels_[firstOpen_++];
    // A level that could not be reached again has nothing to give up and keeps its error.
    if (level.folder) {
        if (const auto known = korvane::identity(level.folder.get())) {
            level.identity = *known;
        }
        level.folder.reset();
    }
}

void FolderTrail::leave() {
    const Level child = std::move(levels_.back());
    levels_.pop_back();
    if (levels_.empty()) {
        return;
    }
    path_.resize(levels_.back().pathLength);
    if (levels_.size() > 1 && firstOpen_ >= levels_.size()) {
        firstOpen_ = levels_.size() - 1;
        if (levels_.back().error == 0) {
            reopenDeepest(child.folder.get());
        }
    }
}

void FolderTrail::reopenDeepest(int child) {
    Level& level = levels_.back();
    if (child >= 0) {
        FileDescriptor above = openFolder(child, "..");
        if (above && korvane::identity(above.get()) == level.identity) {
            level.folder = std::move(above);
            return;
        }
    }
    FileDescriptor folder = openAlongNames();
    if (!folder) {
        level.error = errno;
    } else if (korvane::identity(folder.get()) != level.identity) {
        level.error = ENOENT;
    } else {
        level.folder = std::move(folder);
    }
}

FileDescriptor FolderTrail::openAlongNames() const {
    FileDescriptor folder;
    for (std::size_t i = 1; i < levels_.size(); ++i) {
        std::string name = path_.substr(levels_[i - 1].pathLength,
                                        levels_[i].pathLength - levels_[i - 1].pathLength);
        name.erase(0, name.find_first_not_of('/'));
        const int parent = i == 1 ? levels_.front().folder.get() : folder.get();
        FileDescriptor next = followsLinks_ ? openFolderFollowingLinks(parent, name.c_str())
                                            : openFolder(parent, name.c_str());
        if (!next) {
            return {};
        }
        folder = std::move(next);
    }
    return folder;
}

std::string FolderTrail::pathOf(std::string_view name) const {
    std::string path;
    path.reserve(path_.size() + 1 + name.size());
    path = path_;
    appendName(path, name);
    return path;
}

} // namespace korvane
