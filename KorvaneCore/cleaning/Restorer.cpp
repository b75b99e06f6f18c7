#include "KorvaneCore/cleaning/Restorer.h"

#include "KorvaneCore/audit/AuditLog.h"
#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/platform/FileManager.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>

#include <fmt/format.h>

namespace korvane {

namespace {

/// The name under which an item comes back for the `attempt`-th time its place is found taken.
std::string restoredName(const FileURL& original, std::uint64_t attempt) {
    const std::string_view name = original.lastPathComponent();
    const std::string_view extension = original.pathExtension();
    const std::string_view base =
        extension.empty() ? name : name.substr(0, name.size() - extension.size() - 1);
    const std::string number = attempt == 1 ? "" : fmt::format(" {}", attempt);
    return fmt::format("{} (restored{}){}{}", base, number, extension.empty() ? "" : ".",
                       extension);
}

/// Moves to the first place that is free. Whether one is free is only known once the move was
/// tried: another program may take it in between.
void moveToFreePlace(FileManager& files, const FileURL& trashed, const FileURL& original) {
    FileURL destination = original;
    for (std::uint64_t attempt = 1;; ++attempt) {
        if (!files.itemExists(destination)) {
            try {
                files.restoreItem(trashed, destination);
                return;
            } catch (const FileError& error) {
                // With nothing there after all, trying on could go on for ever.
                if (error.posixError() != EEXIST || !files.itemExists(destination)) {
                    throw;
                }
            }
        }
        destination =
            original.deletingLastPathComponent().appending(restoredName(original, attempt));
    }
}

/// A NUL would cut the path short where the system reads it.
bool isPlain(const FileURL& url) {
    return url.isAbsolute() && !url.hasParentTraversal() && url.path() != "/" &&
           url.path().find('\0') == std::string::npos;
}

} // namespace

Restorer::Restorer(AuditLog& audit, FileManager& fileManager)
    : audit_(audit), fileManager_(fileManager) {}

bool Restorer::isStillInBin(const RestorableItem& item) const {
    const FileURL trashed(pathFromText(item.trashed));
    return isPlain(trashed) && fileManager_.itemExists(trashed);
}

RestoreOutcome Restorer::restore(std::span<const RestorableItem> items) const {
    RestoreOutcome outcome;
    for (const RestorableItem& item : items) {
        const FileURL trashed(pathFromText(item.trashed));
        const FileURL original(pathFromText(item.original));
        try {
            if (!isPlain(trashed) || !isPlain(original)) {
                outcome.failed.push_back({item, "The log does not say clearly where it belongs"});
            } else if (!fileManager_.itemExists(trashed)) {
                outcome.failed.push_back({item, "No longer in the Bin"});
            } else {
                fileManager_.createDirectory(original.deletingLastPathComponent());
                moveToFreePlace(fileManager_, trashed, original);
                outcome.restored.push_back(item);
            }
        } catch (const std::exception& error) {
            outcome.failed.push_back({item, localizedDescription(error)});
        }
    }
    record(outcome.restored);
    return outcome;
}

void Restorer::record(const std::vector<RestorableItem>& restored) const {
    if (restored.empty()) {
        return;
    }
    AuditEntry entry;
    entry.timestamp = Date::now();
    entry.operationID = UUID::random();
    entry.scannerID = scannerID;
    entry.itemCount = static_cast<std::int64_t>(restored.size());
    entry.succeededCount = entry.itemCount;
    for (const RestorableItem& item : restored) {
        entry.paths.push_back(item.original);
    }
    try {
        audit_.append(std::move(entry));
    } catch (const std::exception&) {
        // What is back is back, recorded or not; the outcome says so either way.
        return;
    }
}

std::vector<RestorableOp> Restorer::restorableOperations() const {
    std::vector<RestorableOp> operations;
    for (AuditEntry& entry : audit_.entries()) {
        if (!entry.restorable) {
            continue;
        }
        const auto count =
            std::count_if(entry.restorable->begin(), entry.restorable->end(),
                          [&](const RestorableItem& item) { return isStillInBin(item); });
        if (count > 0) {
            operations.push_back({std::move(entry), count});
        }
    }
    return operations;
}

} // namespace korvane
