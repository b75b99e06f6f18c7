#include "KorvaneCore/scanners/ScannerComposition.h"

#include "KorvaneCore/scan/PathHeuristicRows.h"
#include "KorvaneCore/scanners/BrowserCacheScanner.h"
#include "KorvaneCore/scanners/CacheScanner.h"
#include "KorvaneCore/scanners/DeveloperScanner.h"
#include "KorvaneCore/scanners/OldFilesScanner.h"
#include "KorvaneCore/scanners/OrphanedFilesScanner.h"
#include "KorvaneCore/scanners/SystemFilesScanner.h"

#include <algorithm>
#include <array>

namespace korvane::ScannerComposition {

namespace {

constexpr std::int64_t globMaxDepth = 8;
constexpr double minimumIdleInterval = 180 * 86400.0;

/// A Smart Scan never proposes the download folder.
std::vector<OldFilesTarget> oldFilesTargets(const UserFolders& folders) {
    std::vector<OldFilesTarget> targets = defaultOldFilesTargets(folders);
    std::erase_if(targets, [](const OldFilesTarget& target) {
        return target.heuristic->id == PathHeuristics::oldFilesDownloads.id;
    });
    return targets;
}

std::shared_ptr<const ModuleScanner>
makeScanner(SmartScanScope scope, const UserFolders& folders,
            const std::shared_ptr<const SoftwareInventory>& provider) {
    switch (scope) {
    case SmartScanScope::caches:
        return std::make_shared<CacheScanner>(folders.home, globMaxDepth);
    case SmartScanScope::browsers:
        return std::make_shared<BrowserCacheScanner>(folders.home);
    case SmartScanScope::oldFiles:
        return std::make_shared<OldFilesScanner>(oldFilesTargets(folders));
    case SmartScanScope::developer:
        return std::make_shared<DeveloperScanner>(folders.home);
    case SmartScanScope::leftovers:
        return std::make_shared<OrphanedFilesScanner>(
            folders.home, provider ? provider : SoftwareInventory::standard(folders.home),
            Date::now(), minimumIdleInterval);
    case SmartScanScope::systemFiles:
        break;
    }
    return std::make_shared<SystemFilesScanner>(folders.home);
}

} // namespace

std::vector<std::string> componentScannerIDs(std::string_view toolID) {
    if (toolID == "cache-cleaner") {
        return {"cache-cleaner", "browser-cache"};
    }
    return {std::string(toolID)};
}

bool toolCovers(std::string_view toolID, std::string_view scannerID) {
    const std::vector<std::string> ids = componentScannerIDs(toolID);
    return std::find(ids.begin(), ids.end(), scannerID) != ids.end();
}

ScannerList defaultSmartScan(const UserFolders& folders,
                             const std::shared_ptr<const SoftwareInventory>& provider) {
    constexpr std::array order{SmartScanScope::caches,    SmartScanScope::oldFiles,
                               SmartScanScope::developer, SmartScanScope::leftovers,
                               SmartScanScope::browsers,  SmartScanScope::systemFiles};
    return scanners(order, folders, provider);
}

ScannerList scanners(std::span<const SmartScanScope> scopes, const UserFolders& folders,
                     const std::shared_ptr<const SoftwareInventory>& provider) {
    ScannerList list;
    list.reserve(scopes.size());
    for (const SmartScanScope scope : scopes) {
        list.push_back(makeScanner(scope, folders, provider));
    }
    return list;
}

} // namespace korvane::ScannerComposition
