#include "Korvane/audit/AuditExport.h"

#include "Korvane/audit/ModuleNames.h"
#include "KorvaneCore/foundation/StateFile.h"
#include "KorvaneCore/foundation/Text.h"

#include <iterator>

#include <fmt/format.h>

namespace korvane {

std::string auditCSV(std::span<const AuditEntry> entries) {
    std::string text = "timestamp,module,items,succeeded,failed,bytes_reclaimed,paths\n";
    const auto end = std::back_inserter(text);
    for (const AuditEntry& entry : entries) {
        fmt::format_to(end, "{},{},{},{},{},{},\"", entry.timestamp.iso8601(),
                       moduleName(entry.scannerID), entry.itemCount, entry.succeededCount,
                       entry.failedCount, entry.bytesReclaimed);
        std::string_view separator;
        for (const std::string& path : entry.paths) {
            text += separator;
            separator = "; ";
            for (const char c : path) {
                text += c == '"' ? "\"\"" : std::string_view(&c, 1);
            }
        }
        text += "\"\n";
    }
    return text;
}

std::string auditJSON(std::span<const AuditEntry> entries) {
    // An entry at a time, so that a long log is never there twice as a tree.
    std::string text = "[";
    std::string_view separator = "\n";
    for (const AuditEntry& entry : entries) {
        text += separator;
        separator = ",\n";
        const nlohmann::json sorted = entry.toJson();
        text += sorted.dump(2);
    }
    text += entries.empty() ? "]\n" : "\n]\n";
    return text;
}

void exportAuditLog(std::span<const AuditEntry> entries, const FileURL& file) {
    const bool isJSON = composedLowercase(file.pathExtension()) == "json";
    writeFileAtomically(file, isJSON ? auditJSON(entries) : auditCSV(entries));
}

} // namespace korvane
