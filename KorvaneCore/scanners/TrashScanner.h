#pragma once

#include "KorvaneCore/platform/ProcessLauncher.h"
#include "KorvaneCore/platform/UserFolders.h"
#include "KorvaneCore/scanners/NamedScanner.h"

#include <string>
#include <utility>
#include <vector>

namespace korvane {

/// How much a Bin folder holds: what the disk-usage tool says, without the folder's own blocks,
/// which no emptying frees. 0 when it cannot be measured.
[[nodiscard]] std::int64_t binContentSize(const FileURL& bin, ProcessLauncher& launcher);

/// Lists the Bin folders of this user on all mounted file systems that hold anything, one item a
/// folder, largest first.
class TrashScanner final : public NamedScanner {
  public:
    /// `launcher` must outlive the scanner.
    explicit TrashScanner(UserFolders folders,
                          ProcessLauncher& launcher = ProcessLauncher::standard())
        : NamedScanner("trash", "Bin"), folders_(std::move(folders)), launcher_(launcher) {}

    using ModuleScanner::scan;
    [[nodiscard]] ScanResult scan(const ScanProgressHandler& progress) const override;

  private:
    UserFolders folders_;
    ProcessLauncher& launcher_;
};

} // namespace korvane
