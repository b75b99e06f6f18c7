#include "KorvaneCore/scanners/CacheScanner.h"

#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/platform/BinFolders.h"
#include "KorvaneCore/platform/DirectoryReader.h"
#include "KorvaneCore/platform/FolderFacts.h"
#include "KorvaneCore/scan/FileSystemWalker.h"
#include "KorvaneCore/scan/PathHeuristicRows.h"
#include "KorvaneCore/scan/PathHeuristics.h"
#include "KorvaneCore/scanners/BuildOrder.h"
#include "KorvaneCore/scanners/ItemCollection.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <utility>

#include <fcntl.h>

#include <fmt/format.h>

namespace korvane {

namespace {

namespace rows = PathHeuristics;

constexpr std::string_view searchPrefix = "**/";
constexpr double dormantSeconds = 30 * 86400.0;

/// Rows that only label what another row found have a placeholder for a name in their pattern.
bool isLabel(const PathHeuristic& row) {
    return row.pathPattern.find('<') != std::string_view::npos;
}

bool isSearched(const PathHeuristic& row) {
    return row.pathPattern.starts_with(searchPrefix);
}

/// Whether the folder, and everything directly in it, was last changed before `since`. What cannot
/// be read may have changed.
bool isDormant(const FileURL& folder, const Date& since) {
    const auto isOld = [&](const FileURL& url) {
        FileFacts facts;
        return readFacts(AT_FDCWD, url.path().c_str(), facts) == 0 &&
               Date::fromTimespec(facts.modified) < since;
    };
    const auto names = namesInFolder(folder.path());
    return names && isOld(folder) &&
           std::all_of(names->begin(), names->end(),
                       [&](const std::string& name) { return isOld(folder.appending(name)); });
}

void stamp(ScanItem& item, const PathHeuristic& row) {
    item.heuristicID = row.id;
    item.category = row.category;
}

void labelProjects(std::vector<ScanItem>& projects) {
    const Date since = Date::now().adding(-dormantSeconds);
    for (ScanItem& project : projects) {
        stamp(project, isDormant(project.url, since) ? rows::devXcodeDerivedDataStale
                                                     : rows::devXcodeDerivedDataActive);
    }
}

void labelBuilds(std::vector<ScanItem>& builds) {
    const auto nameOf = [](const ScanItem& item) { return item.url.lastPathComponent(); };
    const auto newest =
        std::max_element(builds.begin(), builds.end(), [&](const ScanItem& a, const ScanItem& b) {
            return compareBuilds(nameOf(a), nameOf(b)) < 0;
        });
    if (newest == builds.end()) {
        return;
    }
    // The newest build may be there for several devices, and each is in use.
    const std::string name(nameOf(*newest));
    for (ScanItem& item : builds) {
        stamp(item, compareBuilds(nameOf(item), name) == 0
                        ? rows::devXcodeIosDeviceSupportCurrent
                        : rows::devXcodeIosDeviceSupportSuperseded);
    }
}

std::vector<ScanItem> itemsOf(const PathHeuristic& row, const FileURL& home) {
    std::vector<ScanItem> items;
    if (!row.enumerateChildren) {
        if (auto item = itemAt(row.url(home), row)) {
            items.push_back(std::move(*item));
        }
        return items;
    }
    items = childItems(row.url(home), row, row.claimedChildNames(home));
    if (row.id == rows::devXcodeDerivedData.id) {
        labelProjects(items);
    } else if (row.id == rows::devXcodeIosDeviceSupport.id) {
        labelBuilds(items);
    }
    return items;
}

/// Every folder of the searched rows' names below the home folder, in the order of their paths. Not
/// entered: what was found, the Library with its places of their own, hidden folders, and Bins.
std::vector<ScanItem> searchFolders(const std::vector<const PathHeuristic*>& searched,
                                    const FileURL& home, std::optional<std::int64_t> maxDepth) {
    std::map<std::string_view, const PathHeuristic*> byName;
    for (const PathHeuristic* row : searched) {
        byName.emplace(row->pathPattern.substr(searchPrefix.size()), row);
    }
    std::vector<ScanItem> items;
    const FileSystemWalker walker({.includeHidden = true, .maxDepth = maxDepth});
    walker.walk(home, nullptr, [&](const WalkEntry& entry) {
        if (!entry.isDirectory || entry.depth == 0) {
            return WalkDecision::proceed;
        }
        const std::string_view name = entry.url.lastPathComponent();
        if (const auto found = byName.find(name); found != byName.end()) {
            items.push_back({.url = entry.url,
                             .lastModified = entry.lastModified,
                             .category = std::string(found->second->category),
                             .heuristicID = std::string(found->second->id),
                             .isDirectory = true});
            return WalkDecision::skipDescendants;
        }
        return name.starts_with('.') || name == "Library" || looksLikeBin(entry.url)
                   ? WalkDecision::skipDescendants
                   : WalkDecision::proceed;
    });
    return items;
}

} // namespace

CacheScanner::CacheScanner(FileURL home, std::optional<std::int64_t> globMaxDepth, std::string id,
                           std::string displayName)
    : NamedScanner(std::move(id), std::move(displayName)), home_(std::move(home)),
      globMaxDepth_(globMaxDepth) {}

ScanResult CacheScanner::scan(const ScanProgressHandler& progress) const {
    ScanResult result{.scannerID = id(), .startedAt = Date::now()};
    std::vector<const PathHeuristic*> places = PathHeuristics::heuristics("cache-cleaner");
    std::erase_if(places, [](const PathHeuristic* row) { return isLabel(*row); });
    std::vector<const PathHeuristic*> searched;
    std::copy_if(places.begin(), places.end(), std::back_inserter(searched),
                 [](const PathHeuristic* row) { return isSearched(*row); });
    std::erase_if(places, [](const PathHeuristic* row) { return isSearched(*row); });

    const auto steps = static_cast<double>(places.size() + 2);
    for (std::size_t i = 0; i < places.size() && !Task::isCancelled(); ++i) {
        progress(
            {fmt::format("Checking {}…", places[i]->displayName), static_cast<double>(i) / steps});
        collectMeasured(itemsOf(*places[i], home_), result.items);
    }
    if (!Task::isCancelled()) {
        progress({"Searching for project folders…", (steps - 2) / steps});
        std::vector<ScanItem> found = searchFolders(searched, home_, globMaxDepth_);
        progress({"Measuring project folders…", (steps - 1) / steps});
        collectMeasured(std::move(found), result.items);
    }
    sortLargestFirst(result.items);
    return finished(std::move(result), progress);
}

} // namespace korvane
