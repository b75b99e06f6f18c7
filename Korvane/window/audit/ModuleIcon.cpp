#include "Korvane/window/audit/ModuleIcon.h"

#include "Korvane/window/shell/NavigationModel.h"
#include "Korvane/window/support/Texts.h"

#include <QHash>

namespace korvane {

QString moduleIcon(std::string_view scannerID) {
    static const QHash<QString, QString> icons = [] {
        // Those without a screen of their own, or one under another name.
        QHash<QString, QString> made{
            {QStringLiteral("trash"), QStringLiteral("bin")},
            {QStringLiteral("smart-clean"), QStringLiteral("scan")},
            {QStringLiteral("collector"), QStringLiteral("collector")},
            {QStringLiteral("permissions"), QStringLiteral("settings")},
            {QStringLiteral("duplicate-photos"), QStringLiteral("images")},
            {QStringLiteral("chain-restart"), QStringLiteral("info")},
        };
        const NavigationModel screens;
        for (int row = 0; row < screens.rowCount(); ++row) {
            const QModelIndex screen = screens.index(row);
            made.insert(screen.data(NavigationModel::PageID).toString(),
                        screen.data(NavigationModel::IconName).toString());
        }
        return made;
    }();
    return icons.value(Texts::sentence(scannerID), QStringLiteral("file"));
}

} // namespace korvane
