#pragma once

#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/platform/SoftwareInventory.h"
#include "KorvaneCore/scanners/NamedScanner.h"

#include <memory>

namespace korvane {

/// Finds one installed application and the data that carries its identifier or name. What fits
/// another installed application as well is left out; so is what only begins with the identifier
/// when the installed applications could not all be read. Largest first; equal sizes with the
/// application first, then in the order of rows and names.
class UninstallerScanner final : public NamedScanner {
  public:
    /// `inventory` tells which other applications are installed.
    UninstallerScanner(FileURL home, InstalledApplication application,
                       std::shared_ptr<const SoftwareInventory> inventory);

    using ModuleScanner::scan;
    [[nodiscard]] ScanResult scan(const ScanProgressHandler& progress) const override;

  private:
    FileURL home_;
    InstalledApplication application_;
    std::shared_ptr<const SoftwareInventory> inventory_;
};

} // namespace korvane
