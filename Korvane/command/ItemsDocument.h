#pragma once

#include "KorvaneCore/scan/ScanResult.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>

namespace korvane {

/// Items to clean as they stand, from a file.
struct ItemsDocument {
    ScanResult result;
    std::optional<std::unordered_set<UUID>> preselected; ///< when the document names them

    /// Reads a scan result, or what `scan --json` printed. Throws DecodingError, and refuses the
    /// whole document for a single item that cannot be meant: a size below zero, a sum that
    /// overflows, a preselected id that is no item's.
    [[nodiscard]] static ItemsDocument parse(std::string_view text);
};

} // namespace korvane
