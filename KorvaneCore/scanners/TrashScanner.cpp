#include "KorvaneCore/scanners/TrashScanner.h"

#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/platform/BinFolders.h"
#include "KorvaneCore/platform/FolderFacts.h"
#include "KorvaneCore/scan/FileSystemSize.h"
#include "KorvaneCore/scan/PathHeuristicRows.h"
#include "KorvaneCore/scanners/ItemCollection.h"

#include <algorithm>

#include <fcntl.h>

namespace korvane {

std::int64_t binContentSize(const FileURL& bin, ProcessLauncher& launcher) {
    FileFacts facts;
    if (readFacts(AT_FDCWD, bin.path().c_str(), facts) != 0) {
        return 0;
    }
    const std::int64_t used = FileSystemSize::diskUsage(bin, launcher);
    return std::max<std::int64_t>(used - facts.allocatedBytes, 0);
}

ScanResult TrashScanner::scan(const ScanProgressHandler& progress) const {
    ScanResult result{.scannerID = id(), .startedAt = Date::now()};
    progress({"Finding Bin folders…", 0.0});
    const std::vector<FileURL> bins = binFolders(folders_);
    for (std::size_t i = 0; i < bins.size() && !Task::isCancelled(); ++i) {
        progress({"Measuring Bin folders…",
                  static_cast<double>(i + 1) / static_cast<double>(bins.size() + 1)});
        auto item = itemAt(bins[i], PathHeuristics::systemTrashAllVolumes);
        if (!item) {
            continue;
        }
        item->sizeBytes = binContentSize(bins[i], launcher_);
        if (item->sizeBytes > 0 && !Task::isCancelled()) {
            result.items.push_back(std::move(*item));
        }
    }
    sortLargestFirst(result.items);
    return finished(std::move(result), progress);
}

} // namespace korvane
