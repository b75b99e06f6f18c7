#include "KorvaneCore/platform/PlatformProtectedFolders.h"

#include <array>

namespace korvane {

PlatformProtectedFolders platformProtectedFolders() noexcept {
    static constexpr std::array<std::string_view, 15> absolute = {
        "/boot", "/dev",  "/home", "/lib",  "/lib32", "/lib64", "/media", "/mnt",
        "/proc", "/root", "/run",  "/snap", "/srv",   "/sys",   "/tmp"};
    // What holds the user's programs, profiles and sandboxed apps; what is inside may be judged
    // item by item.
    static constexpr std::array<std::string_view, 6> inHome = {".local",   ".local/share", ".cache",
                                                               ".mozilla", ".thunderbird", ".var"};
    return {.absolute = absolute, .inHome = inHome};
}

} // namespace korvane
