#pragma once

#include "KorvaneCore/audit/AuditEntry.h"

#include <cstddef>
#include <string>
#include <string_view>

/// The words of the audit log's review.
namespace korvane::AuditText {

inline constexpr std::string_view reading = "Reading audit log…";
inline constexpr std::string_view searchPrompt = "Search paths or modules…";

inline constexpr std::string_view emptyTitle = "No operations yet";
inline constexpr std::string_view emptyExplanation =
    "Every cleanup Korvane performs is recorded here - what was removed, when, from which module, "
    "and why. Run your first scan to see it appear.";
inline constexpr std::string_view noMatchTitle = "No matching operations";
inline constexpr std::string_view noMatchExplanation =
    "Nothing in the log matches your search or filter.";
inline constexpr std::string_view emptyPeriod = "No cleanups in this period yet.";

inline constexpr std::string_view showPaths = "Show affected paths";
inline constexpr std::string_view hidePaths = "Hide affected paths";

inline constexpr std::string_view acknowledge = "Acknowledge break…";
inline constexpr std::string_view acknowledgeHelp =
    "Record on the log that entries are known to be missing here.";
inline constexpr std::string_view acknowledgeTitle = "Acknowledge a break in the log";
inline constexpr std::string_view acknowledgeExplanation =
    "The hash chain fails at one entry, which means entries were changed or removed outside "
    "Korvane. If you know why - a restored backup, a disk repair, a file deleted by hand - record "
    "it here.";
inline constexpr std::string_view acknowledgeConsequence =
    "This appends a note to the log. It does not remove or rewrite anything, it excuses only this "
    "one break, and any later edit is still detected.";
inline constexpr std::string_view notVerifiable = "Not chain-verifiable";

inline constexpr std::string_view restoreHelp =
    "Move these items back from the Bin to where they were.";
inline constexpr std::string_view folderHelp =
    "Opens the folder holding the raw log files - plain text, readable in any editor.";
inline constexpr std::string_view exportHelp = "Save the shown operations as CSV or JSON.";
inline constexpr std::string_view exportTitle = "Export audit log";

inline constexpr std::string_view operationsRecorded = "Operations recorded";
inline constexpr std::string_view lifetimeReclaimed = "Lifetime reclaimed";
inline constexpr std::string_view revealLogs = "Reveal logs in Finder";
inline constexpr std::string_view settingsExplanation =
    "Every file Korvane removes is written to a tamper-evident log - a hash chain where altering "
    "or deleting any entry breaks verification.";

/// What an operation did, without its module: "12 items moved to the Bin, 2 could not be removed".
[[nodiscard]] std::string operationSummary(const AuditEntry& entry);

/// "12 operations", "3 of 12 operations".
[[nodiscard]] std::string shownOperations(std::size_t shown, std::size_t all);

/// "12 operations written to ~/log.csv." `file` is shown as it is.
[[nodiscard]] std::string exported(std::size_t operations, std::string_view file);

} // namespace korvane::AuditText
