#include "Korvane/window/tool/ResultTexts.h"

#include "Korvane/tools/Preselection.h"
#include "Korvane/window/support/Texts.h"
#include "KorvaneCore/foundation/CheckedArithmetic.h"
#include "KorvaneCore/scan/PathHeuristicRows.h"
#include "KorvaneCore/scan/PathHeuristics.h"

#include <QUrl>
#include <algorithm>

namespace korvane {

namespace {

const PathHeuristic* rowOf(const ScanItem& item) {
    return PathHeuristics::heuristic(item.heuristicID);
}

} // namespace

bool isSimilarImage(const ScanItem& item) {
    return item.heuristicID == PathHeuristics::similarImagesNearDuplicate.id;
}

QString ResultTexts::groupTitle(const ReviewTable::Group& group) const {
    const ScanItem& first = table_.items()[group.items.front()];
    if (isDuplicate(first)) {
        // The category is a digest, which tells a person nothing.
        return Texts::data(first.url.lastPathComponent());
    }
    return isSimilarImage(first) ? tr("Looks like %1").arg(Texts::data(group.category))
                                 : Texts::data(group.category);
}

QString ResultTexts::groupReason(const ReviewTable::Group& group) const {
    const ScanItem& first = table_.items()[group.items.front()];
    if (isDuplicate(first)) {
        return tr("%n copies of the same content, %1 each", nullptr,
                  static_cast<int>(group.items.size()))
            .arg(Texts::bytes(first.sizeBytes));
    }
    // One sentence for the group where all its items have the same; else each has its own.
    const QString reason = this->reason(group.items.front());
    const bool isCommon =
        std::all_of(group.items.begin(), group.items.end(), [&](std::size_t item) {
            return table_.items()[item].heuristicID == first.heuristicID;
        });
    return isCommon ? reason : tr("Each with its own reason; open the details of an item.");
}

QString ResultTexts::reason(std::size_t item) const {
    const ScanItem& shown = table_.items()[item];
    if (const PathHeuristic* row = rowOf(shown)) {
        return Texts::sentence(row->whySafe);
    }
    const auto own = table_.review().ownReasons.find(shown.heuristicID);
    return own == table_.review().ownReasons.end() ? QString() : Texts::data(own->second);
}

QString ResultTexts::refusal(const ScanItem& item) const {
    const auto refused = table_.review().refused.find(item.id);
    return refused == table_.review().refused.end() ? QString() : Texts::sentence(refused->second);
}

QString ResultTexts::reasonOrRefusal(std::size_t item) const {
    const QString refused = refusal(table_.items()[item]);
    return refused.isEmpty() ? reason(item) : refused;
}

QString ResultTexts::mark(std::size_t item) const {
    const ScanItem& shown = table_.items()[item];
    const ToolReview& review = table_.review();
    if (review.refused.contains(shown.id)) {
        return tr("Protected");
    }
    if (selection_.isKeeper(table_, item)) {
        return tr("Stays");
    }
    if (review.diff) {
        const ScanDiff::Change change = review.diff->change(shown);
        if (change.change == ScanDiff::Change::Case::added) {
            return tr("New");
        }
        if (change.change == ScanDiff::Change::Case::grown) {
            return tr("+%1").arg(Texts::bytes(change.growth));
        }
    }
    const auto skipped = review.skippedBefore.find(shown.id);
    return skipped == review.skippedBefore.end() ? QString() : tr("Kept before");
}

QString ResultTexts::picture(const ScanItem& item) const {
    return isSimilarImage(item)
               ? QStringLiteral("image://thumbnail/") +
                     QUrl::toPercentEncoding(Texts::sentence(item.url.absoluteString()))
               : QString();
}

QString ResultTexts::pictureKept(const ReviewTable::Group& group) const {
    ScanItem kept = table_.items()[group.items.front()];
    if (!isSimilarImage(kept)) {
        return {};
    }
    kept.url = FileURL(expandingTilde(group.category, home_));
    return picture(kept);
}

QString ResultTexts::changes() const {
    const std::optional<ScanDiff>& diff = table_.review().diff;
    if (!diff) {
        return {};
    }
    std::int64_t grown = 0;
    for (const auto& [path, bytes] : diff->growth) {
        grown = checkedAdd(grown, bytes);
    }
    QStringList parts;
    if (!diff->newPaths.empty()) {
        parts << tr("%1 new").arg(Texts::count(static_cast<std::int64_t>(diff->newPaths.size())));
    }
    if (grown > 0) {
        parts << tr("grown by %1").arg(Texts::bytes(grown));
    }
    if (diff->vanishedCount > 0) {
        parts << tr("%1 gone").arg(Texts::count(diff->vanishedCount));
    }
    const QString since = Texts::dayAndTime(diff->previousScanDate);
    return parts.isEmpty() ? tr("Nothing has changed since %1").arg(since)
                           : tr("Since %1: %2").arg(since, parts.join(QStringLiteral(", ")));
}

QVariantList ResultTexts::breakdown() const {
    std::int64_t total = 0;
    std::vector<const ReviewTable::Group*> groups;
    for (const ReviewTable::Group& group : table_.groups()) {
        total = checkedAdd(total, group.reclaimable);
        groups.push_back(&group);
    }
    std::stable_sort(groups.begin(), groups.end(),
                     [](const auto* a, const auto* b) { return a->reclaimable > b->reclaimable; });
    QVariantList parts;
    const auto add = [&](const QString& title, std::int64_t bytes) {
        parts.append(QVariantMap{
            {QStringLiteral("title"), title},
            {QStringLiteral("text"), Texts::bytes(bytes)},
            {QStringLiteral("share"), static_cast<double>(bytes) / static_cast<double>(total)}});
    };
    constexpr std::size_t named = 4;
    std::int64_t rest = 0;
    for (std::size_t i = 0; total > 0 && i < groups.size(); ++i) {
        if (i < named || groups.size() == named + 1) {
            add(groupTitle(*groups[i]), groups[i]->reclaimable);
        } else {
            rest = checkedAdd(rest, groups[i]->reclaimable);
        }
    }
    if (rest > 0) {
        add(tr("Other"), rest);
    }
    return parts;
}

QVariantMap ResultTexts::details(const ReviewTable::Group& group, std::size_t item) const {
    const ScanItem& shown = table_.items()[item];
    const PathHeuristic* rule = rowOf(shown);
    const auto skipped = table_.review().skippedBefore.find(shown.id);
    return {
        {QStringLiteral("title"), Texts::data(shown.url.lastPathComponent())},
        {QStringLiteral("path"), Texts::path(shown.path(), home_)},
        {QStringLiteral("copyPath"), Texts::sentence(shown.path())},
        {QStringLiteral("url"), Texts::sentence(shown.url.absoluteString())},
        {QStringLiteral("sizeText"), Texts::bytes(shown.sizeBytes)},
        {QStringLiteral("dateText"),
         shown.lastModified ? tr("changed %1").arg(Texts::dayAndTime(*shown.lastModified))
                            : QString()},
        {QStringLiteral("risk"), static_cast<int>(table_.risk(item))},
        {QStringLiteral("riskExplanation"), Texts::sentence(explanation(table_.risk(item)))},
        {QStringLiteral("reason"), reason(item)},
        {QStringLiteral("rule"), rule == nullptr ? QString() : Texts::sentence(rule->displayName)},
        {QStringLiteral("refusal"), refusal(shown)},
        {QStringLiteral("keptText"),
         skipped == table_.review().skippedBefore.end()
             ? QString()
             : tr("You kept it on %1.").arg(Texts::day(skipped->second))},
        {QStringLiteral("picture"), picture(shown)},
        {QStringLiteral("pictureKept"), pictureKept(group)},
        {QStringLiteral("keptPath"),
         isSimilarImage(shown) ? Texts::data(shown.category) : QString()},
        {QStringLiteral("isDuplicate"), isDuplicate(shown)},
    };
}

} // namespace korvane
