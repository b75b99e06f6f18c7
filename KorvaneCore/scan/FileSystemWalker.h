#pragma once

#include "KorvaneCore/scan/WalkTypes.h"

#include <cstdint>
#include <functional>
#include <set>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace korvane {

struct SizingRules;

/// Visits a folder tree depth-first, parents before children, children in ascending byte order of
/// their paths. Never throws: what cannot be read becomes a `WalkError` and the walk goes on. Ends
/// early when the token is set or the surrounding task is cancelled. Depth is unlimited, open
/// descriptors are bounded. One value may run any number of walks, also at once.
class FileSystemWalker {
  public:
    using Visitor = std::function<WalkDecision(const WalkEntry&)>;

    explicit FileSystemWalker(WalkOptions walkOptions = {}) : options_(std::move(walkOptions)) {}

    [[nodiscard]] const WalkOptions& options() const noexcept { return options_; }

    WalkSummary walk(const FileURL& root, const WalkCancellation* cancellation,
                     const Visitor& visitor) const;

    /// The sum of the logical sizes in bytes of everything that is neither a folder nor a link.
    /// Overflow is fatal.
    [[nodiscard]] std::pair<std::int64_t, WalkSummary>
    totalSize(const FileURL& root, const WalkCancellation* cancellation = nullptr) const;

    /// Each URL sized by `totalSize`, in parallel; input order; depth -1. A URL whose turn comes
    /// after the cancellation is left out.
    [[nodiscard]] std::vector<WalkEntry>
    measure(std::span<const FileURL> urls, const WalkCancellation* cancellation = nullptr) const;

    /// Folders of these names below (or at) the root, sized; a match inside a match is not
    /// reported.
    [[nodiscard]] std::vector<WalkEntry>
    findFolders(const std::set<std::string>& names, const FileURL& root,
                const WalkCancellation* cancellation = nullptr) const;

    /// The `limit` largest files of at least `minimumBytes`, largest first; among equals the one
    /// found first.
    [[nodiscard]] std::vector<WalkEntry>
    largestFiles(const FileURL& root, std::int64_t minimumBytes, std::size_t limit,
                 const WalkCancellation* cancellation = nullptr) const;

  private:
    [[nodiscard]] SizingRules sizingRules(const WalkCancellation* cancellation) const;

    WalkOptions options_;
};

} // namespace korvane
