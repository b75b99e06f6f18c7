#include "KorvaneCore/platform/linux/PictureInput.h"

#include "KorvaneCore/platform/FolderFacts.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace korvane {

namespace {

constexpr std::chrono::seconds patience{10};

} // namespace

PictureInput::PictureInput(FileDescriptor descriptor, std::int64_t size)
    : descriptor_(std::move(descriptor)), size_(size),
      deadline_(std::chrono::steady_clock::now() + patience) {}

std::unique_ptr<PictureInput> PictureInput::open(const FileURL& url) {
    const ReachablePath place(url.path());
    if (place.error() != 0) {
        return nullptr;
    }
    FileDescriptor file(openat(place.parent(), place.name(),
                               O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat facts {};
    if (!file || fstat(file.get(), &facts) != 0 || !S_ISREG(facts.st_mode)) {
        return nullptr;
    }
    posix_fadvise(file.get(), 0, 0, POSIX_FADV_WILLNEED);
    return std::unique_ptr<PictureInput>(new PictureInput(std::move(file), facts.st_size));
}

std::int64_t PictureInput::read(void* buffer, std::size_t length) {
    if (isOverdue()) {
        return -1;
    }
    ssize_t count = -1;
    do {
        count = pread(descriptor_.get(), buffer, length, position_);
    } while (count < 0 && errno == EINTR);
    position_ += std::max<ssize_t>(count, 0);
    return count;
}

std::int64_t PictureInput::seek(std::int64_t offset, int whence) {
    const std::int64_t from = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? position_ : size_;
    std::int64_t target = 0;
    if (__builtin_add_overflow(from, offset, &target) || target < 0) {
        return -1;
    }
    position_ = target;
    return target;
}

} // namespace korvane
