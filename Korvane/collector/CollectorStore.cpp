#include "Korvane/collector/CollectorStore.h"

#include "Korvane/tools/Cleanup.h"
#include "KorvaneCore/foundation/CheckedArithmetic.h"

#include <algorithm>

namespace korvane {

std::vector<ScanItem> CollectorStore::items() const {
    const std::lock_guard guard(lock_);
    return items_;
}

std::size_t CollectorStore::count() const {
    const std::lock_guard guard(lock_);
    return items_.size();
}

std::int64_t CollectorStore::totalBytes() const {
    const std::lock_guard guard(lock_);
    std::int64_t bytes = 0;
    for (const ScanItem& item : items_) {
        bytes = checkedAdd(bytes, item.sizeBytes);
    }
    return bytes;
}

bool CollectorStore::isDeleting() const {
    const std::lock_guard guard(lock_);
    return isDeleting_;
}

void CollectorStore::stage(std::span<const ScanItem> items) {
    const std::lock_guard guard(lock_);
    if (isDeleting_) {
        return;
    }
    for (const ScanItem& item : items) {
        if (stagedPaths_.insert(itemKey(item)).second) {
            items_.push_back(item);
        }
    }
}

void CollectorStore::remove(const UUID& id) {
    const std::lock_guard guard(lock_);
    const auto found = std::find_if(items_.begin(), items_.end(),
                                    [&](const ScanItem& item) { return item.id == id; });
    if (!isDeleting_ && found != items_.end()) {
        stagedPaths_.erase(itemKey(*found));
        items_.erase(found);
    }
}

void CollectorStore::clear() {
    const std::lock_guard guard(lock_);
    if (!isDeleting_) {
        items_.clear();
        stagedPaths_.clear();
    }
}

std::optional<CleanupResult> CollectorStore::deleteAll(DeletionMode mode, Services& services,
                                                       const CleanupProgressHandler& progress) {
    CleanupOperation operation;
    operation.scannerID = scannerID;
    operation.approvedAt = Date::now();
    {
        const std::lock_guard guard(lock_);
        if (isDeleting_) {
            return std::nullopt;
        }
        isDeleting_ = true;
        operation.items = items_;
    }
    CleanupResult result = runCleanup(std::move(operation), mode, services, progress);
    const std::lock_guard guard(lock_);
    isDeleting_ = false;
    items_.clear();
    stagedPaths_.clear();
    return result;
}

} // namespace korvane
