#include "KorvaneCore/scan/TreeSizer.h"

#include "KorvaneCore/foundation/CheckedArithmetic.h"
#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/platform/FolderFacts.h"
#include "KorvaneCore/scan/FolderListing.h"
#include "KorvaneCore/scan/FolderTrail.h"
#include "KorvaneCore/scan/SizingQueue.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <iterator>
#include <limits>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace korvane {

namespace {

using Kind = DirectoryReader::Kind;

// Trees below this many entries are done before another thread would have started.
constexpr std::int64_t entriesBeforeThreads = 2000;
// Below the size at which every allocation would be a mapping of its own.
constexpr std::size_t bufferSize = 64UL * 1024UL;

/// Goes through one piece of work at a time, depth first. Can be interrupted between two folders
/// and go on later on another thread.
class SizingWorker {
  public:
    SizingWorker(std::span<const FileURL> roots, const SizingRules& rules, SizingQueue& queue)
        : roots_(roots), rules_(rules), queue_(queue), buffer_(bufferSize) {}

    /// Works until nothing is left, or until more than `entryLimit` entries were seen: then false.
    bool run(std::int64_t entryLimit) {
        while (true) {
            while (!pending_.empty()) {
                if (entriesSeen_ > entryLimit) {
                    return false;
                }
                step();
            }
            if (std::exchange(hasWork_, false)) {
                queue_.finish(root_, std::exchange(found_, {}));
                if (entriesSeen_ > entryLimit) {
                    return false;
                }
            }
            auto work = queue_.take();
            if (!work) {
                return true;
            }
            hasWork_ = true;
            begin(*work);
        }
    }

  private:
    void begin(SizingQueue::Work& work);
    void beginRoot();
    bool beginAllocatedRoot(const ReachablePath& place);
    bool beginLogicalRoot(const ReachablePath& place, const std::string& path);
    void step();
    void goInto(const char* name);
    void readFolder();
    void consider(const DirectoryReader::Entry& entry, TreeSize& tally, FolderListing& folders);
    void couldNotOpen(const char* name, int error);
    void share();

    [[nodiscard]] bool entersFolder(const char* name, std::int64_t depth) const;
    [[nodiscard]] bool isCancelled() const noexcept {
        return (rules_.cancellation != nullptr && rules_.cancellation->isCancelled()) ||
               Task::isCancelled();
    }
    [[nodiscard]] std::int64_t bytes(const FileFacts& facts) const noexcept {
        return rules_.measure == SizingRules::Measure::allocated ? facts.allocatedBytes
                                                                 : facts.sizeBytes;
    }
    [[nodiscard]] bool keepsErrors() const noexcept {
        return rules_.measure == SizingRules::Measure::logical;
    }
    void note(WalkSummary& summary, std::string path, int error) const {
        summary.errors.push_back({FileURL(std::move(path)), errorText(error)});
    }
    /// Depth of the deepest folder on the trail.
    [[nodiscard]] std::int64_t depth() const noexcept {
        return baseDepth_ + static_cast<std::int64_t>(trail_.levels()) - 1;
    }
    void cancelAll() {
        found_.summary.cancelled = true;
        pending_.clear();
    }

