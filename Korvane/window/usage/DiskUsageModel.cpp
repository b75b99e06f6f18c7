#include "Korvane/window/usage/DiskUsageModel.h"

#include "Korvane/tools/UsageEntries.h"
#include "Korvane/window/support/Texts.h"
#include "KorvaneCore/foundation/Text.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <utility>

namespace korvane {

DiskUsageModel::DiskUsageModel(Services& services, QObject* parent)
    : QAbstractListModel(parent), services_(services) {}

int DiskUsageModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(sizes_.size());
}

const DiskUsageNode& DiskUsageModel::node(int row) const {
    return (*listing_)[static_cast<std::size_t>(row)];
}

QString DiskUsageModel::name(int row) const {
    return Texts::data(node(row).name);
}

QString DiskUsageModel::sizeText(int row) const {
    return Texts::bytes(node(row).sizeBytes);
}

QVariant DiskUsageModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const int row = index.row();
    const DiskUsageNode& entry = node(row);
    const QString share = Texts::sentence(UsageEntries::share(entry.sizeBytes, total_));
    switch (role) {
    case Qt::DisplayRole:
    case Name:
        return name(row);
    case SizeText:
        return sizeText(row);
    case ShareText:
        return share;
    case Bar:
        return sizes_.front() > 0 ? sizes_[static_cast<std::size_t>(row)] / sizes_.front() : 0.0;
    case Kind:
        return static_cast<int>(kind(row));
    case IconName:
        return entry.isDirectory ? QStringLiteral("folder") : QStringLiteral("file");
    case IsFolder:
        return entry.isDirectory;
    case Spoken:
        return (entry.isDirectory ? tr("%1, folder, %2, %3") : tr("%1, %2, %3"))
            .arg(name(row), sizeText(row), share);
    default:
        return {};
    }
}

QHash<int, QByteArray> DiskUsageModel::roleNames() const {
    return {{Name, "name"}, {SizeText, "sizeText"}, {ShareText, "shareText"}, {Bar, "bar"},
            {Kind, "kind"}, {IconName, "iconName"}, {IsFolder, "isFolder"},   {Spoken, "spoken"}};
}

QStringList DiskUsageModel::crumbs() const {
    QStringList names;
    for (const FileURL& folder : crumbs_) {
        names.append(folder == services_.home() ? tr("Home")
                                                : Texts::data(folder.lastPathComponent()));
    }
    return names;
}

QString DiskUsageModel::folderPath() const {
    return crumbs_.empty() ? QString() : Texts::path(crumbs_.back().path(), services_.home());
}

QString DiskUsageModel::summary() const {
    if (state_ != Shown) {
        return {};
    }
    return rowCount() == 1
               ? tr("1 entry, %1").arg(Texts::bytes(total_))
               : tr("%1 entries, %2").arg(Texts::count(rowCount()), Texts::bytes(total_));
}

QVariantList DiskUsageModel::legend() const {
    std::array<std::int64_t, UsageEntries::kindCount> bytes{};
    for (int row = 0; row < rowCount(); ++row) {
        bytes.at(kind(row)) += node(row).sizeBytes; // no more than the total, which fits
    }
    std::array<std::size_t, UsageEntries::kindCount> order{};
    std::iota(order.begin(), order.end(), 0U);
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return bytes.at(a) > bytes.at(b); });
    QVariantList kinds;
    for (const std::size_t one : order) {
        if (bytes.at(one) > 0) {
            kinds.append(QVariantMap{
                {QStringLiteral("kind"), static_cast<int>(one)},
                {QStringLiteral("title"), Texts::sentence(UsageEntries::kindTitle(one))},
                {QStringLiteral("text"), Texts::bytes(bytes.at(one))}});
        }
    }
    return kinds;
}

