#pragma once

#include "KorvaneCore/audit/AuditEntry.h"

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

} // namespace korvane
