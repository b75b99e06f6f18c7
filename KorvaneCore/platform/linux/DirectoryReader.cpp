#include "KorvaneCore/platform/DirectoryReader.h"

#include <algorithm>
#include <cerrno>

#include <dirent.h>
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace korvane {

namespace {

// Large enough for a few thousand names a call; beyond that the system calls no longer show.
constexpr std::size_t bufferSize = 256UL * 1024UL;

/// What getdents64 writes, as the kernel lays it out.
struct KernelEntry {
    std::uint64_t inode;
    std::int64_t offset;
    std::uint16_t length;
    std::uint8_t type;
    char name[1];
};

DirectoryReader::Kind kind(std::uint8_t type) noexcept {
    switch (type) {
    case DT_DIR:
        return DirectoryReader::Kind::folder;
    case DT_REG:
        return DirectoryReader::Kind::file;
    case DT_LNK:
        return DirectoryReader::Kind::link;
    case DT_UNKNOWN:
        return DirectoryReader::Kind::unknown;
    default:
        return DirectoryReader::Kind::other;
    }
}

FileDescriptor openWith(int parent, const char* name, int flags) noexcept {
    int descriptor = -1;
    do {
        descriptor = openat(parent, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC | flags);
    } while (descriptor < 0 && errno == EINTR);
    return FileDescriptor(descriptor);
}

} // namespace

DirectoryReader::Buffer DirectoryReader::makeBuffer() {
    return Buffer(bufferSize);
}

std::optional<DirectoryReader::Entry> DirectoryReader::next() noexcept {
    while (true) {
        if (position_ == filled_) {
            const long count = syscall(SYS_getdents64, folder_, buffer_.data(), buffer_.size());
            if (count <= 0) {
                error_ = count < 0 ? errno : 0;
                return std::nullopt;
            }
            position_ = 0;
            filled_ = static_cast<std::size_t>(count);
        }
        const auto* raw = reinterpret_cast<const KernelEntry*>(buffer_.data() + position_);
        position_ += raw->length;
        const std::string_view name(raw->name);
        if (name != "." && name != "..") {
            return Entry{name, kind(raw->type), raw->inode};
        }
    }
}

FileDescriptor openFolder(int parent, const char* name) noexcept {
    return openWith(parent, name, O_NOFOLLOW);
}

FileDescriptor openFolderFollowingLinks(int parent, const char* name) noexcept {
    return openWith(parent, name, 0);
}

std::optional<std::vector<std::string>> namesInFolder(int parent, const char* name) {
    const FileDescriptor folder = openFolderFollowingLinks(parent, name);
    if (!folder) {
        return std::nullopt;
    }
    DirectoryReader::Buffer buffer = DirectoryReader::makeBuffer();
    DirectoryReader reader(folder.get(), buffer);
    std::vector<std::string> names;
    while (const auto entry = reader.next()) {
        names.emplace_back(entry->name);
    }
    if (reader.error() != 0) {
        errno = reader.error();
        return std::nullopt;
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::optional<std::vector<std::string>> namesInFolder(const std::string& path) {
    return namesInFolder(AT_FDCWD, path.c_str());
}

} // namespace korvane
