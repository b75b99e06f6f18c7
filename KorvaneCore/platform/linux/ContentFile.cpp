#include "KorvaneCore/platform/ContentFile.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace korvane {

namespace {

// False for anything but a regular file.
bool readState(int descriptor, ContentFile::State& state) noexcept {
    struct stat facts {};
    if (fstat(descriptor, &facts) != 0 || !S_ISREG(facts.st_mode)) {
        return false;
    }
    state = {
        {facts.st_dev, facts.st_ino}, facts.st_size, facts.st_mtim, facts.st_ctim, facts.st_nlink};
    return true;
}

} // namespace

bool ContentFile::open(int folder, const char* name) noexcept {
    // What was a file when the folder was listed may be a pipe by now: opening one must not wait.
    constexpr int flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    int descriptor = -1;
    do {
        descriptor = openat(folder, name, flags);
    } while (descriptor < 0 && errno == EINTR);
    descriptor_ = FileDescriptor(descriptor);
    if (descriptor_ && !readState(descriptor, state_)) {
        descriptor_.reset();
    }
    return static_cast<bool>(descriptor_);
}

void ContentFile::readAhead(std::int64_t bytes) noexcept {
    if (state_.sizeBytes > bytes) {
        posix_fadvise(descriptor_.get(), 0, 0, POSIX_FADV_SEQUENTIAL);
    }
    posix_fadvise(descriptor_.get(), 0, std::min(bytes, state_.sizeBytes), POSIX_FADV_WILLNEED);
}

std::int64_t ContentFile::read(std::span<std::byte> buffer) noexcept {
    ssize_t count = -1;
    do {
        count = ::read(descriptor_.get(), buffer.data(), buffer.size());
    } while (count < 0 && errno == EINTR);
    return count;
}

bool ContentFile::isUnchanged() const noexcept {
    State now;
    return readState(descriptor_.get(), now) && now == state_;
}

} // namespace korvane
