#pragma once

#include "Korvane/tools/ToolDriver.h"
#include "KorvaneCore/foundation/UUID.h"

#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

namespace korvane {

/// Which items of a review the user wants removed.
struct SelectionArguments {
    std::string rule = "preselected"; ///< "preselected", "all" or "none"
    std::vector<FileURL> paths;       ///< added to what the rule selects
};

using ReviewList = std::vector<std::shared_ptr<const ToolReview>>;

/// The ids that the rule and the paths select in these reviews. Throws CommandFailure for a path
/// that is none of the items: whoever names a path means that one and no other.
[[nodiscard]] std::unordered_set<UUID> selectedItems(const ReviewList& reviews,
                                                     const SelectionArguments& arguments);

} // namespace korvane