    std::span<const FileURL> roots_;
    const SizingRules& rules_;
    SizingQueue& queue_;
    DirectoryReader::Buffer buffer_;
    FolderTrail trail_;
    std::vector<FolderListing> pending_; ///< one a level of the trail: folders still to go into
    std::size_t root_ = 0;
    std::int64_t baseDepth_ = 0;
    std::int64_t entriesSeen_ = 0;
    bool hasWork_ = false;
    bool searchable_ = false; ///< the folder being read is known to let its items be looked at
    TreeSize found_;
};

void SizingWorker::begin(SizingQueue::Work& work) {
    root_ = work.root;
    if (isCancelled()) {
        found_.summary.cancelled = true;
        return;
    }
    found_.begun = true;
    if (work.share) {
        baseDepth_ = work.share->depth;
        trail_.start(std::move(work.share->folder), std::move(work.share->path));
        pending_.push_back(std::move(work.share->names));
    } else {
        baseDepth_ = 0;
        beginRoot();
    }
}

void SizingWorker::beginRoot() {
    const bool allocated = rules_.measure == SizingRules::Measure::allocated;
    std::string path = allocated ? roots_[root_].path() : roots_[root_].standardized().path();
    const ReachablePath place(path);
    if (place.error() != 0) {
        if (!allocated) {
            note(found_.summary, std::move(path), place.error());
        }
        return;
    }
    ++entriesSeen_;
    if (allocated ? !beginAllocatedRoot(place) : !beginLogicalRoot(place, path)) {
        return;
    }
    FileDescriptor folder = allocated ? openFolderFollowingLinks(place.parent(), place.name())
                                      : openFolder(place.parent(), place.name());
    if (!folder) {
        const int error = errno;
        if (!allocated) {
            note(found_.summary, std::move(path), error);
        }
        return;
    }
    trail_.start(std::move(folder), std::move(path));
    readFolder();
}

// True when the root is a folder to be read. A link counts as what it points to when that is a
// folder, else by itself.
bool SizingWorker::beginAllocatedRoot(const ReachablePath& place) {
    FileFacts facts;
    if (readFactsFollowingLinks(place.parent(), place.name(), facts) != 0) {
        return false;
    }
    if (facts.kind == Kind::folder) {
        return true;
    }
    if (readFacts(place.parent(), place.name(), facts) == 0 && facts.kind != Kind::folder) {
        found_.bytes = facts.sizeBytes;
    }
    return false;
}

bool SizingWorker::beginLogicalRoot(const ReachablePath& place, const std::string& path) {
    FileFacts facts;
    if (const int error = readFacts(place.parent(), place.name(), facts); error != 0) {
        note(found_.summary, path, error);
        return false;
    }
    found_.summary.entriesVisited = 1;
    if (facts.kind != Kind::folder) {
        found_.bytes = facts.kind == Kind::link ? 0 : facts.sizeBytes;
        return false;
    }
    return !rules_.maxDepth || *rules_.maxDepth > 0;
}

void SizingWorker::step() {
    if (pending_.back().remaining() == 0) {
        pending_.pop_back();
        trail_.leave();
        return;
    }
    if (isCancelled()) {
        cancelAll();
        return;
    }
    goInto(pending_.back().takeFirst());
    if (queue_.isHungry()) {
        share();
    }
}

void SizingWorker::goInto(const char* name) {
    if (trail_.descriptor() < 0) {
        note(found_.summary, trail_.pathOf(name), trail_.error());
        return;
    }
    FileDescriptor folder = openFolder(trail_.descriptor(), name);
    if (!folder) {
        couldNotOpen(name, errno);
        return;
    }
    ++found_.summary.entriesVisited;
    trail_.push(std::move(folder), name);
    readFolder();
}

// Reads the deepest folder of the trail; leaves it again when there is nothing to go into.
void SizingWorker::readFolder() {
    TreeSize tally;
    FolderListing folders;
    searchable_ = false;
    DirectoryReader reader(trail_.descriptor(), buffer_);
    while (true) {
        const auto entry = reader.next();
        if (!entry) {
            break;
        }
        if (isCancelled()) {
            cancelAll();
            break;
        }
        consider(*entry, tally, folders);
    }
    if (reader.error() != 0 && keepsErrors()) {
        // Half a listing counts as none.
        tally = {};
        folders = {};
        note(tally.summary, trail_.path(), reader.error());
    }
    found_.bytes = checkedAdd(found_.bytes, tally.bytes);
    found_.summary.entriesVisited += tally.summary.entriesVisited;
    std::move(tally.summary.errors.begin(), tally.summary.errors.end(),
              std::back_inserter(found_.summary.errors));
    if (found_.summary.cancelled) {
        return;
    }
    if (folders.remaining() > 0) {
        pending_.push_back(std::move(folders));
    } else {
        trail_.leave();
    }
}

void SizingWorker::consider(const DirectoryReader::Entry& entry, TreeSize& tally,
                            FolderListing& folders) {
    ++entriesSeen_;
    const char* name = entry.name.data();
    const bool hidden = !rules_.includeHidden && entry.name.front() == '.';
    Kind kind = entry.kind;
    FileFacts facts;
    // Only a file's size counts, so nothing else needs its facts. But a folder that can be listed
    // and not searched fails every item in it, and one answer tells which kind it is.
    if (kind == Kind::unknown || (kind == Kind::file && !hidden) || !searchable_) {
        const int error = readFacts(trail_.descriptor(), name, facts);
        if (error != 0) {
            if (keepsErrors()) {
                note(tally.summary, trail_.pathOf(entry.name), error);
            }
            return;
        }
        searchable_ = true;
        kind = facts.kind;
    }
    if (hidden) {
        return;
    }
    if (kind == Kind::folder && entersFolder(name, depth() + 1)) {
        // Counted once it is opened.
        folders.add(entry.name);
        return;
    }
    ++tally.summary.entriesVisited;
    if (kind == Kind::file) {
        tally.bytes = checkedAdd(tally.bytes, bytes(facts));
    }
}

bool SizingWorker::entersFolder(const char* name, std::int64_t depth) const {
    if (rules_.maxDepth && depth >= *rules_.maxDepth) {
        return false;
    }
    return rules_.pruneDirectoryNames == nullptr || rules_.pruneDirectoryNames->empty() ||
           !rules_.pruneDirectoryNames->contains(name);
}

// A folder that could be listed and not be opened: it is unreadable, gone, or something else now.
void SizingWorker::couldNotOpen(const char* name, int error) {
    FileFacts facts;
    const int factsError = readFacts(trail_.descriptor(), name, facts);
    if (factsError == 0) {
        ++found_.summary.entriesVisited;
        if (facts.kind == Kind::file) {
            found_.bytes = checkedAdd(found_.bytes, bytes(facts));
        }
        if (facts.kind != Kind::folder) {
            return;
        }
    }
    if (keepsErrors()) {
        note(found_.summary, trail_.pathOf(name), factsError != 0 ? factsError : error);
    }
}

// Gives half of the folders that are nearest to the root away, for these are likely the most work.
void SizingWorker::share() {
    for (std::size_t level = 0; level < pending_.size(); ++level) {
        const std::size_t remaining = pending_[level].remaining();
        const int descriptor = trail_.descriptorAt(level);
        const bool isLastOfMine = level + 1 == pending_.size() && remaining < 2;
        if (remaining == 0 || descriptor < 0 || isLastOfMine) {
            continue;
        }
        FileDescriptor copy(fcntl(descriptor, F_DUPFD_CLOEXEC, 0));
        if (copy) {
            queue_.give({root_, baseDepth_ + static_cast<std::int64_t>(level), std::move(copy),
                         trail_.pathAt(level), pending_[level].takeLast((remaining + 1) / 2)});
        }
        return;
    }
}

// The order in which a depth-first walk in path order meets them: "/" before every other byte.
bool comesEarlier(const WalkError& a, const WalkError& b) {
    const auto rank = [](char c) { return c == '/' ? 0 : static_cast<unsigned char>(c) + 1; };
    const std::string& left = a.url.path();
    const std::string& right = b.url.path();
    return std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end(),
                                        [&](char x, char y) { return rank(x) < rank(y); });
}

} // namespace

std::vector<TreeSize> sizeTrees(std::span<const FileURL> roots, const SizingRules& rules) {
    SizingQueue queue(roots.size());
    SizingWorker first(roots, rules, queue);
    const bool isLarge = !first.run(entriesBeforeThreads);
    if (isLarge) {
        constexpr auto noLimit = std::numeric_limits<std::int64_t>::max();
        // Whichever thread comes first goes on with the work begun, for the others wait for it.
        std::atomic<bool> firstIsTaken = false;
        concurrentPerform(concurrencyLimit(), [&](std::size_t) {
            if (!firstIsTaken.exchange(true)) {
                first.run(noLimit);
            } else {
                SizingWorker(roots, rules, queue).run(noLimit);
            }
        });
    }
    for (TreeSize& result : queue.results()) {
        std::sort(result.summary.errors.begin(), result.summary.errors.end(), comesEarlier);
    }
    return std::move(queue.results());
}

} // namespace korvane
