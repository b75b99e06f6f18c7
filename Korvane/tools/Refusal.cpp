#include "Korvane/tools/Refusal.h"

#include "Korvane/tools/Services.h"
#include "KorvaneCore/cleaning/ItemLocation.h"
#include "KorvaneCore/scan/PathHeuristicRows.h"

namespace korvane {

Refusal::Refusal(Services& services)
    : exclusions_(services.exclusions()), guard_(services.home()) {}

std::optional<std::string> Refusal::sentence(const FileURL& url) const {
    const ItemLocation location(url);
    if (const auto match = exclusions_.match(location)) {
        return match->message();
    }
    if (const auto reason = guard_.evaluate(location).reason()) {
        return message(*reason);
    }
    return std::nullopt;
}

std::optional<std::string> Refusal::sentence(const ScanItem& item) const {
    if (const auto text = freedOtherwise(item.heuristicID)) {
        return std::string(*text);
    }
    return sentence(item.url);
}

std::optional<std::string_view> freedOtherwise(std::string_view heuristicID) noexcept {
    if (heuristicID == PathHeuristics::systemTrashAllVolumes.id) {
        return "A Bin folder is emptied, not removed: `korvane bin empty` does it.";
    }
    if (heuristicID == PathHeuristics::systemTimeMachineSnapshots.id) {
        return "A snapshot is no file: only the system's own backup tool can remove it.";
    }
    if (heuristicID == PathHeuristics::icloudLocalCopies.id) {
        return "Removing this file would remove it from iCloud Drive too. Only macOS can free its "
               "local copy and keep the file.";
    }
    return std::nullopt;
}

} // namespace korvane
