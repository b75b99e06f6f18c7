#include "KorvaneCore/scanners/ICloudCleanupScanner.h"

#include "KorvaneCore/platform/FolderFacts.h"
#include "KorvaneCore/scan/FileSystemWalker.h"
#include "KorvaneCore/scan/PathHeuristicRows.h"
#include "KorvaneCore/scanners/ItemCollection.h"

namespace korvane {

namespace {

std::int64_t bytesOnDisk(const FileURL& url) {
    const ReachablePath place(url.path());
    FileFacts facts;
    return place.error() == 0 && readFacts(place.parent(), place.name(), facts) == 0 &&
                   facts.kind == DirectoryReader::Kind::file
               ? facts.allocatedBytes
               : 0;
}

} // namespace

ScanResult ICloudCleanupScanner::scan(const ScanProgressHandler& progress) const {
    const PathHeuristic& row = PathHeuristics::icloudLocalCopies;
    ScanResult result{.scannerID = id(), .startedAt = Date::now()};
    progress({"Checking iCloud Drive…", std::nullopt});
    FileSystemWalker().walk(row.url(home_), nullptr, [&](const WalkEntry& entry) {
        const std::int64_t bytes = entry.isDirectory ? 0 : bytesOnDisk(entry.url);
        if (bytes > 0) {
            result.items.push_back({.url = entry.url,
                                    .sizeBytes = bytes,
                                    .lastModified = entry.lastModified,
                                    .category = std::string(row.category),
                                    .heuristicID = std::string(row.id)});
        }
        return WalkDecision::proceed;
    });
    sortLargestFirst(result.items);
    return finished(std::move(result), progress);
}

} // namespace korvane
