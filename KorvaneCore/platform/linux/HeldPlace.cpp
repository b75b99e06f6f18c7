#include "KorvaneCore/platform/HeldPlace.h"

#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/platform/linux/MountTable.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace korvane {

namespace {

bool belongsToOthers(const struct statx& facts) {
    return facts.stx_uid != 0 && facts.stx_uid != geteuid();
}

bool isWrittenByOthers(const struct statx& facts) {
    return (facts.stx_mode & (S_IWGRP | S_IWOTH)) != 0;
}

bool isSticky(const struct statx& facts) {
    return (facts.stx_mode & S_ISVTX) != 0;
}

int readFacts(int folder, const char* name, int flags, struct statx& facts) {
    constexpr unsigned wanted = STATX_TYPE | STATX_MODE | STATX_UID | STATX_INO | STATX_BTIME;
    return statx(folder, name, flags | AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, wanted, &facts) == 0
               ? 0
               : errno;
}

FileIdentity identityOf(const struct statx& facts) {
    return {(static_cast<std::uint64_t>(facts.stx_dev_major) << 32U) | facts.stx_dev_minor,
            facts.stx_ino};
}

bool holdsMount(const FileURL& item) {
    static MountTable mounts;
    try {
        mounts.refuseMountsWithin(item.path(), ItemAction::remove);
        return false;
    } catch (const FileError&) {
        return true;
    }
}

} // namespace

HeldPlace HeldPlace::look(const FileURL& item, const HeldPlace* neighbour) {
    HeldPlace place(item.standardized());
    place.walk();
    if (neighbour != nullptr && neighbour->folder_ &&
        neighbour->folderIdentity_ == place.folderIdentity_) {
        place.folder_ = neighbour->folder_;
    }
    return place;
}

bool HeldPlace::isUnchanged() const {
    const HeldPlace now = look(item_, this);
    if (now.trouble_) {
        return false;
    }
    // What has gone meanwhile cannot be taken for anything else.
    return !now.object_ || (now.folderIdentity_ == folderIdentity_ && now.object_ == object_);
}

void HeldPlace::walk() {
    const std::vector<std::string> names = item_.pathComponents();
    if (!item_.isAbsolute() || names.size() < 2) {
        trouble_ = Trouble::unreadable;
        return;
    }
    FileDescriptor folder;
    bool othersWrite = false;
    for (std::size_t i = 0; i + 1 < names.size(); ++i) {
        if (!enter(folder, othersWrite, names[i])) {
            return;
        }
    }
    lookAtItem(folder.get(), othersWrite);
    folder_ = std::make_shared<const FileDescriptor>(std::move(folder));
    if (!trouble_ && object_ && holdsMount(item_)) {
        trouble_ = Trouble::mount;
    }
}

// False when the walk is over: there is trouble, or no such folder.
bool HeldPlace::enter(FileDescriptor& folder, bool& othersWrite, const std::string& name) {
    const int above = folder ? folder.get() : AT_FDCWD;
    FileDescriptor next(openat(above, name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    struct statx facts {};
    const int error = next ? readFacts(next.get(), "", AT_EMPTY_PATH, facts) : errno;
    if (error == ENOENT) {
        return false;
    }
    if (error != 0) {
        trouble_ = Trouble::unreadable;
        return false;
    }
    // Where others may write, the sticky bit keeps them from renaming what is not theirs.
    if (S_ISLNK(facts.stx_mode)) {
        trouble_ = Trouble::link;
    } else if (belongsToOthers(facts) || (isWrittenByOthers(facts) && !isSticky(facts))) {
        trouble_ = Trouble::others;
    }
    othersWrite = isWrittenByOthers(facts);
    folder = std::move(next);
    folderIdentity_ = identityOf(facts);
    return !trouble_ && S_ISDIR(facts.stx_mode);
}

void HeldPlace::lookAtItem(int folder, bool othersWrite) {
    struct statx facts {};
    const std::string name(item_.lastPathComponent());
    const int error = readFacts(folder, name.c_str(), 0, facts);
    if (error == ENOENT) {
        return;
    }
    if (error != 0) {
        trouble_ = Trouble::unreadable;
        return;
    }
    // In a folder that only root and the user write, it does not matter whose the item is.
    if (othersWrite && belongsToOthers(facts)) {
        trouble_ = Trouble::others;
    }
    object_ = {.identity = identityOf(facts),
               .type = static_cast<std::uint32_t>(facts.stx_mode) & S_IFMT,
               .bornSeconds = facts.stx_btime.tv_sec,
               .bornNanoseconds = facts.stx_btime.tv_nsec};
}

} // namespace korvane
