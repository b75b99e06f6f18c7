#pragma once

#include "KorvaneCore/scan/ScanResult.h"

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>

namespace korvane {

/// How a scan differs from the one before. Items are told apart by `itemKey`.
struct ScanDiff {
    /// What became of one item (`added`: it is new).
    struct Change {
        enum class Case { grown, added, unchanged };
        Case change = Case::unchanged;
        std::int64_t growth = 0; ///< bytes, for `grown`

        friend bool operator==(const Change&, const Change&) = default;
    };

    Date previousScanDate{};
    std::unordered_set<std::string> newPaths{};
    std::unordered_map<std::string, std::int64_t> growth{}; ///< bytes, at least 1
    std::int64_t vanishedCount = 0;
    std::int64_t vanishedBytes = 0; ///< previous sizes of what vanished

    /// Nothing when the results belong to different scanners.
    [[nodiscard]] static std::optional<ScanDiff> make(const ScanResult& previous,
                                                      const ScanResult& current);

    [[nodiscard]] Change change(const ScanItem& item) const;
};

} // namespace korvane
