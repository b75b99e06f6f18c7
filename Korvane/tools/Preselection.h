#pragma once

#include "KorvaneCore/scan/ScanResult.h"

#include <unordered_set>

namespace korvane {

/// Ids of the items that start ticked: those of low risk; of a group of duplicates all but the
/// first, whatever their risk; never anything of similar images, large files and downloads, which
/// only a person can judge. An item without a row in the catalogue never does.
[[nodiscard]] std::unordered_set<UUID> preselectedItems(const ScanResult& result);

} // namespace korvane
