#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace korvane {

/// What a desktop entry tells of its application. Bytes as found.
struct DesktopEntry {
    std::string name{};
    std::vector<std::string> aliases{}; ///< its program, window class, icon and package
    bool isPackaged = false;            ///< put there by a package manager for sandboxed apps

    friend bool operator==(const DesktopEntry&, const DesktopEntry&) = default;
};

/// Reads the main group of a desktop entry. What is damaged is left out. Any thread.
[[nodiscard]] DesktopEntry parseDesktopEntry(std::string_view content);

} // namespace korvane
