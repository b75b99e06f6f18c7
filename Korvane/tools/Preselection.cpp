#include "Korvane/tools/Preselection.h"

#include "KorvaneCore/scan/PathHeuristicRows.h"
#include "KorvaneCore/scan/PathHeuristics.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace korvane {

namespace {

bool isForPeopleOnly(const PathHeuristic& row) {
    return row.id == PathHeuristics::similarImagesNearDuplicate.id ||
           row.id == PathHeuristics::largeFilesUserSelected.id ||
           row.id == PathHeuristics::downloadsAllFiles.id;
}

/// What goes because something else than a group of duplicates was ticked, or goes in any case.
class OtherRemovals {
  public:
    OtherRemovals(std::span<const ScanResult* const> results,
                  const std::unordered_set<UUID>& selected, std::span<const ScanItem> going) {
        for (const ScanItem& item : going) {
            paths_.insert(itemKey(item));
        }
        for (const ScanResult* result : results) {
            for (const ScanItem& item : result->items) {
                if (!isDuplicate(item) && selected.contains(item.id)) {
                    paths_.insert(itemKey(item));
                }
            }
        }
    }

    /// Whether the item itself, or a folder above it, is among them.
    [[nodiscard]] bool take(const ScanItem& item) const {
        const std::string key = itemKey(item);
        for (std::string_view path = key; path.size() >= 2; path = parentPath(path)) {
            if (paths_.contains(std::string(path))) {
                return true;
            }
        }
        return false;
    }

  private:
    std::unordered_set<std::string> paths_;
};

} // namespace

bool isDuplicate(const ScanItem& item) {
    return item.heuristicID == PathHeuristics::duplicateFinderDuplicate.id;
}

void keepOneCopyOfEach(std::span<const ScanResult* const> results,
                       std::unordered_set<UUID>& selected, std::span<const ScanItem> going) {
    const bool anyDuplicates =
        std::any_of(results.begin(), results.end(), [](const ScanResult* result) {
            return std::any_of(result->items.begin(), result->items.end(), isDuplicate);
        });
    if (!anyDuplicates) {
        return; // most tools: no need to look at a long list of paths
    }
    const OtherRemovals others(results, selected, going);
    std::unordered_map<std::string_view, std::vector<const ScanItem*>> groups; // what others leave
    for (const ScanResult* result : results) {
        for (const ScanItem& item : result->items) {
            if (isDuplicate(item) && !others.take(item)) {
                groups[item.category].push_back(&item);
            }
        }
    }
    for (const auto& [digest, members] : groups) {
        const bool oneStays =
            std::any_of(members.begin(), members.end(),
                        [&](const ScanItem* item) { return !selected.contains(item->id); });
        if (!oneStays) {
            selected.erase(members.front()->id);
        }
    }
}

std::unordered_set<UUID> preselectedItems(const ScanResult& result) {
    std::unordered_set<UUID> selected;
    std::unordered_set<std::string_view> groups; // those whose first copy was seen
    for (const ScanItem& item : result.items) {
        const PathHeuristic* row = PathHeuristics::heuristic(item.heuristicID);
        if (row == nullptr) {
            continue;
        }
        if (isDuplicate(item) ? !groups.insert(item.category).second
                              : row->risk == HeuristicRisk::low && !isForPeopleOnly(*row)) {
            selected.insert(item.id);
        }
    }
    return selected;
}

} // namespace korvane
