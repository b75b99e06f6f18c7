#include "KorvaneCore/memory/ScanDiff.h"

#include "KorvaneCore/foundation/CheckedArithmetic.h"

#include <utility>

namespace korvane {

std::optional<ScanDiff> ScanDiff::make(const ScanResult& previous, const ScanResult& current) {
    if (previous.scannerID != current.scannerID) {
        return std::nullopt;
    }
    struct Before {
        std::int64_t size = 0;
        bool isThere = false; ///< still
    };
    std::unordered_map<std::string, Before> before;
    before.reserve(previous.items.size());
    for (const ScanItem& item : previous.items) {
        before.insert_or_assign(itemKey(item), Before{item.sizeBytes});
    }
    ScanDiff diff{.previousScanDate = previous.finishedAt};
    for (const ScanItem& item : current.items) {
        std::string key = itemKey(item);
        const auto known = before.find(key);
        if (known == before.end()) {
            diff.newPaths.insert(std::move(key));
            continue;
        }
        known->second.isThere = true;
        const std::int64_t grown = checkedSubtract(item.sizeBytes, known->second.size);
        if (grown >= 1) {
            diff.growth.insert_or_assign(std::move(key), grown);
        }
    }
    for (const auto& [key, one] : before) {
        if (!one.isThere) {
            ++diff.vanishedCount;
            diff.vanishedBytes = checkedAdd(diff.vanishedBytes, one.size);
        }
    }
    return diff;
}

ScanDiff::Change ScanDiff::change(const ScanItem& item) const {
    const std::string key = itemKey(item);
    if (newPaths.contains(key)) {
        return {Change::Case::added, 0};
    }
    if (const auto grown = growth.find(key); grown != growth.end()) {
        return {Change::Case::grown, grown->second};
    }
    return {};
}

} // namespace korvane
