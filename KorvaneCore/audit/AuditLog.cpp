#include "KorvaneCore/audit/AuditLog.h"

#include "KorvaneCore/audit/AuditChainVerifier.h"
#include "KorvaneCore/audit/AuditEntryDecoder.h"
#include "KorvaneCore/audit/AuditKeyStore.h"
#include "KorvaneCore/audit/AuditLogFiles.h"
#include "KorvaneCore/cleaning/CleanupOperation.h"
#include "KorvaneCore/cleaning/CleanupResult.h"
#include "KorvaneCore/foundation/CheckedArithmetic.h"
#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/foundation/StateFile.h"
#include "KorvaneCore/foundation/Text.h"
#include "KorvaneCore/platform/DirectoryReader.h"

#include <algorithm>

namespace korvane {

namespace {

std::int64_t countOf(const auto& list) {
    return static_cast<std::int64_t>(list.size());
}

std::optional<std::vector<RestorableItem>> restorableOrAbsent(std::vector<RestorableItem> items) {
    return items.empty() ? std::nullopt : std::optional(std::move(items));
}

void makeUTF8(std::string& text) {
    if (!isValidUTF8(text)) {
        text = displayText(text);
    }
}

/// A record must never be lost because of the bytes in a name: whatever is no text becomes text.
void makeUTF8(AuditEntry& entry) {
    makeUTF8(entry.scannerID);
    for (std::string& path : entry.paths) {
        path = pathText(path);
    }
    if (entry.restorable) {
        for (RestorableItem& item : *entry.restorable) {
            item = {pathText(item.original), pathText(item.trashed)};
        }
    }
    if (entry.chainRestart) {
        makeUTF8(entry.chainRestart->reason);
    }
}

/// Readers wait for a writer of another process, so that none sees half a line. A folder that
/// cannot be locked is read all the same.
std::optional<FolderLock> lockForReading(const FileURL& folder) {
    try {
        return std::optional<FolderLock>(std::in_place, folder);
    } catch (const FileError&) {
        return std::nullopt;
    }
}

} // namespace

std::string_view rawValue(AuditChainResult::Coverage coverage) noexcept {
    switch (coverage) {
    case AuditChainResult::Coverage::verified:
        return "verified";
    case AuditChainResult::Coverage::broken:
        return "broken";
    case AuditChainResult::Coverage::unverifiable:
        return "unverifiable";
    case AuditChainResult::Coverage::empty:
        break;
    }
    return "empty";
}

AuditLog::AuditLog(FileURL rootURL, AuditKeyStore& keys)
    : rootURL_(std::move(rootURL)), keys_(keys) {}

void AuditLog::record(const CleanupOperation& operation, const CleanupResult& result,
                      std::span<const RestorableItem> restorable, const Date& at) {
    AuditEntry entry;
    entry.timestamp = at;
    entry.operationID = operation.id;
    entry.scannerID = operation.scannerID;
    entry.itemCount = countOf(operation.items);
    entry.succeededCount = countOf(result.succeeded);
    entry.failedCount = countOf(result.failed);
    for (const ScanItem& item : result.succeeded) {
        entry.bytesReclaimed = checkedAdd(entry.bytesReclaimed, item.sizeBytes);
    }
    entry.paths.reserve(operation.items.size());
    for (const ScanItem& item : operation.items) {
        entry.paths.push_back(pathText(item.path()));
    }
    entry.restorable = restorableOrAbsent({restorable.begin(), restorable.end()});
    append(std::move(entry));
}

void AuditLog::record(std::string scannerID, std::vector<std::string> paths,
                      std::int64_t failedCount, std::int64_t bytesReclaimed,
                      const UUID& operationID, std::vector<RestorableItem> restorable,
                      const Date& at) {
    AuditEntry entry;
    entry.timestamp = at;
    entry.operationID = operationID;
    entry.scannerID = std::move(scannerID);
    entry.itemCount = checkedAdd(countOf(paths), failedCount);
    entry.succeededCount = countOf(paths);
    entry.failedCount = failedCount;
    entry.bytesReclaimed = bytesReclaimed;
    entry.paths = std::move(paths);
    entry.restorable = restorableOrAbsent(std::move(restorable));
    append(std::move(entry));
}

void AuditLog::append(AuditEntry entry) {
    const std::lock_guard guard(lock_);
    createDirectories(rootURL_);
    const FolderLock folderLock(rootURL_);
    write(entry, headHash());
}

AuditEntry AuditLog::recordChainRestart(std::string reason, const UUID& acknowledging) {
    const std::lock_guard guard(lock_);
    createDirectories(rootURL_);
    const FolderLock folderLock(rootURL_);
    std::optional<std::string> head = headHash();
    AuditEntry entry;
    entry.timestamp = Date::now();
    entry.operationID = UUID::random();
    entry.scannerID = "chain-restart";
    entry.chainRestart = ChainRestart{std::move(reason), entry.timestamp, acknowledging, head};
    write(entry, std::move(head));
    return entry;
}

std::optional<std::string> AuditLog::headHash() const {
    const auto line = AuditLogFiles(rootURL_).lastLine();
    AuditEntry newest;
    if (!line || !AuditEntryDecoder().decode(*line, newest)) {
        return std::nullopt;
    }
    return newest.entryHash;
}

void AuditLog::write(AuditEntry& entry, std::optional<std::string> head) {
    makeUTF8(entry);
    entry.prevHash = std::move(head);
    // Asked for under the folder's lock, so that two processes never make the first key at once.
    HMACSHA256 authenticator(keys_.key());
    entry.entryHash = entry.computeHash(authenticator);
    AuditLogFiles(rootURL_).append("audit-" + entry.timestamp.utcDay() + ".jsonl",
                                   entry.encodeLine());
}

std::vector<AuditEntry> AuditLog::entries() const {
    const std::lock_guard guard(lock_);
    const auto folderLock = lockForReading(rootURL_);
    std::vector<AuditEntry> entries;
    AuditEntryDecoder decoder;
    AuditLogFiles(rootURL_).forEachLine([&](std::string_view line) {
        AuditEntry entry;
        if (decoder.decode(line, entry)) {
            entries.push_back(std::move(entry));
        }
    });
    std::reverse(entries.begin(), entries.end());
    std::stable_sort(entries.begin(), entries.end(),
                     [](const AuditEntry& left, const AuditEntry& right) {
                         return left.timestamp > right.timestamp;
                     });
    return entries;
}

AuditChainResult AuditLog::verifyChain() const {
    const std::lock_guard guard(lock_);
    const auto folderLock = lockForReading(rootURL_);
    AuditChainVerifier verifier(keys_);
    AuditEntryDecoder decoder;
    AuditEntry entry;
    AuditLogFiles(rootURL_).forEachLine([&](std::string_view line) {
        if (decoder.decode(line, entry)) {
            verifier.add(entry);
        }
    });
    return verifier.result();
}

bool AuditLog::hasLogFiles() const {
    const auto names = namesInFolder(rootURL_.path());
    return names && std::any_of(names->begin(), names->end(),
                                [](const std::string& name) { return name.starts_with("audit-"); });
}

} // namespace korvane
