#pragma once

#include "KorvaneCore/audit/AuditEntry.h"
#include "KorvaneCore/foundation/FileURL.h"

#include <span>
#include <string>
#include <string_view>

namespace korvane {

inline constexpr std::string_view auditExportName = "korvane-audit-log.csv";

/// A header and one line an operation. Paths are data, written as they are but for doubled quotes:
/// a program that takes a field beginning with "=" for a formula must be told not to.
[[nodiscard]] std::string auditCSV(std::span<const AuditEntry> entries);

/// An array of the operations, indented, keys sorted, dates in ISO 8601.
[[nodiscard]] std::string auditJSON(std::span<const AuditEntry> entries);

/// Writes the operations as JSON when the file's extension says so (in any case), else as CSV.
/// Replaces the file, whole or not at all. Throws FileError.
void exportAuditLog(std::span<const AuditEntry> entries, const FileURL& file);

} // namespace korvane
