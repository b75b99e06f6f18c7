#pragma once

#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/platform/SoftwareInventory.h"
#include "KorvaneCore/scanners/NamedScanner.h"

#include <memory>

namespace korvane {

/// Finds folders that applications left behind in the user's Library: those that fit no installed
/// application, are not the system's, and in which nothing has changed for a long time. In doubt a
/// folder is left out; when the installed applications could not all be read, every folder is.
/// Largest first; equal sizes in the order of rows and names.
class OrphanedFilesScanner final : public NamedScanner {
  public:
    /// `minimumIdleInterval` in seconds before `now`.
    OrphanedFilesScanner(FileURL home, std::shared_ptr<const SoftwareInventory> provider, Date now,
                         double minimumIdleInterval);

    using ModuleScanner::scan;
    [[nodiscard]] ScanResult scan(const ScanProgressHandler& progress) const override;

  private:
    FileURL home_;
    std::shared_ptr<const SoftwareInventory> provider_;
    Date now_;
    double minimumIdleInterval_;
};

} // namespace korvane
