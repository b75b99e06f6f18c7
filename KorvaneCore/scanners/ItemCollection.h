#pragma once

#include "KorvaneCore/scan/PathHeuristic.h"
#include "KorvaneCore/scan/ScanItem.h"

#include <optional>
#include <string>
#include <vector>

/// What scanners that propose whole places have in common. Any thread.
namespace korvane {

/// The file or folder at a place as an item of this row, not yet measured. Nothing when nothing is
/// there or it cannot be reached, and for a link: removing the link would free nothing of what is
/// measured through it, and where it leads is no place of the row.
[[nodiscard]] std::optional<ScanItem> itemAt(FileURL url, const PathHeuristic& row);

/// As above under another category.
[[nodiscard]] std::optional<ScanItem> itemAt(FileURL url, const PathHeuristic& row,
                                             std::string category);

/// Gives each item its allocated size, folders in parallel, and drops those that hold nothing. When
/// the surrounding task is cancelled meanwhile all are dropped: sizes cut short would understate
/// what a removal takes away.
void measureItems(std::vector<ScanItem>& items);

/// Largest first; items of equal size keep their order.
void sortLargestFirst(std::vector<ScanItem>& items);

} // namespace korvane
