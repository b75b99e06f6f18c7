#pragma once

#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/scan/HeuristicRisk.h"

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace korvane {

/// One location that the program may ever propose for removal, and why that is safe. The texts are
/// literals that live as long as the process.
struct PathHeuristic {
    std::string_view id; ///< persisted; never changes
    std::string_view category;
    std::string_view displayName;
    std::string_view pathPattern; ///< also shown verbatim
    HeuristicRisk risk = HeuristicRisk::high;
    std::string_view whySafe;
    std::string_view scannerID;     ///< the scanner that evaluates it
    bool enumerateChildren = false; ///< each immediate child is an item of its own

    [[nodiscard]] std::string_view riskExplanation() const noexcept { return explanation(risk); }

    /// The pattern with a leading "~" replaced by the home folder.
    [[nodiscard]] std::string expandedPath(const FileURL& home) const;
    [[nodiscard]] FileURL url(const FileURL& home) const { return FileURL(expandedPath(home)); }

    /// The folders and files that the pattern names outright, links as they are: what comes before
    /// a choice of profiles, projects or names, and before a description in parentheses. None for a
    /// name that is searched for and for what the user chooses.
    [[nodiscard]] std::vector<FileURL> places(const FileURL& home) const;

    /// Names of the immediate children of this row's folder that other rows claim, so that a
    /// scanner which proposes each child proposes no location twice.
    [[nodiscard]] std::set<std::string> claimedChildNames(const FileURL& home) const;

    friend bool operator==(const PathHeuristic&, const PathHeuristic&) = default;
};

} // namespace korvane
