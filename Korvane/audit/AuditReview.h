#pragma once

#include "KorvaneCore/audit/AuditLog.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace korvane {

/// The operations of one calendar day in the user's time zone.
struct DayGroup {
    std::string label; ///< "Today", "Yesterday", "14 November 2026"
    std::vector<AuditEntry> entries;

    friend bool operator==(const DayGroup&, const DayGroup&) = default;
};

/// Entries, newest first, by day.
[[nodiscard]] std::vector<DayGroup> dayGroups(std::vector<AuditEntry> entries, const Date& now);

/// A run of entries of one calendar day.
struct DayRun {
    std::string label;   ///< as above
    std::size_t end = 0; ///< the place after its last entry

    friend bool operator==(const DayRun&, const DayRun&) = default;
};

/// The same without moving the entries: run after run, the first from place 0.
[[nodiscard]] std::vector<DayRun> dayRuns(std::span<const AuditEntry> entries, const Date& now);

/// How much of the past the chart shows.
enum class ChartPeriod { daily, weekly };

[[nodiscard]] std::string_view rawValue(ChartPeriod period) noexcept; ///< "daily", "weekly"
[[nodiscard]] std::string_view label(ChartPeriod period) noexcept;    ///< "30 Days", "12 Weeks"

/// What was reclaimed in one day or week.
struct ChartBar {
    std::int64_t id = 0; ///< number of the bar, from the oldest
    std::string label;   ///< the day, or the Monday of the week: "14 Nov"
    std::int64_t bytes = 0;

    friend bool operator==(const ChartBar&, const ChartBar&) = default;
};

/// One bar for each of the last 30 days or 12 weeks, the current one last, in the user's time zone;
/// weeks begin on Monday.
[[nodiscard]] std::vector<ChartBar> chartBars(std::span<const AuditEntry> entries,
                                              ChartPeriod period, const Date& now);

/// Round amounts for the axis of a chart, from 0 to the first that is no less than `most`: at most
/// five steps of 1, 2 or 5 and noughts.
[[nodiscard]] std::vector<std::int64_t> axisAmounts(std::int64_t most);

/// The log in a few figures.
struct AuditStatistics {
    std::int64_t operations = 0;
    std::int64_t lifetimeReclaimed = 0; ///< bytes; overflow is fatal
    std::string status;                 ///< one line about the chain

    friend bool operator==(const AuditStatistics&, const AuditStatistics&) = default;
};

[[nodiscard]] AuditStatistics auditStatistics(std::span<const AuditEntry> entries,
                                              const AuditChainResult& integrity);

} // namespace korvane
