#include "Korvane/tools/ReviewSelection.h"

#include "Korvane/tools/Preselection.h"
#include "KorvaneCore/foundation/CheckedArithmetic.h"

namespace korvane {

ReviewSelection::ReviewSelection(const ReviewTable& table, const std::unordered_set<UUID>& ticked)
    : ticks_(table.items().size()), offered_(table.items().size(), true),
      staying_(table.categoryCount()) {
    const ToolReview& review = table.review();
    for (std::size_t item = 0; item < table.items().size(); ++item) {
        offered_[item] = !review.refused.contains(table.items()[item].id);
        ++staying_[table.category(item)];
    }
    for (std::size_t item = 0; item < table.items().size(); ++item) {
        if (ticked.contains(table.items()[item].id)) {
            tick(table, item, true);
        }
    }
}

void ReviewSelection::set(const ReviewTable& table, std::size_t item, bool on) {
    if (ticks_[item] == on) {
        return;
    }
    ticks_[item] = on;
    const std::int64_t size = table.items()[item].sizeBytes;
    const bool isHighRisk = table.risk(item) == HeuristicRisk::high;
    std::size_t& staying = staying_[table.category(item)];
    if (on) {
        ++count_;
        --staying;
        bytes_ = checkedAdd(bytes_, size);
        highRisk_ += isHighRisk ? 1U : 0U;
    } else {
        --count_;
        ++staying;
        bytes_ = checkedSubtract(bytes_, size);
        highRisk_ -= isHighRisk ? 1U : 0U;
    }
}

bool ReviewSelection::tick(const ReviewTable& table, std::size_t item, bool on) {
    if (on && !ticks_[item] &&
        (!offered_[item] ||
         (isDuplicate(table.items()[item]) && staying_[table.category(item)] == 1))) {
        return false;
    }
    set(table, item, on);
    return true;
}

void ReviewSelection::tickAll(const ReviewTable& table, std::span<const std::size_t> items,
                              bool on) {
    // From the end: of a group of duplicates its first copy is the one that stays.
    for (auto item = items.rbegin(); item != items.rend(); ++item) {
        tick(table, *item, on);
    }
}

void ReviewSelection::tickPreselected(const ReviewTable& table,
                                      std::span<const std::size_t> items) {
    tickAll(table, items, false);
    for (const std::size_t item : items) {
        if (table.review().preselected.contains(table.items()[item].id)) {
            tick(table, item, true);
        }
    }
}

void ReviewSelection::clear(const ReviewTable& table) {
    for (std::size_t item = 0; item < ticks_.size(); ++item) {
        set(table, item, false);
    }
}

void ReviewSelection::keep(const ReviewTable& table, std::size_t item) {
    set(table, item, false);
    for (std::size_t other = 0; other < ticks_.size(); ++other) {
        if (other != item && table.category(other) == table.category(item)) {
            tick(table, other, true);
        }
    }
}

bool ReviewSelection::isKeeper(const ReviewTable& table, std::size_t item) const {
    return isDuplicate(table.items()[item]) && !ticks_[item] && staying_[table.category(item)] == 1;
}

std::unordered_set<UUID> ReviewSelection::ids(const ReviewTable& table) const {
    std::unordered_set<UUID> ids;
    for (std::size_t item = 0; item < ticks_.size(); ++item) {
        if (ticks_[item]) {
            ids.insert(table.items()[item].id);
        }
    }
    return ids;
}

} // namespace korvane
