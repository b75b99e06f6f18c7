#pragma once

#include "KorvaneCore/scanners/CompositeScanner.h"

#include <string>
#include <utility>

namespace korvane {

/// Runs many scanners at the same time, each on a thread of its own, and makes one result of
/// theirs: nested findings removed, largest first. A scanner that throws contributes nothing. The
/// progress handler is called from the scanners' threads.
class SmartScanCoordinator final : public NamedScanner {
  public:
    SmartScanCoordinator(std::string id, std::string displayName, ScannerList scanners)
        : NamedScanner(std::move(id), std::move(displayName)), scanners_(std::move(scanners)) {}

    using ModuleScanner::scan;
    [[nodiscard]] const ScannerList& scanners() const noexcept { return scanners_; }
    [[nodiscard]] ScanResult scan(const ScanProgressHandler& progress) const override;

  private:
    ScannerList scanners_;
};

} // namespace korvane
