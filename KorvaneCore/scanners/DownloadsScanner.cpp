#include "KorvaneCore/scanners/DownloadsScanner.h"

#include "KorvaneCore/scan/FileSystemWalker.h"
#include "KorvaneCore/scan/PathHeuristicRows.h"
#include "KorvaneCore/scanners/ChosenFolder.h"
#include "KorvaneCore/scanners/FileKind.h"
#include "KorvaneCore/scanners/ItemCollection.h"

namespace korvane {

ScanResult DownloadsScanner::scan(const ScanProgressHandler& progress) const {
    ScanResult result{.scannerID = id(), .startedAt = Date::now()};
    progress({"Checking Downloads…", std::nullopt});
    const ChosenFolder folder(downloads_);
    FileSystemWalker().walk(folder.real(), nullptr, [&](const WalkEntry& entry) {
        if (entry.isDirectory) {
            return entry.depth > 0 && isPackageExtension(entry.url.pathExtension())
                       ? WalkDecision::skipDescendants
                       : WalkDecision::proceed;
        }
        if (!entry.isSymlink && entry.sizeBytes > 0) {
            // A device or a queue has a name here too, but nothing to free.
            if (auto item = itemAt(folder.shown(entry.url), PathHeuristics::downloadsAllFiles,
                                   std::string(title(fileKind(entry.url.pathExtension()))))) {
                item->sizeBytes = entry.sizeBytes;
                result.items.push_back(std::move(*item));
            }
        }
        return WalkDecision::proceed;
    });
    sortLargestFirst(result.items);
    return finished(std::move(result), progress);
}

} // namespace korvane
