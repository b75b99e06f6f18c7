#include "KorvaneCore/memory/DecisionMemory.h"

#include "KorvaneCore/foundation/StateFile.h"

#include <exception>
#include <utility>

namespace korvane {

namespace {

/// Makes the change in `skips`: the new date, or forgotten without one.
void apply(std::unordered_map<std::string, Date>& skips, const std::string& key,
           const std::optional<Date>& date) {
    if (date) {
        skips.insert_or_assign(key, *date);
    } else {
        skips.erase(key);
    }
}

} // namespace

DecisionMemory::DecisionMemory(FileURL fileURL, const Date& now)
    : fileURL_(std::move(fileURL)), openedAt_(now), skips_(load().value_or(Skips())) {}

void DecisionMemory::recordSkips(std::span<const ScanItem> items, const Date& at) {
    if (items.empty()) {
        return;
    }
    const std::lock_guard guard(lock_);
    for (const ScanItem& item : items) {
        change(itemKey(item), at);
    }
    save();
}

void DecisionMemory::forget(std::span<const ScanItem> items) {
    if (items.empty()) {
        return;
    }
    const std::lock_guard guard(lock_);
    for (const ScanItem& item : items) {
        change(itemKey(item), std::nullopt);
    }
    save();
}

std::optional<Date> DecisionMemory::skipDate(const ScanItem& item, const Date& now) const {
    const std::string key = itemKey(item);
    const std::lock_guard guard(lock_);
    const auto found = skips_.find(key);
    if (found == skips_.end() || now.since(found->second) >= retentionSeconds) {
        return std::nullopt;
    }
    return found->second;
}

/// The unexpired skips of the file; nothing when it is missing or does not decode.
std::optional<DecisionMemory::Skips> DecisionMemory::load() const {
    try {
        const std::optional<std::string> document = readFile(fileURL_);
        const Json records = document ? parseJson(*document) : Json();
        if (!records.is_array()) {
            return std::nullopt;
        }
        Skips skips;
        for (const Json& record : records) {
            const Date date = decodeDate(requireMember(record, "date"), "date");
            std::string key = pathFromText(requireString(record, "path"));
            if (openedAt_.since(date) < retentionSeconds) {
                skips.insert_or_assign(std::move(key), date);
            }
        }
        return skips;
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

void DecisionMemory::change(const std::string& key, const std::optional<Date>& date) {
    apply(skips_, key, date);
    unsaved_.insert_or_assign(key, date);
}

/// Another process may have saved since this one read the file: its file is the ground on which
/// only this one's own changes are made. Without a readable file everything in memory is written.
void DecisionMemory::save() {
    try {
        const FileURL folder = fileURL_.deletingLastPathComponent();
        createDirectories(folder);
        const FolderLock folderLock(folder);
        Skips merged = load().value_or(skips_);
        for (const auto& [key, date] : unsaved_) {
            apply(merged, key, date);
        }
        Json records = Json::array();
        for (const auto& [key, date] : merged) {
            records.push_back({{"path", pathText(key)},
                               {"date", encodeDate(date, DateForm::secondsSinceReferenceDate)}});
        }
        writeFileAtomically(fileURL_, compactJson(records));
        skips_ = std::move(merged);
        unsaved_.clear();
    } catch (const std::exception&) {
        // The memory goes on without its file and tries again with the next change.
    }
}

} // namespace korvane
