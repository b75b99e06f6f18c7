#include "Korvane/window/tool/ResultModel.h"

#include "Korvane/tools/Preselection.h"
#include "Korvane/window/support/Texts.h"
#include "KorvaneCore/foundation/CheckedArithmetic.h"

#include <algorithm>
#include <iterator>

namespace korvane {

ResultModel::ResultModel(FileURL home, QObject* parent)
    : QAbstractListModel(parent), home_(std::move(home)) {}

int ResultModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QHash<int, QByteArray> ResultModel::roleNames() const {
    return {{IsGroup, "isGroup"},   {Title, "title"},       {Subtitle, "subtitle"},
            {SizeText, "sizeText"}, {DateText, "dateText"}, {Risk, "risk"},
            {Reason, "reason"},     {Ticked, "ticked"},     {Tickable, "tickable"},
            {Open, "open"},         {IconName, "iconName"}, {Count, "count"},
            {Mark, "mark"},         {Picture, "picture"},   {Spoken, "spoken"}};
}

QVariant ResultModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const Row& row = rows_[static_cast<std::size_t>(index.row())];
    return row.item < 0 ? valueOfGroup(row, role) : valueOfItem(row, role);
}

std::size_t ResultModel::itemIndex(const Row& row) const {
    return table_.groups()[row.group].items[static_cast<std::size_t>(row.item)];
}

const ScanItem* ResultModel::itemAt(int row) const {
    if (row < 0 || row >= rowCount() || isGroup(row)) {
        return nullptr;
    }
    return &table_.items()[itemIndex(rows_[static_cast<std::size_t>(row)])];
}

Qt::CheckState ResultModel::groupState(const ReviewTable::Group& group) const {
    std::size_t ticked = 0;
    std::size_t offered = 0;
    for (const std::size_t item : group.items) {
        ticked += selection_.isTicked(item) ? 1U : 0U;
        offered += selection_.isOffered(item) ? 1U : 0U;
    }
    if (ticked == 0) {
        return Qt::Unchecked;
    }
    // Of duplicates one always stays: all but one is as much as there is to tick.
    const bool isFull = ticked == offered || (isDuplicate(table_.items()[group.items.front()]) &&
                                              ticked + 1 == group.total);
    return isFull ? Qt::Checked : Qt::PartiallyChecked;
}

QVariant ResultModel::valueOfGroup(const Row& row, int role) const {
    const ReviewTable::Group& group = table_.groups()[row.group];
    const ScanItem& first = table_.items()[group.items.front()];
    switch (role) {
    case IsGroup:
        return true;
    case Qt::DisplayRole:
    case Title:
        return texts().groupTitle(group);
    case Subtitle:
    case Reason:
        return texts().groupReason(group);
    case SizeText:
        return Texts::bytes(group.reclaimable);
    case Risk:
        return -1;
    case Ticked:
        return groupState(group);
    case Tickable:
        return std::any_of(group.items.begin(), group.items.end(),
                           [&](std::size_t item) { return selection_.isOffered(item); });
    case Open:
        return !closed_.contains(group.category);
    case IconName:
        return isDuplicate(first)      ? QStringLiteral("duplicates")
               : isSimilarImage(first) ? QStringLiteral("images")
                                       : QStringLiteral("folder");
    case Count:
        return Texts::count(static_cast<std::int64_t>(group.items.size()));
    case Picture:
        return texts().pictureKept(group);
    case Spoken:
        return tr("%1, %2, %3, %4")
            .arg(texts().groupTitle(group),
                 Texts::items(static_cast<std::int64_t>(group.items.size())),
                 Texts::bytes(group.reclaimable),
                 closed_.contains(group.category) ? tr("collapsed") : tr("expanded"));
    case DateText:
    case Mark:
        return QString();
    default:
        return {};
    }
}

QVariant ResultModel::valueOfItem(const Row& row, int role) const {
    const std::size_t item = itemIndex(row);
    const ScanItem& shown = table_.items()[item];
    const auto date = [&] {
        return shown.lastModified ? Texts::day(*shown.lastModified) : QString();
    };
    switch (role) {
    case IsGroup:
    case Open:
        return false;
    case Qt::DisplayRole:
    case Title:
        return Texts::data(shown.url.lastPathComponent());
    case Subtitle:
        return Texts::path(shown.url.deletingLastPathComponent().path(), home_);
    case SizeText:
        return Texts::bytes(shown.sizeBytes);
    case DateText:
        return date();
    case Risk:
        return static_cast<int>(table_.risk(item));
    case Reason:
        return texts().reasonOrRefusal(item);
    case Ticked:
        return selection_.isTicked(item) ? Qt::Checked : Qt::Unchecked;
    case Tickable:
        return selection_.isOffered(item);
    case IconName:
        return shown.isDirectory ? QStringLiteral("folder") : QStringLiteral("file");
    case Count:
        return QString();
    case Mark:
        return texts().mark(item);
    case Picture:
        return texts().picture(shown);
    case Spoken:
        return spokenItem(item, date());
    default:
        return {};
    }
}

