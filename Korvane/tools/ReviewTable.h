#pragma once

#include "Korvane/tools/ToolDriver.h"
#include "KorvaneCore/scan/HeuristicRisk.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace korvane {

/// By what the items of a review are sorted inside their groups.
enum class ReviewOrder { size, name, date, risk };

/// By what the groups are sorted: what can be had, largest first; name; number of items, most
/// first.
enum class GroupOrder { reclaimable, name, count };

/// A review laid out for reading: the items in groups of one category, found by what is typed,
/// sorted by a column. Everything slow (the texts that are searched, every order of the items) is
/// worked out once in the constructor, which may run beside the interface; the rest is quick with
/// 100,000 items. Items are named by their index in the result. Not shared between threads.
class ReviewTable {
  public:
    struct Group {
        std::string category;
        std::vector<std::size_t> items; ///< those that are found, in order
        std::int64_t bytes = 0;         ///< of those
        std::int64_t reclaimable = 0;   ///< the same; of duplicates without the copy that stays
        std::size_t total = 0;          ///< how many there are whether found or not
    };

    ReviewTable() : ReviewTable(std::make_shared<const ToolReview>(), FileURL()) {}
    /// `home` is what "~" stands for in what is searched.
    ReviewTable(std::shared_ptr<const ToolReview> review, FileURL home);

    [[nodiscard]] const ToolReview& review() const noexcept { return *review_; }
    [[nodiscard]] const std::vector<ScanItem>& items() const noexcept {
        return review_->result.items;
    }
    /// The risk of the item's row; high where the catalogue does not know it.
    [[nodiscard]] HeuristicRisk risk(std::size_t item) const { return risks_[item]; }

    /// In the order of the groups; a group in which nothing is found is left out.
    [[nodiscard]] const std::vector<Group>& groups() const noexcept { return groups_; }
    [[nodiscard]] std::size_t foundCount() const noexcept { return foundCount_; }
    /// The number of the item's category, the same for all items of one.
    [[nodiscard]] std::size_t category(std::size_t item) const { return categories_[item]; }
    [[nodiscard]] std::size_t categoryCount() const noexcept { return names_.size(); }

    /// Shows the items with this text somewhere in their path or category, in any case.
    void find(std::string_view text);
    void sort(ReviewOrder order, bool descending);
    void sortGroups(GroupOrder order);

    [[nodiscard]] const std::string& text() const noexcept { return text_; }
    [[nodiscard]] ReviewOrder order() const noexcept { return order_; }
    [[nodiscard]] bool isDescending() const noexcept { return descending_; }
    [[nodiscard]] GroupOrder groupOrder() const noexcept { return groupOrder_; }

  private:
    using Indices = std::vector<std::uint32_t>;

    void sortItems(const FileURL& home);
    void rebuild();

    std::shared_ptr<const ToolReview> review_;
    std::vector<HeuristicRisk> risks_;       ///< by item
    std::vector<std::uint32_t> categories_;  ///< by item
    std::vector<std::string> names_;         ///< by category
    std::vector<std::size_t> categorySizes_; ///< by category
    std::string keys_;                       ///< what is searched, one item behind the other
    std::vector<std::size_t> keyEnds_;       ///< by item
    std::array<Indices, 4> orders_;          ///< every item, ascending, by ReviewOrder
    std::vector<Group> groups_;
    std::size_t foundCount_ = 0;
    std::string text_;
    ReviewOrder order_ = ReviewOrder::size;
    bool descending_ = true;
    GroupOrder groupOrder_ = GroupOrder::reclaimable;
};

} // namespace korvane
