#include "Korvane/window/bin/BinModel.h"

#include "Korvane/window/support/Texts.h"
#include "KorvaneCore/foundation/Task.h"

#include <numeric>
#include <utility>

namespace korvane {

namespace {

std::vector<ScanItem> itemsOf(const std::vector<BinContent>& bins) {
    std::vector<ScanItem> items;
    for (const BinContent& content : bins) {
        items.push_back(content.bin);
    }
    return items;
}

std::size_t entriesOf(const std::vector<BinContent>& bins) {
    return std::accumulate(bins.begin(), bins.end(), std::size_t{0},
                           [](std::size_t sum, const auto& bin) { return sum + bin.names.size(); });
}

std::size_t protectedOf(const std::vector<BinContent>& bins) {
    return std::accumulate(
        bins.begin(), bins.end(), std::size_t{0},
        [](std::size_t sum, const auto& bin) { return sum + bin.protectedCount; });
}

QString homeTitle() {
    return BinModel::tr("Home folder");
}

QString keptText(std::size_t count) {
    return count == 0 ? QString()
           : count == 1
               ? BinModel::tr("1 item is protected, or holds something that is, and stays.")
               : BinModel::tr("%1 items are protected, or hold something that is, and "
                              "stay.")
                     .arg(Texts::count(static_cast<qint64>(count)));
}

} // namespace

BinModel::BinModel(Services& services, QObject* parent)
    : QAbstractListModel(parent), services_(services), outcome_(services.home()) {}

int BinModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(bins_.size());
}

// The disk that a Bin lies on: Bins are in the top folder of one, except for the home folder's.
QString BinModel::title(const FileURL& bin) const {
    for (FileURL folder = bin; folder != folder.deletingLastPathComponent();
         folder = folder.deletingLastPathComponent()) {
        const FileURL parent = folder.deletingLastPathComponent();
        if (parent == services_.home()) {
            break;
        }
        const bool isTop = folder.lastPathComponent().starts_with(".Trash") &&
                           !parent.lastPathComponent().starts_with(".Trash");
        if (isTop) {
            return parent == FileURL("/") ? tr("System disk")
                                          : Texts::data(parent.lastPathComponent());
        }
    }
    return homeTitle();
}

QVariant BinModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const BinContent& content = bins_[static_cast<std::size_t>(index.row())];
    const FileURL& url = content.bin.url;
    const QString size = Texts::bytes(content.bin.sizeBytes);
    const QString count =
        content.isReadable ? Texts::items(static_cast<qint64>(content.names.size())) : QString();
    switch (role) {
    case Qt::DisplayRole:
    case Title:
        return title(url);
    case Path:
        return Texts::path(url.path(), services_.home());
    case Url:
        return Texts::sentence(url.absoluteString());
    case IconName:
        return title(url) == homeTitle() ? QStringLiteral("bin") : QStringLiteral("disk");
    case SizeText:
        return size;
    case CountText:
        return count;
    case Note:
        return content.isReadable ? keptText(content.protectedCount)
                                  : tr("What is in this Bin cannot be listed.");
    case Spoken:
        return tr("Bin of %1, %2, %3").arg(title(url), size, count);
    default:
        return {};
    }
}

QHash<int, QByteArray> BinModel::roleNames() const {
    return {{Title, "title"},       {Path, "path"},         {Url, "url"},
            {IconName, "iconName"}, {SizeText, "sizeText"}, {CountText, "countText"},
            {Note, "note"},         {Spoken, "spoken"}};
}

QString BinModel::totalText() const {
    return Texts::bytes(totalBytes(itemsOf(bins_)));
}

QString BinModel::countText() const {
    const QString items = Texts::items(static_cast<qint64>(entriesOf(bins_)));
    return bins_.size() == 1 ? tr("in 1 Bin, %1").arg(items)
                             : tr("in %1 Bins, %2").arg(Texts::count(rowCount()), items);
}

void BinModel::setState(State state) {
    if (state != state_) {
        state_ = state;
        emit changed();
    }
}

void BinModel::refresh() {
    if (isEmptying()) {
        return;
    }
    setState(Reading);
    reading_.start([this, &services = services_](const Work::Post&) {
        return [this, bins = binContents(services)] { show(bins); };
    });
}

void BinModel::show(std::vector<BinContent> bins) {
    if (isEmptying()) {
        return; // read before: they are read again afterwards
    }
    beginResetModel();
    bins_ = std::move(bins);
    state_ = Ready;
    endResetModel();
    emit changed();
}

QVariantMap BinModel::prepare(int row) {
    const bool isThere = row >= 0 && row < rowCount();
    return ask(isThere ? std::vector{bins_[static_cast<std::size_t>(row)]}
                       : std::vector<BinContent>());
}

QVariantMap BinModel::prepareAll() {
    return ask(bins_);
}

QVariantMap BinModel::ask(std::vector<BinContent> bins) {
    pending_ = isEmptying() ? std::vector<BinContent>() : std::move(bins);
    if (pending_.empty()) {
        return {};
    }
    const std::vector<ScanItem> items = itemsOf(pending_);
    const QString count = Texts::items(static_cast<qint64>(entriesOf(pending_)));
    const QString warning = Texts::sentence(emptyingWarning(items));
    const FileURL& first = items.front().url;
    const bool isOne = items.size() == 1;
    return {{QStringLiteral("title"),
             !isOne ? tr("Empty %1 Bins?").arg(Texts::count(static_cast<qint64>(items.size())))
             : title(first) == homeTitle() ? tr("Empty the Bin of your home folder?")
                                           : tr("Empty the Bin of %1?").arg(title(first))},
            {QStringLiteral("text"),
             isOne
                 ? tr("%1, %2. %3").arg(Texts::path(first.path(), services_.home()), count, warning)
                 : tr("%1. %2").arg(count, warning)},
            {QStringLiteral("kept"), keptText(protectedOf(pending_))},
            {QStringLiteral("action"), isOne ? tr("Empty") : tr("Empty all")}};
}

void BinModel::confirm() {
    if (pending_.empty() || isEmptying()) {
        return;
    }
    dismissOutcome();
    setState(Emptying);
    emptying_.start([this, &services = services_,
                     seen = std::exchange(pending_, {})](const Work::Post&) {
        const BinEmptying account = emptyBins(seen, services);
        return [this, account, wasStopped = Task::isCancelled()] { finish(account, wasStopped); };
    });
}

void BinModel::finish(const BinEmptying& account, bool wasStopped) {
    CleanupResult result;
    result.mode = DeletionMode::permanent;
    result.succeeded = account.outcome.emptied;
    result.failed = account.outcome.protectedFailures;
    result.failed.insert(result.failed.end(), account.outcome.failures.begin(),
                         account.outcome.failures.end());
    const QString summary = Texts::sentence(emptyingSummary(account.outcome));
    outcomeText_ = wasStopped ? tr("Stopped. %1").arg(summary) : summary;
    auditFailure_ = account.auditFailure
                        ? tr("The emptying could not be written to the audit log: %1")
                              .arg(Texts::sentence(*account.auditFailure))
                        : QString();
    outcome_.show(std::move(result), wasStopped);
    setState(Ready);
    emit outcomeChanged();
    emit emptied();
    refresh();
}

void BinModel::stop() {
    emptying_.cancel();
}

void BinModel::dismissOutcome() {
    if (outcome_.hasResult()) {
        outcome_.clear();
        emit outcomeChanged();
    }
}

} // namespace korvane
