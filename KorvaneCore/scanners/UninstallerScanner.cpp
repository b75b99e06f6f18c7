#include "KorvaneCore/scanners/UninstallerScanner.h"

#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/foundation/Text.h"
#include "KorvaneCore/scan/PathHeuristicRows.h"
#include "KorvaneCore/scanners/ApplicationData.h"
#include "KorvaneCore/scanners/ItemCollection.h"

#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

namespace korvane {

namespace {

/// The application, at index 0, and all others that are installed.
std::vector<InstalledApplication> withOthers(const InstalledApplication& application,
                                             std::vector<InstalledApplication> installed) {
    std::vector<InstalledApplication> all{application};
    const FileURL place = application.location.resolvingSymlinks();
    for (InstalledApplication& other : installed) {
        if (other.location.resolvingSymlinks() != place) {
            all.push_back(std::move(other));
        }
    }
    return all;
}

} // namespace

UninstallerScanner::UninstallerScanner(FileURL home, InstalledApplication application,
                                       std::shared_ptr<const SoftwareInventory> inventory)
    : NamedScanner("uninstaller", "Uninstaller"), home_(std::move(home)),
      application_(std::move(application)), inventory_(std::move(inventory)) {}

ScanResult UninstallerScanner::scan(const ScanProgressHandler& progress) const {
    ScanResult result{.scannerID = id(), .startedAt = Date::now()};
    const std::string name = displayText(application_.name);
    progress({fmt::format("Checking {}…", name), 0.0});
    SoftwareListing software = inventory_->read();
    const DataOwners owners(withOthers(application_, std::move(software.applications)),
                            software.isComplete);
    std::vector<ScanItem> found;
    if (auto item = applicationItem(application_, home_,
                                    std::string(PathHeuristics::uninstallAppSupport.category))) {
        found.push_back(std::move(*item));
    }
    double fraction = 0.1;
    for (const PathHeuristic* row : applicationDataRows()) {
        if (Task::isCancelled()) {
            break;
        }
        progress({fmt::format("Checking {}…", row->displayName), fraction});
        for (OwnedData& data : ownedData(*row, home_, owners)) {
            if (data.owners == std::vector<std::size_t>{0}) {
                found.push_back(std::move(data.item));
            }
        }
        fraction += 0.1;
    }
    if (!Task::isCancelled()) {
        progress({fmt::format("Measuring {}…", name), fraction});
    }
    collectMeasured(std::move(found), result.items);
    sortLargestFirst(result.items);
    return finished(std::move(result), progress);
}

} // namespace korvane
