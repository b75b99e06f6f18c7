#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/scanners/BrowserCacheScanner.h"
#include "tests/support/TemporaryFolder.h"

#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::TemporaryFolder;

const std::string support = "Library/Application Support/";
const std::string chrome = support + "Google/Chrome/";
const std::string firefox = support + "Firefox/Profiles/";
const std::string safari = "Library/Caches/com.apple.Safari";

/// "path below home | category" of each item, in the result's order.
std::vector<std::string> lines(const ScanResult& result, const TemporaryFolder& home) {
    std::vector<std::string> texts;
    for (const ScanItem& item : result.items) {
        texts.push_back(item.path().substr(home.path().size() + 1) + " | " + item.category);
    }
    return texts;
}

std::vector<std::string> scanned(const TemporaryFolder& home) {
    return lines(BrowserCacheScanner(home.url()).scan(), home);
}

TEST(BrowserCacheScanner, reportsEveryBrowserAndThenDone) {
    const TemporaryFolder home;
    std::vector<ScanProgress> reports;
    const Date before = Date::now();
    const ScanResult result = BrowserCacheScanner(home.url()).scan([&](const ScanProgress& report) {
        reports.push_back(report);
    });
    EXPECT_THAT(
        reports,
        ElementsAre(
            ScanProgress{"Checking Safari…", 0.0}, ScanProgress{"Checking Google Chrome…", 0.125},
            ScanProgress{"Checking Firefox…", 0.25}, ScanProgress{"Checking Brave Browser…", 0.375},
            ScanProgress{"Checking Arc…", 0.5}, ScanProgress{"Checking Microsoft Edge…", 0.625},
            ScanProgress{"Checking Opera…", 0.75}, ScanProgress{"Checking Vivaldi…", 0.875},
            ScanProgress{"Done", 1.0}));
    EXPECT_EQ(result.scannerID, "browser-cache");
    EXPECT_THAT(result.items, IsEmpty());
    EXPECT_LE(before, result.startedAt);
    EXPECT_LE(result.startedAt, result.finishedAt);
    EXPECT_EQ(BrowserCacheScanner(home.url(), "mine").scan().scannerID, "mine");
}

