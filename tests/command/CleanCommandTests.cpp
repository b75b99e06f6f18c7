#include "KorvaneCore/foundation/UUID.h"
#include "tests/command/CommandFixture.h"

#include <gmock/gmock.h>

namespace korvane::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

class CleanCommandTest : public CommandTest {
  protected:
    static Json item(const FileURL& url, std::int64_t size = 1) {
        return {{"id", UUID::random().text()},
                {"url", url.absoluteString()},
                {"sizeBytes", size},
                {"category", "Test"},
                {"heuristicID", "browser.chrome.cache"},
                {"isDirectory", false}};
    }

    static Json result(Json items) {
        return {{"scannerID", "large-files"},
                {"startedAt", "2026-11-14T18:52:44Z"},
                {"finishedAt", 815000000.25},
                {"items", std::move(items)}};
    }

    Run cleanItems(const Json& document, std::vector<std::string> more = {}) const {
        folder.makeFile("items.json", document.dump());
        std::vector<std::string> arguments = {"clean", "--items", folder.at("items.json").path(),
                                              "--yes", "--json"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return korvane(arguments);
    }
};

TEST_F(CleanCommandTest, scansCleansVerifiesAndRestores) {
    makeChromeCache("Default", 40'000);
    makeChromeCache("Profile \xFF\n2", 9'000);
    folder.makeFile(chromeRoot + "Default/Bookmarks");
    folder.makeFile("home/Library/Application Support/Firefox/Profiles/x/cache2/e", "data");
    const auto before = folder.listing("home/Library");

    const Json scan = korvane({"scan", "browser-cache", "--json"}).json();
    EXPECT_EQ(scan.at("result").at("items").size(), 3U);
    EXPECT_EQ(scan.at("preselected").size(), 3U);
    EXPECT_TRUE(scan.at("diff").is_null());
    EXPECT_EQ(folder.listing("home/Library"), before) << "a scan touches nothing";

    const Run clean = korvane({"clean", "browser-cache", "--yes", "--json"});
    EXPECT_EQ(clean.status, 0) << clean.errors;
    EXPECT_EQ(clean.json().at("succeeded").size(), 3U);
    EXPECT_TRUE(clean.json().at("spaceFreedOnDisk").is_null());
    EXPECT_FALSE(folder.exists(chromeRoot + "Default/Cache"));
    EXPECT_TRUE(folder.exists(chromeRoot + "Default/Bookmarks"));
    EXPECT_TRUE(folder.exists(trashFiles + "/Cache/data"));

    EXPECT_EQ(korvane({"audit", "verify", "--json"}).json().at("checkedCount"), 1);
    const Json operations = korvane({"restore", "--json"}).json();
    ASSERT_EQ(operations.size(), 1U);
    EXPECT_EQ(operations.at(0).at("restorableCount"), 3);
    EXPECT_EQ(operations.at(0).at("operationID"), clean.json().at("operationID"));
    const Run restore =
        korvane({"restore", operations.at(0).at("operationID").get<std::string>(), "--json"});
    EXPECT_EQ(restore.status, 0);
    EXPECT_EQ(restore.json().at("restored").size(), 3U);
    EXPECT_EQ(folder.listing("home/Library"), before);
    EXPECT_THAT(folder.listing("home/.local/share/Trash/info"), IsEmpty());
    EXPECT_EQ(korvane({"audit", "verify"}).status, 0);
    EXPECT_EQ(korvane({"restore", "--json"}).output, "[]\n");
}

TEST_F(CleanCommandTest, marksWhatIsNewGrownOrKeptBefore) {
    makeChromeCache("Default", 40'000);
    makeChromeCache("Profile 2", 40'000);
    makeChromeCache("Profile 3", 40'000);
    korvane({"clean", "browser-cache", "--select", "none", "--path", chrome("Profile 3/Cache"),
             "--yes"});
    EXPECT_FALSE(folder.exists(chromeRoot + "Profile 3/Cache"));

    folder.makeFileOfSize(chromeRoot + "Default/Cache/more", 40'000);
    makeChromeCache("Profile 4", 4'000);
    const Json scan = korvane({"scan", "browser-cache", "--json"}).json();
    EXPECT_EQ(scan.at("diff").at("newPaths"), Json::array({chrome("Profile 4/Cache")}));
    EXPECT_TRUE(scan.at("diff").at("growth").contains(chrome("Default/Cache")));
    EXPECT_EQ(scan.at("diff").at("vanishedCount"), 1);
    EXPECT_EQ(scan.at("skippedBefore").size(), 2U);
    EXPECT_THAT(korvane({"scan", "browser-cache"}).output, HasSubstr("kept on"));
}

TEST_F(CleanCommandTest, leavesProtectedPathsAloneAndSaysSo) {
    makeChromeCache("Default", 40'000);
    makeChromeCache("Profile 2", 40'000);
    ASSERT_EQ(korvane({"protect", "add", "~/Library/Application Support/Google/Chrome/Default",
                       "--note", "mine"})
                  .status,
              0);
    const Json scan = korvane({"scan", "browser-cache", "--json"}).json();
    EXPECT_EQ(scan.at("preselected").size(), 1U);
    EXPECT_EQ(scan.at("refused").size(), 1U);

    const Run all = korvane({"clean", "browser-cache", "--select", "all", "--yes", "--json"});
    EXPECT_EQ(all.status, 1);
    ASSERT_EQ(all.json().at("failed").size(), 1U);
    EXPECT_EQ(all.json().at("failed").at(0).at("kind"), "excluded");
    EXPECT_TRUE(folder.exists(chromeRoot + "Default/Cache/data"));
    EXPECT_FALSE(folder.exists(chromeRoot + "Profile 2/Cache"));

    // Nothing more is selected: no operation, no record.
    EXPECT_EQ(korvane({"clean", "browser-cache", "--yes"}).status, 0);
    EXPECT_EQ(korvane({"audit", "list", "--json"}).json().size(), 1U);
}

TEST_F(CleanCommandTest, refusesAWholeDocumentForOneBadItem) {
    const FileURL good = folder.makeFile("home/Caches/good");
    Json remote = item(good);
    remote["url"] = "https://example.org/x";
    Json nul = item(good);
    nul["url"] = "file:///tmp/a%00b";
    Json relative = item(good);
    relative["url"] = "file://elsewhere/tmp/a";
    Json incomplete = item(good);
    incomplete.erase("category");
    Json wrapped = {{"result", result({item(good)})},
                    {"preselected", Json::array({UUID::random().text()})}};
    const std::vector<std::pair<std::string, Json>> rows = {
        {"no document", "text"},
        {"no items", {{"scannerID", "x"}}},
        {"remote", result({item(good), remote})},
        {"nul", result({item(good), nul})},
        {"other host", result({item(good), relative})},
        {"missing key", result({item(good), incomplete})},
        {"negative size", result({item(good), item(good, -1)})},
        {"overflow", result({item(good, INT64_MAX), item(good, 1)})},
        {"unknown preselected id", wrapped},
    };
    for (const auto& [name, document] : rows) {
        const Run run = cleanItems(document, {"--select", "all"});
        SCOPED_TRACE(name);
        EXPECT_EQ(run.status, 1);
        EXPECT_THAT(run.output, IsEmpty());
        EXPECT_THAT(run.errors, HasSubstr("nothing was removed"));
        EXPECT_TRUE(folder.exists("home/Caches/good"));
    }
    EXPECT_EQ(korvane({"audit", "list", "--json"}).output, "[]\n");
}

TEST_F(CleanCommandTest, accountsForEveryGivenItem) {
    folder.makeFolder("home/Documents");
    folder.makeLink("home/Caches/link", "../Documents");
    const FileURL inner = folder.makeFile("home/Caches/a/inner", "xx");
    folder.makeFile("home/Caches/b");
    const FileURL twice = folder.makeFile("home/Caches/-rf \xFF\n");
    const Json items = {item(inner, 2),
                        item(folder.at("home/Caches/a"), 2),
                        item(twice),
                        item(FileURL(twice.path() + "/.")),
                        item(folder.at("home/Documents")),
                        item(folder.at("home/Caches/link")),
                        item(FileURL(home.path() + "/Caches/../Caches/b")),
                        item(folder.at("home/Caches/gone"))};
    const Run run = cleanItems(result(items), {"--select", "all", "--mode", "permanent"});
    EXPECT_EQ(run.status, 1);
    const Json outcome = run.json();
    EXPECT_EQ(outcome.at("succeeded").size(), 2U);
    EXPECT_EQ(outcome.at("failed").size(), 3U);
    for (const Json& failure : outcome.at("failed")) {
        EXPECT_EQ(failure.at("kind"), "protectedLocation");
    }
    std::vector<std::string> reasons;
    for (const Json& skip : outcome.at("skipped")) {
        reasons.push_back(skip.at("reason"));
    }
    EXPECT_THAT(reasons, ::testing::UnorderedElementsAre("removedWithParent",
                                                         "duplicateOfEarlierItem", "alreadyGone"));
    EXPECT_THAT(folder.listing("home/Caches"), ::testing::ElementsAre("b", "link@"));
    EXPECT_TRUE(folder.exists("home/Documents"));
}

TEST_F(CleanCommandTest, runsAnEmptyDocumentAndReadsItFromStandardInput) {
    folder.makeFile("items.json", result(Json::array()).dump());
    const Run run =
        shell("\"$K\" clean --items - --yes --json < '" + folder.at("items.json").path() + "'");
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(korvane({"audit", "list", "--json"}).json().size(), 1U);
    EXPECT_EQ(korvane({"clean", "--items", "missing.json", "--yes"}).status, 1);
}

TEST_F(CleanCommandTest, refusesAPathThatWasNotFound) {
    makeChromeCache("Default", 40'000);
    const Run run = korvane({"clean", "browser-cache", "--path", home.path(), "--yes"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.errors, HasSubstr("nothing was removed"));
    EXPECT_TRUE(folder.exists(chromeRoot + "Default/Cache/data"));
}

TEST_F(CleanCommandTest, removesNothingAfterAnInterruptWhileItWaits) {
    const FileURL precious = folder.makeFile("home/Caches/precious");
    folder.makeFile("items.json", result({item(precious)}).dump());
    const Run run = shell("cd '" + folder.path() +
                          "' && mkfifo wait && { (cat items.json; sleep 1; kill -INT $$; sleep 1) "
                          "> wait & exec \"$K\" clean --items - --select all --yes < wait; }");
    EXPECT_EQ(run.status, 130);
    EXPECT_TRUE(folder.exists("home/Caches/precious"));
}

TEST_F(CleanCommandTest, usesThePreferredModeAndTheGivenOneFirst) {
    makeChromeCache("Default", 40'000);
    korvane({"settings", "set", "korvane.deletionMode", "permanent"});
    EXPECT_EQ(
        korvane({"clean", "browser-cache", "--mode", "trash", "--yes", "--json"}).json().at("mode"),
        "trash");
    EXPECT_TRUE(folder.exists(trashFiles + "/Cache/data"));
    makeChromeCache("Default", 40'000);
    EXPECT_EQ(korvane({"clean", "browser-cache", "--yes", "--json"}).json().at("mode"),
              "permanent");
    EXPECT_FALSE(folder.exists(chromeRoot + "Default/Cache"));
    EXPECT_FALSE(folder.exists(trashFiles + "/Cache.2"));
}

} // namespace
} // namespace korvane::testing
