#include "Korvane/audit/AuditQuery.h"

#include "Korvane/audit/ModuleNames.h"
#include "KorvaneCore/foundation/Text.h"

#include <algorithm>

namespace korvane {

namespace {

bool mentions(const AuditEntry& entry, const std::string& foldedText) {
    const auto contains = [&](std::string_view text) {
        return composedLowercase(text).find(foldedText) != std::string::npos;
    };
    return contains(moduleName(entry.scannerID)) ||
           std::any_of(entry.paths.begin(), entry.paths.end(), contains);
}

} // namespace

std::vector<AuditEntry> matchingEntries(std::vector<AuditEntry> entries, const AuditQuery& query) {
    const std::string folded = composedLowercase(query.text);
    std::erase_if(entries, [&](const AuditEntry& entry) {
        return (!query.module.empty() && entry.scannerID != query.module) ||
               (!folded.empty() && !mentions(entry, folded));
    });
    return entries;
}

} // namespace korvane
