#include "KorvaneCore/scanners/ItemCollection.h"

#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/platform/FolderFacts.h"
#include "KorvaneCore/scan/FileSystemSize.h"

#include <algorithm>
#include <iterator>
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

std::vector<ScanItem> childItems(const FileURL& folder, const PathHeuristic& row,
                                 const std::set<std::string>& leftOut) {
    std::vector<ScanItem> items;
    FileFacts facts;
    if (readFacts(AT_FDCWD, folder.path().c_str(), facts) != 0 ||
        facts.kind != DirectoryReader::Kind::folder) {
        return items;
    }
    for (const std::string& name :
         namesInFolder(folder.path()).value_or(std::vector<std::string>())) {
        if (name.starts_with('.') || leftOut.contains(name)) {
            continue;
        }
        if (auto item = itemAt(folder.appending(name), row)) {
            items.push_back(std::move(*item));
        }
    }
    return items;
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

void collectMeasured(std::vector<ScanItem> items, std::vector<ScanItem>& collected) {
    measureItems(items);
    std::move(items.begin(), items.end(), std::back_inserter(collected));
}

ScanResult finished(ScanResult result, const ScanProgressHandler& progress) {
    if (!Task::isCancelled()) {
        progress({"Done", 1.0});
    }
    result.finishedAt = Date::now();
    return result;
}

void sortLargestFirst(std::vector<ScanItem>& items) {
    std::stable_sort(items.begin(), items.end(), [](const ScanItem& a, const ScanItem& b) {
        return a.sizeBytes > b.sizeBytes;
    });
}

} // namespace korvane
