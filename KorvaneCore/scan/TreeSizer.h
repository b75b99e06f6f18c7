#pragma once

#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/scan/WalkTypes.h"

#include <cstdint>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <vector>

namespace korvane {

/// What counts when trees are added up. Links below a root are never followed.
struct SizingRules {
    enum class Measure {
        logical,   ///< the root itself may be a link, which is then not followed
        allocated, ///< a root that is a link to a folder is entered; errors are not kept
    };

    Measure measure = Measure::logical;
    bool includeHidden = false;
    std::optional<std::int64_t> maxDepth;
    const std::set<std::string>* pruneDirectoryNames = nullptr;
    const WalkCancellation* cancellation = nullptr;
};

struct TreeSize {
    std::int64_t bytes = 0;
    WalkSummary summary;
    bool begun = false; ///< false: the cancellation came before its turn
};

/// Adds up trees where the order of visiting shows nowhere: the same sums, counts and errors (in
/// depth-first path order) as a walk with these rules, without building paths, sorting, or asking
/// for facts that do not count. Work goes to further threads once it turns out to be large, and big
/// folders are divided among them. Ends early when cancelled. Results in the order of the roots.
[[nodiscard]] std::vector<TreeSize> sizeTrees(std::span<const FileURL> roots,
                                              const SizingRules& rules);

} // namespace korvane
