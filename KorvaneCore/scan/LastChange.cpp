#include "KorvaneCore/scan/LastChange.h"

#include "KorvaneCore/scan/FileSystemWalker.h"

namespace korvane {

bool unchangedSince(const FileURL& place, const Date& moment) {
    const WalkSummary summary =
        FileSystemWalker({.includeHidden = true}).walk(place, nullptr, [&](const WalkEntry& entry) {
            return entry.lastModified && *entry.lastModified < moment ? WalkDecision::proceed
                                                                      : WalkDecision::stop;
        });
    return !summary.stopped && !summary.cancelled && summary.errors.empty() &&
           summary.entriesVisited > 0;
}

} // namespace korvane
