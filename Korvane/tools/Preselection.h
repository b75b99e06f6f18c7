#pragma once

#include "KorvaneCore/scan/ScanResult.h"

#include <unordered_set>

namespace korvane {

/// Ids of the items that start ticked: those whose catalogue row is of low risk. An item without a
/// row in the catalogue never does.
[[nodiscard]] std::unordered_set<UUID> preselectedByRisk(const ScanResult& result);

} // namespace korvane
