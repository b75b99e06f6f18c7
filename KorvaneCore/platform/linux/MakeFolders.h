#pragma once

#include <string>

#include <sys/types.h>

namespace korvane {

/// Makes the folder and those above it that are missing, with these rights less the umask. 0 (also
/// when it is there already), or errno.
[[nodiscard]] int makeFolders(const std::string& path, mode_t mode);

} // namespace korvane