QString ResultModel::spokenItem(std::size_t item, const QString& date) const {
    const ScanItem& shown = table_.items()[item];
    // With its folder: copies of a file often share the name.
    QStringList parts{tr("%1 in %2")
                          .arg(Texts::data(shown.url.lastPathComponent()),
                               Texts::path(shown.url.deletingLastPathComponent().path(), home_)),
                      Texts::bytes(shown.sizeBytes), date,
                      tr("%1 risk").arg(Texts::sentence(rawValue(table_.risk(item)))),
                      texts().mark(item)};
    parts.removeAll(QString());
    return parts.join(QStringLiteral(", "));
}

void ResultModel::show(ReviewTable table, ReviewSelection selection) {
    beginResetModel();
    table_ = std::move(table);
    selection_ = std::move(selection);
    filter_.clear();
    relayout();
    endResetModel();
    emit shownChanged();
    emit filterChanged();
    emit orderChanged();
    emit selectionChanged();
}

void ResultModel::update(ReviewTable table) {
    ReviewSelection selection(table, selection_.ids(table_));
    table.sort(table_.order(), table_.isDescending());
    table.sortGroups(table_.groupOrder());
    table.find(filter_.toStdString());
    beginResetModel();
    table_ = std::move(table);
    selection_ = std::move(selection);
    relayout();
    endResetModel();
    emit shownChanged();
    emit selectionChanged();
}

void ResultModel::clear() {
    show(ReviewTable(), ReviewSelection());
}

void ResultModel::relayout() {
    rows_.clear();
    groupRows_.clear();
    for (std::size_t group = 0; group < table_.groups().size(); ++group) {
        const ReviewTable::Group& shown = table_.groups()[group];
        groupRows_.push_back(static_cast<int>(rows_.size()));
        rows_.push_back({static_cast<std::uint32_t>(group), -1});
        if (!closed_.contains(shown.category)) {
            for (std::size_t item = 0; item < shown.items.size(); ++item) {
                rows_.push_back(
                    {static_cast<std::uint32_t>(group), static_cast<std::int32_t>(item)});
            }
        }
    }
}

std::unordered_set<UUID> ResultModel::selectedIDs() const {
    return selection_.ids(table_);
}

bool ResultModel::isGroup(int row) const {
    return row >= 0 && row < rowCount() && rows_[static_cast<std::size_t>(row)].item < 0;
}

int ResultModel::groupRow(int row) const {
    return row < 0 || row >= rowCount() ? -1
                                        : groupRows_[rows_[static_cast<std::size_t>(row)].group];
}

void ResultModel::tellSelection(int first, int last) {
    if (first <= last) {
        emit dataChanged(index(first), index(last), {Ticked, Mark, Spoken});
    }
    emit selectionChanged();
}

void ResultModel::toggle(int row) {
    if (row < 0 || row >= rowCount()) {
        return;
    }
    const Row where = rows_[static_cast<std::size_t>(row)];
    const ReviewTable::Group& group = table_.groups()[where.group];
    if (where.item < 0) {
        selection_.tickAll(table_, group.items, groupState(group) != Qt::Checked);
    } else {
        const std::size_t item = itemIndex(where);
        if (!selection_.tick(table_, item, !selection_.isTicked(item))) {
            const auto sentence = table_.review().refused.find(table_.items()[item].id);
            emit refused(sentence == table_.review().refused.end()
                             ? tr("One copy always stays. Choose another one to keep first.")
                             : Texts::sentence(sentence->second));
        }
    }
    const int head = groupRows_[where.group];
    const bool isOpen = !closed_.contains(group.category);
    tellSelection(head, isOpen ? head + static_cast<int>(group.items.size()) : head);
}

void ResultModel::keep(int row) {
    const ScanItem* item = itemAt(row);
    if (item == nullptr || !isDuplicate(*item)) {
        return;
    }
    selection_.keep(table_, itemIndex(rows_[static_cast<std::size_t>(row)]));
    tellSelection(0, rowCount() - 1);
}

void ResultModel::setOpen(int row, bool open) {
    if (!isGroup(row) || data(index(row), Open).toBool() == open) {
        return;
    }
    const std::uint32_t number = rows_[static_cast<std::size_t>(row)].group;
    const ReviewTable::Group& group = table_.groups()[number];
    const int count = static_cast<int>(group.items.size());
    const auto place = rows_.begin() + row + 1;
    if (open) {
        std::vector<Row> items;
        for (std::int32_t item = 0; item < count; ++item) {
            items.push_back({number, item});
        }
        beginInsertRows({}, row + 1, row + count);
        closed_.erase(group.category);
        rows_.insert(place, items.begin(), items.end());
    } else {
        beginRemoveRows({}, row + 1, row + count);
        closed_.insert(group.category);
        rows_.erase(place, place + count);
    }
    for (std::size_t later = number + 1; later < groupRows_.size(); ++later) {
        groupRows_[later] += open ? count : -count;
    }
    if (open) {
        endInsertRows();
    } else {
        endRemoveRows();
    }
    emit dataChanged(index(row), index(row), {Open, Spoken});
}

