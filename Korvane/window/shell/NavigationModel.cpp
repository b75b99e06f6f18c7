#include "Korvane/window/shell/NavigationModel.h"

#include <algorithm>

namespace korvane {

/// One screen. A tool's id is that of the tool catalogue.
struct NavigationModel::Page {
    QString id;
    QString title;
    QString icon;
    QString section;
    QString blurb;
    QString source; ///< the QML file that shows it
    QString badge{};
};

NavigationModel::NavigationModel(QObject* parent) : QAbstractListModel(parent) {
    const QString none;
    const QString clean = tr("Clean");
    const QString find = tr("Find");
    const QString apps = tr("Apps and devices");
    const QString keepSafe = tr("Keep safe");
    const auto add = [this](const char* id, const QString& title, const char* icon,
                            const QString& section, const QString& blurb,
                            const char* source = "ToolPage.qml") {
        pages_.push_back(
            {QLatin1String(id), title, QLatin1String(icon), section, blurb, QLatin1String(source)});
    };
    add("home", tr("Home"), "home", none, tr("Your disks, what was reclaimed, and how the log is."),
        "HomePage.qml");
    add("smart-scan", tr("Smart Scan"), "scan", none,
        tr("Looks in every place that is safe to clean, and shows you what it found before "
           "anything is touched."));
    add("cache-cleaner", tr("Cache Cleaner"), "cache", clean,
        tr("Files that programs keep to start faster. They make them again when they need them."));
    add("browser-cache", tr("Browser Cache"), "browser", clean,
        tr("Copies of web pages and pictures. Passwords, bookmarks and open tabs are left alone."));
    add("developer", tr("Developer Tools"), "developer", clean,
        tr("Build folders, package caches and old tool chains that can be downloaded or built "
           "again."));
    add("system-files", tr("System Files"), "system", clean,
        tr("Logs, crash reports, saved states and other files that the system makes again."));
    add("orphaned-files", tr("Orphaned Files"), "orphan", clean,
        tr("Settings and data left behind by programs that are no longer installed."));
    add("custom-rules", tr("Custom Rules"), "rules", clean,
        tr("Places of your own that can be cleaned. Add them in Settings."));
    add("old-files", tr("Old Files"), "old", find,
        tr("Screenshots, recordings, downloads and archives that nothing has changed for "
           "months."));
    add("large-files", tr("Large Files"), "large", find,
        tr("The biggest files of a folder, wherever they hide."));
    add("downloads", tr("Downloads"), "downloads", find,
        tr("What has piled up in your Downloads folder, by kind."));
    add("duplicate-finder", tr("Duplicates"), "duplicates", find,
        tr("Files with exactly the same content. One copy of each is always kept."));
    add("similar-images", tr("Similar Images"), "images", find,
        tr("Pictures that look alike: bursts, resized copies and edits."));
    add("disk-usage", tr("Disk Usage"), "treemap", find,
        tr("Every folder drawn as large as the space it takes."), "DiskUsagePage.qml");
    add("bin", tr("Bin"), "bin", keepSafe,
        tr("What waits in the Bin of every disk, and how much space emptying it gives back."),
        "BinPage.qml");
    add("restore", tr("Restore Centre"), "restore", keepSafe,
        tr("Put back what Korvane moved to the Bin, to where it was."), "RestorePage.qml");
    add("audit", tr("Audit Log"), "audit", keepSafe,
        tr("Every removal: what, when, from which tool, and why."), "AuditPage.qml");
    add("protected-paths", tr("Protected Paths"), "shield", keepSafe,
        tr("What is listed here is never removed, by any tool."), "ProtectedPathsPage.qml");
    add("catalogue", tr("Catalogue"), "catalogue", keepSafe,
        tr("Every place that Korvane may ever propose, with its risk and why that is safe."),
        "CataloguePage.qml");
    add("settings", tr("Settings"), "settings", keepSafe, none, "SettingsPage.qml");
    add("uninstaller", tr("Uninstaller"), "uninstall", apps,
        tr("An application together with everything it left in your Library."),
        "UninstallerPage.qml");
    add("app-footprint", tr("App Footprint"), "footprint", apps,
        tr("What each installed application keeps in your home folder."));
    add("attachments", tr("Attachments"), "attachment", apps,
        tr("Files that mail and messages have saved to this computer."));
    add("ios-backup", tr("iOS Backups"), "phone", apps, tr("Backups of phones and tablets."));
    add("time-machine", tr("Time Machine"), "snapshot", apps,
        tr("Local snapshots that a backup program keeps on this disk."));
    add("icloud-cleanup", tr("iCloud Cleanup"), "cloud", apps,
        tr("Local copies of files that are safe in the cloud."));
}

NavigationModel::~NavigationModel() = default;

int NavigationModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(pages_.size());
}

QVariant NavigationModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const Page& page = pages_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case PageID:
        return page.id;
    case Qt::DisplayRole:
    case Title:
        return page.title;
    case IconName:
        return page.icon;
    case Heading:
        return index.row() == 0 ||
                       pages_[static_cast<std::size_t>(index.row()) - 1].section != page.section
                   ? page.section
                   : QString();
    case Badge:
        return page.badge;
    case Blurb:
        return page.blurb;
    case Source:
        return page.source;
    default:
        return {};
    }
}

QHash<int, QByteArray> NavigationModel::roleNames() const {
    return {{PageID, "pageID"}, {Title, "title"}, {IconName, "iconName"}, {Heading, "heading"},
            {Badge, "badge"},   {Blurb, "blurb"}, {Source, "source"}};
}

int NavigationModel::rowOf(const QString& id) const {
    const auto found =
        std::find_if(pages_.begin(), pages_.end(), [&](const Page& page) { return page.id == id; });
    return found == pages_.end() ? -1 : static_cast<int>(found - pages_.begin());
}

QVariantMap NavigationModel::get(int row) const {
    QVariantMap values;
    if (row >= 0 && row < rowCount()) {
        const QHash<int, QByteArray> names = roleNames();
        for (auto role = names.begin(); role != names.end(); ++role) {
            values.insert(QString::fromLatin1(role.value()), data(index(row), role.key()));
        }
    }
    return values;
}

void NavigationModel::setBadge(const QString& id, const QString& text) {
    const int row = rowOf(id);
    if (row >= 0 && pages_[static_cast<std::size_t>(row)].badge != text) {
        pages_[static_cast<std::size_t>(row)].badge = text;
        emit dataChanged(index(row), index(row), {Badge});
    }
}

} // namespace korvane
