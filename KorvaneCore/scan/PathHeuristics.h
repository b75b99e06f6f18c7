#pragma once

#include "KorvaneCore/scan/PathHeuristic.h"

#include <span>
#include <string_view>
#include <vector>

/// The fixed catalogue of every location that the program may ever propose. Data, not
/// configuration: nothing loads it and nobody edits it. The rows themselves, one named constant
/// each, are in PathHeuristicRows.h.
namespace korvane::PathHeuristics {

/// All rows in catalogue order.
[[nodiscard]] std::span<const PathHeuristic* const> all() noexcept;

/// The row of this id (exact); null when there is none.
[[nodiscard]] const PathHeuristic* heuristic(std::string_view id) noexcept;

/// The rows that a scanner evaluates, in catalogue order.
[[nodiscard]] std::vector<const PathHeuristic*> heuristics(std::string_view scannerID);

} // namespace korvane::PathHeuristics
