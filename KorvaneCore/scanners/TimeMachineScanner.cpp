#include "KorvaneCore/scanners/TimeMachineScanner.h"

#include "KorvaneCore/scan/PathHeuristicRows.h"
#include "KorvaneCore/scanners/ItemCollection.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <string_view>

#include <fmt/format.h>

namespace korvane {

namespace {

constexpr std::string_view tool = "/usr/bin/tmutil";
constexpr std::string_view prefix = "com.apple.TimeMachine.";
/// Where the system shows a snapshot while it is mounted. No such folder exists otherwise, so that
/// a snapshot is never mistaken for a folder that could be removed.
constexpr std::string_view place = "/Volumes/com.apple.TimeMachine.localsnapshots";

/// The date in "com.apple.TimeMachine.2026-11-14-185244.local".
std::optional<Date> snapshotDate(std::string_view name) {
    constexpr std::string_view form = "2026-11-14-185244";
    const std::string_view text = name.substr(prefix.size(), form.size());
    if (text.size() != form.size()) {
        return std::nullopt;
    }
    return Date::fromISO8601(fmt::format("{}T{}:{}:{}Z", text.substr(0, 10), text.substr(11, 2),
                                         text.substr(13, 2), text.substr(15, 2)));
}

} // namespace

ScanResult TimeMachineScanner::scan(const ScanProgressHandler& progress) const {
    const PathHeuristic& row = PathHeuristics::systemTimeMachineSnapshots;
    ScanResult result{.scannerID = id(), .startedAt = Date::now()};
    progress({"Listing local snapshots…", 0.0});
    ProcessRequest request;
    request.executable = tool;
    request.arguments = {"listlocalsnapshots", "/"};
    request.timeLimit = std::chrono::seconds(60);
    const ProcessOutcome outcome = launcher_.run(request);
    std::string_view text = outcome.succeeded() ? outcome.output : std::string_view();
    while (!text.empty()) {
        const std::string_view name = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(name.size() + 1, text.size()));
        if (name.starts_with(prefix) && name.find('/') == std::string_view::npos) {
            result.items.push_back({.url = FileURL(std::string(place)).appending(name),
                                    .lastModified = snapshotDate(name),
                                    .category = std::string(row.category),
                                    .heuristicID = std::string(row.id)});
        }
    }
    return finished(std::move(result), progress);
}

} // namespace korvane
