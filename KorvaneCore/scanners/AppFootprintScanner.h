#pragma once

#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/platform/SoftwareInventory.h"
#include "KorvaneCore/scanners/NamedScanner.h"

#include <memory>

namespace korvane {

/// Shows what each installed application takes up: its bundle and the data that carries its
/// identifier or name, each under a category of the application's name. What fits several
/// applications alike is left out, unless they are copies of one. Largest first; equal sizes with
/// the applications first, then in the order of rows and names.
class AppFootprintScanner final : public NamedScanner {
  public:
    AppFootprintScanner(FileURL home, std::shared_ptr<const SoftwareInventory> inventory);

    using ModuleScanner::scan;
    [[nodiscard]] ScanResult scan(const ScanProgressHandler& progress) const override;

  private:
    FileURL home_;
    std::shared_ptr<const SoftwareInventory> inventory_;
};

} // namespace korvane
