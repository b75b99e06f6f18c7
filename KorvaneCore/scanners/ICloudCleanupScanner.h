#pragma once

#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/scanners/NamedScanner.h"

#include <string>
#include <utility>

namespace korvane {

/// Lists the files kept in the cloud that also take space on this disk, sized by that space,
/// largest first; equal sizes in the order of a walk.
class ICloudCleanupScanner final : public NamedScanner {
  public:
    explicit ICloudCleanupScanner(FileURL home)
        : NamedScanner("icloud-cleanup", "iCloud Cleanup"), home_(std::move(home)) {}

    using ModuleScanner::scan;
    [[nodiscard]] ScanResult scan(const ScanProgressHandler& progress) const override;

  private:
    FileURL home_;
};

} // namespace korvane
