#include "Korvane/audit/AuditExport.h"

#include "Korvane/audit/ModuleNames.h"
#include "KorvaneCore/foundation/StateFile.h"
#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/foundation/Text.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <numeric>
#include <vector>

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
    // In pieces on all processors, and an entry at a time in each, so that a long log is quick to
    // write and never there twice as a tree.
    constexpr std::size_t pieceSize = 4096;
    std::vector<std::string> pieces((entries.size() + pieceSize - 1) / pieceSize);
    concurrentPerform(pieces.size(), [&](std::size_t piece) {
        for (const AuditEntry& entry :
             entries.subspan(piece * pieceSize)
                 .first(std::min(pieceSize, entries.size() - piece * pieceSize))) {
            const nlohmann::json sorted = entry.toJson();
            pieces[piece] += &entry == entries.data() ? "\n" : ",\n";
            pieces[piece] += sorted.dump(2);
        }
    });
    std::string text = "[";
    text.reserve(std::accumulate(
        pieces.begin(), pieces.end(), std::size_t{8},
        [](std::size_t sum, const std::string& piece) { return sum + piece.size(); }));
    for (const std::string& piece : pieces) {
        text += piece;
    }
    text += entries.empty() ? "]\n" : "\n]\n";
    return text;
}

void exportAuditLog(std::span<const AuditEntry> entries, const FileURL& file) {
    const bool isJSON = composedLowercase(file.pathExtension()) == "json";
    writeFileAtomically(file, isJSON ? auditJSON(entries) : auditCSV(entries));
}

} // namespace korvane
