#include "KorvaneCore/platform/FolderFacts.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <limits>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

namespace korvane {

namespace {

using Kind = DirectoryReader::Kind;

constexpr unsigned wantedFacts = STATX_TYPE | STATX_SIZE | STATX_BLOCKS | STATX_MTIME | STATX_INO;
constexpr std::uint64_t blockSize = 512;

Kind kind(unsigned mode) noexcept {
    switch (mode & S_IFMT) {
    case S_IFDIR:
        return Kind::folder;
    case S_IFREG:
        return Kind::file;
    case S_IFLNK:
        return Kind::link;
    default:
        return Kind::other;
    }
}

// A damaged file system may claim anything; a size stays a size.
std::int64_t clamped(std::uint64_t value, std::uint64_t unit) noexcept {
    constexpr auto most = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    return static_cast<std::int64_t>(std::min(value, most / unit) * unit);
}

FileIdentity identity(const struct statx& raw) noexcept {
    return {(static_cast<std::uint64_t>(raw.stx_dev_major) << 32U) | raw.stx_dev_minor,
            raw.stx_ino};
}

int read(int parent, const char* name, int flags, FileFacts& facts) noexcept {
    struct statx raw {};
    if (statx(parent, name, flags | AT_STATX_DONT_SYNC | AT_NO_AUTOMOUNT, wantedFacts, &raw) != 0) {
        return errno;
    }
    facts.kind = kind(raw.stx_mode);
    facts.sizeBytes = clamped(raw.stx_size, 1);
    facts.allocatedBytes = clamped(raw.stx_blocks, blockSize);
    facts.modified = {static_cast<time_t>(raw.stx_mtime.tv_sec),
                      static_cast<long>(raw.stx_mtime.tv_nsec)};
    facts.identity = identity(raw);
    return 0;
}

} // namespace

int readFacts(int parent, const char* name, FileFacts& facts) noexcept {
    return read(parent, name, AT_SYMLINK_NOFOLLOW, facts);
}

int readFactsFollowingLinks(int parent, const char* name, FileFacts& facts) noexcept {
    return read(parent, name, 0, facts);
}

std::optional<FileIdentity> identity(int descriptor) noexcept {
    struct statx raw {};
    if (statx(descriptor, "", AT_EMPTY_PATH | AT_STATX_DONT_SYNC, STATX_INO, &raw) != 0) {
        return std::nullopt;
    }
    return identity(raw);
}

ReachablePath::ReachablePath(std::string path) : name_(std::move(path)) {
    // The kernel would read such a path up to the NUL only, which is another item.
    if (name_.find('\0') != std::string::npos) {
        error_ = EINVAL;
        return;
    }
    while (name_.size() >= PATH_MAX) {
        const std::size_t slash = name_.rfind('/', PATH_MAX - 2);
        if (slash == std::string::npos || slash == 0) {
            error_ = ENAMETOOLONG;
            return;
        }
        const std::string piece = name_.substr(0, slash);
        FileDescriptor next(openat(parent(), piece.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
        if (!next) {
            error_ = errno;
            return;
        }
        parent_ = std::move(next);
        name_.erase(0, std::min(name_.find_first_not_of('/', slash), name_.size()));
    }
}

int ReachablePath::parent() const noexcept {
    return parent_ ? parent_.get() : AT_FDCWD;
}

} // namespace korvane
