#include "KorvaneCore/scanners/CustomRulesScanner.h"

#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/platform/FolderFacts.h"
#include "KorvaneCore/scan/LastChange.h"
#include "KorvaneCore/scanners/ItemCollection.h"
#include "KorvaneCore/scanners/OverlapRemoval.h"

#include <algorithm>

#include <fcntl.h>

#include <fmt/format.h>

namespace korvane {

namespace {

bool matches(std::string_view pattern, std::string_view name) {
    if (name.starts_with('.') && !pattern.starts_with('.')) {
        return false;
    }
    // Where to go on when the text after the last star turns out not to fit.
    std::size_t p = 0;
    std::size_t n = 0;
    std::size_t star = std::string_view::npos;
    std::size_t retry = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            retry = n;
        } else if (p < pattern.size() && pattern[p] == name[n]) {
            ++p;
            ++n;
        } else if (star != std::string_view::npos) {
            p = star + 1;
            n = ++retry;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', p) == std::string_view::npos;
}

using Kind = DirectoryReader::Kind;

/// Of the item itself, not of what a link leads to; `unknown` where nothing can be reached.
Kind kindOf(const FileURL& url) {
    FileFacts facts;
    return readFacts(AT_FDCWD, url.path().c_str(), facts) == 0 ? facts.kind : Kind::unknown;
}

PathHeuristic rowOf(const CustomRule& rule, const std::string& id) {
    return {.id = id,
            .category = rule.name,
            .displayName = rule.name,
            .pathPattern = rule.path,
            .risk = rule.risk,
            .whySafe = rule.note,
            .scannerID = "custom-rules",
            .enumerateChildren = rule.enumerateChildren};
}

} // namespace

std::vector<FileURL> expandingStars(const std::string& pattern) {
    std::vector<FileURL> places{FileURL("/")};
    for (const std::string& component : FileURL(pattern).pathComponents()) {
        if (component == "/") {
            continue;
        }
        if (component.find('*') == std::string::npos) {
            for (FileURL& place : places) {
                place = place.appending(component);
            }
            continue;
        }
        std::vector<FileURL> deeper;
        for (const FileURL& place : places) {
            if (kindOf(place) != Kind::folder) {
                continue;
            }
            for (const std::string& name :
                 namesInFolder(place.path()).value_or(std::vector<std::string>())) {
                if (matches(component, name) && kindOf(place.appending(name)) != Kind::link) {
                    deeper.push_back(place.appending(name));
                }
            }
        }
        places = std::move(deeper);
    }
    return places;
}

// Names directly in the rule's folder that others name more closely.
std::set<std::string> CustomRulesScanner::claimedNames(const CustomRule& rule,
                                                       const PathHeuristic& row) const {
    std::set<std::string> names = row.claimedChildNames(home_);
    const std::string base = expandingTilde(rule.path, home_) + "/";
    for (const CustomRule& other : rules_) {
        const std::string path = expandingTilde(other.path, home_);
        if (path.size() > base.size() && path.starts_with(base)) {
            names.insert(path.substr(base.size(), path.find('/', base.size()) - base.size()));
        }
    }
    return names;
}

std::vector<ScanItem> CustomRulesScanner::itemsOf(const CustomRule& rule) const {
    const std::string id = heuristicID(rule);
    const PathHeuristic row = rowOf(rule, id);
    std::vector<ScanItem> items;
    for (const FileURL& place : expandingStars(expandingTilde(rule.path, home_))) {
        if (rule.enumerateChildren) {
            for (ScanItem& child : childItems(place, row, claimedNames(rule, row))) {
                items.push_back(std::move(child));
            }
        } else if (auto item = itemAt(place, row)) {
            items.push_back(std::move(*item));
        }
    }
    const Date since = now_.adding(static_cast<double>(-rule.minimumAgeDays) * 86400);
    std::erase_if(items, [&](const ScanItem& item) {
        return isRefused_(item.url) ||
               (rule.minimumAgeDays > 0 && !unchangedSince(item.url, since));
    });
    return items;
}

ScanResult CustomRulesScanner::scan(const ScanProgressHandler& progress) const {
    ScanResult result{.scannerID = id(), .startedAt = Date::now()};
    for (std::size_t i = 0; i < rules_.size() && !Task::isCancelled(); ++i) {
        progress({fmt::format("Checking {}…", rules_[i].name),
                  static_cast<double>(i) / static_cast<double>(rules_.size())});
        collectMeasured(itemsOf(rules_[i]), result.items);
    }
    result.items = removingOverlaps(std::move(result.items));
    sortLargestFirst(result.items);
    return finished(std::move(result), progress);
}

} // namespace korvane
