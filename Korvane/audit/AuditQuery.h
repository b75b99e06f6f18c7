#pragma once

#include "KorvaneCore/audit/AuditEntry.h"

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace korvane {

/// Which operations of the log are on show.
struct AuditQuery {
    std::string text;   ///< somewhere in a path or the module's name, in any case; empty: all
    std::string module; ///< a scanner id; empty: all

    [[nodiscard]] bool isEmpty() const { return text.empty() && module.empty(); }
};

/// The entries that match, in their order.
[[nodiscard]] std::vector<AuditEntry> matchingEntries(std::vector<AuditEntry> entries,
                                                      const AuditQuery& query);

/// The places of the entries that match, ascending. Ends early, with what it has, when the
/// surrounding task is cancelled.
[[nodiscard]] std::vector<std::size_t> matchingPlaces(std::span<const AuditEntry> entries,
                                                      const AuditQuery& query);

} // namespace korvane
