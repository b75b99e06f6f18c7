#include "KorvaneCore/scanners/AppFootprintScanner.h"

#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/foundation/Text.h"
#include "KorvaneCore/scanners/ApplicationData.h"
#include "KorvaneCore/scanners/ItemCollection.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>

namespace korvane {

namespace {

using Kind = InstalledApplication::Kind;

/// The applications themselves. Menu entries are left to the uninstaller: they take up nothing.
std::vector<ScanItem> applicationItems(const std::vector<InstalledApplication>& applications,
                                       const FileURL& home) {
    std::vector<ScanItem> items;
    for (const InstalledApplication& application : applications) {
        if (application.kind == Kind::desktopEntry) {
            continue;
        }
        if (auto item = applicationItem(application, home, displayText(application.name))) {
            items.push_back(std::move(*item));
        }
    }
    return items;
}

/// Whether these are all copies of one application.
bool areCopies(const std::vector<std::size_t>& indexes,
               const std::vector<InstalledApplication>& applications) {
    const std::string& identifier = applications[indexes.front()].identifier;
    return indexes.size() == 1 ||
           (!identifier.empty() &&
            std::all_of(indexes.begin(), indexes.end(), [&](std::size_t index) {
                return applications[index].identifier == identifier;
            }));
}

} // namespace

AppFootprintScanner::AppFootprintScanner(FileURL home,
                                         std::shared_ptr<const SoftwareInventory> inventory)
    : NamedScanner("app-footprint", "App Footprint"), home_(std::move(home)),
      inventory_(std::move(inventory)) {}

ScanResult AppFootprintScanner::scan(const ScanProgressHandler& progress) const {
    ScanResult result{.scannerID = id(), .startedAt = Date::now()};
    progress({"Checking installed apps…", 0.0});
    const SoftwareListing software = inventory_->read();
    const std::vector<InstalledApplication>& applications = software.applications;
    if (!Task::isCancelled()) {
        progress({"Measuring installed apps…", 0.1});
        collectMeasured(applicationItems(applications, home_), result.items);
    }
    const DataOwners owners(applications, software.isComplete);
    double fraction = 0.4;
    for (const PathHeuristic* row : applicationDataRows()) {
        if (Task::isCancelled()) {
            break;
        }
        progress({fmt::format("Checking {}…", row->displayName), fraction});
        std::vector<ScanItem> found;
        for (OwnedData& data : ownedData(*row, home_, owners)) {
            if (areCopies(data.owners, applications)) {
                data.item.category = displayText(applications[data.owners.front()].name);
                found.push_back(std::move(data.item));
            }
        }
        collectMeasured(std::move(found), result.items);
        fraction += 0.1;
    }
    sortLargestFirst(result.items);
    return finished(std::move(result), progress);
}

} // namespace korvane
