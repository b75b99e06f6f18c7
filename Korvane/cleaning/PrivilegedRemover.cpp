#include "Korvane/cleaning/PrivilegedRemover.h"

#include "Korvane/cleaning/PathListFile.h"
#include "KorvaneCore/cleaning/ExclusionStore.h"
#include "KorvaneCore/cleaning/ItemLocation.h"
#include "KorvaneCore/cleaning/SafetyGuard.h"
#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/platform/DesktopActions.h"
#include "KorvaneCore/platform/Elevation.h"

#include <cerrno>

#include <sys/stat.h>

#include <fmt/format.h>

namespace korvane {

namespace {

using Kind = CleanupFailure::Kind;
using Refusal = PrivilegedRemover::Refusal;
using Trouble = HeldPlace::Trouble;

constexpr std::string_view noListSentence =
    "Korvane couldn't prepare the administrator delete - writing its list of paths to a temporary "
    "file failed. Nothing was removed.";
constexpr std::string_view changedSentence =
    "What is at this place changed after it was shown to you, so it was never passed to an "
    "administrator delete.";

Refusal refusal(const FileURL& url, Trouble trouble) {
    switch (trouble) {
    case Trouble::link:
        return {
            url, Kind::protectedLocation,
            "A folder above this item is a link, which could lead an administrator delete "
            "elsewhere, so it was never passed to one. Name the place behind the link instead."};
    case Trouble::others:
        return {url, Kind::protectedLocation,
                "Another user could put something else in this item's place, so it was never "
                "passed to an administrator delete."};
    case Trouble::mount:
        return {url, Kind::protectedLocation,
                "Another file system is mounted on this item or inside it, so it was never passed "
                "to an administrator delete."};
    case Trouble::unreadable:
        break;
    }
    return {url, Kind::other,
            "Korvane couldn't look at the folders above this item, so it was never passed to an "
            "administrator delete."};
}

std::vector<FileURL> urls(const PrivilegedRemover::Screening& screening) {
    std::vector<FileURL> list;
    list.reserve(screening.accepted.size());
    for (const auto& item : screening.accepted) {
        list.push_back(item.url);
    }
    return list;
}

void refuseAll(PrivilegedRemover::Screening& screening) {
    for (const auto& item : screening.accepted) {
        screening.refusals.push_back({item.url, Kind::other, std::string(noListSentence)});
    }
    screening.accepted.clear();
}

// The standard input is the list, so that no file name ever stands in a command; the status says
// nothing, because what counts is what is on disk afterwards.
std::string removalCommand(const FileURL& list) {
    return fmt::format("/usr/bin/xargs -0 /bin/rm -rf -- < {} 2>/dev/null; exit 0",
                       shellQuoted(list.path()));
}

// Only what is certainly not there is gone; a link is there whether or not it leads anywhere.
bool isGone(const FileURL& url) {
    struct stat facts {};
    return lstat(url.path().c_str(), &facts) != 0 && (errno == ENOENT || errno == ENOTDIR);
}

} // namespace

std::optional<Refusal> PrivilegedRemover::judge(const FileURL& url,
                                                const ExclusionStore& exclusions,
                                                const SafetyGuard& guard) {
    const ItemLocation location(url);
    if (const auto match = exclusions.match(location)) {
        return Refusal{url, Kind::excluded,
                       match->message() + " Administrator rights don't override that."};
    }
    if (!guard.evaluate(location).isAllowed()) {
        return Refusal{url, Kind::protectedLocation,
                       "Korvane's safety rules protect this location, so it was never passed to "
                       "an administrator delete."};
    }
    return std::nullopt;
}

PrivilegedRemover::Screening PrivilegedRemover::screen(std::span<const FileURL> urls) const {
    const SafetyGuard guard(home_);
    Screening screening;
    for (const FileURL& url : urls) {
        if (!url.isAbsolute()) {
            screening.refusals.push_back(
                {url, Kind::other,
                 "This isn't a file on disk, so an administrator delete doesn't apply to it."});
            continue;
        }
        if (auto refused = judge(url, exclusions_, guard)) {
            screening.refusals.push_back(std::move(*refused));
            continue;
        }
        const auto& accepted = screening.accepted;
        // Without "." in it: the command that will be given the path refuses those.
        FileURL plain = url.standardized();
        HeldPlace place =
            HeldPlace::look(plain, accepted.empty() ? nullptr : &accepted.back().place);
        if (const auto trouble = place.trouble()) {
            screening.refusals.push_back(refusal(url, *trouble));
        } else {
            screening.accepted.push_back({std::move(plain), std::move(place)});
        }
    }
    return screening;
}

// With a new guard, and the list of protected paths as it is now: both may have grown meanwhile.
void PrivilegedRemover::screenAgain(Screening& screening) const {
    const SafetyGuard guard(home_);
    const ExclusionStore newest(exclusions_.fileURL(), home_);
    std::vector<Accepted> still;
    for (Accepted& item : screening.accepted) {
        auto refused = judge(item.url, exclusions_, guard);
        if (!refused) {
            refused = judge(item.url, newest, guard);
        }
        if (refused) {
            screening.refusals.push_back(std::move(*refused));
        } else if (!item.place.isUnchanged()) {
            screening.refusals.push_back(
                {item.url, Kind::protectedLocation, std::string(changedSentence)});
        } else {
            still.push_back(std::move(item));
        }
    }
    screening.accepted = std::move(still);
}

bool PrivilegedRemover::lastLook(Screening& screening, const PathListFile& list) const {
    try {
        screenAgain(screening);
        if (!screening.accepted.empty()) {
            list.write(urls(screening));
        }
    } catch (const std::exception&) {
        refuseAll(screening);
    }
    return !screening.accepted.empty();
}

PrivilegedRemover::Result PrivilegedRemover::remove(Screening screening) const {
    Result result;
    if (!screening.accepted.empty()) {
        try {
            const PathListFile list(temporaryFolder_);
            list.write(urls(screening));
            result.completed = elevation_.run(removalCommand(list.url()),
                                              [&] { return lastLook(screening, list); });
        } catch (const FileError&) {
            refuseAll(screening);
        }
    }
    result.refusals = std::move(screening.refusals);
    result.requested = !screening.accepted.empty();
    for (const Accepted& item : screening.accepted) {
        if (!isGone(item.url)) {
            result.survivors.push_back(item.url);
        } else if (item.place.exists()) {
            result.removed.push_back(item.url);
        }
    }
    return result;
}

std::optional<std::string_view> notice(const PrivilegedRemover::Result& result) noexcept {
    if (!result.requested) {
        return std::nullopt;
    }
    if (!result.completed) {
        return result.removed.empty()
                   ? "Nothing was removed - the administrator password prompt was dismissed, or "
                     "macOS declined the request. Your Mac is unchanged."
                   : "Some of this went through before the administrator request ended. What's "
                     "listed below is what's left.";
    }
    if (!result.survivors.empty()) {
        return "The administrator delete ran, but these are still on disk. That usually means "
               "macOS itself protects them (System Integrity Protection), which no password "
               "overrides.";
    }
    return std::nullopt;
}

} // namespace korvane
