#include "KorvaneCore/platform/linux/TreeCopy.h"

#include "KorvaneCore/platform/linux/CopyAttributes.h"
#include "KorvaneCore/platform/linux/PairedWalk.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstring>
#include <string_view>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace korvane {

namespace {

constexpr std::size_t blockSize = 1024UL * 1024UL;

std::string linkTarget(int folder, const char* name) {
    std::array<char, PATH_MAX> buffer{};
    const ssize_t length = readlinkat(folder, name, buffer.data(), buffer.size());
    if (length < 0) {
        throwErrno("read the link");
    }
    return {buffer.data(), static_cast<std::size_t>(length)};
}

/// Opens a regular file; a pipe that took its name meanwhile neither blocks nor passes.
FileDescriptor openFile(int folder, const char* name, struct stat& facts) {
    FileDescriptor file(
        openat(folder, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!file || fstat(file.get(), &facts) != 0) {
        throwErrno("open");
    }
    if (!S_ISREG(facts.st_mode)) {
        errno = ESTALE;
        throwErrno("open");
    }
    return file;
}

std::size_t readBlock(int file, std::byte* block, std::size_t size, off_t offset) {
    std::size_t filled = 0;
    while (filled < size) {
        const ssize_t count =
            pread(file, block + filled, size - filled, offset + static_cast<off_t>(filled));
        if (count < 0 && errno != EINTR) {
            throwErrno("read");
        }
        if (count == 0) {
            break;
        }
        filled += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
    }
    return filled;
}

class Copier final : public PairedWalk {
  protected:
    void atItem(int from, const char* fromName, int to, const char* toName,
                const struct stat& facts) override {
        if (S_ISREG(facts.st_mode)) {
            copyFile(from, fromName, to, toName);
        } else if (S_ISLNK(facts.st_mode)) {
            if (symlinkat(linkTarget(from, fromName).c_str(), to, toName) != 0) {
                throwErrno("make the link");
            }
            copyNamedAttributes(to, toName, facts);
        } else {
            if (mknodat(to, toName, (facts.st_mode & S_IFMT) | 0600U, facts.st_rdev) != 0) {
                throwErrno("make the special file");
            }
            copyNamedAttributes(to, toName, facts);
        }
    }

    void beforeFolder(int to, const char* toName) override {
        if (mkdirat(to, toName, 0700) != 0) {
            throwErrno("make the folder");
        }
    }

    void atFolder(int /*from*/, int /*to*/) override {}

    void afterFolder(int from, int to) override { copyAttributes(from, to); }

  private:
    void copyFile(int from, const char* fromName, int to, const char* toName) {
        struct stat facts {};
        const FileDescriptor source = openFile(from, fromName, facts);
        const FileDescriptor copy(
            openat(to, toName, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
        if (!copy) {
            throwErrno("make the file");
        }
        off_t offset = 0;
        while (offset < facts.st_size) {
            off_t start = lseek(source.get(), offset, SEEK_DATA);
            if (start < 0 && errno == ENXIO) {
                break; // nothing but a hole from here on
            }
            start = std::max(start, offset);
            off_t end = lseek(source.get(), start, SEEK_HOLE);
            end = end <= start ? facts.st_size : std::min(end, facts.st_size);
            copyRange(source.get(), copy.get(), start, end);
            offset = end;
        }
        if (ftruncate(copy.get(), facts.st_size) != 0) {
            throwErrno("size the file");
        }
        copyAttributes(source.get(), copy.get());
    }

    void copyRange(int from, int to, off_t start, off_t end) {
        off_t source = start;
        off_t copy = start;
        while (source < end) {
            const ssize_t count = copy_file_range(from, &source, to, &copy,
                                                  static_cast<std::size_t>(end - source), 0);
            if (count <= 0) {
                writeRange(from, to, source, end);
                return;
            }
        }
    }

    /// Where the kernel does not copy by itself; it also finds out what was wrong if anything was.
    void writeRange(int from, int to, off_t start, off_t end) {
        block_.resize(blockSize);
        while (start < end) {
            const std::size_t wanted = std::min(blockSize, static_cast<std::size_t>(end - start));
            const std::size_t count = readBlock(from, block_.data(), wanted, start);
            std::size_t written = 0;
            while (written < count) {
                const ssize_t step = pwrite(to, block_.data() + written, count - written,
                                            start + static_cast<off_t>(written));
                if (step < 0 && errno != EINTR) {
                    throwErrno("write");
                }
                written += static_cast<std::size_t>(std::max<ssize_t>(step, 0));
            }
            if (count < wanted) {
                return; // the file shrank; the comparison will say so
            }
            start += static_cast<off_t>(count);
        }
    }

    std::vector<std::byte> block_;
};

[[noreturn]] void throwDifference() {
    errno = EIO;
    throwErrno("the copy differs");
}

class Verifier final : public PairedWalk {
  protected:
    void atItem(int from, const char* fromName, int to, const char* toName,
                const struct stat& facts) override {
        struct stat copied {};
        if (fstatat(to, toName, &copied, AT_SYMLINK_NOFOLLOW) != 0) {
            throwErrno("stat");
        }
        const bool isSameKind = (facts.st_mode & S_IFMT) == (copied.st_mode & S_IFMT);
        if (!isSameKind || facts.st_rdev != copied.st_rdev) {
            throwDifference();
        }
        if (S_ISREG(facts.st_mode)) {
            compareFiles(from, fromName, to, toName);
        } else if (S_ISLNK(facts.st_mode) && linkTarget(from, fromName) != linkTarget(to, toName)) {
            throwDifference();
        }
    }

    void beforeFolder(int /*to*/, const char* /*toName*/) override {}

    void atFolder(int from, int to) override {
        if (namesIn(from) != namesIn(to)) {
            throwDifference();
        }
    }

    void afterFolder(int /*from*/, int /*to*/) override {}

  private:
    void compareFiles(int from, const char* fromName, int to, const char* toName) {
        struct stat sourceFacts {};
        struct stat copyFacts {};
        const FileDescriptor source = openFile(from, fromName, sourceFacts);
        const FileDescriptor copy = openFile(to, toName, copyFacts);
        if (sourceFacts.st_size != copyFacts.st_size) {
            throwDifference();
        }
        // Synced before, so dropping it from memory makes the disk's own content be read.
        posix_fadvise(copy.get(), 0, 0, POSIX_FADV_DONTNEED);
        blocks_.resize(2 * blockSize);
        std::byte* const second = blocks_.data() + blockSize;
        for (off_t offset = 0; offset < sourceFacts.st_size;
             offset += static_cast<off_t>(blockSize)) {
            const std::size_t count = readBlock(source.get(), blocks_.data(), blockSize, offset);
            if (count != readBlock(copy.get(), second, blockSize, offset) ||
                std::memcmp(blocks_.data(), second, count) != 0) {
                throwDifference();
            }
        }
    }

    std::vector<std::byte> blocks_;
};

} // namespace

void copyTree(int fromParent, const std::string& fromName, int toParent,
              const std::string& toName) {
    Copier().run(fromParent, fromName, toParent, toName);
}

void verifyCopy(int fromParent, const std::string& fromName, int toParent,
                const std::string& toName) {
    Verifier().run(fromParent, fromName, toParent, toName);
}

} // namespace korvane
