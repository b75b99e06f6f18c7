#include "KorvaneCore/scanners/OldFilesScanner.h"

#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/foundation/Text.h"
#include "KorvaneCore/scan/FileSystemWalker.h"
#include "KorvaneCore/scan/LastChange.h"
#include "KorvaneCore/scan/PathHeuristicRows.h"
#include "KorvaneCore/scanners/FileKind.h"
#include "KorvaneCore/scanners/ItemCollection.h"

#include <algorithm>
#include <array>
#include <utility>

#include <fmt/format.h>

namespace korvane {

namespace {

using Rule = OldFilesTarget::Rule;

constexpr double day = 86400;

bool isScreenshot(const FileURL& url, Rule rule) {
    constexpr std::array<std::string_view, 3> beginnings{"Screen Shot", "Screenshot",
                                                         "Screen Recording"};
    const std::string_view name = url.lastPathComponent();
    const FileKind kind = fileKind(url.pathExtension());
    return (kind == FileKind::picture || kind == FileKind::video) &&
           (std::any_of(beginnings.begin(), beginnings.end(),
                        [&](std::string_view text) { return name.starts_with(text); }) ||
            (rule == Rule::screencasts && name.starts_with("Screencast")));
}

std::vector<ScanItem> oldFiles(const OldFilesTarget& target, const Date& since) {
    std::vector<ScanItem> items = childItems(target.folder, *target.heuristic);
    std::erase_if(items, [&](const ScanItem& item) {
        return item.isDirectory || !item.lastModified || *item.lastModified > since ||
               (target.rule != Rule::files && !isScreenshot(item.url, target.rule));
    });
    return items;
}

/// An archive is as old as the newest thing in it.
std::vector<ScanItem> oldArchives(const OldFilesTarget& target, const Date& since) {
    std::vector<ScanItem> items;
    FileSystemWalker().walk(target.folder, nullptr, [&](const WalkEntry& entry) {
        if (!entry.isDirectory || composedLowercase(entry.url.pathExtension()) != "xcarchive") {
            return WalkDecision::proceed;
        }
        if (auto item = itemAt(entry.url, *target.heuristic);
            item && unchangedSince(entry.url, since)) {
            items.push_back(std::move(*item));
        }
        return WalkDecision::skipDescendants;
    });
    return items;
}

} // namespace

std::vector<OldFilesTarget> defaultOldFilesTargets(const UserFolders& folders) {
    using namespace PathHeuristics;
    const UserDirectories places = UserDirectories::read(folders);
    std::vector<OldFilesTarget> targets;
    const auto add = [&](const PathHeuristic& row, FileURL folder, Rule rule, double days) {
        const bool isThere =
            std::any_of(targets.begin(), targets.end(), [&](const OldFilesTarget& target) {
                return target.heuristic == &row && target.folder == folder;
            });
        if (!isThere) {
            targets.push_back({&row, std::move(folder), rule, days * day});
        }
    };
    add(oldFilesDownloads, places.downloads, Rule::files, 90);
    add(oldFilesScreenshots, folders.home.appending("Desktop"), Rule::screenshots, 30);
    add(oldFilesScreenshots, places.desktop, Rule::screenshots, 30);
    add(oldFilesScreenshots, places.pictures, Rule::screenshots, 30);
    add(oldFilesScreenshots, places.pictures.appending("Screenshots"), Rule::screenshots, 30);
    add(oldFilesScreenshots, places.videos.appending("Screencasts"), Rule::screencasts, 30);
    add(oldFilesXcodeArchives, folders.home.appending("Library/Developer/Xcode/Archives"),
        Rule::archives, 90);
    return targets;
}

OldFilesScanner::OldFilesScanner(std::vector<OldFilesTarget> targets, Date now)
    : NamedScanner("old-files", "Old Files"), targets_(std::move(targets)), now_(now) {}

ScanResult OldFilesScanner::scan(const ScanProgressHandler& progress) const {
    ScanResult result{.scannerID = id(), .startedAt = Date::now()};
    const auto count = static_cast<double>(targets_.size());
    for (std::size_t i = 0; i < targets_.size() && !Task::isCancelled(); ++i) {
        const OldFilesTarget& target = targets_[i];
        progress({fmt::format("Checking {}…", target.heuristic->displayName),
                  static_cast<double>(i) / count});
        const Date since = now_.adding(-target.minimumAge);
        collectMeasured(target.rule == Rule::archives ? oldArchives(target, since)
                                                      : oldFiles(target, since),
                        result.items);
    }
    sortLargestFirst(result.items);
    return finished(std::move(result), progress);
}

} // namespace korvane
