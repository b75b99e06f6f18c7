#include "KorvaneCore/platform/RunningSystem.h"

#include <array>
#include <string_view>

#include <sys/utsname.h>
#include <unistd.h>

namespace korvane {

FileURL runningExecutable() {
    std::array<char, 4096> target{};
    const ssize_t length = readlink("/proc/self/exe", target.data(), target.size());
    if (length <= 0 || static_cast<std::size_t>(length) == target.size()) {
        return {};
    }
    return FileURL(std::string(target.data(), static_cast<std::size_t>(length)));
}

std::string systemVersion() {
    utsname names{};
    if (uname(&names) != 0) {
        return "0";
    }
    // What follows the numbers ("6.1.0-13-amd64") is the distributor's own count.
    const std::string_view release = names.release;
    return std::string(release.substr(0, release.find_first_not_of("0123456789.")));
}

} // namespace korvane
