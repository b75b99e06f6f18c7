#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/scanners/BuildOrder.h"
#include "KorvaneCore/scanners/CacheScanner.h"
#include "KorvaneCore/scanners/DeveloperScanner.h"
#include "KorvaneCore/scanners/IOSBackupScanner.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvane {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::UnorderedElementsAre;

constexpr double now = 4e9; // later than anything these tests make

class CacheScannerTest : public ::testing::Test {
  protected:
    /// A folder with some bytes in it.
    void fill(const std::string& name, std::size_t bytes = 5000) const {
        home.makeFileOfSize(name + "/content", bytes);
    }

    /// "path below home | row" of each item, in the result's order.
    std::vector<std::string> found(const ModuleScanner& scanner) const {
        std::vector<std::string> lines;
        for (const ScanItem& item : scanner.scan().items) {
            EXPECT_GE(item.sizeBytes, 1);
            lines.push_back(item.path().substr(home.path().size() + 1) + " | " + item.heuristicID);
        }
        return lines;
    }
    std::vector<std::string> found() const { return found(CacheScanner(home.url())); }

    testing::TemporaryFolder home;
};

TEST_F(CacheScannerTest, proposesEachChildOfAListedFolderOnceLargestFirst) {
    fill("Library/Caches/Small", 5000);
    fill("Library/Caches/Big", 50000);
    fill("Library/Caches/.hidden");
    fill("Library/Caches/Homebrew", 30000);      // has a row of its own
    fill("Library/Caches/go-build");             // belongs to another tool
    fill("Library/Logs/DiagnosticReports", 200); // claimed as well
    home.makeFolder("Library/Caches/Empty");
    home.makeFileOfSize("Library/Caches/a file", 90000);
    fill("elsewhere");
    home.makeLink("Library/Caches/link", home.at("elsewhere").path());
    EXPECT_THAT(found(),
                ElementsAre("Library/Caches/a file | cache.user", "Library/Caches/Big | cache.user",
                            "Library/Caches/Homebrew | dev.homebrew.cache",
                            "Library/Caches/Small | cache.user",
                            "Library/Logs/DiagnosticReports | system.diagnostic-reports"));
}

