#include "Korvane/tools/Preselection.h"

#include "KorvaneCore/scan/PathHeuristicRows.h"
#include "KorvaneCore/scan/PathHeuristics.h"

#include <string_view>

namespace korvane {

namespace {

bool isForPeopleOnly(const PathHeuristic& row) {
    return row.id == PathHeuristics::similarImagesNearDuplicate.id ||
           row.id == PathHeuristics::largeFilesUserSelected.id ||
           row.id == PathHeuristics::downloadsAllFiles.id;
}

} // namespace

std::unordered_set<UUID> preselectedItems(const ScanResult& result) {
    std::unordered_set<UUID> selected;
    std::unordered_set<std::string_view> groups; // those whose first copy was seen
    for (const ScanItem& item : result.items) {
        const PathHeuristic* row = PathHeuristics::heuristic(item.heuristicID);
        if (row == nullptr) {
            continue;
        }
        const bool isDuplicate = row->id == PathHeuristics::duplicateFinderDuplicate.id;
        if (isDuplicate ? !groups.insert(item.category).second
                        : row->risk == HeuristicRisk::low && !isForPeopleOnly(*row)) {
            selected.insert(item.id);
        }
    }
    return selected;
}

} // namespace korvane
