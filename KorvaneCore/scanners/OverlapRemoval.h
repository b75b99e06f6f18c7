#pragma once

#include "KorvaneCore/scan/ScanItem.h"

#include <vector>

namespace korvane {

/// Keeps the outermost of nested findings: an item goes when the same standardised path, or one
/// above it, is there too. The rest comes back by number of path components, then by path; of two
/// items of one path the first is kept.
[[nodiscard]] std::vector<ScanItem> removingOverlaps(std::vector<ScanItem> items);

} // namespace korvane
