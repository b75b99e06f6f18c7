#pragma once

#include "KorvaneCore/audit/AuditLog.h"

#include <string>

namespace korvane {

/// What a verification of the audit log found, in sentences for the user.
[[nodiscard]] std::string integrityMessage(const AuditChainResult& result);

/// The same as one short status line, for the settings and the statistics.
[[nodiscard]] std::string integrityStatus(const AuditChainResult& result);

} // namespace korvane
