#pragma once

#include "KorvaneCore/cleaning/CleanupResult.h"
#include "KorvaneCore/platform/ProcessLauncher.h"
#include "KorvaneCore/platform/UserFolders.h"

#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace korvane {

class ExclusionStore;

/// Empties Bin folders: the one removal that does not go through the Cleaner, because what it
/// removes lies in a Bin already. Where the platform has Finder, the user's own Bin is emptied by
/// it, unless a protected path lies in any of the Bins; everything else goes entry by entry, and
/// protected entries stay.
class TrashEmptier {
  public:
    struct Outcome {
        /// The given item of each Bin folder in which space was freed, with the bytes freed.
        std::vector<ScanItem> emptied;
        std::vector<CleanupFailure> failures; ///< what could not be removed from a Bin folder
        std::vector<CleanupFailure> protectedFailures; ///< what is no Bin folder, left untouched

        friend bool operator==(const Outcome&, const Outcome&) = default;
    };

    /// The stores must outlive the emptier. `finder`: the user's own Bin, where there is a Finder
    /// to empty it; absent: every Bin goes entry by entry.
    TrashEmptier(const ExclusionStore& exclusions, UserFolders folders,
                 ProcessLauncher& launcher = ProcessLauncher::standard(),
                 std::optional<FileURL> finder = platformFinderBin())
        : exclusions_(exclusions), folders_(std::move(folders)), launcher_(launcher),
          finderBin_(std::move(finder)) {}

    /// Empties the Bin folders of these items, whose sizes are what each holds now. Never throws;
    /// blocks until all is done. A cancelled task stops before the next entry.
    [[nodiscard]] Outcome empty(std::span<const ScanItem> bins) const;

  private:
    struct Survey;
    struct Leftover {
        FileURL url;
        std::string error;
    };

    [[nodiscard]] static std::optional<FileURL> platformFinderBin();
    [[nodiscard]] Survey survey(const ScanItem& bin) const;
    [[nodiscard]] bool emptyThroughFinder() const;
    [[nodiscard]] static std::vector<Leftover> emptyEntryByEntry(const Survey& survey);
    void emptyOne(const Survey& survey, bool throughFinder, Outcome& outcome) const;
    [[nodiscard]] std::int64_t freedBytes(const Survey& survey,
                                          const std::vector<Leftover>& leftovers) const;
    static void report(const Survey& survey, const std::vector<Leftover>& leftovers,
                       Outcome& outcome);

    const ExclusionStore& exclusions_;
    UserFolders folders_;
    ProcessLauncher& launcher_;
    std::optional<FileURL> finderBin_;
};

} // namespace korvane
