#include "KorvaneCore/scanners/OrphanedFilesScanner.h"

#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/platform/DirectoryReader.h"
#include "KorvaneCore/scan/LastChange.h"
#include "KorvaneCore/scan/PathHeuristicRows.h"
#include "KorvaneCore/scanners/InstalledNames.h"
#include "KorvaneCore/scanners/ItemCollection.h"
#include "KorvaneCore/scanners/ReservedNames.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <fmt/format.h>

namespace korvane {

namespace {

namespace rows = PathHeuristics;

constexpr std::array leftoverRows{&rows::orphanedAppSupport, &rows::orphanedContainers,
                                  &rows::orphanedGroupContainers};

/// Whether a folder of some maker's holds one of an installed application.
bool holdsInstalled(const FileURL& folder, const InstalledNames& installed) {
    const auto names = namesInFolder(folder.path());
    return !names || std::any_of(names->begin(), names->end(),
                                 [&](const std::string& name) { return installed.isKnown(name); });
}

std::vector<ScanItem> leftovers(const FileURL& folder, const PathHeuristic& row,
                                const InstalledNames& installed, const Date& since) {
    const bool isShared = &row == &rows::orphanedGroupContainers;
    std::vector<ScanItem> items = childItems(folder, row);
    std::erase_if(items, [&](const ScanItem& item) {
        const std::string_view name = item.url.lastPathComponent();
        return Task::isCancelled() || !item.isDirectory || isSystemName(name) || isOwnName(name) ||
               (isShared ? installed.mayShare(name) : installed.mayOwn(name)) ||
               holdsInstalled(item.url, installed);
    });
    std::vector<char> idle(items.size(), 0);
    concurrentPerform(items.size(), [&](std::size_t i) {
        idle[i] = unchangedSince(items[i].url, since) ? 1 : 0;
    });
    std::vector<ScanItem> leftovers;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (idle[i] != 0) {
            leftovers.push_back(std::move(items[i]));
        }
    }
    return leftovers;
}

} // namespace

OrphanedFilesScanner::OrphanedFilesScanner(FileURL home,
                                           std::shared_ptr<const SoftwareInventory> provider,
                                           Date now, double minimumIdleInterval)
    : NamedScanner("orphaned-files", "Orphaned Files"), home_(std::move(home)),
      provider_(std::move(provider)), now_(now), minimumIdleInterval_(minimumIdleInterval) {}

ScanResult OrphanedFilesScanner::scan(const ScanProgressHandler& progress) const {
    ScanResult result{.scannerID = id(), .startedAt = Date::now()};
    progress({"Checking installed apps…", 0.0});
    const SoftwareListing software = provider_->read();
    // An inventory that found nothing has failed: this program at least is installed.
    const bool isKnown = software.isComplete && !software.applications.empty();
    const InstalledNames installed(software.applications);
    const Date since = now_.adding(-minimumIdleInterval_);
    double fraction = 0.1;
    for (const PathHeuristic* row : leftoverRows) {
        const FileURL folder = row->places(home_).front();
        if (Task::isCancelled()) {
            break;
        }
        progress({fmt::format("Checking {}…", folder.lastPathComponent()), fraction});
        std::vector<ScanItem> found =
            isKnown ? leftovers(folder, *row, installed, since) : std::vector<ScanItem>();
        progress({fmt::format("Measuring {}…", folder.lastPathComponent()), fraction + 0.15});
        collectMeasured(std::move(found), result.items);
        fraction += 0.3;
    }
    sortLargestFirst(result.items);
    return finished(std::move(result), progress);
}

} // namespace korvane
