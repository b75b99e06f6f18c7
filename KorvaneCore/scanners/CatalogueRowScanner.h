#pragma once

#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/scanners/NamedScanner.h"

#include <string>
#include <utility>

namespace korvane {

/// What scanners share that do no more than evaluate their rows of the catalogue one by one, in its
/// order: each place as one item, or each thing directly in it. Largest first; equal sizes in the
/// order of the rows and names.
class CatalogueRowScanner : public NamedScanner {
  public:
    using ModuleScanner::scan;
    [[nodiscard]] ScanResult scan(const ScanProgressHandler& progress) const final;

  protected:
    enum class Proposal { wholePlace, eachChild };

    CatalogueRowScanner(FileURL home, std::string id, std::string displayName, Proposal proposal)
        : NamedScanner(std::move(id), std::move(displayName)), home_(std::move(home)),
          proposal_(proposal) {}

  private:
    FileURL home_;
    Proposal proposal_;
};

} // namespace korvane
