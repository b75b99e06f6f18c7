#pragma once

#include "Korvane/tools/ToolDriver.h"
#include "KorvaneCore/foundation/FileURL.h"

#include <string>
#include <unordered_set>

namespace korvane {

/// A review as people read it: grouped by category, with the reason why each group is safe.
[[nodiscard]] std::string reviewText(const ToolReview& review, const FileURL& home,
                                     std::size_t columns);

/// The items that are about to be removed, one a line.
[[nodiscard]] std::string selectionText(const std::vector<ScanItem>& items, const FileURL& home);

/// Items that were not removed, each with its reason and what may help.
[[nodiscard]] std::string failuresText(const std::vector<CleanupFailure>& failures,
                                       const FileURL& home, std::size_t columns);

/// What a cleanup did, every failure and skip with its reason.
[[nodiscard]] std::string outcomeText(const CleanupResult& result, const FileURL& home,
                                      std::size_t columns);

} // namespace korvane
