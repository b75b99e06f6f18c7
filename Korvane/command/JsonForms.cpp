#include "Korvane/command/JsonForms.h"

namespace korvane {

Json orNull(const std::optional<std::string>& text) {
    return text ? Json(*text) : Json(nullptr);
}

Json toJson(const WalkEntry& entry) {
    Json object = {{"url", entry.url.absoluteString()},
                   {"isDirectory", entry.isDirectory},
                   {"isSymlink", entry.isSymlink},
                   {"sizeBytes", entry.sizeBytes}};
    if (entry.lastModified) {
        object["lastModified"] = entry.lastModified->iso8601();
    }
    object["depth"] = entry.depth;
    return object;
}

Json toJson(const WalkSummary& summary) {
    Json errors = Json::array();
    for (const WalkError& error : summary.errors) {
        errors.push_back({{"url", error.url.absoluteString()}, {"underlying", error.underlying}});
    }
    return {{"entriesVisited", summary.entriesVisited},
            {"stopped", summary.stopped},
            {"cancelled", summary.cancelled},
            {"errors", std::move(errors)}};
}

Json toJson(const Exclusion& exclusion) {
    return {
        {"id", exclusion.id.text()}, {"path", pathText(exclusion.path)}, {"note", exclusion.note}};
}

Json toJson(const RestorableItem& item) {
    return {{"original", item.original}, {"trashed", item.trashed}};
}

Json toJson(const PathHeuristic& row, const FileURL& home) {
    return {{"id", row.id},
            {"category", row.category},
            {"displayName", row.displayName},
            {"pathPattern", row.pathPattern},
            {"risk", rawValue(row.risk)},
            {"whySafe", row.whySafe},
            {"scannerID", row.scannerID},
            {"enumerateChildren", row.enumerateChildren},
            {"riskExplanation", row.riskExplanation()},
            {"expandedPath", pathText(row.expandedPath(home))},
            {"claimedChildNames", row.claimedChildNames(home)}};
}

Json toJson(const std::vector<ScanItem>& items) {
    Json array = Json::array();
    for (const ScanItem& item : items) {
        array.push_back(item.toJson(DateForm::iso8601));
    }
    return array;
}

Json toJson(const std::vector<CleanupFailure>& failures) {
    Json array = Json::array();
    for (const CleanupFailure& failure : failures) {
        array.push_back({{"item", failure.item.toJson(DateForm::iso8601)},
                         {"error", failure.error},
                         {"kind", rawValue(failure.kind)},
                         {"guidance", guidance(failure.kind)}});
    }
    return array;
}

Json toJson(const CleanupResult& result) {
    Json skipped = Json::array();
    for (const CleanupSkip& skip : result.skipped) {
        const auto& parent = skip.reason.parent;
        skipped.push_back({{"item", skip.item.toJson(DateForm::iso8601)},
                           {"reason", rawValue(skip.reason.reason)},
                           {"parent", parent ? Json(pathText(parent->path())) : Json(nullptr)},
                           {"description", description(skip.reason)}});
    }
    return {{"operationID", result.operationID.text()},
            {"mode", rawValue(result.mode)},
            {"succeeded", toJson(result.succeeded)},
            {"failed", toJson(result.failed)},
            {"skipped", std::move(skipped)},
            {"spaceFreedOnDisk",
             result.spaceFreedOnDisk ? Json(*result.spaceFreedOnDisk) : Json(nullptr)},
            {"auditFailure", orNull(result.auditFailure)}};
}

} // namespace korvane
