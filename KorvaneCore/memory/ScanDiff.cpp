#include "KorvaneCore/memory/ScanDiff.h"

#include "KorvaneCore/foundation/CheckedArithmetic.h"

#include <utility>

namespace korvane {

std::optional<ScanDiff> ScanDiff::make(const ScanResult& previous, const ScanResult& current) {
    if (previous.scannerID != current.scannerID) {
        return std::nullopt;
    }
    std::unordered_map<std::string, std::int64_t> previousSizes;
    previousSizes.reserve(previous.items.size());
    for (const ScanItem& item : previous.items) {
        previousSizes.insert_or_assign(itemKey(item), item.sizeBytes);
    }
    ScanDiff diff{.previousScanDate = previous.finishedAt};
    std::unordered_set<std::string> currentKeys;
    currentKeys.reserve(current.items.size());
    for (const ScanItem& item : current.items) {
        const std::string key = itemKey(item);
        currentKeys.insert(key);
        const auto before = previousSizes.find(key);
        if (before == previousSizes.end()) {
            diff.newPaths.insert(key);
            continue;
        }
        const std::int64_t grown = checkedSubtract(item.sizeBytes, before->second);
        if (grown >= 1) {
            diff.growth.insert_or_assign(key, grown);
        }
    }
    for (const auto& [key, size] : previousSizes) {
        if (!currentKeys.contains(key)) {
            ++diff.vanishedCount;
            diff.vanishedBytes = checkedAdd(diff.vanishedBytes, size);
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
