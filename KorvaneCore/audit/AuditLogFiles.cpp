#include "KorvaneCore/audit/AuditLogFiles.h"

#include "KorvaneCore/foundation/FileDescriptor.h"
#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/foundation/StateFile.h"
#include "KorvaneCore/platform/DirectoryReader.h"
#include "KorvaneCore/platform/SpaceReservation.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <span>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace korvane {

namespace {

/// Only ever seen after a crash: whoever makes a day file holds the folder's lock.
constexpr const char* newFileName = ".new-audit-file";
constexpr std::size_t blockSize = 262'144;

/// Never follows a link and never waits for the other end of a FIFO. Empty with `errno` set.
FileDescriptor openAt(int folder, const char* name, int flags) noexcept {
    int descriptor = -1;
    do {
        descriptor = openat(folder, name, flags | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0600);
    } while (descriptor < 0 && errno == EINTR);
    return FileDescriptor(descriptor);
}

/// The size of a regular file; nothing for anything else.
std::optional<off_t> regularFileSize(int descriptor) noexcept {
    struct stat facts {};
    if (fstat(descriptor, &facts) != 0 || !S_ISREG(facts.st_mode)) {
        return std::nullopt;
    }
    return facts.st_size;
}

/// Fills `bytes` as far as the file goes; nothing when it cannot be read.
std::optional<std::size_t> readAt(int descriptor, off_t offset, std::span<char> bytes) noexcept {
    std::size_t filled = 0;
    while (filled < bytes.size()) {
        const ssize_t got = pread(descriptor, bytes.data() + filled, bytes.size() - filled,
                                  offset + static_cast<off_t>(filled));
        if (got == 0) {
            break;
        }
        if (got < 0 && errno != EINTR) {
            return std::nullopt;
        }
        filled += got > 0 ? static_cast<std::size_t>(got) : 0;
    }
    return filled;
}

std::vector<std::string> logFileNames(const FileURL& folder) {
    std::vector<std::string> names =
        namesInFolder(folder.path()).value_or(std::vector<std::string>());
    std::erase_if(names, [&folder](const std::string& name) {
        struct stat facts {};
        return !name.starts_with("audit-") || !name.ends_with(".jsonl") ||
               lstat(folder.appending(name).path().c_str(), &facts) != 0 || !S_ISREG(facts.st_mode);
    });
    return names;
}

/// Calls `visit` for every line of a file; reads it in blocks, so that memory is that of a line.
void forEachLineOf(int descriptor, std::vector<char>& buffer,
                   const std::function<void(std::string_view)>& visit) {
    const auto visitLine = [&visit](std::string_view line) {
        if (!line.empty()) {
            visit(line);
        }
    };
    std::size_t held = 0;
    off_t offset = 0;
    while (true) {
        if (buffer.size() - held < blockSize) {
            buffer.resize(std::max(buffer.size() * 2, held + blockSize));
        }
        const auto got =
            readAt(descriptor, offset, std::span(buffer).subspan(held, buffer.size() - held));
        if (!got || *got == 0) {
            visitLine({buffer.data(), held});
            return;
        }
        offset += static_cast<off_t>(*got);
        std::string_view rest(buffer.data(), held + *got);
        // What was held before has no line feed in it.
        for (std::size_t searched = held; true; searched = 0) {
            const std::size_t end = rest.find('\n', searched);
            if (end == std::string_view::npos) {
                break;
            }
            visitLine(rest.substr(0, end));
            rest.remove_prefix(end + 1);
        }
        held = rest.size();
        std::memmove(buffer.data(), rest.data(), held);
    }
}

/// Adds to a file that is there.
void appendTo(int descriptor, std::string_view line, const std::string& path) {
    const auto size = regularFileSize(descriptor);
    if (!size) {
        throw FileError(EINVAL, "write to the audit log file", path);
    }
    std::string bytes;
    char last = '\n';
    if (*size > 0 && readAt(descriptor, *size - 1, {&last, 1}) != std::size_t{1}) {
        throw FileError(errno, "read the audit log file", path);
    }
    if (last != '\n') {
        bytes += '\n';
    }
    bytes += line;
    bytes += '\n';
    // A record cut short by a full disk would break the chain for good.
    if (const int error =
            reserveSpace(descriptor, *size, static_cast<std::int64_t>(bytes.size()))) {
        throw FileError(error, "write to the audit log file", path);
    }
    writeAll(descriptor, bytes, path);
    if (fdatasync(descriptor) != 0) {
        throw FileError(errno, "save the audit log file", path);
    }
}

/// Makes a file that was not there; false when it appeared meanwhile.
bool createWith(int folder, const char* name, std::string_view line, const std::string& path) {
    unlinkat(folder, newFileName, 0);
    const FileDescriptor file = openAt(folder, newFileName, O_WRONLY | O_CREAT | O_EXCL);
    if (!file) {
        throw FileError(errno, "make the audit log file", path);
    }
    int error = 0;
    try {
        writeAll(file.get(), std::string(line) + '\n', path);
        // A hard link, unlike a rename, cannot take the place of a file that is there.
        if (fsync(file.get()) != 0 || linkat(folder, newFileName, folder, name, 0) != 0) {
            error = errno;
        }
    } catch (...) {
        unlinkat(folder, newFileName, 0);
        throw;
    }
    unlinkat(folder, newFileName, 0);
    if (error == 0 && fsync(folder) != 0) {
        error = errno;
    }
    if (error != 0 && error != EEXIST) {
        throw FileError(error, "make the audit log file", path);
    }
    return error == 0;
}

} // namespace

