#pragma once

#include "KorvaneCore/scan/ScanResult.h"

#include <span>
#include <unordered_set>

namespace korvane {

/// Whether the item is one of several files of the same content, its group its category: one of
/// them always stays.
[[nodiscard]] bool isDuplicate(const ScanItem& item);

/// Ids of the items that start ticked: those of low risk; of a group of duplicates all but the
/// first, whatever their risk; never anything of similar images, large files and downloads, which
/// only a person can judge. An item without a row in the catalogue never does.
[[nodiscard]] std::unordered_set<UUID> preselectedItems(const ScanResult& result);

/// For the ticks of several tools together, and of a tool together with what the Collector holds:
/// the copy that one keeps may be what another removes, or lie in a folder that it removes. Unticks
/// a copy elsewhere then, so that one stays of every group of duplicates; where all of them lie in
/// such folders, the folders are what the user means. `going`: what is removed besides.
void keepOneCopyOfEach(std::span<const ScanResult* const> results,
                       std::unordered_set<UUID>& selected, std::span<const ScanItem> going = {});

} // namespace korvane
