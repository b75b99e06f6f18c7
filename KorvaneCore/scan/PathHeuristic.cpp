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

/// What stands between the commas, without blanks around it.
std::vector<std::string_view> pieces(std::string_view pattern) {
    std::vector<std::string_view> parts;
    while (!pattern.empty()) {
        const std::string_view piece = pattern.substr(0, pattern.find(','));
        pattern.remove_prefix(std::min(piece.size() + 1, pattern.size()));
        parts.push_back(trimmingBlanks(piece));
    }
    return parts;
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

std::vector<FileURL> PathHeuristic::places(const FileURL& home) const {
    std::vector<FileURL> urls;
    for (std::string_view piece : pieces(pathPattern)) {
        for (const std::string_view choice : {" (", " + ", "/[", "/{", "/<"}) {
            piece = piece.substr(0, piece.find(choice));
        }
        if (piece.starts_with('~') || piece.starts_with('/')) {
            urls.emplace_back(expandingTilde(piece, home));
        }
    }
    return urls;
}

std::set<std::string> PathHeuristic::claimedChildNames(const FileURL& home) const {
    const std::string base = enclosingPrefix(expandedPath(home));
    std::set<std::string> names;
    for (const PathHeuristic* row : PathHeuristics::all()) {
        if (row->id == id || row->pathPattern.find("**") != std::string_view::npos) {
            continue;
        }
        for (const std::string_view piece : pieces(row->pathPattern)) {
            const std::string path = expandingTilde(piece, home);
            if (const std::string_view name = firstNameBelow(base, path); !name.empty()) {
                names.emplace(name);
            }
        }
    }
    return names;
}

} // namespace korvane
