#pragma once

#include <span>
#include <string_view>

namespace korvane {

/// Folders of this operating system that are protected as a whole, besides the fixed list of the
/// guard, which is the same everywhere.
struct PlatformProtectedFolders {
    std::span<const std::string_view> absolute; ///< absolute paths
    std::span<const std::string_view> inHome;   ///< relative to the home folder
};

[[nodiscard]] PlatformProtectedFolders platformProtectedFolders() noexcept;

} // namespace korvane
