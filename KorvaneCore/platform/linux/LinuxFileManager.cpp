#include "KorvaneCore/platform/linux/LinuxFileManager.h"

#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/platform/UserFolders.h"
#include "KorvaneCore/platform/linux/ItemMove.h"
#include "KorvaneCore/platform/linux/LinuxBin.h"
#include "KorvaneCore/platform/linux/MakeFolders.h"
#include "KorvaneCore/platform/linux/SafeRemoval.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>

namespace korvane {

LinuxFileManager::LinuxFileManager(std::optional<FileURL> homeTrash)
    : homeTrash_(std::move(homeTrash)), mounts_(std::make_shared<MountTable>()) {}

std::unique_ptr<BinSession> LinuxFileManager::openBin() {
    return std::make_unique<LinuxBin>(
        homeTrash_ ? *homeTrash_ : UserFolders::current().applicationSupport.appending("Trash"),
        mounts_);
}

void LinuxFileManager::removeItem(const FileURL& url) {
    korvane::removeItem(openItemPlace(url, ItemAction::remove), *mounts_);
}

void LinuxFileManager::moveItem(const FileURL& source, const FileURL& destination) {
    moveItemExclusively(source, destination, *mounts_);
}

void LinuxFileManager::restoreItem(const FileURL& trashed, const FileURL& destination) {
    moveItemExclusively(trashed, destination, *mounts_);
    dropTrashNote(trashed);
}

void LinuxFileManager::createDirectory(const FileURL& folder) {
    const int error = folder.isAbsolute() ? makeFolders(folder.path(), 0777) : EINVAL;
    if (error != 0) {
        throw FileError(error, "create the folder", folder.path());
    }
}

bool LinuxFileManager::itemExists(const FileURL& url) const {
    struct stat facts {};
    if (lstat(url.path().c_str(), &facts) == 0) {
        return true;
    }
    if (errno != ENAMETOOLONG) {
        return false;
    }
    // Longer than one call takes; in pieces it may be there all the same.
    try {
        const ItemPlace place = openItemPlaceThroughLinks(url, ItemAction::move);
        return fstatat(place.parent.get(), place.name.c_str(), &facts, AT_SYMLINK_NOFOLLOW) == 0;
    } catch (const FileError&) {
        return false;
    }
}

std::optional<std::int64_t> LinuxFileManager::availableCapacity(const FileURL& url) const {
    struct statvfs facts {};
    FileURL current = url;
    while (statvfs(current.path().c_str(), &facts) != 0) {
        const bool isMissing = errno == ENOENT || errno == ENOTDIR || errno == ENAMETOOLONG;
        if (!isMissing || !current.isAbsolute() || current.path() == "/") {
            return std::nullopt;
        }
        current = current.deletingLastPathComponent();
    }
    std::int64_t bytes = 0;
    if (__builtin_mul_overflow(facts.f_bavail, facts.f_frsize, &bytes)) {
        return std::nullopt;
    }
    return bytes;
}

FileManager& FileManager::standard() {
    static LinuxFileManager manager;
    return manager;
}

std::unique_ptr<FileManager> FileManager::withHomeTrash(const FileURL& trash) {
    return std::make_unique<LinuxFileManager>(trash);
}

} // namespace korvane
