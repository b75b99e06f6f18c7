#include "Korvane/tools/ToolCatalogue.h"

#include "Korvane/tools/Refusal.h"
#include "Korvane/tools/Services.h"
#include "KorvaneCore/foundation/CheckedArithmetic.h"
#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/foundation/Text.h"
#include "KorvaneCore/platform/FolderFacts.h"
#include "KorvaneCore/scanners/AppFootprintScanner.h"
#include "KorvaneCore/scanners/ApplicationSearch.h"
#include "KorvaneCore/scanners/AttachmentsScanner.h"
#include "KorvaneCore/scanners/BrowserCacheScanner.h"
#include "KorvaneCore/scanners/CacheScanner.h"
#include "KorvaneCore/scanners/CustomRuleStore.h"
#include "KorvaneCore/scanners/CustomRulesScanner.h"
#include "KorvaneCore/scanners/DeveloperScanner.h"
#include "KorvaneCore/scanners/DownloadsScanner.h"
#include "KorvaneCore/scanners/DuplicateScanner.h"
#include "KorvaneCore/scanners/ICloudCleanupScanner.h"
#include "KorvaneCore/scanners/IOSBackupScanner.h"
#include "KorvaneCore/scanners/LargeFileScanner.h"
#include "KorvaneCore/scanners/OldFilesScanner.h"
#include "KorvaneCore/scanners/OrphanedFilesScanner.h"
#include "KorvaneCore/scanners/ScannerComposition.h"
#include "KorvaneCore/scanners/SimilarImagesScanner.h"
#include "KorvaneCore/scanners/SmartScanCoordinator.h"
#include "KorvaneCore/scanners/SystemFilesScanner.h"
#include "KorvaneCore/scanners/TimeMachineScanner.h"
#include "KorvaneCore/scanners/TrashScanner.h"
#include "KorvaneCore/scanners/UninstallerScanner.h"

#include <algorithm>
#include <array>
#include <functional>

#include <fcntl.h>

#include <fmt/format.h>

