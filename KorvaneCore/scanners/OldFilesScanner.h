#pragma once

#include "KorvaneCore/platform/UserDirectories.h"
#include "KorvaneCore/scan/PathHeuristic.h"
#include "KorvaneCore/scanners/NamedScanner.h"

#include <string>
#include <vector>

namespace korvane {

/// One kind of thing that grows old in one folder.
struct OldFilesTarget {
    enum class Rule {
        files,       ///< any file directly in the folder
        screenshots, ///< pictures and films directly in it, named as the system names them
        screencasts, ///< as above, and under the name that recordings have on a Linux desktop
        archives,    ///< ".xcarchive" folders anywhere below it
    };

    const PathHeuristic* heuristic = nullptr;
    FileURL folder;
    Rule rule = Rule::files;
    double minimumAge = 0; ///< seconds since the last change
};

/// The folders and ages of the catalogue.
[[nodiscard]] std::vector<OldFilesTarget> defaultOldFilesTargets(const UserFolders& folders);

/// Finds what was not changed for long in the folders where such things pile up. Hidden things and
/// links are left out. Largest first; equal sizes in the order of targets and names.
class OldFilesScanner final : public NamedScanner {
  public:
    explicit OldFilesScanner(std::vector<OldFilesTarget> targets, Date now = Date::now());

    using ModuleScanner::scan;
    [[nodiscard]] const std::vector<OldFilesTarget>& targets() const noexcept { return targets_; }
    [[nodiscard]] ScanResult scan(const ScanProgressHandler& progress) const override;

  private:
    std::vector<OldFilesTarget> targets_;
    Date now_;
};

} // namespace korvane
