#include "Korvane/audit/AuditReview.h"

#include "Korvane/audit/IntegrityText.h"
#include "KorvaneCore/foundation/CheckedArithmetic.h"

#include <algorithm>
#include <array>
#include <compare>
#include <ctime>
#include <iterator>
#include <map>

#include <fmt/format.h>

namespace korvane {

namespace {

constexpr std::array<std::string_view, 12> months{"January",   "February", "March",    "April",
                                                  "May",       "June",     "July",     "August",
                                                  "September", "October",  "November", "December"};

/// A calendar day where the user lives.
struct Day {
    int year = 0;
    int month = 0; ///< from 0
    int day = 0;

    friend auto operator<=>(const Day&, const Day&) = default;
};

std::tm localTime(const Date& date) {
    const auto seconds = static_cast<std::time_t>(date.unixSeconds());
    std::tm parts{};
    localtime_r(&seconds, &parts);
    return parts;
}

Day dayOf(const std::tm& parts) {
    return {parts.tm_year + 1900, parts.tm_mon, parts.tm_mday};
}

/// The day so many days before; noon, so that no change of clocks shifts it.
Day daysBefore(std::tm parts, int days) {
    parts.tm_mday -= days;
    parts.tm_hour = 12;
    parts.tm_isdst = -1;
    std::mktime(&parts);
    return dayOf(parts);
}

Day mondayOf(const std::tm& parts) {
    return daysBefore(parts, (parts.tm_wday + 6) % 7);
}

std::string_view monthName(const Day& day) {
    return months[static_cast<std::size_t>(day.month)];
}

std::string dayLabel(const Day& day, const std::tm& now) {
    if (day == dayOf(now)) {
        return "Today";
    }
    if (day == daysBefore(now, 1)) {
        return "Yesterday";
    }
    return fmt::format("{} {} {}", day.day, monthName(day), day.year);
}

} // namespace

std::vector<DayRun> dayRuns(std::span<const AuditEntry> entries, const Date& now) {
    const std::tm today = localTime(now);
    std::vector<DayRun> runs;
    Day current;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const Day day = dayOf(localTime(entries[i].timestamp));
        if (runs.empty() || day != current) {
            runs.push_back({dayLabel(day, today), i});
            current = day;
        }
        runs.back().end = i + 1;
    }
    return runs;
}

std::vector<DayGroup> dayGroups(std::vector<AuditEntry> entries, const Date& now) {
    std::vector<DayGroup> groups;
    auto entry = std::make_move_iterator(entries.begin());
    std::size_t begin = 0;
    for (DayRun& run : dayRuns(entries, now)) {
        const auto end = entry + static_cast<std::ptrdiff_t>(run.end - begin);
        groups.push_back({std::move(run.label), {entry, end}});
        entry = end;
        begin = run.end;
    }
    return groups;
}

std::string_view rawValue(ChartPeriod period) noexcept {
    return period == ChartPeriod::daily ? "daily" : "weekly";
}

std::string_view label(ChartPeriod period) noexcept {
    return period == ChartPeriod::daily ? "30 Days" : "12 Weeks";
}

std::vector<ChartBar> chartBars(std::span<const AuditEntry> entries, ChartPeriod period,
                                const Date& now) {
    const bool isDaily = period == ChartPeriod::daily;
    const int count = isDaily ? 30 : 12;
    const std::tm today = localTime(now);
    const int sinceMonday = isDaily ? 0 : (today.tm_wday + 6) % 7;
    std::vector<ChartBar> bars;
    std::map<Day, std::size_t> places;
    for (int i = 0; i < count; ++i) {
        const Day day = daysBefore(today, sinceMonday + (count - 1 - i) * (isDaily ? 1 : 7));
        places.emplace(day, bars.size());
        bars.push_back({i, fmt::format("{} {}", day.day, monthName(day).substr(0, 3)), 0});
    }
    for (const AuditEntry& entry : entries) {
        const std::tm when = localTime(entry.timestamp);
        const auto place = places.find(isDaily ? dayOf(when) : mondayOf(when));
        if (place != places.end()) {
            ChartBar& bar = bars[place->second];
            bar.bytes = checkedAdd(bar.bytes, entry.bytesReclaimed);
        }
    }
    return bars;
}

std::vector<std::int64_t> axisAmounts(std::int64_t most) {
    // More than an exabyte is no amount of data on a disk; the sum of the steps must not overflow.
    const std::int64_t top = std::clamp<std::int64_t>(most, 1, 1'000'000'000'000'000'000);
    const std::int64_t least = (top + 4) / 5;
    std::int64_t step = 1;
    for (std::int64_t power = 1; step < least; power *= 10) {
        for (const std::int64_t factor : {1, 2, 5}) {
            step = step < least ? factor * power : step;
        }
    }
    std::vector<std::int64_t> amounts{0};
    while (amounts.back() < top) {
        amounts.push_back(amounts.back() + step);
    }
    return amounts;
}

AuditStatistics auditStatistics(std::span<const AuditEntry> entries,
                                const AuditChainResult& integrity) {
    AuditStatistics statistics;
    statistics.operations = static_cast<std::int64_t>(entries.size());
    for (const AuditEntry& entry : entries) {
        statistics.lifetimeReclaimed =
            checkedAdd(statistics.lifetimeReclaimed, entry.bytesReclaimed);
    }
    statistics.status = integrityStatus(integrity);
    return statistics;
}

} // namespace korvane
