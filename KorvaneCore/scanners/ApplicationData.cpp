#include "KorvaneCore/scanners/ApplicationData.h"

#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/foundation/Text.h"
#include "KorvaneCore/platform/DirectoryReader.h"
#include "KorvaneCore/scan/PathHeuristicRows.h"
#include "KorvaneCore/scanners/ItemCollection.h"
#include "KorvaneCore/scanners/ReservedNames.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace korvane {

namespace {

namespace rows = PathHeuristics;

using Kind = InstalledApplication::Kind;

constexpr std::array<const PathHeuristic*, 6> dataRows{
    &rows::uninstallAppSupport, &rows::uninstallPreferences, &rows::uninstallLaunchAgents,
    &rows::uninstallCrashLogs,  &rows::uninstallAppScripts,  &rows::uninstallCookies};

// Where systems and package managers put what they manage.
constexpr std::array<std::string_view, 10> managedFolders{
    "/System/", "/Library/", "/usr/", "/snap/", "/var/",
    "/opt/",    "/bin/",     "/lib/", "/nix/",  "/gnu/"};

DataNaming namingIn(const PathHeuristic& row) {
    return &row == &rows::uninstallAppSupport  ? DataNaming::identifierOrName
           : &row == &rows::uninstallCrashLogs ? DataNaming::crashReport
                                               : DataNaming::identifier;
}

bool isStrictlyInside(const FileURL& url, const FileURL& folder) {
    return folder.componentCount() > 1 && url.path().starts_with(folder.path() + "/");
}

} // namespace

std::span<const PathHeuristic* const> applicationDataRows() noexcept {
    return dataRows;
}

std::vector<OwnedData> ownedData(const PathHeuristic& row, const FileURL& home,
                                 const DataOwners& owners) {
    std::vector<OwnedData> data;
    for (const FileURL& folder : row.places(home)) {
        for (const std::string& name :
             namesInFolder(folder.path()).value_or(std::vector<std::string>())) {
            if (Task::isCancelled()) {
                return data;
            }
            std::vector<std::size_t> found = owners.owners(name, namingIn(row));
            if (found.empty()) {
                continue;
            }
            if (auto item = itemAt(folder.appending(name), row)) {
                data.push_back({std::move(*item), std::move(found)});
            }
        }
    }
    return data;
}

std::optional<ScanItem> applicationItem(const InstalledApplication& application,
                                        const FileURL& home, std::string category) {
    const FileURL location = application.location.standardized();
    const bool isUsers = isStrictlyInside(location, home.standardized());
    const bool isManaged =
        std::any_of(managedFolders.begin(), managedFolders.end(),
                    [&](std::string_view folder) { return location.path().starts_with(folder); });
    const bool isBundle =
        application.kind == Kind::bundle && composedLowercase(location.pathExtension()) == "app";
    const bool isFile =
        application.kind == Kind::appImage || application.kind == Kind::desktopEntry;
    const bool mayGo =
        isUsers ? isBundle || isFile : isBundle && location.isAbsolute() && !isManaged;
    if (!mayGo || isOwnName(application.identifier)) {
        return std::nullopt;
    }
    return itemAt(location, rows::uninstallAppSupport, std::move(category));
}

} // namespace korvane
