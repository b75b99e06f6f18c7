#include "KorvaneCore/scanners/CompositeScanner.h"

#include "KorvaneCore/foundation/Task.h"

#include <iterator>

namespace korvane {

ScanResult CompositeScanner::scan(const ScanProgressHandler& progress) const {
    ScanResult result{.scannerID = id(), .startedAt = Date::now()};
    const auto count = static_cast<double>(components_.size());
    for (std::size_t i = 0; i < components_.size(); ++i) {
        const auto before = static_cast<double>(i);
        ScanResult part = components_[i]->scan([&](const ScanProgress& report) {
            progress({report.message, (before + report.fraction.value_or(0)) / count});
        });
        std::move(part.items.begin(), part.items.end(), std::back_inserter(result.items));
        if (Task::isCancelled()) {
            break;
        }
    }
    result.finishedAt = Date::now();
    return result;
}

} // namespace korvane
