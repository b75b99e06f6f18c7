#include "KorvaneCore/foundation/StateFile.h"

#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/foundation/UUID.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace korvane {

namespace {

/// Removes a temporary file unless it became the real one.
class TemporaryFile {
  public:
    explicit TemporaryFile(std::string path) : path_(std::move(path)) {}
    ~TemporaryFile() {
        if (!path_.empty()) {
            unlink(path_.c_str());
        }
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    [[nodiscard]] const char* path() const noexcept { return path_.c_str(); }
    void keep() noexcept { path_.clear(); }

  private:
    std::string path_;
};

FileDescriptor openOrThrow(const std::string& path, int flags, mode_t mode,
                           std::string_view action) {
    int descriptor = -1;
    do {
        descriptor = open(path.c_str(), flags | O_CLOEXEC, mode);
    } while (descriptor < 0 && errno == EINTR);
    if (descriptor < 0) {
        throw FileError(errno, action, path);
    }
    return FileDescriptor(descriptor);
}

void syncFolder(const std::string& folder) {
    const FileDescriptor descriptor =
        openOrThrow(folder, O_RDONLY | O_DIRECTORY, 0, "open the folder");
    if (fsync(descriptor.get()) != 0) {
        throw FileError(errno, "save to the folder", folder);
    }
}

} // namespace

std::optional<std::string> readFile(const FileURL& file) {
    int descriptor = -1;
    do {
        // A FIFO put in the file's place must not hang the program.
        descriptor = open(file.path().c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    } while (descriptor < 0 && errno == EINTR);
    if (descriptor < 0) {
        if (errno == ENOENT) {
            return std::nullopt;
        }
        throw FileError(errno, "read", file.path());
    }
    const FileDescriptor owned(descriptor);
    struct stat facts {};
    if (fstat(descriptor, &facts) != 0) {
        throw FileError(errno, "read", file.path());
    }
    if (!S_ISREG(facts.st_mode)) {
        throw FileError(S_ISDIR(facts.st_mode) ? EISDIR : EINVAL, "read", file.path());
    }
    std::string content(static_cast<std::size_t>(facts.st_size) + 1, '\0');
    std::size_t filled = 0;
    while (true) {
        const ssize_t got = read(descriptor, content.data() + filled, content.size() - filled);
        if (got < 0 && errno != EINTR) {
            throw FileError(errno, "read", file.path());
        }
        if (got == 0) {
            break;
        }
        filled += got > 0 ? static_cast<std::size_t>(got) : 0;
        if (filled == content.size()) {
            content.resize(content.size() * 2);
        }
    }
    content.resize(filled);
    return content;
}

void writeAll(int descriptor, std::string_view content, const std::string& path) {
    while (!content.empty()) {
        const ssize_t written = write(descriptor, content.data(), content.size());
        if (written < 0 && errno != EINTR) {
            throw FileError(errno, "write", path);
        }
        content.remove_prefix(written > 0 ? static_cast<std::size_t>(written) : 0);
    }
}

void writeFileAtomically(const FileURL& file, std::string_view content) {
    const FileURL target = file.resolvingSymlinks();
    const std::string folder = target.deletingLastPathComponent().path();
    TemporaryFile temporary(folder + "/.korvane-" + UUID::random().text());
    {
        const FileDescriptor descriptor =
            openOrThrow(temporary.path(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, 0600, "write");
        writeAll(descriptor.get(), content, file.path());
        if (fsync(descriptor.get()) != 0) {
            throw FileError(errno, "save", file.path());
        }
    }
    if (rename(temporary.path(), target.path().c_str()) != 0) {
        throw FileError(errno, "replace", file.path());
    }
    temporary.keep();
    syncFolder(folder);
}

void createDirectories(const FileURL& folder) {
    // Most often it is there, or only the last one is missing.
    if (mkdir(folder.path().c_str(), 0700) == 0) {
        return;
    }
    const int error = errno;
    if (error == ENOENT && folder.path().size() > 1) {
        const FileURL parent = folder.deletingLastPathComponent();
        if (parent != folder && !parent.path().empty()) {
            createDirectories(parent);
            if (mkdir(folder.path().c_str(), 0700) == 0 || errno == EEXIST) {
                return;
            }
            throw FileError(errno, "create the folder", folder.path());
        }
    }
    struct stat facts {};
    if (stat(folder.path().c_str(), &facts) == 0) {
        if (S_ISDIR(facts.st_mode)) {
            return;
        }
        throw FileError(ENOTDIR, "create the folder", folder.path());
    }
    throw FileError(error, "create the folder", folder.path());
}

FolderLock::FolderLock(const FileURL& folder)
    : descriptor_(openOrThrow(folder.path(), O_RDONLY | O_DIRECTORY, 0, "open the folder")) {
    while (flock(descriptor_.get(), LOCK_EX) != 0) {
        if (errno != EINTR) {
            throw FileError(errno, "lock the folder", folder.path());
        }
    }
}

} // namespace korvane
