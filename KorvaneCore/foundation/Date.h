#pragma once

#include <compare>
#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>

namespace korvane {

/// A moment in time, held as seconds since 1 January 2001 UTC, so that the stores which write that
/// number read back exactly the moment they wrote.
class Date {
  public:
    Date() = default;
    explicit Date(double secondsSinceReferenceDate) : seconds_(secondsSinceReferenceDate) {}

    [[nodiscard]] static Date now();
    [[nodiscard]] static Date fromTimespec(const std::timespec& time);
    [[nodiscard]] static Date fromUnixSeconds(std::int64_t seconds);

    /// Reads "2026-11-14T18:52:44Z" (whole seconds, UTC, a real calendar date); anything else gives
    /// nothing.
    [[nodiscard]] static std::optional<Date> fromISO8601(std::string_view text);

    /// "2026-11-14T18:52:44Z"; a fraction of a second is dropped, towards the past.
    [[nodiscard]] std::string iso8601() const;

    /// "2026-11-14", the UTC calendar day.
    [[nodiscard]] std::string utcDay() const;

    [[nodiscard]] double secondsSinceReferenceDate() const noexcept { return seconds_; }

    /// Whole seconds since 1 January 1970 UTC, rounded towards the past.
    [[nodiscard]] std::int64_t unixSeconds() const;

    [[nodiscard]] Date adding(double seconds) const { return Date(seconds_ + seconds); }
    [[nodiscard]] double since(const Date& earlier) const { return seconds_ - earlier.seconds_; }

    friend auto operator<=>(const Date&, const Date&) = default;

  private:
    double seconds_ = 0;
};

} // namespace korvane