TEST_F(CacheScannerTest, doesNotEnterALinkedPlace) {
    fill("data/Documents");
    home.makeFolder("Library");
    home.makeLink("Library/Caches", home.at("data").path());
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(CacheScannerTest, tellsDormantProjectsFromThoseInUse) {
    const std::string derived = "Library/Developer/Xcode/DerivedData/";
    const double old = static_cast<double>(Date::now().unixSeconds()) - 31 * 86400;
    for (const char* project : {"old", "touched", "youngInside"}) {
        fill(derived + project + "/deep");
        home.setModified(derived + project + "/deep", old);
        home.setModified(derived + project, old);
    }
    // What changed deeper down shows nowhere above it.
    home.setModified(derived + "touched/deep", now);
    home.setModified(derived + "touched", old);
    EXPECT_THAT(found(),
                UnorderedElementsAre(derived + "old | dev.xcode.derived-data.stale",
                                     derived + "touched | dev.xcode.derived-data.active",
                                     derived + "youngInside | dev.xcode.derived-data.stale"));
}

TEST_F(CacheScannerTest, keepsTheNewestDeviceSupportApart) {
    const std::string support = "Library/Developer/Xcode/iOS DeviceSupport/";
    for (const char* build : {"9.3.5 (13G36)", "iPhone14,2 16.4.1 (20E252)", "16.4.1 (20E247)",
                              "iPad8,1 16.4.1 (20E252)", "unknown"}) {
        fill(support + build);
    }
    EXPECT_THAT(found(),
                UnorderedElementsAre(
                    support + "9.3.5 (13G36) | dev.xcode.ios-device-support.superseded",
                    support + "16.4.1 (20E247) | dev.xcode.ios-device-support.superseded",
                    support + "unknown | dev.xcode.ios-device-support.superseded",
                    support + "iPhone14,2 16.4.1 (20E252) | dev.xcode.ios-device-support.current",
                    support + "iPad8,1 16.4.1 (20E252) | dev.xcode.ios-device-support.current"));
}

TEST(BuildOrder, comparesNumbersAsNumbers) {
    const std::pair<const char*, const char*> ascending[] = {
        {"9.3 (13E5)", "10.0 (14A4)"},          {"16.4 (20E9)", "16.4 (20E247)"},
        {"16.4 (20E247)", "16.4.1 (20E1)"},     {"none", "1.0"},
        {"iPhone15,2 16.9", "iPhone3,1 16.10"}, {"16.4 (20E247)", "16.4 (21A1)"}};
    for (const auto& [older, newer] : ascending) {
        EXPECT_LT(compareBuilds(older, newer), 0) << older << " and " << newer;
        EXPECT_GT(compareBuilds(newer, older), 0) << older << " and " << newer;
    }
    EXPECT_EQ(compareBuilds("16.04 (20E1", "iPad1,1 16.4 (20E1)"), 0);
}

TEST_F(CacheScannerTest, searchesNamesEverywhereButWhereOthersAreAtHome) {
    fill("code/p/node_modules/x/node_modules", 9000);
    fill("code/q/.venv");
    fill("deep/1/2/3/node_modules");
    for (const char* left :
         {".config/node_modules", "Library/App/node_modules", ".Trash/node_modules",
          "code/Library/.venv", ".local/.venv", "data/Trash/files/p/node_modules"}) {
        fill(left);
    }
    home.makeFolder("data/Trash/info");
    fill("elsewhere/sub");
    home.makeFile("code/r/node_modules", "a file");
    home.makeLink("code/s", home.at("elsewhere").path());
    home.makeLink("code/.venv", home.at("elsewhere").path());
    EXPECT_THAT(found(), UnorderedElementsAre("code/p/node_modules | dev.node-modules",
                                              "code/q/.venv | dev.python.venv",
                                              "deep/1/2/3/node_modules | dev.node-modules"));
    EXPECT_THAT(found(CacheScanner(home.url(), 4)),
                Not(Contains("deep/1/2/3/node_modules | dev.node-modules")));
    EXPECT_THAT(found(CacheScanner(home.url(), 5)),
                Contains("deep/1/2/3/node_modules | dev.node-modules"));
}

TEST_F(CacheScannerTest, reportsEachRowAndEndsQuietlyWhenCancelled) {
    fill("Library/Caches/A");
    std::vector<ScanProgress> reports;
    const auto keep = [&](const ScanProgress& report) { reports.push_back(report); };
    EXPECT_EQ(CacheScanner(home.url()).scan(keep).scannerID, "cache-cleaner");
    ASSERT_GT(reports.size(), 30U);
    EXPECT_EQ(reports.front(), (ScanProgress{"Checking User Cache…", 0.0}));
    EXPECT_EQ(reports.back(), (ScanProgress{"Done", 1.0}));
    EXPECT_TRUE(std::is_sorted(reports.begin(), reports.end(), [](const auto& a, const auto& b) {
        return a.fraction < b.fraction;
    }));
    reports.clear();
    Task([&] {
        const ScanResult result = CacheScanner(home.url()).scan([&](const ScanProgress& report) {
            keep(report);
            Task::cancel(*Task::current());
        });
        EXPECT_THAT(result.items, IsEmpty());
    }).wait();
    EXPECT_THAT(reports, ElementsAre(ScanProgress{"Checking User Cache…", 0.0}));
}

TEST_F(CacheScannerTest, evaluatesTheRowsOfTheOtherTools) {
    fill(".npm/_cacache", 9000);
    fill("go/pkg/mod", 5000);
    EXPECT_THAT(
        found(DeveloperScanner(home.url())),
        ElementsAre(".npm/_cacache | developer.npm-cache", "go/pkg/mod | dev.go.module-cache"));
    const std::string backups = "Library/Application Support/MobileSync/Backup";
    fill(backups + "/0001", 3000);
    fill(backups + "/0002", 30000);
    EXPECT_THAT(found(IOSBackupScanner(home.url())),
                ElementsAre(backups + "/0002 | ios.device-backups",
                            backups + "/0001 | ios.device-backups"));
}

} // namespace
} // namespace korvane
