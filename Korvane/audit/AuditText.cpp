#include "Korvane/audit/AuditText.h"

#include "KorvaneCore/cleaning/Restorer.h"
#include "KorvaneCore/foundation/Text.h"

#include <algorithm>
#include <cstdint>

#include <fmt/format.h>

namespace korvane::AuditText {

namespace {

std::string counted(std::int64_t count, std::string_view noun) {
    return fmt::format("{} {}{}", count, noun, count == 1 ? "" : "s");
}

/// What has no place in the Bin on record is gone; only local copies go from the cloud's folder.
std::string_view removalWord(const AuditEntry& entry) {
    return entry.scannerID == "icloud-cleanup" ? "removed from this computer" : "deleted";
}

} // namespace

std::string operationSummary(const AuditEntry& entry) {
    if (entry.chainRestart) {
        return fmt::format("Acknowledged break: {}", displayText(entry.chainRestart->reason));
    }
    if (entry.scannerID == Restorer::scannerID) {
        return fmt::format("{} put back", counted(entry.succeededCount, "item"));
    }
    const auto inBin = static_cast<std::int64_t>(entry.restorable ? entry.restorable->size() : 0);
    const std::int64_t gone = std::max<std::int64_t>(entry.succeededCount - inBin, 0);
    std::string text;
    const auto add = [&](std::int64_t count, std::string_view what) {
        text += text.empty() ? fmt::format("{} {}", counted(count, "item"), what)
                             : fmt::format(", {} {}", count, what);
    };
    if (inBin > 0) {
        add(inBin, "moved to the Bin");
    }
    if (gone > 0 || (inBin == 0 && entry.failedCount == 0)) {
        add(gone, removalWord(entry));
    }
    if (entry.failedCount > 0) {
        add(entry.failedCount, "could not be removed");
    }
    return text;
}

std::string shownOperations(std::size_t shown, std::size_t all) {
    const std::string total = counted(static_cast<std::int64_t>(all), "operation");
    return shown == all ? total : fmt::format("{} of {}", shown, total);
}

std::string exported(std::size_t operations, std::string_view file) {
    return fmt::format("{} written to {}.",
                       counted(static_cast<std::int64_t>(operations), "operation"), file);
}

} // namespace korvane::AuditText
