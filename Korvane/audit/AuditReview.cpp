#include "Korvane/audit/AuditReview.h"

#include "Korvane/audit/IntegrityText.h"
#include "KorvaneCore/foundation/CheckedArithmetic.h"

#include <algorithm>
#include <array>
#include <compare>
#include <ctime>
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

std::vector<DayGroup> dayGroups(std::vector<AuditEntry> entries, const Date& now) {
    const std::tm today = localTime(now);
    std::vector<DayGroup> groups;
    Day current;
    for (AuditEntry& entry : entries) {
        const Day day = dayOf(localTime(entry.timestamp));
        if (groups.empty() || day != current) {
            groups.push_back({dayLabel(day, today), {}});
            current = day;
        }
        groups.back().entries.push_back(std::move(entry));
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
