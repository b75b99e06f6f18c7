#include "KorvaneCore/cleaning/TrashEmptier.h"

#include "KorvaneCore/cleaning/ExclusionStore.h"
#include "KorvaneCore/cleaning/ItemLocation.h"
#include "KorvaneCore/foundation/CheckedArithmetic.h"
#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/platform/BinFolders.h"
#include "KorvaneCore/scan/FileSystemSize.h"
#include "KorvaneCore/scan/PathHeuristicRows.h"
#include "KorvaneCore/scanners/ItemCollection.h"
#include "KorvaneCore/scanners/TrashScanner.h"

#include <algorithm>
#include <mutex>

#include <unistd.h>

#include <fmt/format.h>

namespace korvane {

namespace {

constexpr std::string_view finderProgram = "/usr/bin/osascript";
constexpr std::size_t listedLeftovers = 5;

using Kind = CleanupFailure::Kind;

} // namespace

/// A Bin folder as it was before anything was removed.
struct TrashEmptier::Survey {
    const ScanItem* item = nullptr;
    FileURL url; ///< standardised
    std::unique_ptr<OpenBinFolder> folder;
    std::vector<std::string> removable;
    std::vector<std::string> excluded;
    bool isReadable = false;
};

std::optional<FileURL> TrashEmptier::platformFinderBin() {
    if (access(std::string(finderProgram).c_str(), X_OK) != 0) {
        return std::nullopt;
    }
    return UserFolders::current().home.appending(".Trash");
}

TrashEmptier::Survey TrashEmptier::survey(const ScanItem& bin) const {
    Survey survey;
    survey.item = &bin;
    survey.url = bin.url.standardized();
    survey.folder = OpenBinFolder::open(survey.url);
    const auto names = survey.folder ? survey.folder->names() : std::nullopt;
    survey.isReadable = names.has_value();
    if (!names) {
        return survey;
    }
    const bool anyProtected = !exclusions_.items().empty();
    for (const std::string& name : *names) {
        const bool isExcluded = anyProtected && exclusions_.blocks(survey.url.appending(name));
        (isExcluded ? survey.excluded : survey.removable).push_back(name);
    }
    return survey;
}

bool TrashEmptier::emptyThroughFinder() const {
    ProcessRequest request;
    request.executable = finderProgram;
    request.arguments = {"-e", "tell application \"Finder\" to empty trash"};
    request.captureErrors = true;
    return launcher_.run(request).succeeded();
}

std::vector<TrashEmptier::Leftover> TrashEmptier::emptyEntryByEntry(const Survey& survey) {
    std::mutex lock;
    std::vector<Leftover> leftovers;
    const auto remove = [&](const std::string& name) {
        try {
            survey.folder->remove(name);
        } catch (const FileError& error) {
            // What somebody else emptied meanwhile is gone, which is all that was wanted.
            if (error.posixError() != ENOENT) {
                const std::lock_guard guard(lock);
                leftovers.push_back({survey.url.appending(name), error.reason()});
            }
        }
    };
    // The disk is what most of the time goes to: it is asked by several threads.
    concurrentPerform(survey.removable.size(), [&](std::size_t index) {
        if (!Task::isCancelled()) {
            remove(survey.removable[index]);
        }
    });
    survey.folder->dropOrphanedNotes();
    std::sort(leftovers.begin(), leftovers.end(),
              [](const Leftover& a, const Leftover& b) { return a.url.path() < b.url.path(); });
    return leftovers;
}

// What was kept on purpose counts by the measure of the whole, so that nothing is said to be freed
// that is still there.
std::int64_t TrashEmptier::freedBytes(const Survey& survey,
                                      const std::vector<Leftover>& leftovers) const {
    const std::int64_t before = survey.item->sizeBytes;
    std::int64_t kept = 0;
    if (!leftovers.empty() || Task::isCancelled()) {
        // Also of an emptying that was stopped: a measuring that ends early would find nothing
        // left, and everything would count as freed.
        const Task::Scope uncancelled(nullptr);
        kept = binContentSize(survey.url, launcher_);
    } else {
        for (const std::string& name : survey.excluded) {
            kept =
                checkedAdd(kept, FileSystemSize::diskUsage(survey.url.appending(name), launcher_));
        }
    }
    return std::max<std::int64_t>(before - kept, 0);
}

void TrashEmptier::report(const Survey& survey, const std::vector<Leftover>& leftovers,
                          Outcome& outcome) {
    if (leftovers.size() <= listedLeftovers) {
        for (const Leftover& leftover : leftovers) {
            const PathHeuristic& row = PathHeuristics::systemTrashAllVolumes;
            ScanItem item = itemAt(leftover.url, row)
                                .value_or(ScanItem{.url = leftover.url,
                                                   .category = std::string(row.category),
                                                   .heuristicID = std::string(row.id)});
            item.sizeBytes = FileSystemSize::allocatedSize(leftover.url);
            outcome.failures.push_back({std::move(item),
                                        "macOS refused to delete this out of the Bin.",
                                        Kind::permission});
        }
        return;
    }
    const std::string sentence =
        survey.excluded.empty()
            ? fmt::format("macOS refused to delete {} items from this Bin folder. Emptying it from "
                          "Finder works.",
                          leftovers.size())
            : fmt::format("Something in this bin is on your exclusion list, so Korvane had to "
                          "clear it one item at a time instead of asking Finder - and macOS "
                          "refused {} items. Emptying it from Finder would work, but it would "
                          "take the protected item too.",
                          leftovers.size());
    outcome.failures.push_back({*survey.item, sentence, Kind::permission});
}

void TrashEmptier::emptyOne(const Survey& survey, bool throughFinder, Outcome& outcome) const {
    std::vector<Leftover> leftovers;
    if (!throughFinder || !emptyThroughFinder()) {
        if (!survey.isReadable) {
            outcome.failures.push_back(
                {*survey.item,
                 "macOS wouldn't let Korvane read this Bin folder, so there was nothing it could "
                 "do with it. Emptying it from Finder works.",
                 Kind::permission});
            return;
        }
        leftovers = emptyEntryByEntry(survey);
    }
    ScanItem emptied = *survey.item;
    emptied.sizeBytes = freedBytes(survey, leftovers);
    if (emptied.sizeBytes >= 1) {
        outcome.emptied.push_back(std::move(emptied));
    }
    report(survey, leftovers, outcome);
}

TrashEmptier::Outcome TrashEmptier::empty(std::span<const ScanItem> bins) const {
    Outcome outcome;
    std::vector<Survey> surveys;
    for (const ScanItem& bin : bins) {
        if (isBinFolder(bin.url, folders_)) {
            surveys.push_back(survey(bin));
        } else {
            outcome.protectedFailures.push_back(
                {bin,
                 "Korvane only empties Bin folders, and this path isn't one, so it was left "
                 "untouched.",
                 Kind::protectedLocation});
        }
    }
    const bool anyExcluded = std::any_of(surveys.begin(), surveys.end(),
                                         [](const Survey& one) { return !one.excluded.empty(); });
    for (const Survey& one : surveys) {
        if (Task::isCancelled()) {
            break;
        }
        emptyOne(one, !anyExcluded && finderBin_ && one.url == finderBin_->standardized(), outcome);
    }
    return outcome;
}

} // namespace korvane
