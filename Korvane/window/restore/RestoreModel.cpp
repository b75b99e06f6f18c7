#include "Korvane/window/restore/RestoreModel.h"

#include "Korvane/audit/AuditText.h"
#include "Korvane/audit/ModuleNames.h"
#include "Korvane/cleaning/RestoreText.h"
#include "Korvane/window/audit/ModuleIcon.h"
#include "Korvane/window/support/Texts.h"

#include <memory>

namespace korvane {

RestoreModel::RestoreModel(Services& services, QObject* parent)
    : QAbstractListModel(parent), services_(services), run_(services) {
    connect(&run_, &RestoreRun::finished, this, &RestoreModel::restored);
}

int RestoreModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant RestoreModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const auto number = static_cast<std::size_t>(index.row());
    const Row& row = rows_[number];
    const Operation& operation = operations_[row.operation];
    return row.item < 0 ? operationData(operation, number, role)
                        : valueOfItem(operation, static_cast<std::size_t>(row.item), role);
}

QVariant RestoreModel::operationData(const Operation& operation, std::size_t row, int role) const {
    const AuditEntry& entry = operation.op.entry;
    switch (role) {
    case IsOperation:
    case Restorable:
        return true;
    case Qt::DisplayRole:
    case Title:
        return Texts::data(moduleName(entry.scannerID));
    case Subtitle:
        return Texts::dayAndTime(entry.timestamp);
    case CountText:
        return Texts::sentence(RestoreText::canBeRestored(operation.op.restorableCount));
    case SizeText: {
        const auto bytes = RestoreText::restorableBytes(operation.op);
        return bytes ? Texts::bytes(*bytes) : QString();
    }
    case IconName:
        return moduleIcon(entry.scannerID);
    case Open:
        return isOpen(row);
    case Path:
        return QString();
    case Spoken:
        return tr("%1, %2, %3")
            .arg(operationData(operation, row, Title).toString(),
                 operationData(operation, row, Subtitle).toString(),
                 operationData(operation, row, CountText).toString());
    default:
        return {};
    }
}

QVariant RestoreModel::valueOfItem(const Operation& operation, std::size_t item, int role) const {
    const FileURL original(pathFromText((*operation.op.entry.restorable)[item].original));
    switch (role) {
    case IsOperation:
    case Open:
        return false;
    case Restorable:
        return operation.inBin[item];
    case Qt::DisplayRole:
    case Title:
        return Texts::data(original.lastPathComponent());
    case Subtitle:
        return Texts::path(original.deletingLastPathComponent().path(), services_.home());
    case CountText:
        return operation.inBin[item] ? QString() : tr("Not in the Bin any more");
    case SizeText:
        return QString();
    case IconName:
        return QStringLiteral("file");
    case Path:
        return Texts::path(original.path(), services_.home());
    case Spoken:
        return operation.inBin[item]
                   ? valueOfItem(operation, item, Path).toString()
                   : tr("%1, %2").arg(valueOfItem(operation, item, Path).toString(),
                                      valueOfItem(operation, item, CountText).toString());
    default:
        return {};
    }
}

QHash<int, QByteArray> RestoreModel::roleNames() const {
    return {{IsOperation, "isOperation"},
            {Title, "title"},
            {Subtitle, "subtitle"},
            {CountText, "countText"},
            {SizeText, "sizeText"},
            {IconName, "iconName"},
            {Open, "open"},
            {Restorable, "restorable"},
            {Path, "path"},
            {Spoken, "spoken"}};
}

QString RestoreModel::summary() const {
    std::int64_t items = 0;
    for (const Operation& operation : operations_) {
        items += operation.op.restorableCount;
    }
    return Texts::sentence(RestoreText::canBeRestored(items));
}

QString RestoreModel::checkingText() {
    return Texts::sentence(RestoreText::checking);
}

QString RestoreModel::restoreText() {
    return Texts::sentence(RestoreText::restoreEverything);
}

QString RestoreModel::restoreHelp() {
    return Texts::sentence(AuditText::restoreHelp);
}

QString RestoreModel::emptyTitle() {
    return Texts::sentence(RestoreText::emptyTitle);
}

QString RestoreModel::emptyText() {
    return Texts::sentence(RestoreText::emptyExplanation);
}

void RestoreModel::refresh() {
    // A reading cannot be cut short, and the interface does not wait for one.
    if (reading_.isRunning()) {
        readsAgain_ = true;
        return;
    }
    reading_.start([this, &services = services_](const Work::Post&) {
        const Restorer restorer(services.auditLog(), services.fileManager());
        auto operations = std::make_shared<std::vector<Operation>>();
        for (RestorableOp& op : restorer.restorableOperations()) {
            std::vector<bool> inBin;
            for (const RestorableItem& item : *op.entry.restorable) {
                inBin.push_back(restorer.isStillInBin(item));
            }
            operations->push_back({std::move(op), std::move(inBin)});
        }
        return Work::Step([this, operations] {
            show(std::move(*operations));
            if (std::exchange(readsAgain_, false)) {
                refresh();
            }
        });
    });
}

void RestoreModel::show(std::vector<Operation> operations) {
    beginResetModel();
    operations_ = std::move(operations);
    rows_.clear();
    for (std::size_t i = 0; i < operations_.size(); ++i) {
        rows_.push_back({i, -1});
        if (open_.contains(operations_[i].op.entry.operationID)) {
            for (std::size_t item = 0; item < operations_[i].inBin.size(); ++item) {
                rows_.push_back({i, static_cast<std::ptrdiff_t>(item)});
            }
        }
    }
    state_ = operations_.empty() ? Empty : Listed;
    endResetModel();
    emit shown();
}

bool RestoreModel::isOpen(std::size_t row) const {
    return row + 1 < rows_.size() && rows_[row + 1].item >= 0;
}

void RestoreModel::setOpen(int row, bool open) {
    const auto number = static_cast<std::size_t>(row);
    if (row < 0 || number >= rows_.size() || rows_[number].item >= 0 || isOpen(number) == open) {
        return;
    }
    const Operation& operation = operations_[rows_[number].operation];
    const auto count = static_cast<int>(operation.inBin.size());
    const auto place = rows_.begin() + row + 1;
    if (open) {
        std::vector<Row> items;
        for (int item = 0; item < count; ++item) {
            items.push_back({rows_[number].operation, item});
        }
        beginInsertRows({}, row + 1, row + count);
        rows_.insert(place, items.begin(), items.end());
        endInsertRows();
        open_.insert(operation.op.entry.operationID);
    } else {
        beginRemoveRows({}, row + 1, row + count);
        rows_.erase(place, place + count);
        endRemoveRows();
        open_.erase(operation.op.entry.operationID);
    }
    emit dataChanged(index(row), index(row), {Open});
}

void RestoreModel::restore(int row) {
    if (row < 0 || row >= rowCount()) {
        return;
    }
    const Row& chosen = rows_[static_cast<std::size_t>(row)];
    const Operation& operation = operations_[chosen.operation];
    const std::vector<RestorableItem>& items = *operation.op.entry.restorable;
    std::vector<RestorableItem> wanted;
    for (std::size_t item = 0; item < items.size(); ++item) {
        // Of everything, what came back before or went with the Bin is nothing to complain about.
        if (chosen.item < 0 ? operation.inBin[item]
                            : item == static_cast<std::size_t>(chosen.item)) {
            wanted.push_back(items[item]);
        }
    }
    run_.start(std::move(wanted));
}

} // namespace korvane
