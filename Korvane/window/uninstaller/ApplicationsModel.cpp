#include "Korvane/window/uninstaller/ApplicationsModel.h"

#include "Korvane/window/support/Texts.h"
#include "Korvane/window/tool/ToolModel.h"
#include "KorvaneCore/foundation/ComparisonKeys.h"
#include "KorvaneCore/foundation/Text.h"
#include "KorvaneCore/scanners/ApplicationData.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace korvane {

ApplicationsModel::ApplicationsModel(Services& services,
                                     std::shared_ptr<const SoftwareInventory> inventory,
                                     QObject* parent)
    : QAbstractListModel(parent), services_(services),
      inventory_(inventory ? std::move(inventory) : SoftwareInventory::standard(services.home())) {}

int ApplicationsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant ApplicationsModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const Application& one = applications_[rows_[static_cast<std::size_t>(index.row())]];
    switch (role) {
    case Qt::DisplayRole:
    case Name:
        return one.name;
    case Identifier:
        return one.identifier;
    case Place:
        return one.place;
    case Note:
        return one.isRemovable ? QString() : tr("Data only");
    case Spoken:
        return tr("%1, %2, %3").arg(one.name, one.identifier, one.place);
    default:
        return {};
    }
}

QHash<int, QByteArray> ApplicationsModel::roleNames() const {
    return {{Name, "name"},
            {Identifier, "identifier"},
            {Place, "place"},
            {Note, "note"},
            {Spoken, "spoken"}};
}

QString ApplicationsModel::countText() const {
    const QString shown = Texts::count(rowCount());
    const auto all = static_cast<qint64>(applications_.size());
    return rowCount() == all ? all == 1 ? tr("1 application") : tr("%1 applications").arg(shown)
                             : tr("%1 of %2 applications").arg(shown, Texts::count(all));
}

bool ApplicationsModel::choose(int row, ToolModel* tool) const {
    if (row < 0 || row >= rowCount() || tool == nullptr) {
        return false;
    }
    const Application& one = applications_[rows_[static_cast<std::size_t>(row)]];
    tool->setApplication(one.subject,
                         one.place.isEmpty() ? one.name : tr("%1, %2").arg(one.name, one.place));
    return true;
}

void ApplicationsModel::setFilter(const QString& filter) {
    if (filter != filter_) {
        filter_ = filter;
        beginResetModel();
        applyFilter();
        endResetModel();
        emit filterChanged();
        emit changed();
    }
}

void ApplicationsModel::applyFilter() {
    rows_.clear();
    for (std::size_t i = 0; i < applications_.size(); ++i) {
        const Application& one = applications_[i];
        const bool isShown = one.name.contains(filter_, Qt::CaseInsensitive) ||
                             one.identifier.contains(filter_, Qt::CaseInsensitive) ||
                             one.place.contains(filter_, Qt::CaseInsensitive);
        if (isShown) {
            rows_.push_back(i);
        }
    }
}

void ApplicationsModel::refresh() {
    isLoading_ = true;
    emit changed();
    work_.start([this, inventory = inventory_, home = services_.home()](const Work::Post&) {
        return [this, listing = read(*inventory, home)] { show(listing); };
    });
}

ApplicationsModel::Listing ApplicationsModel::read(const SoftwareInventory& inventory,
                                                   const FileURL& home) {
    SoftwareListing software = inventory.read();
    Listing listing{{}, software.isComplete};
    // Of several at one place the tool would take the first, so the others are not offered.
    std::unordered_set<std::string> places;
    for (const InstalledApplication& one : software.applications) {
        const bool hasPlace = one.location.isAbsolute();
        if (hasPlace && !places.insert(comparisonKeys(one.location).back()).second) {
            continue;
        }
        const std::string& title = one.name.empty() ? one.identifier : one.name;
        listing.applications.push_back({.name = Texts::data(title),
                                        .identifier = Texts::data(one.identifier),
                                        .place = Texts::path(one.location.path(), home),
                                        .subject = hasPlace                 ? one.location.path()
                                                   : one.identifier.empty() ? one.name
                                                                            : one.identifier,
                                        .isRemovable = applicationItem(one, home, "").has_value()});
    }
    std::stable_sort(listing.applications.begin(), listing.applications.end(),
                     [](const Application& a, const Application& b) {
                         return QString::localeAwareCompare(a.name.toCaseFolded(),
                                                            b.name.toCaseFolded()) < 0;
                     });
    return listing;
}

void ApplicationsModel::show(Listing listing) {
    beginResetModel();
    applications_ = std::move(listing.applications);
    isComplete_ = listing.isComplete;
    isLoading_ = false;
    applyFilter();
    endResetModel();
    emit changed();
}

} // namespace korvane
