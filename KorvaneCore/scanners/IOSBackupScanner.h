#pragma once

#include "KorvaneCore/scanners/CatalogueRowScanner.h"

namespace korvane {

/// Backups of telephones and tablets, one item a device.
class IOSBackupScanner final : public CatalogueRowScanner {
  public:
    explicit IOSBackupScanner(FileURL home)
        : CatalogueRowScanner(std::move(home), "ios-backup", "iOS Backups", Proposal::eachChild) {}
};

} // namespace korvane
