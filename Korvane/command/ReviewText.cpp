#include "Korvane/command/ReviewText.h"

#include "Korvane/command/Terminal.h"
#include "KorvaneCore/foundation/CheckedArithmetic.h"
#include "KorvaneCore/foundation/Text.h"
#include "KorvaneCore/scan/ByteDisplay.h"
#include "KorvaneCore/scan/PathDisplay.h"
#include "KorvaneCore/scan/PathHeuristics.h"

#include <map>

#include <fmt/format.h>

namespace korvane {

namespace {

using Terminal::Style;

constexpr std::size_t shownComponents = 4;

struct Sum {
    std::size_t count = 0;
    std::int64_t bytes = 0;

    void add(const ScanItem& item) {
        ++count;
        bytes = checkedAdd(bytes, item.sizeBytes);
    }
    [[nodiscard]] std::string text() const {
        return fmt::format("{} · {}", Terminal::counted(count, "item"), ByteDisplay::format(bytes));
    }
};

struct Group {
    std::string category;
    std::vector<const ScanItem*> items;
    Sum sum;
};

/// Groups in the order in which their first items come.
std::vector<Group> grouped(const std::vector<ScanItem>& items) {
    std::vector<Group> groups;
    std::map<std::string_view, std::size_t> places;
    for (const ScanItem& item : items) {
        const auto [place, isNew] = places.emplace(item.category, groups.size());
        if (isNew) {
            groups.push_back({item.category, {}, {}});
        }
        groups[place->second].items.push_back(&item);
        groups[place->second].sum.add(item);
    }
    return groups;
}

std::string shownPath(const ScanItem& item, const FileURL& home) {
    return displayText(PathDisplay::shorten(item.path(), shownComponents, home));
}

std::string marks(const ToolReview& review, const ScanItem& item) {
    std::string text;
    if (review.diff) {
        const ScanDiff::Change change = review.diff->change(item);
        if (change.change == ScanDiff::Change::Case::added) {
            text += "  new";
        } else if (change.change == ScanDiff::Change::Case::grown) {
            text += fmt::format("  grown by {}", ByteDisplay::format(change.growth));
        }
    }
    if (const auto found = review.skippedBefore.find(item.id);
        found != review.skippedBefore.end()) {
        text += fmt::format("  kept on {}", found->second.utcDay());
    }
    return text;
}

Style riskStyle(HeuristicRisk risk) {
    switch (risk) {
    case HeuristicRisk::low:
        return Style::green;
    case HeuristicRisk::medium:
        return Style::yellow;
    case HeuristicRisk::high:
        return Style::red;
    }
    return Style::plain;
}

std::string itemLine(const ToolReview& review, const ScanItem& item, const FileURL& home,
                     std::size_t columns) {
    const PathHeuristic* row = PathHeuristics::heuristic(item.heuristicID);
    const std::string risk =
        row == nullptr
            ? Terminal::padRight("-", 6)
            : Terminal::styled(Terminal::padRight(rawValue(row->risk), 6), riskStyle(row->risk));
    const std::string mark = review.preselected.contains(item.id) ? "[x]" : "[ ]";
    std::string line =
        fmt::format("  {} {}  {}  {}{}\n", mark, Terminal::padLeft(item.formattedSize(), 9), risk,
                    shownPath(item, home), Terminal::styled(marks(review, item), Style::dim));
    if (const auto found = review.refused.find(item.id); found != review.refused.end()) {
        line += Terminal::styled(Terminal::wrapped(found->second, 6, columns), Style::yellow);
    }
    return line;
}

/// Why an item of this row is safe to remove; empty where nobody said.
std::string reason(const ToolReview& review, const std::string& heuristicID) {
    if (const PathHeuristic* row = PathHeuristics::heuristic(heuristicID)) {
        return std::string(row->whySafe);
    }
    const auto own = review.ownReasons.find(heuristicID);
    return own == review.ownReasons.end() ? "" : displayText(own->second);
}

std::string reasons(const ToolReview& review, const Group& group, std::size_t columns) {
    std::string text;
    std::string_view last;
    for (const ScanItem* item : group.items) {
        if (item->heuristicID != last) {
            last = item->heuristicID;
            const std::string why = reason(review, item->heuristicID);
            const std::string lines = Terminal::wrapped(why, 2, columns);
            if (!why.empty() && text.find(lines) == std::string::npos) {
                text += lines;
            }
        }
    }
    return text;
}

} // namespace

std::string reviewText(const ToolReview& review, const FileURL& home, std::size_t columns) {
    if (review.result.items.empty()) {
        return "Nothing to clean was found.\n";
    }
    std::string text;
    Sum total;
    Sum selected;
    for (const Group& group : grouped(review.result.items)) {
        text += fmt::format("{}  {}\n", Terminal::styled(displayText(group.category), Style::bold),
                            Terminal::styled(group.sum.text(), Style::dim));
        text += Terminal::styled(reasons(review, group, columns), Style::dim);
        for (const ScanItem* item : group.items) {
            total.add(*item);
            if (review.preselected.contains(item->id)) {
                selected.add(*item);
            }
            text += itemLine(review, *item, home, columns);
        }
        text += "\n";
    }
    text += fmt::format("Total: {}. Preselected: {}.\n", total.text(), selected.text());
    if (review.diff && review.diff->vanishedCount > 0) {
        text += fmt::format(
            "Since the scan of {}: {} gone ({}).\n", review.diff->previousScanDate.utcDay(),
            Terminal::counted(static_cast<std::size_t>(review.diff->vanishedCount), "item"),
            ByteDisplay::format(review.diff->vanishedBytes));
    }
    return text;
}

std::string selectionText(const std::vector<ScanItem>& items, const FileURL& home) {
    std::string text;
    for (const ScanItem& item : items) {
        // In full: what is about to go must not hide behind an ellipsis.
        text += fmt::format("  {}  {}\n", Terminal::padLeft(item.formattedSize(), 9),
                            displayText(PathDisplay::shorten(item.path(), 1000, home)));
    }
    return text;
}

std::string failuresText(const std::vector<CleanupFailure>& failures, const FileURL& home,
                         std::size_t columns) {
    std::string text;
    for (const CleanupFailure& failure : failures) {
        text += fmt::format("{} {}\n", Terminal::styled("failed ", Style::red),
                            shownPath(failure.item, home));
        text += Terminal::wrapped(failure.error, 8, columns);
        text += Terminal::wrapped(guidance(failure.kind), 8, columns);
    }
    return text;
}

std::string outcomeText(const CleanupResult& result, const FileURL& home, std::size_t columns) {
    std::string text = failuresText(result.failed, home, columns);
    for (const CleanupSkip& skip : result.skipped) {
        text += fmt::format("skipped {}\n        {}\n", shownPath(skip.item, home),
                            description(skip.reason));
    }
    Sum done;
    for (const ScanItem& item : result.succeeded) {
        done.add(item);
    }
    const std::string size = ByteDisplay::formatAmount(done.bytes);
    if (result.mode == DeletionMode::trash) {
        text +=
            fmt::format("Moved {} to the Bin ({}).\n", Terminal::counted(done.count, "item"), size);
    } else {
        text += fmt::format("Deleted {} ({}).\n", Terminal::counted(done.count, "item"), size);
    }
    if (result.spaceFreedOnDisk) {
        text += fmt::format("Free space on the disk grew by {}.\n",
                            ByteDisplay::format(*result.spaceFreedOnDisk));
    }
    return text;
}

} // namespace korvane
