#include "KorvaneCore/scanners/CatalogueRowScanner.h"

#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/scan/PathHeuristics.h"
#include "KorvaneCore/scanners/ItemCollection.h"

#include <fmt/format.h>

namespace korvane {

ScanResult CatalogueRowScanner::scan(const ScanProgressHandler& progress) const {
    ScanResult result{.scannerID = id(), .startedAt = Date::now()};
    const std::vector<const PathHeuristic*> rows = PathHeuristics::heuristics(id());
    const auto count = static_cast<double>(rows.size());
    for (std::size_t i = 0; i < rows.size() && !Task::isCancelled(); ++i) {
        const PathHeuristic& row = *rows[i];
        progress({fmt::format("Checking {}…", row.displayName), static_cast<double>(i) / count});
        std::vector<ScanItem> found;
        if (proposal_ == Proposal::eachChild) {
            found = childItems(row.url(home_), row);
        } else if (auto item = itemAt(row.url(home_), row)) {
            found.push_back(std::move(*item));
        }
        collectMeasured(std::move(found), result.items);
    }
    sortLargestFirst(result.items);
    return finished(std::move(result), progress);
}

} // namespace korvane
