#pragma once

#include "KorvaneCore/foundation/FileURL.h"
#include "KorvaneCore/scan/PathHeuristic.h"
#include "KorvaneCore/scanners/CustomRule.h"
#include "KorvaneCore/scanners/NamedScanner.h"

#include <functional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace korvane {

/// Proposes what the user's own rules name, largest first; equal sizes by place. Of nested places
/// the outermost is proposed, but a rule that lists a folder leaves out what a rule or a row of the
/// catalogue names inside it.
class CustomRulesScanner final : public NamedScanner {
  public:
    /// Whether a place may never be removed; asked about every place before it is measured.
    using Refusal = std::function<bool(const FileURL&)>;

    CustomRulesScanner(std::vector<CustomRule> rules, FileURL home, Refusal isRefused,
                       Date now = Date::now())
        : NamedScanner("custom-rules", "Custom Rules"), rules_(std::move(rules)),
          home_(std::move(home)), isRefused_(std::move(isRefused)), now_(now) {}

    using ModuleScanner::scan;
    [[nodiscard]] ScanResult scan(const ScanProgressHandler& progress) const override;

  private:
    [[nodiscard]] std::vector<ScanItem> itemsOf(const CustomRule& rule) const;
    [[nodiscard]] std::set<std::string> claimedNames(const CustomRule& rule,
                                                     const PathHeuristic& row) const;

    std::vector<CustomRule> rules_;
    FileURL home_;
    Refusal isRefused_;
    Date now_;
};

/// The existing places that a path stands for in which "*" in a name means any text, in the order
/// of their bytes; a hidden name only where the pattern's name begins with ".". A
/// star stands for no link.
[[nodiscard]] std::vector<FileURL> expandingStars(const std::string& pattern);

} // namespace korvane
