#include "KorvaneCore/foundation/Date.h"

#include <charconv>
#include <chrono>
#include <cmath>

#include <fmt/format.h>

namespace korvane {

namespace {

// From 1 January 1970 to 1 January 2001, both UTC.
constexpr std::int64_t referenceDateUnixSeconds = 978'307'200;

struct CivilTime {
    std::chrono::year_month_day day;
    std::int64_t secondOfDay = 0;
};

CivilTime civilTime(std::int64_t unixSeconds) {
    const std::chrono::sys_seconds time{std::chrono::seconds(unixSeconds)};
    const auto day = std::chrono::floor<std::chrono::days>(time);
    return {std::chrono::year_month_day(day), (time - day).count()};
}

std::string dayText(const std::chrono::year_month_day& day) {
    return fmt::format("{:04}-{:02}-{:02}", static_cast<int>(day.year()),
                       static_cast<unsigned>(day.month()), static_cast<unsigned>(day.day()));
}

/// The number written in `width` digits at `position`; nothing when one is no digit.
std::optional<unsigned> digits(std::string_view text, std::size_t position, std::size_t width) {
    unsigned value = 0;
    const char* first = text.data() + position;
    const auto [end, error] = std::from_chars(first, first + width, value);
    return error == std::errc() && end == first + width ? std::optional(value) : std::nullopt;
}

} // namespace

Date Date::now() {
    timespec time{};
    clock_gettime(CLOCK_REALTIME, &time);
    return fromTimespec(time);
}

Date Date::fromTimespec(const std::timespec& time) {
    return Date(static_cast<double>(time.tv_sec - referenceDateUnixSeconds) +
                static_cast<double>(time.tv_nsec) * 1e-9);
}

Date Date::fromUnixSeconds(std::int64_t seconds) {
    return Date(static_cast<double>(seconds - referenceDateUnixSeconds));
}

std::int64_t Date::unixSeconds() const {
    // The years 0000 to 9999, all that can be written; a hostile number must not be undefined.
    constexpr double earliest = -63'145'526'400.0;
    constexpr double latest = 252'423'993'599.0;
    const double seconds =
        std::isnan(seconds_) ? 0 : std::fmin(std::fmax(seconds_, earliest), latest);
    return static_cast<std::int64_t>(std::floor(seconds)) + referenceDateUnixSeconds;
}

std::string Date::utcDay() const {
    return dayText(civilTime(unixSeconds()).day);
}

std::string Date::iso8601() const {
    const CivilTime time = civilTime(unixSeconds());
    return fmt::format("{}T{:02}:{:02}:{:02}Z", dayText(time.day), time.secondOfDay / 3600,
                       time.secondOfDay / 60 % 60, time.secondOfDay % 60);
}

std::optional<Date> Date::fromISO8601(std::string_view text) {
    if (text.size() != 20 || text[4] != '-' || text[7] != '-' || text[10] != 'T' ||
        text[13] != ':' || text[16] != ':' || text[19] != 'Z') {
        return std::nullopt;
    }
    const auto year = digits(text, 0, 4);
    const auto month = digits(text, 5, 2);
    const auto dayOfMonth = digits(text, 8, 2);
    const auto hour = digits(text, 11, 2);
    const auto minute = digits(text, 14, 2);
    const auto second = digits(text, 17, 2);
    if (!year || !month || !dayOfMonth || !hour || !minute || !second || *hour > 23 ||
        *minute > 59 || *second > 59) {
        return std::nullopt;
    }
    const std::chrono::year_month_day day(std::chrono::year(static_cast<int>(*year)),
                                          std::chrono::month(*month),
                                          std::chrono::day(*dayOfMonth));
    if (!day.ok()) {
        return std::nullopt;
    }
    const std::int64_t days = std::chrono::sys_days(day).time_since_epoch().count();
    const std::int64_t secondOfDay =
        std::int64_t{*hour} * 3600 + std::int64_t{*minute} * 60 + *second;
    return fromUnixSeconds(days * 86'400 + secondOfDay);
}

} // namespace korvane
