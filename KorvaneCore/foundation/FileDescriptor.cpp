#include "KorvaneCore/foundation/FileDescriptor.h"

#include <cerrno>

#include <unistd.h>

namespace korvane {

void FileDescriptor::reset() noexcept {
    if (descriptor_ >= 0) {
        const int saved = errno;
        // Not retried after EINTR: the kernel has released the descriptor by then.
        close(descriptor_);
        errno = saved;
        descriptor_ = -1;
    }
}

} // namespace korvane
