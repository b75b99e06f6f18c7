#pragma once

#include "KorvaneCore/scanners/CatalogueRowScanner.h"

namespace korvane {

/// Package caches, simulators and downloaded models, one item a place.
class DeveloperScanner final : public CatalogueRowScanner {
  public:
    explicit DeveloperScanner(FileURL home)
        : CatalogueRowScanner(std::move(home), "developer", "Developer Tools",
                              Proposal::wholePlace) {}
};

} // namespace korvane
