#include "Korvane/window/protection/CatalogueModel.h"

#include "Korvane/audit/ModuleNames.h"
#include "Korvane/window/support/Texts.h"
#include "KorvaneCore/foundation/Text.h"
#include "KorvaneCore/scan/PathHeuristics.h"

#include <algorithm>

namespace korvane {

CatalogueModel::CatalogueModel(QObject* parent) : QAbstractListModel(parent) {
    for (const PathHeuristic* row : PathHeuristics::all()) {
        std::string words;
        for (const std::string_view part : {row->displayName, row->category, row->pathPattern,
                                            row->whySafe, moduleName(row->scannerID), row->id}) {
            words += part;
            words += '\n';
        }
        places_.push_back({row, composedLowercase(words)});
        if (std::find(scanners_.begin(), scanners_.end(), row->scannerID) == scanners_.end()) {
            scanners_.push_back(row->scannerID);
        }
    }
    std::sort(scanners_.begin(), scanners_.end(),
              [](std::string_view a, std::string_view b) { return moduleName(a) < moduleName(b); });
    filter();
}

int CatalogueModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant CatalogueModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const PathHeuristic& row = *shown_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case RowID:
        return Texts::sentence(row.id);
    case Qt::DisplayRole:
    case Name:
        return Texts::sentence(row.displayName);
    case Category:
        return Texts::sentence(row.category);
    case Pattern:
        return Texts::sentence(row.pathPattern);
    case Risk:
        return static_cast<int>(row.risk);
    case RiskExplanation:
        return Texts::sentence(row.riskExplanation());
    case WhySafe:
        return Texts::sentence(row.whySafe);
    case ToolName:
        return Texts::sentence(moduleName(row.scannerID));
    case ScannerID:
        return Texts::sentence(row.scannerID);
    case Spoken:
        return tr("%1, %2, risk %3")
            .arg(Texts::sentence(row.displayName), Texts::sentence(row.pathPattern),
                 Texts::sentence(rawValue(row.risk)));
    default:
        return {};
    }
}

QHash<int, QByteArray> CatalogueModel::roleNames() const {
    return {{RowID, "rowID"},     {Name, "name"},         {Category, "category"},
            {Pattern, "pattern"}, {Risk, "risk"},         {RiskExplanation, "riskExplanation"},
            {WhySafe, "whySafe"}, {ToolName, "toolName"}, {ScannerID, "scannerID"},
            {Spoken, "spoken"}};
}

QVariantMap CatalogueModel::get(int row) const {
    QVariantMap values;
    if (row >= 0 && row < count()) {
        const QHash<int, QByteArray> names = roleNames();
        for (auto role = names.begin(); role != names.end(); ++role) {
            values.insert(QString::fromLatin1(role.value()), data(index(row), role.key()));
        }
    }
    return values;
}

void CatalogueModel::setQuery(const QString& query) {
    if (query != query_) {
        query_ = query;
        filter();
    }
}

void CatalogueModel::setToolIndex(int index) {
    if (index != toolIndex_ && index >= 0 && index <= static_cast<int>(scanners_.size())) {
        toolIndex_ = index;
        filter();
    }
}

void CatalogueModel::setRiskIndex(int index) {
    if (index != riskIndex_ && index >= 0 && index < risks().size()) {
        riskIndex_ = index;
        filter();
    }
}

void CatalogueModel::clearFilters() {
    query_.clear();
    toolIndex_ = 0;
    riskIndex_ = 0;
    filter();
}

QStringList CatalogueModel::tools() const {
    QStringList names{tr("All tools")};
    std::transform(scanners_.begin(), scanners_.end(), std::back_inserter(names),
                   [](std::string_view id) { return Texts::sentence(moduleName(id)); });
    return names;
}

QStringList CatalogueModel::risks() const {
    return {tr("Any risk"), tr("Low risk"), tr("Medium risk"), tr("High risk")};
}

QString CatalogueModel::countText() const {
    const QString all = Texts::count(static_cast<std::int64_t>(places_.size()));
    return shown_.size() == places_.size() ? tr("%1 places").arg(all)
                                           : tr("%1 of %2 places").arg(Texts::count(count()), all);
}

void CatalogueModel::filter() {
    // Every word must be there, wherever: people type what they remember.
    std::vector<std::string> words;
    for (const QString& word : query_.split(u' ', Qt::SkipEmptyParts)) {
        words.push_back(composedLowercase(word.toStdString()));
    }
    beginResetModel();
    shown_.clear();
    for (const Place& place : places_) {
        const bool isOfTool =
            toolIndex_ == 0 ||
            place.row->scannerID == scanners_[static_cast<std::size_t>(toolIndex_ - 1)];
        const bool isOfRisk =
            riskIndex_ == 0 || static_cast<int>(place.row->risk) == riskIndex_ - 1;
        if (isOfTool && isOfRisk && std::all_of(words.begin(), words.end(), [&](const auto& word) {
                return place.searchKey.find(word) != std::string::npos;
            })) {
            shown_.push_back(place.row);
        }
    }
    endResetModel();
    emit filterChanged();
}

} // namespace korvane
