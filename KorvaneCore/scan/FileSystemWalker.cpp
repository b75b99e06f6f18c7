#include "KorvaneCore/scan/FileSystemWalker.h"

#include "KorvaneCore/foundation/CheckedArithmetic.h"
#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/platform/FolderFacts.h"
#include "KorvaneCore/scan/FolderListing.h"
#include "KorvaneCore/scan/FolderTrail.h"
#include "KorvaneCore/scan/TreeSizer.h"

#include <algorithm>
#include <cerrno>
#include <optional>

namespace korvane {

namespace {

using Kind = DirectoryReader::Kind;

bool isCancelled(const WalkCancellation* cancellation) noexcept {
    return (cancellation != nullptr && cancellation->isCancelled()) || Task::isCancelled();
}

/// One walk under way.
class Walk {
  public:
    Walk(const WalkOptions& options, const WalkCancellation* cancellation,
         const FileSystemWalker::Visitor& visitor)
        : options_(options), cancellation_(cancellation), visitor_(visitor),
          trail_(options.followSymlinks), buffer_(DirectoryReader::makeBuffer()) {}

    WalkSummary run(const FileURL& root) {
        if (!cancelledNow()) {
            const FileURL standardized = root.standardized();
            const ReachablePath place(standardized.path());
            if (place.error() != 0) {
                note(standardized.path(), place.error());
            } else {
                visit(place.parent(), place.name(), standardized.path(), 0);
            }
        }
        while (!summary_.stopped && !summary_.cancelled && !listings_.empty()) {
            step();
        }
        return std::move(summary_);
    }

  private:
    void step() {
        if (listings_.back().remaining() == 0) {
            listings_.pop_back();
            trail_.leave();
        } else if (!cancelledNow()) {
            const char* name = listings_.back().takeFirst();
            std::string path = trail_.pathOf(name);
            if (trail_.descriptor() < 0) {
                note(std::move(path), trail_.error());
            } else {
                visit(trail_.descriptor(), name, std::move(path),
                      static_cast<std::int64_t>(trail_.levels()));
            }
        }
    }

    bool cancelledNow() {
        summary_.cancelled = isCancelled(cancellation_);
        return summary_.cancelled;
    }

    void visit(int parent, const char* name, std::string path, std::int64_t depth);
    void enter(int parent, const char* name, const FileURL& url);
    bool isFirstEntry(int parent, const char* name, const FileDescriptor& folder);

    void note(std::string path, int error) {
        summary_.errors.push_back({FileURL(std::move(path)), errorText(error)});
    }

    const WalkOptions& options_;
    const WalkCancellation* cancellation_;
    const FileSystemWalker::Visitor& visitor_;
    FolderTrail trail_;
    std::vector<FolderListing> listings_; ///< one a level of the trail: names still to visit
    DirectoryReader::Buffer buffer_;
    std::set<FileIdentity> entered_; ///< only when links are followed
    WalkSummary summary_;
};

void Walk::visit(int parent, const char* name, std::string path, std::int64_t depth) {
    FileFacts facts;
    if (const int error = readFacts(parent, name, facts); error != 0) {
        note(std::move(path), error);
        return;
    }
    const bool isLink = facts.kind == Kind::link;
    bool isFolder = facts.kind == Kind::folder;
    if (isLink && options_.followSymlinks) {
        FileFacts target;
        isFolder =
            readFactsFollowingLinks(parent, name, target) == 0 && target.kind == Kind::folder;
    }
    if (!options_.includeHidden && depth >= 1 && name[0] == '.') {
        return;
    }
    const WalkEntry entry{
        FileURL(std::move(path)),           isFolder, isLink, isFolder ? 0 : facts.sizeBytes,
        Date::fromTimespec(facts.modified), depth};
    summary_.entriesVisited = checkedAdd<std::int64_t>(summary_.entriesVisited, 1);
    const WalkDecision decision = visitor_(entry);
    if (decision == WalkDecision::stop) {
        summary_.stopped = true;
    }
    if (decision != WalkDecision::proceed || !isFolder ||
        (options_.maxDepth && depth >= *options_.maxDepth)) {
        return;
    }
    if (depth >= 1 && !options_.pruneDirectoryNames.empty() &&
        options_.pruneDirectoryNames.contains(name)) {
        return;
    }
    enter(parent, name, entry.url);
}

void Walk::enter(int parent, const char* name, const FileURL& url) {
    FileDescriptor folder =
        options_.followSymlinks ? openFolderFollowingLinks(parent, name) : openFolder(parent, name);
    int error = folder ? 0 : errno;
    if (options_.followSymlinks && !isFirstEntry(parent, name, folder)) {
        return;
    }
    FolderListing listing;
    if (error == 0) {
        error = listing.readAll(folder.get(), buffer_);
    }
    if (error != 0) {
        note(url.path(), error);
        return;
    }
    if (listing.remaining() == 0) {
        return;
    }
    listing.sort();
    if (trail_.levels() == 0) {
        trail_.start(std::move(folder), url.path());
    } else {
        trail_.push(std::move(folder), name);
    }
    listings_.push_back(std::move(listing));
}

// Whether this folder was not entered before by another way. One that cannot be identified is.
bool Walk::isFirstEntry(int parent, const char* name, const FileDescriptor& folder) {
    FileFacts facts;
    std::optional<FileIdentity> known;
    if (folder) {
        known = identity(folder.get());
    } else if (readFactsFollowingLinks(parent, name, facts) == 0) {
        known = facts.identity;
    }
    return !known || entered_.insert(*known).second;
}

/// The largest entries seen so far, at most `limit`; the earliest among equals.
class LargestEntries {
  public:
    explicit LargestEntries(std::size_t limit) : limit_(limit) {}