QVariantMap DiskUsageModel::entry(int row) const {
    if (row < 0 || row >= rowCount()) {
        return {};
    }
    const DiskUsageNode& one = node(row);
    QString figures = tr("%1, %2").arg(sizeText(row),
                                       Texts::sentence(UsageEntries::share(one.sizeBytes, total_)));
    if (one.isDirectory) {
        figures = one.childCount == 1
                      ? tr("%1, 1 item inside").arg(figures)
                      : tr("%1, %2 items inside").arg(figures, Texts::count(one.childCount));
    }
    const std::string& path = one.url.path();
    return {{QStringLiteral("name"), name(row)},
            {QStringLiteral("path"), Texts::path(path, services_.home())},
            {QStringLiteral("figures"), figures},
            // As a program would take it, unless text cannot carry it.
            {QStringLiteral("plainPath"),
             isValidUTF8(path) ? Texts::sentence(path) : Texts::data(path)},
            {QStringLiteral("url"), Texts::sentence(one.url.absoluteString())},
            {QStringLiteral("isFolder"), one.isDirectory}};
}

void DiskUsageModel::openHome() {
    open(services_.home());
}

void DiskUsageModel::openFolder(const QUrl& folder) {
    const FileURL url = Texts::fileURL(folder);
    if (url.isAbsolute()) {
        open(url.standardized());
    } else {
        emit notified(tr("Only folders of this computer can be measured."));
    }
}

void DiskUsageModel::open(const FileURL& folder) {
    navigate({folder}, [folder](DiskUsageBrowser& browser) { browser.open(folder); });
}

void DiskUsageModel::enter(int row) {
    if (row < 0 || row >= rowCount() || !node(row).isDirectory) {
        return;
    }
    const FileURL child = node(row).url;
    std::vector<FileURL> crumbs = crumbs_;
    crumbs.push_back(child);
    navigate(std::move(crumbs), [child](DiskUsageBrowser& browser) { browser.enter(child); });
}

void DiskUsageModel::goTo(int crumb) {
    const auto index = static_cast<std::size_t>(crumb);
    const bool isHere = index + 1 == crumbs_.size() && state_ != Failed;
    if (crumb < 0 || index >= crumbs_.size() || isHere) {
        return;
    }
    navigate({crumbs_.begin(), crumbs_.begin() + crumb + 1},
             [index](DiskUsageBrowser& browser) { browser.goTo(index); });
}

void DiskUsageModel::goUp() {
    if (canGoUp()) {
        goTo(static_cast<int>(crumbs_.size()) - 2);
    }
}

void DiskUsageModel::refresh() {
    if (!crumbs_.empty()) {
        navigate(crumbs_, [](DiskUsageBrowser& browser) { browser.refresh(); });
    }
}

void DiskUsageModel::stop() {
    work_.cancel();
}

void DiskUsageModel::navigate(std::vector<FileURL> crumbs,
                              std::function<void(DiskUsageBrowser&)> move) {
    beginResetModel();
    crumbs_ = std::move(crumbs);
    listing_.reset();
    sizes_.clear();
    kinds_.clear();
    total_ = 0;
    state_ = Measuring;
    message_ = tr("Measuring %1…").arg(folderPath());
    endResetModel();
    emit changed();
    // An earlier move has ended by the time this one begins: the browser is where the crumbs are.
    work_.start([this, &browser = browser_, move = std::move(move)](const Work::Post&) {
        move(browser);
        DiskUsageBrowser::View view = browser.view();
        std::vector<std::uint8_t> kinds;
        if (view.children) {
            kinds.reserve(view.children->size());
            for (const DiskUsageNode& one : *view.children) {
                kinds.push_back(static_cast<std::uint8_t>(UsageEntries::kind(one)));
            }
        }
        return [this, view = std::move(view), kinds = std::move(kinds)] { show(view, kinds); };
    });
}

void DiskUsageModel::show(const DiskUsageBrowser::View& view, std::vector<std::uint8_t> kinds) {
    beginResetModel();
    listing_ = view.children;
    kinds_ = std::move(kinds);
    if (listing_) {
        total_ = UsageEntries::totalBytes(*listing_);
        sizes_.reserve(listing_->size());
        for (const DiskUsageNode& one : *listing_) {
            sizes_.push_back(static_cast<double>(one.sizeBytes));
        }
    }
    state_ = listing_ ? Shown : Failed;
    message_ = listing_               ? QString()
               : view.failure.empty() ? tr("Measuring %1 was stopped.").arg(folderPath())
                                      : Texts::sentence(view.failure);
    endResetModel();
    emit changed();
}

} // namespace korvane
