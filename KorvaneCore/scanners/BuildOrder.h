#pragma once

#include <string_view>

namespace korvane {

/// Compares the names of system builds ("iPhone14,2 16.4.1 (20E252)") by version, then by the build
/// in parentheses, numbers as numbers: negative, 0 or positive as `a` is older than, the same as,
/// or newer than `b`. The device in front does not count. A name without a version is older than
/// every one that has it.
[[nodiscard]] int compareBuilds(std::string_view a, std::string_view b) noexcept;

} // namespace korvane
