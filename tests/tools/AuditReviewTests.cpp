#include "Korvane/audit/AuditExport.h"
#include "Korvane/audit/AuditReview.h"
#include "Korvane/audit/AuditText.h"
#include "tests/support/TemporaryFolder.h"

#include <cstdlib>
#include <ctime>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvane {
namespace {

using ::testing::ElementsAre;
using ::testing::StartsWith;

/// Everything here happens where summer time begins and ends.
class AuditReviewTest : public ::testing::Test {
  protected:
    static void SetUpTestSuite() {
        setenv("TZ", "Europe/Berlin", 1);
        tzset();
    }
    static void TearDownTestSuite() {
        unsetenv("TZ");
        tzset();
    }

    static Date at(const char* text) { return *Date::fromISO8601(text); }

    static AuditEntry entry(const char* time, std::int64_t bytes = 1,
                            std::vector<std::string> paths = {}) {
        AuditEntry made;
        made.timestamp = at(time);
        made.scannerID = "trash";
        made.bytesReclaimed = bytes;
        made.paths = std::move(paths);
        return made;
    }
};

TEST_F(AuditReviewTest, groupsByTheUsersCalendarDay) {
    const auto groups = dayGroups({entry("2026-11-14T22:59:00Z"), entry("2026-11-13T23:30:00Z"),
                                   entry("2026-11-13T12:00:00Z"), entry("2025-01-01T00:00:00Z")},
                                  at("2026-11-14T12:00:00Z"));
    std::vector<std::string> lines;
    for (const DayGroup& group : groups) {
        lines.push_back(group.label + " " + std::to_string(group.entries.size()));
    }
    EXPECT_THAT(lines, ElementsAre("Today 2", "Yesterday 1", "1 January 2025 1"));
}

TEST_F(AuditReviewTest, drawsOneBarADayOrWeekAcrossAChangeOfClocks) {
    const Date now = at("2026-04-01T10:00:00Z"); // clocks changed on 29 March
    const std::vector<AuditEntry> entries{
        entry("2026-04-01T09:00:00Z", 1),  entry("2026-03-31T22:30:00Z", 2),
        entry("2026-03-29T00:30:00Z", 4),  entry("2026-03-28T23:30:00Z", 8),
        entry("2026-03-02T23:00:00Z", 16), entry("2026-03-02T22:59:59Z", 32)};
    const auto days = chartBars(entries, ChartPeriod::daily, now);
    ASSERT_EQ(days.size(), 30U);
    EXPECT_EQ(days.front(), (ChartBar{0, "3 Mar", 16}));
    EXPECT_EQ(days[26], (ChartBar{26, "29 Mar", 12}));
    EXPECT_EQ(days.back(), (ChartBar{29, "1 Apr", 3}));
    const auto weeks = chartBars(entries, ChartPeriod::weekly, now);
    ASSERT_EQ(weeks.size(), 12U);
    EXPECT_EQ(weeks.front().label, "12 Jan");
    EXPECT_EQ(weeks[7], (ChartBar{7, "2 Mar", 48}));
    EXPECT_EQ(weeks[10], (ChartBar{10, "23 Mar", 12}));
    EXPECT_EQ(weeks.back(), (ChartBar{11, "30 Mar", 3}));
}

TEST_F(AuditReviewTest, dividesTheAxisOfAChartIntoRoundSteps) {
    EXPECT_THAT(axisAmounts(0), ElementsAre(0, 1));
    EXPECT_THAT(axisAmounts(7), ElementsAre(0, 2, 4, 6, 8));
    EXPECT_THAT(axisAmounts(10), ElementsAre(0, 2, 4, 6, 8, 10));
    EXPECT_THAT(axisAmounts(11), ElementsAre(0, 5, 10, 15));
    EXPECT_THAT(
        axisAmounts(2'300'000'000),
        ElementsAre(0, 500'000'000, 1'000'000'000, 1'500'000'000, 2'000'000'000, 2'500'000'000));
    EXPECT_EQ(axisAmounts(std::numeric_limits<std::int64_t>::max()).size(), 6U);
}

TEST_F(AuditReviewTest, saysWhatAnOperationDid) {
    AuditEntry made = entry("2026-11-14T18:52:44Z");
    const auto summary = [&](std::int64_t succeeded, std::int64_t failed, std::size_t inBin) {
        made.succeededCount = succeeded;
        made.failedCount = failed;
        made.restorable = std::vector<RestorableItem>(inBin);
        return AuditText::operationSummary(made);
    };
    EXPECT_EQ(summary(3, 0, 3), "3 items moved to the Bin");
    EXPECT_EQ(summary(3, 1, 1), "1 item moved to the Bin, 2 deleted, 1 could not be removed");
    EXPECT_EQ(summary(0, 2, 0), "2 items could not be removed");
    EXPECT_EQ(summary(0, 0, 0), "0 items deleted");
    made.scannerID = "icloud-cleanup";
    EXPECT_EQ(summary(1, 0, 0), "1 item removed from this computer");
    made.scannerID = "restore";
    EXPECT_EQ(summary(2, 0, 0), "2 items put back");
    made.chainRestart = ChainRestart{"a\nb", at("2026-11-14T18:52:44Z"), UUID::random(), {}};
    EXPECT_EQ(summary(0, 0, 0), "Acknowledged break: a\\nb");
    EXPECT_EQ(AuditText::shownOperations(1, 1), "1 operation");
    EXPECT_EQ(AuditText::shownOperations(0, 2), "0 of 2 operations");
}

TEST_F(AuditReviewTest, exportsWhatOtherProgramsRead) {
    AuditEntry odd = entry("2026-11-14T18:52:44Z", 7, {"/a \"b\"", "=cmd()\nx"});
    odd.scannerID = "unknown-tool";
    odd.itemCount = 3;
    odd.succeededCount = 2;
    odd.failedCount = 1;
    const std::string header = "timestamp,module,items,succeeded,failed,bytes_reclaimed,paths\n";
    EXPECT_EQ(auditCSV({}), header);
    EXPECT_EQ(auditCSV(std::vector{odd, entry("2026-11-14T00:00:00Z")}),
              header + "2026-11-14T18:52:44Z,unknown-tool,3,2,1,7,\"/a \"\"b\"\"; =cmd()\nx\"\n"
                       "2026-11-14T00:00:00Z,Bin,0,0,0,1,\"\"\n");
    EXPECT_EQ(parseJson(auditJSON({})), Json::array());
    const std::string text = auditJSON(std::vector{odd, odd});
    EXPECT_EQ(parseJson(text).size(), 2U);
    EXPECT_EQ(nlohmann::json::parse(text).at(0), nlohmann::json(odd.toJson()));
    EXPECT_LT(text.find("\"bytesReclaimed\""), text.find("\"failedCount\""));

    const testing::TemporaryFolder folder;
    exportAuditLog(std::vector{odd}, folder.at("log.JSON"));
    exportAuditLog(std::vector{odd}, folder.at("log.text"));
    EXPECT_THAT(folder.content("log.JSON"), StartsWith("["));
    EXPECT_THAT(folder.content("log.text"), StartsWith("timestamp"));
}

} // namespace
} // namespace korvane
