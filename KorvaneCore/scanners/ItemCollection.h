#pragma once

#include "KorvaneCore/scan/ModuleScanner.h"
#include "KorvaneCore/scan/PathHeuristic.h"

#include <optional>
#include <set>
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

/// `itemAt` for everything directly in a folder that is not hidden and not among these names, in
/// the order of the names' bytes. None when the folder cannot be read or is a link.
[[nodiscard]] std::vector<ScanItem> childItems(const FileURL& folder, const PathHeuristic& row,
                                               const std::set<std::string>& leftOut = {});

/// Gives each item its allocated size, folders in parallel, and drops those that hold nothing. When
/// the surrounding task is cancelled meanwhile all are dropped: sizes cut short would understate
/// what a removal takes away.
void measureItems(std::vector<ScanItem>& items);

/// Measures the items and appends what is left of them to `collected`.
void collectMeasured(std::vector<ScanItem> items, std::vector<ScanItem>& collected);

/// The result with its end noted; reported as "Done" unless the surrounding task was cancelled.
[[nodiscard]] ScanResult finished(ScanResult result, const ScanProgressHandler& progress);

/// Largest first; items of equal size keep their order.
void sortLargestFirst(std::vector<ScanItem>& items);

} // namespace korvane