TEST(BrowserCacheScanner, findsTheCachesOfEveryBrowserLargestFirst) {
    const TemporaryFolder home;
    const std::pair<std::string, std::string> caches[] = {
        {safari, "Browser · Safari"},
        {chrome + "Default/Cache", "Browser · Google Chrome"},
        {firefox + "abc.default/cache2", "Browser · Firefox"},
        {support + "BraveSoftware/Brave-Browser/Profile 1/Code Cache",
         "Browser · Brave Browser - Profile 1"},
        {support + "Arc/User Data/Default/GPUCache", "Browser · Arc"},
        {support + "Microsoft Edge/Profile 2/Service Worker",
         "Browser · Microsoft Edge - Profile 2"},
        {support + "com.operasoftware.Opera/Default/Cache", "Browser · Opera"},
        {support + "Vivaldi/Default/Cache", "Browser · Vivaldi"},
    };
    std::size_t size = 4096;
    std::vector<std::string> expected;
    std::set<std::string> rows;
    for (const auto& [folder, category] : caches) {
        home.makeFileOfSize(folder + "/sub/data", size);
        home.setModified(folder, 1'700'000'000);
        expected.insert(expected.begin(), folder + " | " + category);
        size += 65'536;
    }
    const ScanResult result = BrowserCacheScanner(home.url()).scan();
    EXPECT_EQ(lines(result, home), expected);
    for (const ScanItem& item : result.items) {
        EXPECT_GE(item.sizeBytes, 4096);
        EXPECT_EQ(item.lastModified, Date::fromUnixSeconds(1'700'000'000));
        EXPECT_TRUE(item.isDirectory);
        rows.insert(item.heuristicID);
    }
    EXPECT_THAT(rows,
                ElementsAre("browser.arc.cache", "browser.brave.cache", "browser.chrome.cache",
                            "browser.edge.cache", "browser.firefox.cache", "browser.opera.cache",
                            "browser.safari.cache", "browser.vivaldi.cache"));
}

TEST(BrowserCacheScanner, keepsTheOrderOfDiscoveryAmongEqualSizes) {
    const TemporaryFolder home;
    for (const std::string& folder :
         {firefox + "b/startupCache", firefox + "b/cache2", firefox + "a/startupCache",
          chrome + "Profile 2/Cache", chrome + "Profile 10/Cache",
          chrome + "Default/Service Worker", chrome + "Default/GPUCache",
          chrome + "Default/Code Cache", chrome + "Default/Cache", safari}) {
        home.makeFileOfSize(folder + "/data", 100);
    }
    EXPECT_THAT(scanned(home),
                ElementsAre(safari + " | Browser · Safari",
                            chrome + "Default/Cache | Browser · Google Chrome",
                            chrome + "Default/Code Cache | Browser · Google Chrome",
                            chrome + "Default/GPUCache | Browser · Google Chrome",
                            chrome + "Default/Service Worker | Browser · Google Chrome",
                            chrome + "Profile 10/Cache | Browser · Google Chrome - Profile 10",
                            chrome + "Profile 2/Cache | Browser · Google Chrome - Profile 2",
                            firefox + "a/startupCache | Browser · Firefox",
                            firefox + "b/cache2 | Browser · Firefox",
                            firefox + "b/startupCache | Browser · Firefox"));
}

TEST(BrowserCacheScanner, leavesEverythingElseOfABrowserAlone) {
    const TemporaryFolder home;
    for (const std::string& file :
         {chrome + "Profile3/Cache/data", chrome + "Guest Profile/Cache/data",
          chrome + "System Profile/Cache/data", chrome + "default/Cache/data",
          chrome + ".Profile 1/Cache/data", chrome + "Default/History",
          chrome + "Default/Cache2/data", chrome + "Default/cache2/data",
          chrome + "Default/Cache/.hidden", chrome + "Profile ", support + "Vivaldi/Default",
          firefox + ".hidden/cache2/data", firefox + "a/Cache/data", firefox + "cache2",
          support + "com.operasoftware.Opera", safari}) {
        home.makeFile(file);
    }
    home.makeFolder(chrome + "Default/GPUCache");
    EXPECT_THAT(scanned(home), IsEmpty());
    home.makeFile(chrome + "Default/Code Cache/data");
    EXPECT_THAT(scanned(home),
                ElementsAre(chrome + "Default/Code Cache | Browser · Google Chrome"));
}

TEST(BrowserCacheScanner, goesThroughLinksToProfilesButNeverProposesALink) {
    const TemporaryFolder home;
    const TemporaryFolder elsewhere;
    elsewhere.makeFile("cache/data");
    elsewhere.makeFile("profile/Cache/data");
    home.makeLink(safari, elsewhere.at("cache").path());
    home.makeLink(chrome + "Default/Cache", elsewhere.at("cache").path());
    home.makeLink(chrome + "Default/GPUCache", "nowhere");
    home.makeLink(chrome + "Profile 1", elsewhere.at("profile").path());
    home.makeLink(firefox + "a", "a");
    EXPECT_THAT(scanned(home),
                ElementsAre(chrome + "Profile 1/Cache | Browser · Google Chrome - Profile 1"));
}

TEST(BrowserCacheScanner, showsAProfileNameThatIsNoText) {
    const TemporaryFolder home;
    home.makeFile(chrome + "Profile \xFF\n/Cache/data");
    const ScanResult result = BrowserCacheScanner(home.url()).scan();
    ASSERT_EQ(result.items.size(), 1U);
    EXPECT_EQ(result.items[0].category, "Browser · Google Chrome - Profile \\xFF\\n");
    EXPECT_EQ(ScanResult::fromJson(parseJson(result.encode(DateForm::iso8601))).items[0].url,
              home.at(chrome + "Profile \xFF\n/Cache"));
}

TEST(BrowserCacheScanner, returnsWhatItHadWhenCancelled) {
    const TemporaryFolder home;
    home.makeFile(safari + "/data");
    home.makeFile(chrome + "Default/Cache/data");
    std::vector<std::string> messages;
    const auto cancellation = Task::makeCancellation();
    const Task::Scope scope(cancellation);
    const ScanResult result = BrowserCacheScanner(home.url()).scan([&](const ScanProgress& report) {
        messages.push_back(report.message);
        if (report.message == "Checking Google Chrome…") {
            Task::cancel(*cancellation);
        }
    });
    EXPECT_THAT(messages, ElementsAre("Checking Safari…", "Checking Google Chrome…"));
    EXPECT_THAT(lines(result, home), ElementsAre(safari + " | Browser · Safari"));
}

} // namespace
} // namespace korvane
