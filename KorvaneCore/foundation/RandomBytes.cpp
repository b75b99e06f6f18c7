#include "KorvaneCore/foundation/RandomBytes.h"

#include <cerrno>
#include <system_error>

#include <sys/random.h>

namespace korvane {

void fillRandom(std::span<std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const ssize_t got = getrandom(bytes.data(), bytes.size(), 0);
        if (got < 0 && errno != EINTR) {
            throw std::system_error(errno, std::generic_category(), "getrandom");
        }
        bytes = bytes.subspan(got > 0 ? static_cast<std::size_t>(got) : 0);
    }
}

} // namespace korvane
