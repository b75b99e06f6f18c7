#include "KorvaneCore/platform/SpaceReservation.h"

#include <cerrno>

#include <fcntl.h>

namespace korvane {

int reserveSpace(int descriptor, std::int64_t offset, std::int64_t length) noexcept {
    while (fallocate(descriptor, FALLOC_FL_KEEP_SIZE, offset, length) != 0) {
        const int error = errno;
        if (error != EINTR) {
            return error == EOPNOTSUPP || error == ENOSYS || error == EINVAL ? 0 : error;
        }
    }
    return 0;
}

} // namespace korvane
