#include "KorvaneCore/foundation/Date.h"
#include "KorvaneCore/foundation/Json.h"

#include <cmath>
#include <cstring>
#include <limits>

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace korvane {
namespace {

TEST(Date, isWrittenAndReadAsISO8601) {
    const std::pair<std::int64_t, const char*> rows[] = {
        {0, "1970-01-01T00:00:00Z"},
        {-1, "1969-12-31T23:59:59Z"},
        {978'307'200, "2001-01-01T00:00:00Z"},
        {951'782'400, "2000-02-29T00:00:00Z"},
        {1'794'682'364, "2026-11-14T18:52:44Z"},
        {4'102'444'799, "2099-12-31T23:59:59Z"},
        {253'402'300'799, "9999-12-31T23:59:59Z"},
        {-62'167'219'200, "0000-01-01T00:00:00Z"},
    };
    for (const auto& [seconds, text] : rows) {
        const Date date = Date::fromUnixSeconds(seconds);
        EXPECT_EQ(date.iso8601(), text);
        EXPECT_EQ(date.utcDay(), std::string(text).substr(0, 10));
        EXPECT_EQ(date.unixSeconds(), seconds);
        EXPECT_EQ(Date::fromISO8601(text), date);
    }
    EXPECT_EQ(Date().iso8601(), "2001-01-01T00:00:00Z");
    EXPECT_EQ(Date(0.999).iso8601(), "2001-01-01T00:00:00Z");
    EXPECT_EQ(Date(-0.25).iso8601(), "2000-12-31T23:59:59Z") << "towards the past";
}

TEST(Date, refusesWhatIsNoCalendarDate) {
    for (const char* text : {"",
                             "2026-11-14",
                             "2026-11-14T18:52:44",
                             "2026-11-14T18:52:44z",
                             "2026-11-14 18:52:44Z",
                             "2026-11-14T18:52:44.5Z",
                             "2026-11-14T18:52:44+00:00",
                             "2026-02-29T00:00:00Z",
                             "2100-02-29T00:00:00Z",
                             "2026-13-01T00:00:00Z",
                             "2026-00-10T00:00:00Z",
                             "2026-04-31T00:00:00Z",
                             "2026-01-00T00:00:00Z",
                             "2026-01-01T24:00:00Z",
                             "2026-01-01T00:60:00Z",
                             "2026-01-01T00:00:60Z",
                             "-026-01-01T00:00:00Z",
                             "2026-+1-01T00:00:00Z",
                             "2026-01-01T 1:00:00Z",
                             " 2026-01-01T00:00:00Z"}) {
        EXPECT_EQ(Date::fromISO8601(text), std::nullopt) << text;
    }
}

TEST(Date, survivesHostileNumbers) {
    for (const double number :
         {1e300, -1e300, std::numeric_limits<double>::infinity(),
          -std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
        const std::string text = Date(number).iso8601();
        EXPECT_TRUE(Date::fromISO8601(text)) << number << " gives " << text;
    }
    EXPECT_LT(Date(-1e300).unixSeconds(), Date(1e300).unixSeconds());
}

TEST(Date, keepsTheOrderOfFileTimes) {
    const Date early = Date::fromTimespec({1'000'000'000, 999'999'000});
    const Date late = Date::fromTimespec({1'000'000'001, 0});
    EXPECT_LT(early, late);
    EXPECT_EQ(early.unixSeconds(), 1'000'000'000);
    EXPECT_NEAR(late.since(early), 1e-6, 1e-7);
    EXPECT_EQ(late.adding(1.5).since(late), 1.5);
    const Date beforeTheEpoch = Date::fromTimespec({-2, 500'000'000});
    EXPECT_EQ(beforeTheEpoch.unixSeconds(), -2);
}

RC_GTEST_PROP(DateProperty, readsBackExactlyFromItsNumber,
              (std::int64_t seconds, std::uint32_t nanoseconds)) {
    // Around the present and, by the bits, anywhere in the range of a double.
    const Date present = Date::fromTimespec({seconds % 4'000'000'000, nanoseconds % 1'000'000'000});
    double anywhere = 0;
    std::memcpy(&anywhere, &seconds, sizeof anywhere);
    for (const Date& date : {present, Date(std::isfinite(anywhere) ? anywhere : 0)}) {
        const std::string text = compactJson(encodeDate(date, DateForm::secondsSinceReferenceDate));
        RC_ASSERT(decodeDate(parseJson(text), "date") == date);
    }
    RC_ASSERT(Date::fromISO8601(present.iso8601())->unixSeconds() == present.unixSeconds());
}

} // namespace
} // namespace korvane
