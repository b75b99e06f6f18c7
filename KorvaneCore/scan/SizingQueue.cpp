#include "KorvaneCore/scan/SizingQueue.h"

#include "KorvaneCore/foundation/CheckedArithmetic.h"

#include <iterator>
#include <utility>

namespace korvane {

std::optional<SizingQueue::Work> SizingQueue::take() {
    std::unique_lock lock(mutex_);
    while (true) {
        if (!shares_.empty()) {
            ++active_;
            Work work{std::move(shares_.front()), 0};
            work.root = work.share->root;
            shares_.pop_front();
            return work;
        }
        if (nextRoot_ < results_.size()) {
            ++active_;
            return Work{std::nullopt, nextRoot_++};
        }
        if (active_ == 0) {
            return std::nullopt;
        }
        waiting_.fetch_add(1, std::memory_order_relaxed);
        changed_.wait(lock);
        waiting_.fetch_sub(1, std::memory_order_relaxed);
    }
}

void SizingQueue::finish(std::size_t root, TreeSize&& found) {
    const std::lock_guard lock(mutex_);
    TreeSize& result = results_[root];
    WalkSummary& summary = result.summary;
    result.begun = result.begun || found.begun;
    result.bytes = checkedAdd(result.bytes, found.bytes);
    summary.entriesVisited = checkedAdd(summary.entriesVisited, found.summary.entriesVisited);
    summary.cancelled = summary.cancelled || found.summary.cancelled;
    summary.errors.insert(summary.errors.end(),
                          std::make_move_iterator(found.summary.errors.begin()),
                          std::make_move_iterator(found.summary.errors.end()));
    --active_;
    changed_.notify_all();
}

void SizingQueue::give(SizingShare&& share) {
    const std::lock_guard lock(mutex_);
    shares_.push_back(std::move(share));
    changed_.notify_one();
}

} // namespace korvane
