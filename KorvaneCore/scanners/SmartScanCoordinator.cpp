#include "KorvaneCore/scanners/SmartScanCoordinator.h"

#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/scanners/ItemCollection.h"
#include "KorvaneCore/scanners/OverlapRemoval.h"
#include "KorvaneCore/scanners/ProgressAggregator.h"

#include <exception>
#include <iterator>

#include <fmt/format.h>

namespace korvane {

ScanResult SmartScanCoordinator::scan(const ScanProgressHandler& progress) const {
    ScanResult result{.scannerID = id(), .startedAt = Date::now()};
    progress({fmt::format("Running {} scanners…", scanners_.size()), std::nullopt});
    ProgressAggregator aggregator(scanners_.size(), progress);
    // By scanner, not by the order in which they end, so that every run gives the same result.
    std::vector<std::vector<ScanItem>> found(scanners_.size());
    TaskGroup children;
    for (std::size_t i = 0; i < scanners_.size(); ++i) {
        children.addTask([&, i] {
            const ModuleScanner& scanner = *scanners_[i];
            try {
                found[i] =
                    scanner
                        .scan([&](const ScanProgress& report) {
                            aggregator.update(static_cast<std::ptrdiff_t>(i), scanner.displayName(),
                                              report.message, report.fraction);
                        })
                        .items;
            } catch (const std::exception&) {
                found[i].clear(); // the others carry on
            }
        });
    }
    children.waitForAll();
    for (std::vector<ScanItem>& items : found) {
        std::move(items.begin(), items.end(), std::back_inserter(result.items));
    }
    result.items = removingOverlaps(std::move(result.items));
    sortLargestFirst(result.items);
    progress({"Done", 1.0});
    result.finishedAt = Date::now();
    return result;
}

} // namespace korvane
