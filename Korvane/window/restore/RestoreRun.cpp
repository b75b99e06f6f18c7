#include "Korvane/window/restore/RestoreRun.h"

#include "Korvane/cleaning/RestoreText.h"
#include "Korvane/window/support/Texts.h"

namespace korvane {

RestoreRun::RestoreRun(Services& services, QObject* parent)
    : QAbstractListModel(parent), services_(services) {
    connect(&work_, &Work::runningChanged, this, &RestoreRun::changed);
}

int RestoreRun::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(failures_.size());
}

QVariant RestoreRun::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const RestoreFailure& failure = failures_[static_cast<std::size_t>(index.row())];
    const QString path = Texts::path(pathFromText(failure.item.original), services_.home());
    const QString problem = Texts::data(failure.error);
    switch (role) {
    case Qt::DisplayRole:
    case Path:
        return path;
    case Problem:
        return problem;
    case Spoken:
        return tr("%1: %2").arg(path, problem);
    default:
        return {};
    }
}

QHash<int, QByteArray> RestoreRun::roleNames() const {
    return {{Path, "path"}, {Problem, "problem"}, {Spoken, "spoken"}};
}

void RestoreRun::start(std::vector<RestorableItem> items) {
    if (isRunning() || items.empty()) {
        return;
    }
    show(Texts::sentence(RestoreText::puttingBack(items.size())), {});
    work_.start([this, &services = services_, items = std::move(items)](const Work::Post&) {
        const Restorer restorer(services.auditLog(), services.fileManager());
        auto outcome = std::make_shared<RestoreOutcome>(restorer.restore(items));
        return Work::Step([this, outcome] {
            const QString message = Texts::sentence(RestoreText::outcome(*outcome));
            show(message, std::move(outcome->failed));
            emit finished();
        });
    });
}

void RestoreRun::dismiss() {
    if (!isRunning()) {
        show({}, {});
    }
}

void RestoreRun::show(QString message, std::vector<RestoreFailure> failures) {
    beginResetModel();
    message_ = std::move(message);
    failures_ = std::move(failures);
    endResetModel();
    emit changed();
}

} // namespace korvane
