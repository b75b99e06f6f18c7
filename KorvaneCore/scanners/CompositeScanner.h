#pragma once

#include "KorvaneCore/scanners/NamedScanner.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace korvane {

/// The scanners that stand behind a tool or a Smart Scan, in order; never null. Shared, because
/// scanners are immutable and a composition outlives no one.
using ScannerList = std::vector<std::shared_ptr<const ModuleScanner>>;

/// Several scanners run one after another as one tool. Their items are appended as they come,
/// nothing is merged. What a component throws ends the scan.
class CompositeScanner final : public NamedScanner {
  public:
    CompositeScanner(std::string id, std::string displayName, ScannerList components)
        : NamedScanner(std::move(id), std::move(displayName)), components_(std::move(components)) {}

    using ModuleScanner::scan;
    [[nodiscard]] const ScannerList& components() const noexcept { return components_; }
    [[nodiscard]] ScanResult scan(const ScanProgressHandler& progress) const override;

  private:
    ScannerList components_;
};

} // namespace korvane
