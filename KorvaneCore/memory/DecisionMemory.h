#pragma once

#include "KorvaneCore/scan/ScanItem.h"

#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>

namespace korvane {

/// Remembers for 180 days which items the user saw and chose to keep. Failures to write are
/// ignored. Any thread; several processes may record at once and lose nothing of each other.
class DecisionMemory {
  public:
    static constexpr double retentionSeconds = 15'552'000;

    /// `fileURL` is usually `<Application Support>/Korvane/decisions.json`.
    explicit DecisionMemory(FileURL fileURL, const Date& now = Date::now());

    void recordSkips(std::span<const ScanItem> items, const Date& at);
    void forget(std::span<const ScanItem> items);
    /// When the item was skipped; nothing when it was not, or too long before `now`.
    [[nodiscard]] std::optional<Date> skipDate(const ScanItem& item,
                                               const Date& now = Date::now()) const;

  private:
    using Skips = std::unordered_map<std::string, Date>;
    /// What this process changed and has not saved yet; no date: forgotten.
    using Changes = std::unordered_map<std::string, std::optional<Date>>;

    [[nodiscard]] std::optional<Skips> load() const;
    void change(const std::string& key, const std::optional<Date>& date);
    void save();

    FileURL fileURL_;
    Date openedAt_;
    mutable std::mutex lock_;
    Skips skips_;
    Changes unsaved_;
};

} // namespace korvane
