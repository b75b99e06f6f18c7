#include "Korvane/command/JsonForms.h"

#include <algorithm>

namespace korvane {

namespace {

std::vector<std::string> sortedPathTexts(const std::unordered_set<std::string>& paths) {
    std::vector<std::string> texts;
    texts.reserve(paths.size());
    for (const std::string& path : paths) {
        texts.push_back(pathText(path));
    }
    std::sort(texts.begin(), texts.end());
    return texts;
}

Json diffJson(const ScanDiff& diff) {
    std::vector<std::pair<std::string, std::int64_t>> growth;
    for (const auto& [path, bytes] : diff.growth) {
        growth.emplace_back(pathText(path), bytes);
    }
    std::sort(growth.begin(), growth.end());
    Json grown = Json::object();
    for (const auto& [path, bytes] : growth) {
        grown[path] = bytes;
    }
    return {{"previousScanDate", diff.previousScanDate.iso8601()},
            {"newPaths", sortedPathTexts(diff.newPaths)},
            {"growth", std::move(grown)},
            {"vanishedCount", diff.vanishedCount},
            {"vanishedBytes", diff.vanishedBytes}};
}

} // namespace

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

Json toJson(const ToolReview& review) {
    Json preselected = Json::array();
    Json skipped = Json::object();
    Json refused = Json::object();
    for (const ScanItem& item : review.result.items) {
        const std::string id = item.id.text();
        if (review.preselected.contains(item.id)) {
            preselected.push_back(id);
        }
        if (const auto found = review.skippedBefore.find(item.id);
            found != review.skippedBefore.end()) {
            skipped[id] = found->second.iso8601();
        }
        if (const auto found = review.refused.find(item.id); found != review.refused.end()) {
            refused[id] = found->second;
        }
    }
    return {{"result", review.result.toJson(DateForm::iso8601)},
            {"preselected", std::move(preselected)},
            {"diff", review.diff ? diffJson(*review.diff) : Json(nullptr)},
            {"skippedBefore", std::move(skipped)},
            {"refused", std::move(refused)}};
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
