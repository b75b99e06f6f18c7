#include "KorvaneCore/scanners/LargeFileScanner.h"

#include "KorvaneCore/scan/FileSystemWalker.h"
#include "KorvaneCore/scan/PathHeuristicRows.h"
#include "KorvaneCore/scanners/ChosenFolder.h"
#include "KorvaneCore/scanners/ItemCollection.h"

#include <algorithm>

namespace korvane {

ScanResult LargeFileScanner::scan(const ScanProgressHandler& progress) const {
    const PathHeuristic& row = PathHeuristics::largeFilesUserSelected;
    ScanResult result{.scannerID = id(), .startedAt = Date::now()};
    progress({"Finding large files…", std::nullopt});
    const auto smallest = std::max<std::int64_t>(minimumBytes_, 1);
    const ChosenFolder folder(rootURL_);
    for (const WalkEntry& entry :
         FileSystemWalker().largestFiles(folder.real(), smallest, limit_)) {
        result.items.push_back({.url = folder.shown(entry.url),
                                .sizeBytes = entry.sizeBytes,
                                .lastModified = entry.lastModified,
                                .category = std::string(row.category),
                                .heuristicID = std::string(row.id)});
    }
    return finished(std::move(result), progress);
}

} // namespace korvane
