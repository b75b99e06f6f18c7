#pragma once

#include <string>

namespace korvane {

/// Renames within a file system and never replaces anything, on file systems that cannot promise
/// that themselves too. 0, or errno: EEXIST when the new name is taken, EXDEV across file systems.
/// A file on a file system with neither promise nor hard links is not moved.
[[nodiscard]] int renameExclusively(int fromFolder, const std::string& from, int toFolder,
                                    const std::string& to) noexcept;

} // namespace korvane
