#include "KorvaneCore/scanners/OverlapRemoval.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace korvane {

namespace {

struct Placed {
    std::size_t componentCount;
    std::string path; ///< standardised
    ScanItem item;
};

bool hasAcceptedAncestor(const std::unordered_set<std::string_view>& accepted,
                         std::string_view path) {
    for (path = parentPath(path); path.size() >= 2; path = parentPath(path)) {
        if (accepted.contains(path)) {
            return true;
        }
    }
    return false;
}

} // namespace

std::vector<ScanItem> removingOverlaps(std::vector<ScanItem> items) {
    std::vector<Placed> placed;
    placed.reserve(items.size());
    for (ScanItem& item : items) {
        const FileURL place = item.url.standardized();
        placed.push_back({place.componentCount(), place.path(), std::move(item)});
    }
    std::stable_sort(placed.begin(), placed.end(), [](const Placed& a, const Placed& b) {
        return a.componentCount != b.componentCount ? a.componentCount < b.componentCount
                                                    : a.path < b.path;
    });
    std::unordered_set<std::string_view> accepted; // views into `placed`, which stays as it is
    std::vector<ScanItem> kept;
    for (Placed& one : placed) {
        if (!hasAcceptedAncestor(accepted, one.path) && accepted.insert(one.path).second) {
            kept.push_back(std::move(one.item));
        }
    }
    return kept;
}

} // namespace korvane
