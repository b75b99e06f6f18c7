#include "Korvane/tools/Preselection.h"

#include "KorvaneCore/scan/PathHeuristics.h"

namespace korvane {

std::unordered_set<UUID> preselectedByRisk(const ScanResult& result) {
    std::unordered_set<UUID> selected;
    for (const ScanItem& item : result.items) {
        const PathHeuristic* row = PathHeuristics::heuristic(item.heuristicID);
        if (row != nullptr && row->risk == HeuristicRisk::low) {
            selected.insert(item.id);
        }
    }
    return selected;
}

} // namespace korvane
