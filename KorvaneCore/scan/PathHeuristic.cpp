#include "KorvaneCore/scan/PathHeuristic.h"

#include "KorvaneCore/foundation/ComparisonKeys.h"
#include "KorvaneCore/scan/PathHeuristics.h"

#include <algorithm>

namespace korvane {

namespace {

std::string_view trimmingBlanks(std::string_view text) {
    constexpr std::string_view blanks = " \t";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// The first name of `path` below `base` (which ends in "/"); empty when it is not below.
std::string_view firstNameBelow(std::string_view base, std::string_view path) {
    if (!path.starts_with(base)) {
        return {};
    }
    path.remove_prefix(std::min(path.find_first_not_of('/', base.size()), path.size()));
    return path.substr(0, path.find('/'));
}

} // namespace

std::string PathHeuristic::expandedPath(const FileURL& home) const {
    return expandingTilde(pathPattern, home);
}

std::set<std::string> PathHeuristic::claimedChildNames(const FileURL& home) const {
    const std::string base = enclosingPrefix(expandedPath(home));
    std::set<std::string> names;
    for (const PathHeuristic* row : PathHeuristics::all()) {
        if (row->id == id || row->pathPattern.find("**") != std::string_view::npos) {
            continue;
        }
        std::string_view rest = row->pathPattern;
        while (!rest.empty()) {
            const std::string_view piece = rest.substr(0, rest.find(','));
            rest.remove_prefix(std::min(piece.size() + 1, rest.size()));
            const std::string path = expandingTilde(trimmingBlanks(piece), home);
            if (const std::string_view name = firstNameBelow(base, path); !name.empty()) {
                names.emplace(name);
            }
        }
    }
    return names;
}

} // namespace korvane