namespace korvane {

namespace {

using Scanner = std::shared_ptr<const ModuleScanner>;
using MakeScanner = Scanner (*)(const ScanRequest&, Services&);
using Needs = Tool::Needs;

struct Entry {
    Tool tool;
    MakeScanner make;
};

/// The maker of a scanner that wants to know nothing but the home folder.
template <typename T>
Scanner ofHome(const ScanRequest& /*request*/, Services& services) {
    return std::make_shared<T>(services.home());
}

/// The folder of a request, which must be one that can be entered.
FileURL requireFolder(const ScanRequest& request) {
    const std::string& path = request.folder.path();
    FileFacts facts;
    if (const int error = readFactsFollowingLinks(AT_FDCWD, path.c_str(), facts); error != 0) {
        throw ScanRequestError(fmt::format("{}: {}", displayText(path), errorText(error)));
    }
    if (facts.kind != DirectoryReader::Kind::folder) {
        throw ScanRequestError(fmt::format("{} is not a folder", displayText(path)));
    }
    if (const int error = openFolderFollowingLinks(AT_FDCWD, path.c_str()) ? 0 : errno) {
        throw ScanRequestError(
            fmt::format("{} cannot be read: {}", displayText(path), errorText(error)));
    }
    return request.folder;
}

Scanner smartScan(const ScanRequest& request, Services& services) {
    return std::make_shared<SmartScanCoordinator>(
        "smart-scan", "Smart Scan",
        request.scopes ? ScannerComposition::scanners(*request.scopes, services.folders())
                       : ScannerComposition::defaultSmartScan(services.folders()));
}

Scanner cacheCleaner(const ScanRequest& /*request*/, Services& services) {
    return std::make_shared<CompositeScanner>(
        "cache-cleaner", "Cache Cleaner",
        ScannerList{std::make_shared<CacheScanner>(services.home()),
                    std::make_shared<BrowserCacheScanner>(services.home())});
}

Scanner oldFiles(const ScanRequest& /*request*/, Services& services) {
    return std::make_shared<OldFilesScanner>(defaultOldFilesTargets(services.folders()));
}

Scanner orphanedFiles(const ScanRequest& /*request*/, Services& services) {
    return ScannerComposition::scanners(std::array{SmartScanScope::leftovers}, services.folders())
        .front();
}

Scanner downloads(const ScanRequest& /*request*/, Services& services) {
    return std::make_shared<DownloadsScanner>(UserDirectories::read(services.folders()).downloads);
}

Scanner customRules(const ScanRequest& /*request*/, Services& services) {
    try {
        return std::make_shared<CustomRulesScanner>(
            services.customRules().load(), services.home(),
            [refusal = std::make_shared<Refusal>(services)](const FileURL& url) {
                return refusal->sentence(url).has_value();
            });
    } catch (const DecodingError& error) {
        throw ScanRequestError(error.what());
    }
}

Scanner trash(const ScanRequest& /*request*/, Services& services) {
    return std::make_shared<TrashScanner>(services.folders());
}

Scanner timeMachine(const ScanRequest& /*request*/, Services& /*services*/) {
    return std::make_shared<TimeMachineScanner>();
}

Scanner appFootprint(const ScanRequest& /*request*/, Services& services) {
    return std::make_shared<AppFootprintScanner>(services.home(),
                                                 SoftwareInventory::standard(services.home()));
}

Scanner duplicateFinder(const ScanRequest& request, Services& /*services*/) {
    return std::make_shared<DuplicateScanner>(requireFolder(request),
                                              request.minimumBytes.value_or(4096));
}

Scanner similarImages(const ScanRequest& request, Services& /*services*/) {
    return std::make_shared<SimilarImagesScanner>(
        requireFolder(request),
        static_cast<int>(std::min<std::int64_t>(request.threshold.value_or(8), 64)));
}

Scanner largeFiles(const ScanRequest& request, Services& /*services*/) {
    return std::make_shared<LargeFileScanner>(
        requireFolder(request), request.minimumBytes.value_or(100'000'000),
        static_cast<std::size_t>(request.limit.value_or(200)));
}

Scanner uninstaller(const ScanRequest& request, Services& services) {
    const auto inventory = SoftwareInventory::standard(services.home());
    std::vector<InstalledApplication> found = findApplications(*inventory, request.app);
    if (found.empty()) {
        throw ScanRequestError(
            fmt::format("no installed application goes by \"{}\"", displayText(request.app)));
    }
    if (found.size() > 1) {
        std::string places;
        for (const InstalledApplication& application : found) {
            places += fmt::format("{}{}", places.empty() ? "" : ", ",
                                  displayText(application.location.path()));
        }
        throw ScanRequestError(fmt::format("several applications go by \"{}\"; name one by its "
                                           "path: {}",
                                           displayText(request.app), places));
    }
    return std::make_shared<UninstallerScanner>(services.home(), std::move(found.front()),
                                                inventory);
}

constexpr std::array entries = {
    Entry{{"smart-scan", "Smart Scan", Needs::nothing, {.scopes = true}}, smartScan},
    Entry{{"cache-cleaner", "Cache Cleaner"}, cacheCleaner},
    Entry{{"browser-cache", "Browser Cache"}, ofHome<BrowserCacheScanner>},
    Entry{{"developer", "Developer Tools"}, ofHome<DeveloperScanner>},
    Entry{{"system-files", "System Files"}, ofHome<SystemFilesScanner>},
    Entry{{"old-files", "Old Files"}, oldFiles},
    Entry{{"orphaned-files", "Orphaned Files"}, orphanedFiles},
    Entry{{"downloads", "Downloads"}, downloads},
    Entry{{"attachments", "Attachments"}, ofHome<AttachmentsScanner>},
    Entry{{"ios-backup", "iOS Backups"}, ofHome<IOSBackupScanner>},
    Entry{{"custom-rules", "Custom Rules"}, customRules},
    Entry{{"trash", "Bin"}, trash},
    Entry{{"time-machine", "Time Machine"}, timeMachine},
    Entry{{"icloud-cleanup", "iCloud Cleanup"}, ofHome<ICloudCleanupScanner>},
    Entry{{"app-footprint", "App Footprint"}, appFootprint},
    Entry{{"duplicate-finder", "Duplicate Finder", Needs::folder, {.minimumBytes = true}},
          duplicateFinder},
    Entry{{"similar-images", "Similar Images", Needs::folder, {.threshold = true}}, similarImages},
    Entry{{"large-files", "Large Files", Needs::folder, {.minimumBytes = true, .limit = true}},
          largeFiles},
    Entry{{"uninstaller", "Uninstaller", Needs::app}, uninstaller},
};

constexpr auto tools = [] {
    std::array<Tool, entries.size()> list{};
    std::transform(entries.begin(), entries.end(), list.begin(),
                   [](const Entry& entry) { return entry.tool; });
    return list;
}();

} // namespace

std::string_view rawValue(Tool::Needs needs) noexcept {
    constexpr std::array<std::string_view, 3> values = {"nothing", "folder", "app"};
    return values.at(static_cast<std::size_t>(needs));
}

std::span<const Tool> ToolCatalogue::all() noexcept {
    return tools;
}

const Tool* ToolCatalogue::tool(std::string_view id) noexcept {
    const auto found =
        std::find_if(tools.begin(), tools.end(), [&](const Tool& one) { return one.id == id; });
    return found == tools.end() ? nullptr : &*found;
}

std::shared_ptr<const ModuleScanner>
ToolCatalogue::makeScanner(const Tool& tool, const ScanRequest& request, Services& services) {
    const auto found = std::find_if(entries.begin(), entries.end(),
                                    [&](const Entry& entry) { return entry.tool.id == tool.id; });
    if (found == entries.end()) {
        fatalError("a tool that is not in the catalogue was asked for its scanner");
    }
    return found->make(request, services);
}

} // namespace korvane
