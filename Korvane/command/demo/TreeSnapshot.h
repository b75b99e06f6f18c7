#pragma once

#include "KorvaneCore/foundation/FileURL.h"

#include <map>
#include <set>
#include <string>
#include <vector>

namespace korvane {

/// What a tree holds: for every path below the root a fingerprint of what is there (the kind, and
/// the content of a file or the target of a link).
using TreeSnapshot = std::map<std::string, std::string>;

/// Takes in everything but what lies at or below `leftOut`. Throws FileError for what cannot be
/// read.
[[nodiscard]] TreeSnapshot takeSnapshot(const FileURL& root, const std::set<FileURL>& leftOut);

/// The paths that are in one of the two only, or differ.
[[nodiscard]] std::vector<std::string> differences(const TreeSnapshot& before,
                                                   const TreeSnapshot& after);

} // namespace korvane
