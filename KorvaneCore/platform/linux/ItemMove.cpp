#include "KorvaneCore/platform/linux/ItemMove.h"

#include "KorvaneCore/foundation/UUID.h"
#include "KorvaneCore/platform/linux/ExclusiveRename.h"
#include "KorvaneCore/platform/linux/MountTable.h"
#include "KorvaneCore/platform/linux/SafeOpen.h"
#include "KorvaneCore/platform/linux/SafeRemoval.h"
#include "KorvaneCore/platform/linux/TrashInfo.h"
#include "KorvaneCore/platform/linux/TreeCopy.h"

#include <array>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace korvane {

namespace {

bool isThere(const ItemPlace& place) {
    struct stat facts {};
    return fstatat(place.parent.get(), place.name.c_str(), &facts, AT_SYMLINK_NOFOLLOW) == 0;
}

void removeCopy(const ItemPlace& copy) noexcept {
    try {
        if (isThere(copy)) {
            removeTree(copy.parent.get(), copy.name, copy.parentPath);
        }
    } catch (const std::exception&) {
        // The failure that led here is the one to report.
    }
}

/// Copies, syncs, compares and gives the copy its name. 0, or errno; then no copy is left.
int copyIntoPlace(const ItemPlace& source, const ItemPlace& destination) {
    const FileDescriptor folder(
        openat(destination.parent.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder) {
        return errno;
    }
    ItemPlace copy;
    copy.parent = FileDescriptor(fcntl(folder.get(), F_DUPFD_CLOEXEC, 0));
    copy.parentPath = destination.parentPath;
    copy.name = ".korvane-" + UUID::random().text();
    int error = 0;
    try {
        copyTree(source.parent.get(), source.name, copy.parent.get(), copy.name);
        if (syncfs(folder.get()) != 0) {
            error = errno;
        } else {
            verifyCopy(source.parent.get(), source.name, copy.parent.get(), copy.name);
            error = renameExclusively(copy.parent.get(), copy.name, folder.get(), destination.name);
        }
    } catch (const std::system_error& failure) {
        error = failure.code().value();
    }
    if (error == 0 && fsync(folder.get()) != 0) {
        error = errno;
        // Not known to be durable: back to the hidden name, and away with it.
        if (renameExclusively(folder.get(), destination.name, folder.get(), copy.name) != 0) {
            return 0;
        }
    }
    if (error != 0) {
        removeCopy(copy);
    }
    return error;
}

void moveAcross(const ItemPlace& source, const ItemPlace& destination, MountTable& mounts) {
    if (isThere(destination)) {
        throw itemError(ItemAction::move, EEXIST, source.path(),
                        "something is at its destination already");
    }
    // What could not be removed afterwards is not copied in the first place.
    if (faccessat(source.parent.get(), ".", W_OK | X_OK, AT_EACCESS) != 0) {
        const int error = errno;
        throw itemError(ItemAction::move, error, source.path());
    }
    if (const int error = copyIntoPlace(source, destination); error != 0) {
        throw itemError(ItemAction::move, error, source.path());
    }
    try {
        removeItem(source, mounts);
    } catch (const std::exception&) {
        // It is whole at its destination; what stays behind harms nothing.
    }
}

} // namespace

void moveItemExclusively(const FileURL& source, const FileURL& destination, MountTable& mounts) {
    const ItemPlace from = openItemPlaceThroughLinks(source, ItemAction::move);
    const ItemPlace to = openItemPlaceThroughLinks(destination, ItemAction::move);
    if (!isThere(from)) {
        const int error = errno;
        throw itemError(ItemAction::move, error, from.path());
    }
    mounts.refuseMountsWithin(from.path(), ItemAction::move);
    const int error = renameExclusively(from.parent.get(), from.name, to.parent.get(), to.name);
    if (error == EXDEV) {
        moveAcross(from, to, mounts);
    } else if (error == EEXIST) {
        throw itemError(ItemAction::move, error, from.path(),
                        "something is at its destination already");
    } else if (error != 0) {
        throw itemError(ItemAction::move, error, from.path());
    }
}

void dropTrashNote(const FileURL& trashed) noexcept {
    constexpr std::string_view header = "[Trash Info]";
    try {
        const FileURL files = trashed.deletingLastPathComponent();
        if (files.lastPathComponent() != "files" ||
            isThere(openItemPlaceThroughLinks(trashed, ItemAction::move))) {
            return;
        }
        const std::string note =
            std::string(trashed.lastPathComponent()) + std::string(trashInfoExtension);
        const ItemPlace place = openItemPlaceThroughLinks(
            files.deletingLastPathComponent().appending("info").appending(note), ItemAction::move);
        const FileDescriptor file(openat(place.parent.get(), note.c_str(),
                                         O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
        std::array<char, header.size()> start{};
        if (file &&
            read(file.get(), start.data(), start.size()) == static_cast<ssize_t>(start.size()) &&
            std::string_view(start.data(), start.size()) == header) {
            unlinkat(place.parent.get(), note.c_str(), 0);
        }
    } catch (const std::exception&) {
        // The item is back in its place; a note without an item is shown by nobody.
    }
}

} // namespace korvane
