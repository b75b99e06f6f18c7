#pragma once

#include "KorvaneCore/foundation/FileURL.h"

#include <string>
#include <vector>

namespace korvane {

/// Where an item is, in every form that matters to whether it may be removed. Made once an item
/// and asked of the protected paths and of the guard, so that both judge the same place. Making it
/// reads the links along the path; it never fails.
struct ItemLocation {
    explicit ItemLocation(const FileURL& url);

    FileURL given;        ///< as the caller named it
    FileURL standardized; ///< without "." and ".."; nothing resolved
    FileURL resolved;     ///< every link resolved, the item's own included
    /// What a removal takes: the links of the item's folder resolved, its own name kept. Differs
    /// from both of the above only for a link that is reached through another link.
    FileURL site;
    /// Under these the location is compared: the keys of `standardized`, `resolved` and `site`, in
    /// that order, duplicates left out.
    std::vector<std::string> keys;
};

} // namespace korvane
