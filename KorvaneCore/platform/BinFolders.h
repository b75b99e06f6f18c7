#pragma once

#include "KorvaneCore/platform/UserFolders.h"

#include <vector>

namespace korvane {

/// The folders that hold what this user moved to a Bin, as far as they exist: of the home folder
/// first, then of every mounted file system, each once however often it is mounted. Links and
/// folders of other users are left out. Mounts nothing. Any thread.
[[nodiscard]] std::vector<FileURL> binFolders(const UserFolders& folders);

} // namespace korvane
