#pragma once

#include "KorvaneCore/cleaning/TrashEmptier.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace korvane {

class Services;

/// The account of an emptying.
struct BinEmptying {
    TrashEmptier::Outcome outcome;
    std::optional<std::string> auditFailure; ///< why it could not be recorded
};

/// A Bin folder as it is laid before the user.
struct BinContent {
    ScanItem bin;                   ///< measured
    std::vector<std::string> names; ///< what lies directly in it
    std::size_t protectedCount = 0; ///< how many of them are on the exclusion list and stay
    bool isReadable = true;
};

/// The Bin folders of this user that hold anything, measured.
[[nodiscard]] std::vector<ScanItem> fullBins(const Services& services);

/// A folder as the item of an emptying, measured now. What is no Bin folder is handed on as it is:
/// the emptier refuses it with a sentence.
[[nodiscard]] ScanItem binItem(const FileURL& folder, const Services& services);

/// The Bin folders of this user that hold anything, also what has no size, largest first.
[[nodiscard]] std::vector<BinContent> binContents(Services& services);

/// Empties these Bin folders and records it in the audit log, when anything went or failed.
[[nodiscard]] BinEmptying emptyBins(std::span<const ScanItem> bins, Services& services);

/// As above, for Bins that a user has seen and confirmed: one into which something came since is
/// left as it is and told as a failure.
[[nodiscard]] BinEmptying emptyBins(std::span<const BinContent> seen, Services& services);

[[nodiscard]] std::int64_t totalBytes(std::span<const ScanItem> bins);

/// What a user is told before these Bins are emptied, and after.
[[nodiscard]] std::string emptyingWarning(std::span<const ScanItem> bins);
[[nodiscard]] std::string emptyingSummary(const TrashEmptier::Outcome& outcome);

} // namespace korvane
