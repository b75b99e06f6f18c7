#include "KorvaneCore/scanners/DuplicateScanner.h"

#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/foundation/Text.h"
#include "KorvaneCore/scan/PathHeuristicRows.h"
#include "KorvaneCore/scanners/CandidateHasher.h"
#include "KorvaneCore/scanners/CandidateList.h"

#include <algorithm>
#include <map>
#include <optional>
#include <span>
#include <tuple>
#include <utility>

#include <fmt/format.h>

namespace korvane {

namespace {

constexpr std::size_t filesPerReport = 50;

struct Hashed {
    HashedContent content;
    std::size_t candidate = 0; ///< in the list
};

using Group = std::span<Hashed>;

std::vector<Hashed> hashAll(const CandidateList& list, const ScanProgressHandler& progress) {
    std::vector<Hashed> hashed;
    hashed.reserve(list.size());
    CandidateHasher hasher(list);
    for (std::size_t i = 0; i < list.size() && !Task::isCancelled(); ++i) {
        if (i % filesPerReport == 0) {
            progress({fmt::format("Hashing {}…", displayText(list.name(list[i]))),
                      0.05 + 0.85 * static_cast<double>(i) / static_cast<double>(list.size())});
        }
        if (const auto content = hasher.next()) {
            hashed.push_back({*content, i});
        }
    }
    return hashed;
}

/// A file that is reached by more paths than it has names is mounted in several places: of its
/// views as many stay as there are names. Otherwise, with one view kept and the others removed,
/// every name of the only copy could go. Equal digests must stand side by side.
void leaveOutRepeatedViews(std::vector<Hashed>& hashed) {
    std::map<FileIdentity, std::uint64_t> views;
    std::optional<Digest256> digest;
    std::erase_if(hashed, [&](const Hashed& one) {
        if (digest != one.content.digest) {
            digest = one.content.digest;
            views.clear();
        }
        return ++views[one.content.identity] > one.content.names;
    });
}

/// Puts equal digests side by side and answers the runs of two and more, each in the order of the
/// walk, the runs in the order of their first members.
std::vector<Group> groups(std::vector<Hashed>& hashed) {
    std::sort(hashed.begin(), hashed.end(), [](const Hashed& a, const Hashed& b) {
        return std::tie(a.content.digest, a.candidate) < std::tie(b.content.digest, b.candidate);
    });
    leaveOutRepeatedViews(hashed);
    std::vector<Group> found;
    for (auto begin = hashed.begin(); begin != hashed.end();) {
        const auto end = std::find_if(begin, hashed.end(), [&](const Hashed& one) {
            return one.content.digest != begin->content.digest;
        });
        if (end - begin > 1) {
            found.emplace_back(begin, end);
        }
        begin = end;
    }
    std::sort(found.begin(), found.end(), [](const Group& a, const Group& b) {
        return a.front().candidate < b.front().candidate;
    });
    return found;
}

void addItems(std::vector<ScanItem>& items, Group group, const CandidateList& list) {
    std::stable_sort(group.begin(), group.end(), [&](const Hashed& a, const Hashed& b) {
        const std::timespec& left = list[a.candidate].modified;
        const std::timespec& right = list[b.candidate].modified;
        return std::tie(left.tv_sec, left.tv_nsec) > std::tie(right.tv_sec, right.tv_nsec);
    });
    const std::string category = hexText(group.front().content.digest);
    for (const Hashed& member : group) {
        const CandidateList::Candidate& file = list[member.candidate];
        items.push_back({.url = list.url(file),
                         .sizeBytes = file.sizeBytes,
                         .lastModified = Date::fromTimespec(file.modified),
                         .category = category,
                         .heuristicID = std::string(PathHeuristics::duplicateFinderDuplicate.id)});
    }
}

} // namespace

DuplicateScanner::DuplicateScanner(FileURL rootURL, std::int64_t minimumBytes)
    : NamedScanner("duplicate-finder", "Duplicate Finder"), rootURL_(std::move(rootURL)),
      minimumBytes_(minimumBytes) {}

ScanResult DuplicateScanner::scan(const ScanProgressHandler& progress) const {
    ScanResult result{.scannerID = id(), .startedAt = Date::now()};
    progress({"Enumerating files…", 0.0});
    const CandidateList list(rootURL_, minimumBytes_);
    if (list.size() > 0) {
        std::vector<Hashed> hashed = hashAll(list, progress);
        const bool isCancelled = Task::isCancelled();
        if (!isCancelled) {
            progress({"Finding duplicates…", 0.92});
        }
        for (const Group& group : groups(hashed)) {
            addItems(result.items, group, list);
        }
        if (!isCancelled) {
            progress({"Done", 1.0});
        }
    }
    result.finishedAt = Date::now();
    return result;
}

} // namespace korvane
