#pragma once

#include "KorvaneCore/foundation/Date.h"
#include "KorvaneCore/foundation/FileURL.h"

#include <atomic>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace korvane {

/// What a walk visits.
struct WalkOptions {
    bool includeHidden = false;  ///< names that begin with ".", below the root
    bool followSymlinks = false; ///< a link to a folder is entered like that folder
    /// Deepest depth whose folders are entered; absent: all.
    std::optional<std::int64_t> maxDepth = {};
    std::set<std::string> pruneDirectoryNames = {}; ///< visited but never entered (exact bytes)

    friend bool operator==(const WalkOptions&, const WalkOptions&) = default;
};

/// One visited item.
struct WalkEntry {
    FileURL url;
    bool isDirectory = false; ///< for a followed link: its target is a folder
    bool isSymlink = false;
    std::int64_t sizeBytes = 0; ///< logical size of a file; 0 for folders and when unknown
    std::optional<Date> lastModified = {};
    std::int64_t depth = 0; ///< 0 for the root; -1 in entries of the measuring operations

    friend bool operator==(const WalkEntry&, const WalkEntry&) = default;
};

/// The visitor's answer (`proceed`: go on, into a folder too).
enum class WalkDecision { proceed, skipDescendants, stop };

struct WalkError {
    FileURL url;            ///< the item or folder that could not be read
    std::string underlying; ///< the platform's text for it

    friend bool operator==(const WalkError&, const WalkError&) = default;
};

struct WalkSummary {
    std::int64_t entriesVisited = 0; ///< entries handed to the visitor
    bool stopped = false;            ///< the visitor answered `stop`
    bool cancelled = false;
    std::vector<WalkError> errors = {}; ///< in the order met

    friend bool operator==(const WalkSummary&, const WalkSummary&) = default;
};

/// A flag that stops every walk it was given to at its next item. Never cleared. Any thread.
class WalkCancellation {
  public:
    void cancel() noexcept { cancelled_.store(true, std::memory_order_relaxed); }
    [[nodiscard]] bool isCancelled() const noexcept {
        return cancelled_.load(std::memory_order_relaxed);
    }

  private:
    std::atomic<bool> cancelled_ = false;
};

} // namespace korvane
