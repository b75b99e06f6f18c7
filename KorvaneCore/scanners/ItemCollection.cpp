#include "KorvaneCore/scanners/ItemCollection.h"

#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/platform/FolderFacts.h"
#include "KorvaneCore/scan/FileSystemSize.h"

#include <algorithm>
#include <utility>

#include <fcntl.h>

namespace korvane {

std::optional<ScanItem> itemAt(FileURL url, const PathHeuristic& row, std::string category) {
    FileFacts facts;
    if (readFacts(AT_FDCWD, url.path().c_str(), facts) != 0 ||
        (facts.kind != DirectoryReader::Kind::folder &&
         facts.kind != DirectoryReader::Kind::file)) {
        return std::nullopt;
    }
    return ScanItem{.url = std::move(url),
                    .lastModified = Date::fromTimespec(facts.modified),
                    .category = std::move(category),
                    .heuristicID = std::string(row.id),
                    .isDirectory = facts.kind == DirectoryReader::Kind::folder};
}

std::optional<ScanItem> itemAt(FileURL url, const PathHeuristic& row) {
    return itemAt(std::move(url), row, std::string(row.category));
}

void measureItems(std::vector<ScanItem>& items) {
    std::vector<FileURL> urls;
    urls.reserve(items.size());
    for (const ScanItem& item : items) {
        urls.push_back(item.url);
    }
    const std::vector<std::int64_t> sizes = FileSystemSize::allocatedSizes(urls);
    if (Task::isCancelled()) {
        items.clear();
        return;
    }
    for (std::size_t i = 0; i < items.size(); ++i) {
        items[i].sizeBytes = sizes[i];
    }
    std::erase_if(items, [](const ScanItem& item) { return item.sizeBytes < 1; });
}

void sortLargestFirst(std::vector<ScanItem>& items) {
    std::stable_sort(items.begin(), items.end(), [](const ScanItem& a, const ScanItem& b) {
        return a.sizeBytes > b.sizeBytes;
    });
}

} // namespace korvane
