#include "KorvaneCore/cleaning/Cleaner.h"

#include "KorvaneCore/audit/AuditLog.h"
#include "KorvaneCore/cleaning/ExclusionStore.h"
#include "KorvaneCore/cleaning/ItemLocation.h"
#include "KorvaneCore/cleaning/SafetyGuard.h"
#include "KorvaneCore/foundation/CheckedArithmetic.h"
#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/platform/FileManager.h"

#include <algorithm>
#include <tuple>
#include <unordered_set>
#include <utility>

namespace korvane {

namespace {

/// An item with what is asked of it more than once.
struct Candidate {
    const ScanItem* item;
    std::string path; ///< standardised
    std::size_t depth;
};

/// Folders before what is inside them, so that a removed folder takes its contents along.
std::vector<Candidate> inOrderOfRemoval(const std::vector<ScanItem>& items) {
    std::vector<Candidate> candidates;
    candidates.reserve(items.size());
    for (const ScanItem& item : items) {
        const FileURL url = item.url.standardized();
        candidates.push_back({&item, url.path(), url.componentCount()});
    }
    std::stable_sort(candidates.begin(), candidates.end(),
                     [](const Candidate& a, const Candidate& b) {
                         return std::tie(a.depth, a.path) < std::tie(b.depth, b.path);
                     });
    return candidates;
}

/// The state of one operation.
class CleaningRun {
  public:
    CleaningRun(FileManager& fileManager, const SafetyGuard& guard,
                const ExclusionStore& exclusions, CleanupResult& result)
        : fileManager_(fileManager), guard_(guard), exclusions_(exclusions), result_(result) {}

    /// The candidate must stay where it is while the run lives.
    void handle(const Candidate& candidate);

    /// To be called before the record is written: it must not name places in the Bin that a crash
    /// could still undo.
    void synchronize() noexcept {
        if (bin_) {
            bin_->synchronize();
        }
    }

    [[nodiscard]] std::int64_t bytesReclaimed() const noexcept { return bytesReclaimed_; }
    [[nodiscard]] const std::vector<RestorableItem>& restorable() const noexcept {
        return restorable_;
    }

  private:
    [[nodiscard]] std::optional<FileURL> removedAncestor(std::string_view path) const;
    [[nodiscard]] std::optional<CleanupFailure> refusal(const ScanItem& item,
                                                        const ItemLocation& location) const;
    void remove(const ScanItem& item, const ItemLocation& location);
    void recordError(const ScanItem& item, const ItemLocation& location, const FileError& error);
    void skip(const ScanItem& item, CleanupSkip::Reason::Case reason,
              std::optional<FileURL> parent = std::nullopt) {
        result_.skipped.push_back({item, {reason, std::move(parent)}});
    }

