#pragma once

#include "KorvaneCore/audit/AuditEntry.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace korvane {

/// The name under which the audit screens show the operations of a scanner.
struct ModuleName {
    std::string_view scannerID;
    std::string_view displayName;
};

/// All of them, in the order of the module filter.
[[nodiscard]] std::span<const ModuleName> moduleNames() noexcept;

/// The display name of a scanner; an id without one is shown as it is (a view of `scannerID`).
[[nodiscard]] std::string_view moduleName(std::string_view scannerID) noexcept;

/// The scanners of some entries, each once: those above in their order, then others by id.
[[nodiscard]] std::vector<std::string> modulesOf(std::span<const AuditEntry> entries);

} // namespace korvane
