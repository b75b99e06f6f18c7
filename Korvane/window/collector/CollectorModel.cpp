#include "Korvane/window/collector/CollectorModel.h"

#include "Korvane/collector/CollectorText.h"
#include "Korvane/tools/Services.h"
#include "Korvane/window/support/Texts.h"
#include "Korvane/window/tool/ToolModel.h"

namespace korvane {

CollectorModel::CollectorModel(CollectorStore& store, Services& services, QObject* parent)
    : QAbstractListModel(parent), store_(store), services_(services), outcome_(services.home()) {}

int CollectorModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QHash<int, QByteArray> CollectorModel::roleNames() const {
    return {{Title, "title"}, {Path, "path"}, {SizeText, "sizeText"}, {Category, "category"}};
}

QVariant CollectorModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const ScanItem& item = items_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
    case Title:
        return Texts::data(item.url.lastPathComponent());
    case Path:
        return Texts::path(item.path(), services_.home());
    case SizeText:
        return Texts::bytes(item.sizeBytes);
    case Category:
        return Texts::data(item.category);
    default:
        return {};
    }
}

DeletionMode CollectorModel::mode() const {
    return DeletionPreference::current(services_.defaults());
}

QString CollectorModel::countText() const {
    return Texts::count(count());
}

QString CollectorModel::name() const {
    return count() == 0 ? tr("Collector, empty") : tr("Collector, %1").arg(Texts::items(count()));
}

QString CollectorModel::summary() const {
    return tr("%1 %2").arg(Texts::items(count()), Texts::sentence(CollectorText::staged));
}

QString CollectorModel::totalText() const {
    return Texts::bytes(store_.totalBytes());
}

QString CollectorModel::deleteTitle() const {
    return Texts::sentence(CollectorText::deleteTitle(mode(), static_cast<std::size_t>(count())));
}

QString CollectorModel::clearTitle() {
    return Texts::sentence(CollectorText::clear);
}

QString CollectorModel::removeTitle() {
    return Texts::sentence(CollectorText::removeItem);
}

QString CollectorModel::restoreTitle() {
    return Texts::sentence(CollectorText::restoreCentre);
}

void CollectorModel::reload() {
    pending_.reset();
    beginResetModel();
    items_ = store_.items();
    endResetModel();
    emit changed();
}

void CollectorModel::stageSelection(ToolModel* tool) {
    if (tool != nullptr && !isDeleting_) {
        store_.stage(tool->itemsToCollect(tool->results()->selectedIDs()));
        reload();
    }
}

void CollectorModel::stageRow(ToolModel* tool, int row) {
    const ScanItem* item = tool == nullptr ? nullptr : tool->results()->itemAt(row);
    if (item != nullptr && !isDeleting_) {
        store_.stage(tool->itemsToCollect({item->id}));
        reload();
    }
}

void CollectorModel::removeRow(int row) {
    if (row >= 0 && row < count() && !isDeleting_) {
        store_.remove(items_[static_cast<std::size_t>(row)].id);
        reload();
    }
}

void CollectorModel::clear() {
    if (!isDeleting_) {
        store_.clear();
        reload();
    }
}

QVariantMap CollectorModel::prepare() {
    pending_.reset();
    if (items_.empty() || isDeleting_) {
        return {};
    }
    const DeletionMode mode = this->mode();
    const Confirmation confirmation = makeCollectorConfirmation(mode, items_);
    pending_ = mode;
    return {{QStringLiteral("count"), countText()},
            {QStringLiteral("size"), Texts::bytes(confirmation.selectedBytes)},
            {QStringLiteral("question"), Texts::sentence(confirmation.question)},
            {QStringLiteral("consequence"), Texts::sentence(confirmation.consequence)},
            {QStringLiteral("action"), Texts::sentence(confirmation.actionTitle)},
            {QStringLiteral("permanent"), mode == DeletionMode::permanent},
            {QStringLiteral("warning"), QString()}};
}

void CollectorModel::confirm() {
    if (!pending_ || isDeleting_) {
        return;
    }
    const DeletionMode mode = *pending_;
    pending_.reset();
    isDeleting_ = true;
    fraction_ = 0;
    emit deletingChanged();
    emit progressChanged();
    work_.start([this, mode, &store = store_,
                 &services = services_](const Work::Post& post) -> Work::Step {
        ProgressThrottle throttle;
        const auto result = store.deleteAll(mode, services, [&](const CleanupProgress& progress) {
            if (throttle.isDue() && progress.total > 0) {
                post([this, progress] {
                    fraction_ = static_cast<double>(progress.processed) /
                                static_cast<double>(progress.total);
                    emit progressChanged();
                });
            }
        });
        return [this, result, stopped = Task::isCancelled()] {
            isDeleting_ = false;
            emit deletingChanged();
            reload();
            if (result) {
                outcome_.show(*result, stopped);
                emit finished();
            }
        };
    });
}

} // namespace korvane