    FileManager& fileManager_;
    const SafetyGuard& guard_;
    const ExclusionStore& exclusions_;
    CleanupResult& result_;
    std::unique_ptr<BinSession> bin_; // opened when the first item needs it
    std::unordered_set<std::string_view> seen_;
    std::unordered_set<std::string_view> removed_;
    std::vector<RestorableItem> restorable_;
    std::int64_t bytesReclaimed_ = 0;
};

void CleaningRun::handle(const Candidate& candidate) {
    const ScanItem& item = *candidate.item;
    if (!seen_.insert(candidate.path).second) {
        skip(item, CleanupSkip::Reason::Case::duplicateOfEarlierItem);
        return;
    }
    if (auto parent = removedAncestor(candidate.path)) {
        skip(item, CleanupSkip::Reason::Case::removedWithParent, std::move(parent));
        return;
    }
    // Judged now and not before the loop: what an item is may have changed since the scan.
    const ItemLocation location(item.url);
    try {
        if (auto refused = refusal(item, location)) {
            result_.failed.push_back(std::move(*refused));
            return;
        }
        remove(item, location);
    } catch (const FileError& error) {
        recordError(item, location, error);
        return;
    } catch (const std::exception& error) {
        result_.failed.push_back({item, localizedDescription(error), CleanupFailure::Kind::other});
        return;
    }
    result_.succeeded.push_back(item);
    bytesReclaimed_ = checkedAdd(bytesReclaimed_, item.sizeBytes);
    removed_.insert(candidate.path);
}

// Only what was really removed counts: a child of a folder that failed is tried on its own.
std::optional<FileURL> CleaningRun::removedAncestor(std::string_view path) const {
    for (auto ancestor = parentPath(path); ancestor.size() >= 2; ancestor = parentPath(ancestor)) {
        if (removed_.contains(ancestor)) {
            return FileURL(std::string(ancestor));
        }
    }
    return std::nullopt;
}

std::optional<CleanupFailure> CleaningRun::refusal(const ScanItem& item,
                                                   const ItemLocation& location) const {
    if (const auto match = exclusions_.match(location)) {
        return CleanupFailure{item, match->message(), CleanupFailure::Kind::excluded};
    }
    if (const auto reason = guard_.evaluate(location).reason()) {
        return CleanupFailure{item, message(*reason), CleanupFailure::Kind::protectedLocation};
    }
    return std::nullopt;
}

// Takes the place that was judged, with no link left in the path of its folder: should one be put
// there meanwhile, the file manager does not follow it.
void CleaningRun::remove(const ScanItem& item, const ItemLocation& location) {
    if (result_.mode == DeletionMode::permanent) {
        fileManager_.removeItem(location.site);
        return;
    }
    if (!bin_) {
        bin_ = fileManager_.openBin();
    }
    const FileURL trashed = bin_->trashItem(location.site);
    restorable_.push_back({pathText(item.url.path()), pathText(trashed.path())});
}

void CleaningRun::recordError(const ScanItem& item, const ItemLocation& location,
                              const FileError& error) {
    const RemovalErrorClass meaning = classifyRemovalError(error.posixError());
    // Something else may be missing, such as the Bin; the item is only gone when it is not there.
    if (meaning.alreadyGone && !fileManager_.itemExists(location.site)) {
        skip(item, CleanupSkip::Reason::Case::alreadyGone);
        return;
    }
    result_.failed.push_back({item, error.reason(), meaning.kind});
}

/// Tells how far the operation is. A handler that throws is not asked again: what is on the screen
/// must not keep an operation from being recorded.
class ProgressReporter {
  public:
    explicit ProgressReporter(const CleanupProgressHandler& handler) : handler_(&handler) {}
    void report(const CleanupProgress& progress) noexcept {
        if (handler_ == nullptr || !*handler_) {
            return;
        }
        try {
            (*handler_)(progress);
        } catch (...) {
            handler_ = nullptr;
        }
    }

  private:
    const CleanupProgressHandler* handler_;
};

std::optional<std::int64_t> spaceFreed(std::optional<std::int64_t> before,
                                       std::optional<std::int64_t> after) {
    if (!before || !after) {
        return std::nullopt;
    }
    const std::int64_t freed = checkedSubtract(*after, *before);
    return freed >= 1 ? std::optional(freed) : std::nullopt;
}

} // namespace

Cleaner::Cleaner(AuditLog& audit, FileManager& fileManager, const SafetyGuard& safetyGuard,
                 const ExclusionStore& exclusions, FileURL home)
    : audit_(audit), fileManager_(fileManager), safetyGuard_(safetyGuard), exclusions_(exclusions),
      home_(std::move(home)) {}

CleanupResult Cleaner::clean(const CleanupOperation& operation, DeletionMode mode,
                             const CleanupProgressHandler& progress) const {
    const FileURL& probe = operation.items.empty() ? home_ : operation.items.front().url;
    const auto capacityBefore = fileManager_.availableCapacity(probe);
    const std::vector<Candidate> candidates = inOrderOfRemoval(operation.items);
    const auto total = static_cast<std::int64_t>(candidates.size());
    ProgressReporter reporter(progress);
    reporter.report({.processed = 0, .total = total, .bytesReclaimed = 0});

    CleanupResult result;
    result.operationID = operation.id;
    result.mode = mode;
    CleaningRun run(fileManager_, safetyGuard_, exclusions_, result);
    std::int64_t processed = 0;
    for (const Candidate& candidate : candidates) {
        if (Task::isCancelled()) {
            break;
        }
        run.handle(candidate);
        reporter.report({++processed, total, run.bytesReclaimed()});
    }
    run.synchronize();

    if (mode == DeletionMode::permanent && capacityBefore) {
        result.spaceFreedOnDisk = spaceFreed(capacityBefore, fileManager_.availableCapacity(probe));
    }
    try {
        audit_.record(operation, result, run.restorable(), Date::now());
    } catch (const std::exception& error) {
        result.auditFailure = localizedDescription(error);
    }
    return result;
}

} // namespace korvane
