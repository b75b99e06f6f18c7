#include "KorvaneCore/platform/linux/SafeOpen.h"

#include "KorvaneCore/platform/DirectoryReader.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <climits>
#include <string_view>

#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <fmt/format.h>

namespace korvane {

namespace {

FileDescriptor openResolving(int parent, const char* path, int flags, std::uint64_t resolve) {
    open_how how{};
    how.flags = static_cast<std::uint64_t>(flags | O_DIRECTORY | O_CLOEXEC);
    how.resolve = resolve;
    long descriptor = -1;
    do {
        descriptor = syscall(SYS_openat2, parent, path, &how, sizeof how);
    } while (descriptor < 0 && (errno == EINTR || errno == EAGAIN));
    return FileDescriptor(static_cast<int>(descriptor));
}

/// Old kernels have no openat2, and some sandboxes refuse what they do not know.
bool lacksOpenat2(int error) {
    return error == ENOSYS || error == EPERM;
}

FileDescriptor openOneName(int parent, const char* name, int flags) {
    FileDescriptor folder(openat(parent, name, flags | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!folder && errno == ENOTDIR) {
        struct stat facts {};
        if (fstatat(parent, name, &facts, AT_SYMLINK_NOFOLLOW) == 0 && S_ISLNK(facts.st_mode)) {
            errno = ELOOP;
        } else {
            errno = ENOTDIR;
        }
    }
    return folder;
}

/// Name after name from `start` (or the root), for kernels that cannot refuse links by themselves.
FileDescriptor openNameByName(FileDescriptor folder, std::string_view path, int flags) {
    if (!folder) {
        folder = FileDescriptor(open("/", O_PATH | O_DIRECTORY | O_CLOEXEC));
    }
    while (folder && !path.empty()) {
        const std::size_t slash = path.find('/');
        const std::string name(path.substr(0, slash));
        path.remove_prefix(slash == std::string_view::npos ? path.size() : slash + 1);
        if (!name.empty()) {
            folder = openOneName(folder.get(), name.c_str(), O_PATH);
        }
    }
    return folder ? openOneName(folder.get(), ".", flags) : FileDescriptor();
}

/// The last place at or before `limit` where a long path may be cut.
std::size_t pieceEnd(std::string_view path, std::size_t limit) {
    return path.size() <= limit ? path.size() : path.rfind('/', limit);
}

std::optional<std::uint64_t> mountIDFromProc(int descriptor) {
    const std::string path = fmt::format("/proc/self/fdinfo/{}", descriptor);
    const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    std::array<char, 512> buffer{};
    const ssize_t length = file ? read(file.get(), buffer.data(), buffer.size()) : -1;
    if (length <= 0) {
        return std::nullopt;
    }
    const std::string_view text(buffer.data(), static_cast<std::size_t>(length));
    constexpr std::string_view key = "mnt_id:\t";
    const std::size_t at = text.find(key);
    if (at == std::string_view::npos) {
        return std::nullopt;
    }
    std::uint64_t number = 0;
    const char* first = text.data() + at + key.size();
    const auto parsed = std::from_chars(first, text.data() + text.size(), number);
    return parsed.ec == std::errc() ? std::optional(number) : std::nullopt;
}

} // namespace

FileDescriptor openSubfolder(int parent, const char* name) noexcept {
    FileDescriptor folder = openResolving(parent, name, O_RDONLY,
                                          RESOLVE_BENEATH | RESOLVE_NO_SYMLINKS | RESOLVE_NO_XDEV);
    if (folder || !lacksOpenat2(errno)) {
        return folder;
    }
    folder = openOneName(parent, name, O_RDONLY);
    if (folder) {
        const auto mount = mountID(folder.get());
        if (!mount || mount != mountID(parent)) {
            folder.reset();
            errno = EXDEV;
        }
    }
    return folder;
}

FileDescriptor openWithoutLinks(const std::string& path, int flags) {
    // One call takes a path of at most PATH_MAX bytes; a longer one goes piece by piece.
    constexpr std::size_t longestPiece = PATH_MAX - 1;
    std::string_view rest = path;
    FileDescriptor folder;
    while (true) {
        const std::size_t end = pieceEnd(rest, longestPiece);
        if (end == std::string_view::npos || end == 0) {
            errno = ENAMETOOLONG;
            return {};
        }
        const bool isLast = end == rest.size();
        const std::string piece(rest.substr(0, end));
        FileDescriptor next = openResolving(folder ? folder.get() : AT_FDCWD, piece.c_str(),
                                            isLast ? flags : O_PATH, RESOLVE_NO_SYMLINKS);
        if (!next && lacksOpenat2(errno)) {
            return openNameByName(std::move(folder), rest, flags);
        }
        if (!next || isLast) {
            return next;
        }
        folder = std::move(next);
        rest.remove_prefix(end + 1);
    }
}

std::optional<std::uint64_t> mountID(int descriptor) noexcept {
    struct statx facts {};
    if (statx(descriptor, "", AT_EMPTY_PATH | AT_STATX_DONT_SYNC, STATX_MNT_ID, &facts) == 0 &&
        (facts.stx_mask & STATX_MNT_ID) != 0) {
        return facts.stx_mnt_id;
    }
    return mountIDFromProc(descriptor);
}

} // namespace korvane
