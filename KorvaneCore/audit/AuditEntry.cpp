#include "KorvaneCore/audit/AuditEntry.h"

namespace korvane {

namespace {

constexpr char unitSeparator = '\x1F';

std::size_t textSize(const AuditEntry& entry) {
    std::size_t size = 256;
    for (const std::string& path : entry.paths) {
        size += path.size() + 1;
    }
    if (entry.restorable) {
        for (const RestorableItem& item : *entry.restorable) {
            size += item.original.size() + item.trashed.size() + 2;
        }
    }
    return size;
}

void appendPaths(std::string& text, const std::vector<std::string>& paths) {
    const char* separator = "";
    for (const std::string& path : paths) {
        text += separator;
        text += path;
        separator = "|";
    }
}

void appendRestorable(std::string& text, const std::vector<RestorableItem>& items) {
    const char* separator = "";
    for (const RestorableItem& item : items) {
        text += separator;
        text += item.original;
        text += '>';
        text += item.trashed;
        separator = ";";
    }
}

Json restorableJson(const std::vector<RestorableItem>& items) {
    Json list = Json::array();
    for (const RestorableItem& item : items) {
        list.push_back(Json{{"original", item.original}, {"trashed", item.trashed}});
    }
    return list;
}

Json restartJson(const ChainRestart& restart) {
    Json object;
    object["reason"] = restart.reason;
    object["recordedAt"] = restart.recordedAt.iso8601();
    object["acknowledgedOperationID"] = restart.acknowledgedOperationID.text();
    if (restart.previousHead) {
        object["previousHead"] = *restart.previousHead;
    }
    return object;
}

} // namespace

std::string AuditEntry::canonicalText() const {
    std::string text;
    text.reserve(textSize(*this));
    const auto field = [&text](std::string_view value) {
        text += unitSeparator;
        text += value;
    };
    text += timestamp.iso8601();
    field(operationID.text());
    field(scannerID);
    field(std::to_string(itemCount));
    field(std::to_string(succeededCount));
    field(std::to_string(failedCount));
    field(std::to_string(bytesReclaimed));
    field("");
    appendPaths(text, paths);
    field("");
    if (restorable) {
        appendRestorable(text, *restorable);
    }
    field(prevHash ? std::string_view(*prevHash) : std::string_view());
    if (chainRestart) {
        field("restart");
        field(chainRestart->recordedAt.iso8601());
        field(chainRestart->reason);
        field(chainRestart->acknowledgedOperationID.text());
        field(chainRestart->previousHead ? std::string_view(*chainRestart->previousHead)
                                         : std::string_view());
    }
    return text;
}

std::string AuditEntry::computeHash(HMACSHA256& authenticator) const {
    return hexText(authenticator.authenticate(canonicalText()));
}

Json AuditEntry::toJson() const {
    Json object;
    object["timestamp"] = timestamp.iso8601();
    object["operationID"] = operationID.text();
    object["scannerID"] = scannerID;
    object["itemCount"] = itemCount;
    object["succeededCount"] = succeededCount;
    object["failedCount"] = failedCount;
    object["bytesReclaimed"] = bytesReclaimed;
    object["paths"] = paths;
    if (restorable) {
        object["restorable"] = restorableJson(*restorable);
    }
    if (prevHash) {
        object["prevHash"] = *prevHash;
    }
    if (entryHash) {
        object["entryHash"] = *entryHash;
    }
    if (chainRestart) {
        object["chainRestart"] = restartJson(*chainRestart);
    }
    return object;
}

std::string AuditEntry::encodeLine() const {
    return compactJson(toJson());
}

} // namespace korvane
