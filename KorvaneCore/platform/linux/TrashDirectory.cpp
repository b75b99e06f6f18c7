#include "KorvaneCore/platform/linux/TrashDirectory.h"

#include "KorvaneCore/platform/linux/ExclusiveRename.h"
#include "KorvaneCore/platform/linux/MakeFolders.h"
#include "KorvaneCore/platform/linux/SafeOpen.h"
#include "KorvaneCore/platform/linux/TrashInfo.h"

#include <cerrno>
#include <ctime>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fmt/format.h>

namespace korvane {

namespace {

FileDescriptor openOrMake(int parent, const char* name) {
    if (mkdirat(parent, name, 0700) != 0 && errno != EEXIST) {
        const int error = errno;
        FileDescriptor existing = openSubfolder(parent, name);
        if (!existing) {
            errno = error;
        }
        return existing;
    }
    return openSubfolder(parent, name);
}

bool isOwn(const FileDescriptor& folder) {
    struct stat facts {};
    if (!folder || fstat(folder.get(), &facts) != 0) {
        return false;
    }
    if (facts.st_uid != geteuid()) {
        errno = EPERM;
        return false;
    }
    return true;
}

bool isSticky(const FileDescriptor& folder) {
    struct stat facts {};
    return folder && fstat(folder.get(), &facts) == 0 && (facts.st_mode & S_ISVTX) != 0;
}

bool isThere(int folder, const std::string& name) {
    struct stat facts {};
    return fstatat(folder, name.c_str(), &facts, AT_SYMLINK_NOFOLLOW) == 0;
}

std::string joined(const std::string& folder, const std::string& name) {
    return folder == "/" ? "/" + name : folder + "/" + name;
}

bool isWithin(const std::string& path, const std::string& folder) {
    return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

} // namespace

std::unique_ptr<TrashDirectory> TrashDirectory::openHome(const FileURL& trash) {
    if (const int error = makeFolders(trash.path(), 0700); error != 0) {
        errno = error;
        return nullptr;
    }
    const std::string path = trash.resolvingSymlinks().path();
    FileDescriptor folder = openWithoutLinks(path, O_RDONLY);
    return folder ? open(std::move(folder), path, {}) : nullptr;
}

std::unique_ptr<TrashDirectory> TrashDirectory::openOnVolume(const std::string& top,
                                                             std::uint64_t mount) {
    const FileDescriptor topFolder = openWithoutLinks(top, O_PATH);
    if (!topFolder) {
        return nullptr;
    }
    // Something else may have been mounted over it.
    if (mountID(topFolder.get()) != mount) {
        errno = EXDEV;
        return nullptr;
    }
    const std::string user = fmt::format("{}", geteuid());
    const FileDescriptor shared = openSubfolder(topFolder.get(), ".Trash");
    if (isSticky(shared)) {
        FileDescriptor folder = openOrMake(shared.get(), user.c_str());
        if (isOwn(folder)) {
            auto trash = open(std::move(folder), joined(top, ".Trash/" + user), top);
            if (trash) {
                return trash;
            }
        }
    }
    const std::string name = ".Trash-" + user;
    FileDescriptor folder = openOrMake(topFolder.get(), name.c_str());
    return isOwn(folder) ? open(std::move(folder), joined(top, name), top) : nullptr;
}

std::unique_ptr<TrashDirectory> TrashDirectory::open(FileDescriptor folder, std::string path,
                                                     std::string top) {
    std::unique_ptr<TrashDirectory> trash(new TrashDirectory);
    trash->path_ = std::move(path);
    trash->top_ = std::move(top);
    trash->files_ = openOrMake(folder.get(), "files");
    if (!trash->files_) {
        return nullptr;
    }
    trash->info_ = openOrMake(folder.get(), "info");
    const auto mount = mountID(folder.get());
    if (!trash->info_ || !mount) {
        return nullptr;
    }
    trash->mount_ = *mount;
    const long longest = fpathconf(trash->files_.get(), _PC_NAME_MAX);
    if (longest > 100) {
        trash->longestName_ = static_cast<std::size_t>(longest);
    }
    return trash;
}

FileURL TrashDirectory::accept(const ItemPlace& item) {
    constexpr int attempts = 1000;
    int error = EEXIST;
    for (int attempt = 0; attempt < attempts && error == EEXIST; ++attempt) {
        const std::string name = claimName(item);
        error = renameExclusively(item.parent.get(), item.name, files_.get(), name);
        if (error == 0) {
            isTouched_ = true;
            return FileURL(path_ + "/files/" + name);
        }
        unlinkat(info_.get(), (name + std::string(trashInfoExtension)).c_str(), 0);
        // An item without a note has this name: somebody else's doing, and no reason to fail.
        auto& next = nextNumber_[item.name];
        next = error == EEXIST ? firstFree(item.name, next) : next - 1;
    }
    if (error == ENOENT && isThere(item.parent.get(), item.name)) {
        error = ESTALE;
    }
    if (error == EXDEV) {
        throw itemError(ItemAction::trash, error, item.path(), "its disk has no Bin for it");
    }
    throw itemError(ItemAction::trash, error, item.path());
}

bool TrashDirectory::isEntangledWith(const std::string& path) const {
    return isWithin(path, path_) || isWithin(path_, path);
}

bool TrashDirectory::isStillThere() const {
    struct stat files {};
    struct stat info {};
    return fstat(files_.get(), &files) == 0 && fstat(info_.get(), &info) == 0 &&
           files.st_nlink > 0 && info.st_nlink > 0;
}

bool TrashDirectory::synchronize() noexcept {
    if (!isTouched_) {
        return true;
    }
    isTouched_ = syncfs(files_.get()) != 0;
    return !isTouched_;
}

/// Reserves a name by writing its note; nobody else who keeps to the rules takes it from then on.
std::string TrashDirectory::claimName(const ItemPlace& item) {
    constexpr int attempts = 1000;
    const std::string original = item.path();
    const std::size_t skipped = top_.empty() ? 0 : top_.size() + (top_ == "/" ? 0 : 1);
    const std::string text =
        trashInfoText(std::string_view(original).substr(skipped), std::time(nullptr));
    auto& next = nextNumber_.try_emplace(item.name, 1).first->second;
    int error = EEXIST;
    for (int attempt = 0; attempt < attempts && error == EEXIST; ++attempt) {
        std::string name = trashName(item.name, next, longestName_);
        error = writeNote(name + std::string(trashInfoExtension), text);
        if (error == 0) {
            ++next;
            return name;
        }
        if (error == EEXIST) {
            next = firstFree(item.name, next + 1);
        }
    }
    // To the caller ENOENT means that the item has gone, not the Bin.
    throw itemError(ItemAction::trash, error == ENOENT ? ESTALE : error, original);
}

/// Leaps ahead and then halves the way back, because a Bin may hold many thousand items of one
/// name.
std::uint64_t TrashDirectory::firstFree(const std::string& name, std::uint64_t number) const {
    std::uint64_t taken = number;
    std::uint64_t step = 1;
    if (!isTaken(name, number)) {
        return number;
    }
    while (isTaken(name, taken + step)) {
        taken += step;
        step *= 2;
    }
    std::uint64_t free = taken + step;
    while (free - taken > 1) {
        const std::uint64_t middle = taken + (free - taken) / 2;
        (isTaken(name, middle) ? taken : free) = middle;
    }
    return free;
}

bool TrashDirectory::isTaken(const std::string& name, std::uint64_t number) const {
    const std::string candidate = trashName(name, number, longestName_);
    return isThere(info_.get(), candidate + std::string(trashInfoExtension)) ||
           isThere(files_.get(), candidate);
}

int TrashDirectory::writeNote(const std::string& note, const std::string& text) const {
    const FileDescriptor file(openat(info_.get(), note.c_str(),
                                     O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!file) {
        return errno;
    }
    std::string_view rest = text;
    while (!rest.empty()) {
        const ssize_t count = write(file.get(), rest.data(), rest.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            const int error = count < 0 ? errno : EIO;
            unlinkat(info_.get(), note.c_str(), 0);
            return error;
        }
        rest.remove_prefix(static_cast<std::size_t>(count));
    }
    return 0;
}

} // namespace korvane
