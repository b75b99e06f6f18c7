#include "Korvane/tools/ReviewTable.h"

#include "Korvane/tools/Preselection.h"
#include "KorvaneCore/foundation/CheckedArithmetic.h"
#include "KorvaneCore/foundation/Text.h"
#include "KorvaneCore/scan/PathDisplay.h"
#include "KorvaneCore/scan/PathHeuristics.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <unordered_map>

namespace korvane {

namespace {

HeuristicRisk riskOf(const ScanItem& item) {
    const PathHeuristic* row = PathHeuristics::heuristic(item.heuristicID);
    return row == nullptr ? HeuristicRisk::high : row->risk;
}

} // namespace

ReviewTable::ReviewTable(std::shared_ptr<const ToolReview> review, FileURL home)
    : review_(std::move(review)) {
    std::unordered_map<std::string_view, std::uint32_t> numbers;
    risks_.reserve(items().size());
    categories_.reserve(items().size());
    for (const ScanItem& item : items()) {
        risks_.push_back(riskOf(item));
        const auto [number, isNew] =
            numbers.emplace(item.category, static_cast<std::uint32_t>(names_.size()));
        if (isNew) {
            names_.push_back(item.category);
            categorySizes_.push_back(0);
        }
        ++categorySizes_[number->second];
        categories_.push_back(number->second);
    }
    sortItems(home);
    rebuild();
}

void ReviewTable::sortItems(const FileURL& home) {
    std::vector<std::string> nameKeys;
    nameKeys.reserve(items().size());
    keyEnds_.reserve(items().size());
    for (const ScanItem& item : items()) {
        nameKeys.push_back(composedLowercase(item.url.lastPathComponent()));
        keys_ += composedLowercase(
            PathDisplay::shorten(item.path(), std::numeric_limits<std::size_t>::max(), home));
        keys_ += '\n';
        keys_ += composedLowercase(item.category);
        keyEnds_.push_back(keys_.size());
    }
    Indices all(items().size());
    std::iota(all.begin(), all.end(), 0U);
    const auto sorted = [&](auto isLess) {
        Indices order = all;
        std::stable_sort(order.begin(), order.end(), isLess);
        return order;
    };
    const auto size = [&](std::uint32_t item) { return items()[item].sizeBytes; };
    orders_[static_cast<std::size_t>(ReviewOrder::size)] =
        sorted([&](std::uint32_t a, std::uint32_t b) { return size(a) < size(b); });
    // The other columns have many equal values: among those the larger item counts.
    all = orders_[static_cast<std::size_t>(ReviewOrder::size)];
    orders_[static_cast<std::size_t>(ReviewOrder::name)] =
        sorted([&](std::uint32_t a, std::uint32_t b) { return nameKeys[a] < nameKeys[b]; });
    orders_[static_cast<std::size_t>(ReviewOrder::date)] =
        sorted([&](std::uint32_t a, std::uint32_t b) {
            return items()[a].lastModified < items()[b].lastModified;
        });
    orders_[static_cast<std::size_t>(ReviewOrder::risk)] =
        sorted([&](std::uint32_t a, std::uint32_t b) { return risks_[a] < risks_[b]; });
}

void ReviewTable::find(std::string_view text) {
    text_ = composedLowercase(text);
    rebuild();
}

void ReviewTable::sort(ReviewOrder order, bool descending) {
    order_ = order;
    descending_ = descending;
    rebuild();
}

void ReviewTable::sortGroups(GroupOrder order) {
    groupOrder_ = order;
    rebuild();
}

void ReviewTable::rebuild() {
    groups_.assign(names_.size(), {});
    for (std::size_t category = 0; category < names_.size(); ++category) {
        groups_[category].category = names_[category];
        groups_[category].total = categorySizes_[category];
    }
    foundCount_ = 0;
    const Indices& order = orders_[static_cast<std::size_t>(order_)];
    const std::string_view keys = keys_;
    for (std::size_t i = 0; i < order.size(); ++i) {
        const std::size_t item = descending_ ? order[order.size() - 1 - i] : order[i];
        if (!text_.empty()) {
            const std::size_t begin = item == 0 ? 0 : keyEnds_[item - 1];
            if (keys.substr(begin, keyEnds_[item] - begin).find(text_) == std::string_view::npos) {
                continue;
            }
        }
        Group& group = groups_[categories_[item]];
        group.items.push_back(item);
        group.bytes = checkedAdd(group.bytes, items()[item].sizeBytes);
        ++foundCount_;
    }
    std::erase_if(groups_, [](const Group& group) { return group.items.empty(); });
    for (Group& group : groups_) {
        const ScanItem& first = items()[group.items.front()];
        group.reclaimable =
            isDuplicate(first) ? checkedSubtract(group.bytes, first.sizeBytes) : group.bytes;
    }
    std::stable_sort(groups_.begin(), groups_.end(), [this](const Group& a, const Group& b) {
        switch (groupOrder_) {
        case GroupOrder::name:
            return items()[a.items.front()].url.lastPathComponent() <
                   items()[b.items.front()].url.lastPathComponent();
        case GroupOrder::count:
            return a.items.size() > b.items.size();
        case GroupOrder::reclaimable:
            break;
        }
        return a.reclaimable > b.reclaimable;
    });
}

} // namespace korvane