AuditLogFiles::AuditLogFiles(FileURL folder) : folder_(std::move(folder)) {}

void AuditLogFiles::forEachLine(const std::function<void(std::string_view)>& visit) const {
    std::vector<char> buffer;
    for (const std::string& name : logFileNames(folder_)) {
        const FileDescriptor file =
            openAt(AT_FDCWD, folder_.appending(name).path().c_str(), O_RDONLY);
        if (file && regularFileSize(file.get())) {
            forEachLineOf(file.get(), buffer, visit);
        }
    }
}

std::optional<std::string> AuditLogFiles::lastLine() const {
    const std::vector<std::string> names = logFileNames(folder_);
    if (names.empty()) {
        return std::nullopt;
    }
    const FileDescriptor file =
        openAt(AT_FDCWD, folder_.appending(names.back()).path().c_str(), O_RDONLY);
    const auto size = file ? regularFileSize(file.get()) : std::nullopt;
    if (!size) {
        return std::nullopt;
    }
    std::string tail;
    std::string block;
    for (off_t start = *size; start > 0;) {
        block.resize(std::min(std::max(blockSize, tail.size()), static_cast<std::size_t>(start)));
        start -= static_cast<off_t>(block.size());
        if (readAt(file.get(), start, block) != block.size()) {
            return std::nullopt;
        }
        tail.insert(0, block);
        if (const std::size_t end = tail.find_last_not_of('\n'); end == std::string::npos) {
            tail.clear();
        } else {
            tail.resize(end + 1);
        }
        if (const std::size_t before = tail.rfind('\n'); before != std::string::npos) {
            return tail.substr(before + 1);
        }
    }
    return tail.empty() ? std::nullopt : std::optional(std::move(tail));
}

void AuditLogFiles::append(const std::string& name, std::string_view line) const {
    const std::string path = folder_.appending(name).path();
    const FileDescriptor folder = openFolderFollowingLinks(AT_FDCWD, folder_.path().c_str());
    if (!folder) {
        throw FileError(errno, "open the audit log folder", folder_.path());
    }
    // A file that vanishes and appears all the time is somebody's game.
    for (int attempt = 0; attempt < 3; ++attempt) {
        const FileDescriptor file = openAt(folder.get(), name.c_str(), O_RDWR | O_APPEND);
        const int error = errno;
        if (file) {
            return appendTo(file.get(), line, path);
        }
        if (error != ENOENT) {
            throw FileError(error, "open the audit log file", path);
        }
        if (createWith(folder.get(), name.c_str(), line, path)) {
            return;
        }
    }
    throw FileError(EBUSY, "write to the audit log file", path);
}

} // namespace korvane