void ResultModel::toggleOpen(int row) {
    setOpen(row, !data(index(row), Open).toBool());
}

void ResultModel::selectSafe() {
    for (const ReviewTable::Group& group : table_.groups()) {
        selection_.tickPreselected(table_, group.items);
    }
    tellSelection(0, rowCount() - 1);
}

void ResultModel::selectShown() {
    for (const ReviewTable::Group& group : table_.groups()) {
        selection_.tickAll(table_, group.items, true);
    }
    tellSelection(0, rowCount() - 1);
}

void ResultModel::selectNone() {
    selection_.clear(table_);
    tellSelection(0, rowCount() - 1);
}

void ResultModel::sortBy(Order order) {
    const bool again = order == this->order();
    beginResetModel();
    table_.sort(static_cast<ReviewOrder>(order), again ? !descending() : order != ByName);
    relayout();
    endResetModel();
    emit orderChanged();
}

void ResultModel::setGroupOrder(int order) {
    if (order < 0 || order > static_cast<int>(GroupOrder::count) || order == groupOrder()) {
        return;
    }
    beginResetModel();
    table_.sortGroups(static_cast<GroupOrder>(order));
    relayout();
    endResetModel();
    emit orderChanged();
}

void ResultModel::setFilter(const QString& filter) {
    if (filter == filter_) {
        return;
    }
    beginResetModel();
    filter_ = filter;
    table_.find(filter.toStdString());
    relayout();
    endResetModel();
    emit filterChanged();
    emit shownChanged();
    emit selectionChanged();
}

int ResultModel::totalCount() const {
    return static_cast<int>(table_.items().size());
}

int ResultModel::foundCount() const {
    return static_cast<int>(table_.foundCount());
}

QString ResultModel::totalText() const {
    std::int64_t bytes = 0;
    for (const ReviewTable::Group& group : table_.groups()) {
        bytes = checkedAdd(bytes, group.reclaimable);
    }
    return Texts::bytes(bytes);
}

QString ResultModel::countText() const {
    if (filter_.isEmpty()) {
        return tr("in %1").arg(Texts::items(totalCount()));
    }
    return tr("in %1 of %2").arg(Texts::count(foundCount()), Texts::items(totalCount()));
}

ResultModel::Order ResultModel::order() const {
    return static_cast<Order>(table_.order());
}

QString ResultModel::selectedText() const {
    return tr("%1 selected").arg(Texts::bytes(selection_.bytes()));
}

std::size_t ResultModel::hiddenCount() const {
    if (filter_.isEmpty()) {
        return 0;
    }
    std::size_t shown = 0;
    for (const ReviewTable::Group& group : table_.groups()) {
        shown += static_cast<std::size_t>(
            std::count_if(group.items.begin(), group.items.end(),
                          [&](std::size_t item) { return selection_.isTicked(item); }));
    }
    return selection_.count() - shown;
}

int ResultModel::selectionWarning() const {
    return hiddenCount() > 0 ? 1 : selection_.highRiskCount() > 0 ? 2 : 0;
}

QString ResultModel::selectionDetail() const {
    const QString all = Texts::items(static_cast<std::int64_t>(selection_.count()));
    if (const std::size_t hidden = hiddenCount(); hidden > 0) {
        return tr("%1, %2 not shown by the search")
            .arg(all, Texts::count(static_cast<std::int64_t>(hidden)));
    }
    if (selection_.highRiskCount() > 0) {
        return tr("%1, %2 of high risk")
            .arg(all, Texts::count(static_cast<std::int64_t>(selection_.highRiskCount())));
    }
    return selection_.count() == 0 ? tr("Tick what may go.") : tr("%1, none of high risk").arg(all);
}

QString ResultModel::changeText() const {
    return texts().changes();
}

QVariantList ResultModel::breakdown() const {
    return texts().breakdown();
}

QVariantMap ResultModel::details(int row) const {
    if (row < 0 || row >= rowCount() || isGroup(row)) {
        return {};
    }
    const Row& where = rows_[static_cast<std::size_t>(row)];
    QVariantMap values = texts().details(table_.groups()[where.group], itemIndex(where));
    values.insert(QStringLiteral("row"), row);
    return values;
}

bool ResultModel::holdsDuplicates() const {
    return !table_.items().empty() && isDuplicate(table_.items().front());
}

bool ResultModel::holdsPictures() const {
    return !table_.items().empty() && isSimilarImage(table_.items().front());
}

} // namespace korvane
