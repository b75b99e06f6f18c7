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

/// The Bin folders of this user that hold anything, measured.
[[nodiscard]] std::vector<ScanItem> fullBins(const Services& services);

/// Empties these Bin folders and records it in the audit log, when anything went or failed.
[[nodiscard]] BinEmptying emptyBins(std::span<const ScanItem> bins, Services& services);

} // namespace korvane
