#include "KorvaneCore/platform/linux/LinuxBin.h"

#include "KorvaneCore/platform/linux/SafeOpen.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>

namespace korvane {

namespace {

/// The mount that the folder is on, or will be on once it is made. Nothing, with `errno` set, when
/// that cannot be told; then nobody may say that it is on another one.
std::optional<std::uint64_t> mountOfNearest(FileURL folder) {
    while (true) {
        const FileDescriptor existing(open(folder.path().c_str(), O_PATH | O_CLOEXEC));
        if (existing) {
            return mountID(existing.get());
        }
        if (errno != ENOENT || folder.path() == "/") {
            return std::nullopt;
        }
        folder = folder.deletingLastPathComponent();
    }
}

} // namespace

LinuxBin::LinuxBin(FileURL homeTrash, std::shared_ptr<MountTable> mounts)
    : homeTrash_(std::move(homeTrash)), mounts_(std::move(mounts)) {}

FileURL LinuxBin::trashItem(const FileURL& url) {
    const ItemPlace item = openItemPlace(url, ItemAction::trash);
    const std::string path = item.path();
    struct stat facts {};
    if (fstatat(item.parent.get(), item.name.c_str(), &facts, AT_SYMLINK_NOFOLLOW) != 0) {
        const int error = errno;
        throw itemError(ItemAction::trash, error, path);
    }
    mounts_->refuseMountsWithin(path, ItemAction::trash);
    TrashDirectory& trash = trashFor(item);
    if (trash.isEntangledWith(path)) {
        const bool isInside = path.size() > trash.path().size();
        throw itemError(ItemAction::trash, EINVAL, path,
                        isInside ? "it is in the Bin already" : "it holds the Bin itself");
    }
    return trash.accept(item);
}

bool LinuxBin::synchronize() noexcept {
    bool isDurable = true;
    for (const auto& [mount, trash] : trashes_) {
        isDurable = trash->synchronize() && isDurable;
    }
    return isDurable;
}

TrashDirectory& LinuxBin::trashFor(const ItemPlace& item) {
    const auto mount = mountID(item.parent.get());
    if (!mount) {
        throw itemError(ItemAction::trash, EXDEV, item.path(),
                        "the system does not say which disk it is on");
    }
    auto& trash = trashes_[*mount];
    if (!trash || !trash->isStillThere()) {
        auto opened = openFor(*mount);
        if (!opened) {
            const int error = errno;
            throw itemError(ItemAction::trash, error == ENOENT ? ESTALE : error, item.path(),
                            "the Bin of its disk cannot be used: " + errorText(error));
        }
        trash = std::move(opened);
    }
    return *trash;
}

std::unique_ptr<TrashDirectory> LinuxBin::openFor(std::uint64_t mount) const {
    const auto homeMount = mountOfNearest(homeTrash_);
    if (!homeMount) {
        return nullptr;
    }
    if (homeMount == mount) {
        auto home = TrashDirectory::openHome(homeTrash_);
        if (home && home->mount() != mount) {
            home.reset();
            errno = EXDEV;
        }
        return home;
    }
    const auto found = mounts_->find(mount);
    if (!found) {
        errno = EXDEV;
        return nullptr;
    }
    return TrashDirectory::openOnVolume(found->path, mount);
}

} // namespace korvane
