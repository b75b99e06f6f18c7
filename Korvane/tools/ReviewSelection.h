#pragma once

#include "Korvane/tools/ReviewTable.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <unordered_set>
#include <vector>

namespace korvane {

/// Which items of a review are ticked. What may not be removed is never ticked, and of a group of
/// duplicates one copy always stays. Items are named by their index in the result. Not shared
/// between threads.
class ReviewSelection {
  public:
    ReviewSelection() = default;
    /// Begins with what the review preselects.
    explicit ReviewSelection(const ReviewTable& table)
        : ReviewSelection(table, table.review().preselected) {}
    /// Begins with what is ticked already, as far as the rules allow.
    ReviewSelection(const ReviewTable& table, const std::unordered_set<UUID>& ticked);

    [[nodiscard]] bool isTicked(std::size_t item) const { return ticks_[item]; }
    /// Whether the item can be ticked at all.
    [[nodiscard]] bool isOffered(std::size_t item) const { return offered_[item]; }

    /// False when the rules forbid it: nothing has changed then.
    bool tick(const ReviewTable& table, std::size_t item, bool on);
    /// Ticks as many of the items as the rules allow, or unticks them all.
    void tickAll(const ReviewTable& table, std::span<const std::size_t> items, bool on);
    /// What the review preselects among the items, and nothing else of them.
    void tickPreselected(const ReviewTable& table, std::span<const std::size_t> items);
    void clear(const ReviewTable& table);

    /// Keeps this copy of a group of duplicates and ticks all others of it.
    void keep(const ReviewTable& table, std::size_t item);
    /// Whether this copy is the only one of its group that stays.
    [[nodiscard]] bool isKeeper(const ReviewTable& table, std::size_t item) const;

    [[nodiscard]] std::size_t count() const noexcept { return count_; }
    [[nodiscard]] std::int64_t bytes() const noexcept { return bytes_; }
    /// How many of the ticked are of high risk.
    [[nodiscard]] std::size_t highRiskCount() const noexcept { return highRisk_; }

    /// The ids of the ticked items: what a confirmation is about.
    [[nodiscard]] std::unordered_set<UUID> ids(const ReviewTable& table) const;

  private:
    void set(const ReviewTable& table, std::size_t item, bool on);

    std::vector<bool> ticks_;          ///< by item
    std::vector<bool> offered_;        ///< by item
    std::vector<std::size_t> staying_; ///< unticked items, by category
    std::size_t count_ = 0;
    std::int64_t bytes_ = 0;
    std::size_t highRisk_ = 0;
};

} // namespace korvane
