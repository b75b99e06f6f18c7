#include "KorvaneCore/scanners/DiskUsageScanner.h"

#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/platform/FolderFacts.h"
#include "KorvaneCore/scan/FolderListing.h"
#include "KorvaneCore/scan/TreeSizer.h"

#include <algorithm>
#include <cerrno>
#include <utility>

namespace korvane {

namespace {

using Kind = DirectoryReader::Kind;

std::vector<DiskUsageNode> entries(const FileURL& folder) {
    const ReachablePath place(folder.path());
    if (place.error() != 0) {
        throw FileError(place.error(), "read", folder.path());
    }
    const FileDescriptor descriptor = openFolderFollowingLinks(place.parent(), place.name());
    if (!descriptor) {
        throw FileError(errno, "read", folder.path());
    }
    DirectoryReader::Buffer buffer = DirectoryReader::makeBuffer();
    FolderListing names;
    if (const int error = names.readAll(descriptor.get(), buffer); error != 0) {
        throw FileError(error, "read", folder.path());
    }
    names.sort();
    std::vector<DiskUsageNode> nodes;
    nodes.reserve(names.remaining());
    while (names.remaining() > 0) {
        const char* name = names.takeFirst();
        FileFacts facts;
        if (readFacts(descriptor.get(), name, facts) == 0) {
            nodes.push_back({.url = folder.appending(name),
                             .name = name,
                             .sizeBytes = facts.kind == Kind::file ? facts.allocatedBytes : 0,
                             .isDirectory = facts.kind == Kind::folder,
                             .lastModified = Date::fromTimespec(facts.modified)});
        }
    }
    return nodes;
}

std::int64_t entryCount(const FileURL& folder) {
    const ReachablePath place(folder.path());
    const FileDescriptor descriptor =
        place.error() == 0 ? openFolder(place.parent(), place.name()) : FileDescriptor();
    std::int64_t count = 0;
    if (descriptor) {
        DirectoryReader::Buffer buffer = DirectoryReader::makeBuffer();
        DirectoryReader reader(descriptor.get(), buffer);
        while (reader.next()) {
            ++count;
        }
    }
    return count;
}

void measure(std::vector<DiskUsageNode>& nodes, const DiskUsageOptions& options) {
    std::vector<DiskUsageNode*> folders;
    std::vector<DiskUsageNode*> unknown;
    std::vector<FileURL> places;
    for (DiskUsageNode& node : nodes) {
        if (!node.isDirectory) {
            continue;
        }
        folders.push_back(&node);
        const auto known = options.knownSize ? options.knownSize(node.url) : std::nullopt;
        node.sizeBytes = known.value_or(0);
        if (!known) {
            unknown.push_back(&node);
            places.push_back(node.url);
        }
    }
    SizingRules rules;
    rules.measure = SizingRules::Measure::allocated;
    rules.includeHidden = options.includeHidden;
    const std::vector<TreeSize> sizes = sizeTrees(places, rules);
    for (std::size_t i = 0; i < unknown.size(); ++i) {
        unknown[i]->sizeBytes = sizes[i].bytes;
    }
    concurrentPerform(folders.size(), [&](std::size_t i) {
        if (!Task::isCancelled()) {
            folders[i]->childCount = entryCount(folders[i]->url);
        }
    });
}

} // namespace

std::vector<DiskUsageNode> DiskUsageScanner::children(const FileURL& folder,
                                                      const DiskUsageOptions& options) const {
    std::vector<DiskUsageNode> nodes = entries(folder);
    measure(nodes, options);
    std::stable_sort(nodes.begin(), nodes.end(),
                     [](const auto& a, const auto& b) { return a.sizeBytes > b.sizeBytes; });
    return nodes;
}

} // namespace korvane
