#pragma once

#include "KorvaneCore/scanners/DiskUsageNode.h"

#include <functional>
#include <optional>
#include <vector>

namespace korvane {

struct DiskUsageOptions {
    /// Counts what is hidden below the entries too. The entries themselves are always all listed.
    bool includeHidden = false;
    /// What a folder is known to take already; it is then not measured again. Called on the
    /// listing's thread. May be empty.
    std::function<std::optional<std::int64_t>(const FileURL&)> knownSize = {};
};

/// Lists what a folder holds and how much each entry takes on the disk. Only regular files count;
/// links are listed, and neither followed nor counted. No state; any thread.
class DiskUsageScanner {
  public:
    /// Largest first, equal sizes in the order of their names' bytes. A link to a folder is listed
    /// like the folder. Entries that cannot be read are left out, what cannot be read inside them
    /// counts nothing. Folders are measured in parallel; when the surrounding task is cancelled
    /// meanwhile their sizes are cut short. Throws FileError when the folder cannot be listed.
    [[nodiscard]] std::vector<DiskUsageNode> children(const FileURL& folder,
                                                      const DiskUsageOptions& options = {}) const;
};

} // namespace korvane