    void offer(const WalkEntry& entry) {
        if (kept_.size() == limit_) {
            if (kept_.front().entry.sizeBytes >= entry.sizeBytes) {
                return;
            }
            std::pop_heap(kept_.begin(), kept_.end(), isAhead);
            kept_.pop_back();
        }
        kept_.push_back({entry, count_++});
        std::push_heap(kept_.begin(), kept_.end(), isAhead);
    }

    std::vector<WalkEntry> take() {
        std::sort(kept_.begin(), kept_.end(), isAhead);
        std::vector<WalkEntry> entries;
        entries.reserve(kept_.size());
        for (Kept& kept : kept_) {
            entries.push_back(std::move(kept.entry));
        }
        return entries;
    }

  private:
    struct Kept {
        WalkEntry entry;
        std::size_t order;
    };

    static bool isAhead(const Kept& a, const Kept& b) {
        return a.entry.sizeBytes != b.entry.sizeBytes ? a.entry.sizeBytes > b.entry.sizeBytes
                                                      : a.order < b.order;
    }

    std::size_t limit_;
    std::size_t count_ = 0;
    std::vector<Kept> kept_; ///< a heap whose front is the first to go
};

} // namespace

WalkSummary FileSystemWalker::walk(const FileURL& root, const WalkCancellation* cancellation,
                                   const Visitor& visitor) const {
    return Walk(options_, cancellation, visitor).run(root);
}

std::pair<std::int64_t, WalkSummary>
FileSystemWalker::totalSize(const FileURL& root, const WalkCancellation* cancellation) const {
    if (options_.followSymlinks) {
        // Which way leads first into a folder decides what is counted: that needs the order.
        std::int64_t total = 0;
        WalkSummary summary = walk(root, cancellation, [&](const WalkEntry& entry) {
            if (!entry.isDirectory && !entry.isSymlink) {
                total = checkedAdd(total, entry.sizeBytes);
            }
            return WalkDecision::proceed;
        });
        return {total, std::move(summary)};
    }
    TreeSize size = std::move(sizeTrees({&root, 1}, sizingRules(cancellation)).front());
    return {size.bytes, std::move(size.summary)};
}

std::vector<WalkEntry> FileSystemWalker::measure(std::span<const FileURL> urls,
                                                 const WalkCancellation* cancellation) const {
    std::vector<TreeSize> sizes;
    if (options_.followSymlinks) {
        sizes.resize(urls.size());
        concurrentPerform(urls.size(), [&](std::size_t i) {
            if (!isCancelled(cancellation)) {
                sizes[i].begun = true;
                sizes[i].bytes = totalSize(urls[i], cancellation).first;
            }
        });
    } else {
        sizes = sizeTrees(urls, sizingRules(cancellation));
    }
    std::vector<WalkEntry> entries;
    for (std::size_t i = 0; i < urls.size(); ++i) {
        if (!sizes[i].begun) {
            continue;
        }
        WalkEntry& entry = entries.emplace_back();
        entry = {urls[i], true, false, sizes[i].bytes, std::nullopt, -1};
        const ReachablePath place(urls[i].path());
        FileFacts facts;
        if (place.error() == 0 && readFacts(place.parent(), place.name(), facts) == 0) {
            entry.lastModified = Date::fromTimespec(facts.modified);
        }
    }
    return entries;
}

std::vector<WalkEntry> FileSystemWalker::findFolders(const std::set<std::string>& names,
                                                     const FileURL& root,
                                                     const WalkCancellation* cancellation) const {
    if (names.empty()) {
        return {};
    }
    std::vector<FileURL> found;
    walk(root, cancellation, [&](const WalkEntry& entry) {
        if (entry.isDirectory && names.contains(std::string(entry.url.lastPathComponent()))) {
            found.push_back(entry.url);
            return WalkDecision::skipDescendants;
        }
        return WalkDecision::proceed;
    });
    return measure(found, cancellation);
}

std::vector<WalkEntry> FileSystemWalker::largestFiles(const FileURL& root,
                                                      std::int64_t minimumBytes, std::size_t limit,
                                                      const WalkCancellation* cancellation) const {
    if (limit == 0) {
        return {};
    }
    LargestEntries largest(limit);
    walk(root, cancellation, [&](const WalkEntry& entry) {
        if (!entry.isDirectory && !entry.isSymlink && entry.sizeBytes >= minimumBytes) {
            largest.offer(entry);
        }
        return WalkDecision::proceed;
    });
    return largest.take();
}

SizingRules FileSystemWalker::sizingRules(const WalkCancellation* cancellation) const {
    return {SizingRules::Measure::logical, options_.includeHidden, options_.maxDepth,
            &options_.pruneDirectoryNames, cancellation};
}

} // namespace korvane
