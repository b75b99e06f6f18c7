#include "Korvane/command/Selection.h"

#include "Korvane/command/CommandContext.h"
#include "Korvane/tools/Preselection.h"
#include "KorvaneCore/foundation/Text.h"

#include <fmt/format.h>

namespace korvane {

std::unordered_set<UUID> selectedItems(const ReviewList& reviews,
                                       const SelectionArguments& arguments) {
    std::unordered_set<UUID> selected;
    for (const auto& review : reviews) {
        if (arguments.rule == "preselected") {
            selected.insert(review->preselected.begin(), review->preselected.end());
        } else if (arguments.rule == "all") {
            for (const ScanItem& item : review->result.items) {
                selected.insert(item.id);
            }
        }
    }
    if (arguments.rule == "preselected") {
        std::vector<const ScanResult*> results;
        for (const auto& review : reviews) {
            results.push_back(&review->result);
        }
        keepOneCopyOfEach(results, selected);
    }
    for (const FileURL& path : arguments.paths) {
        const std::string key = path.standardized().path();
        bool found = false;
        for (const auto& review : reviews) {
            for (const ScanItem& item : review->result.items) {
                if (itemKey(item) == key) {
                    selected.insert(item.id);
                    found = true;
                }
            }
        }
        if (!found) {
            throw CommandFailure(fmt::format("{} is not among the items found; nothing was removed",
                                             displayText(path.path())));
        }
    }
    return selected;
}

} // namespace korvane
