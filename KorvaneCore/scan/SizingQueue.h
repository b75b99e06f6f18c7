#pragma once

#include "KorvaneCore/foundation/FileDescriptor.h"
#include "KorvaneCore/scan/FolderListing.h"
#include "KorvaneCore/scan/TreeSizer.h"

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace korvane {

/// Some of the folders in an open folder, for another thread to go into.
struct SizingShare {
    std::size_t root = 0;
    std::int64_t depth = 0; ///< of the folder that holds them
    FileDescriptor folder;
    std::string path;
    FolderListing names;
};

/// Hands roots and shares to the workers of one sizing and gathers what they found. Any thread.
class SizingQueue {
  public:
    explicit SizingQueue(std::size_t rootCount) : results_(rootCount) {}

    struct Work {
        std::optional<SizingShare> share; ///< absent: begin the root itself
        std::size_t root = 0;
    };

    /// The next piece; waits while others may still give some away. Nothing when all is done.
    [[nodiscard]] std::optional<Work> take();

    /// Ends a piece: adds what was found to its root.
    void finish(std::size_t root, TreeSize&& found);

    /// Whether a worker has nothing to do. A hint, cheap enough to ask after every folder.
    [[nodiscard]] bool isHungry() const noexcept {
        return waiting_.load(std::memory_order_relaxed) > 0;
    }

    void give(SizingShare&& share);

    [[nodiscard]] std::vector<TreeSize>& results() noexcept { return results_; }

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<SizingShare> shares_;
    std::size_t nextRoot_ = 0;
    std::size_t active_ = 0;
    std::vector<TreeSize> results_;
    std::atomic<int> waiting_ = 0;
};

} // namespace korvane
