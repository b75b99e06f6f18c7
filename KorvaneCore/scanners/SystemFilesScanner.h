#pragma once

#include "KorvaneCore/scanners/CatalogueRowScanner.h"

namespace korvane {

/// Large extras of the system and of virtual machines, one item a place.
class SystemFilesScanner final : public CatalogueRowScanner {
  public:
    explicit SystemFilesScanner(FileURL home)
        : CatalogueRowScanner(std::move(home), "system-files", "System Files",
                              Proposal::wholePlace) {}
};

} // namespace korvane
