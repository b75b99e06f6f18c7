#include "tests/command/CommandFixture.h"

#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>

namespace korvane::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

class ScanCommandTest : public CommandTest {
  protected:
    /// Paths below the home folder of what a scan found, in its order.
    std::vector<std::string> found(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), "scan");
        arguments.emplace_back("--json");
        const Run run = korvane(arguments);
        EXPECT_EQ(run.status, 0) << run.errors;
        std::vector<std::string> paths;
        const Json document = run.json();
        for (const Json& item : document.at("result").at("items")) {
            paths.push_back(item.at("url").get<std::string>().substr(8 + home.path().size()));
        }
        return paths;
    }
};

TEST_F(ScanCommandTest, runsASmartScanOrChosenScopes) {
    makeChromeCache("Default", 60000);
    folder.makeFileOfSize("home/Library/Caches/A/x", 30000);
    folder.makeFileOfSize("home/.npm/_cacache/x", 20000);
    folder.makeFileOfSize("home/Downloads/old.dmg", 90000);
    folder.setModified("home/Downloads/old.dmg", 1e9);
    folder.makeFileOfSize("home/Desktop/Screenshot.png", 10000);
    folder.setModified("home/Desktop/Screenshot.png", 1e9);
    const std::string cache = "Library/Application%20Support/Google/Chrome/Default/Cache";
    EXPECT_THAT(found({"smart-scan"}),
                ElementsAre(cache, "Library/Caches/A", ".npm/_cacache", "Desktop/Screenshot.png"));
    EXPECT_THAT(found({"smart-scan", "--scopes", "oldFiles,browsers,browsers"}),
                ElementsAre(cache, "Desktop/Screenshot.png"));
    const Json scan = korvane({"scan", "cache-cleaner", "--json"}).json().at("result");
    EXPECT_EQ(scan.at("scannerID"), "cache-cleaner");
    EXPECT_EQ(scan.at("items").size(), 2U);
}

TEST_F(ScanCommandTest, findsCopiesAndKeepsOneOfThem) {
    for (const char* name : {"a", "b", "c"}) {
        folder.makeFile("home/data/" + std::string(name), std::string(5000, 'x'));
        folder.setModified("home/data/" + std::string(name), 1e9 + name[0]);
    }
    folder.makeFile("home/data/other", std::string(5000, 'y'));
    EXPECT_THAT(found({"duplicate-finder", "~/data"}), ElementsAre("data/c", "data/b", "data/a"));
    EXPECT_THAT(found({"duplicate-finder", "~/data", "--minimum-bytes", "5001"}), IsEmpty());
    EXPECT_EQ(
        korvane({"clean", "duplicate-finder", "~/data", "--mode", "permanent", "--yes"}).status, 0);
    EXPECT_THAT(folder.listing("home/data"), ElementsAre("c", "other"));
    EXPECT_THAT(found({"large-files", "~/data", "--minimum-bytes", "1", "--limit", "1"}),
                ElementsAre("data/c"));
}

TEST_F(ScanCommandTest, keepsACopyThatNoOtherToolTakesAlong) {
    const std::string only(5000, 'x');
    folder.makeFile("home/Library/Caches/A/newest", only); // kept among copies, but in a cache
    folder.makeFile("home/Library/Documents/letter", only);
    folder.makeFile("home/Library/Documents/letter 2", only);
    folder.setModified("home/Library/Documents/letter", 1e9);
    folder.setModified("home/Library/Documents/letter 2", 1e9 + 1);
    folder.makeFile("home/Library/Caches/B/one", std::string(6000, 'y'));
    folder.makeFile("home/Library/Caches/C/two", std::string(6000, 'y'));
    EXPECT_EQ(korvane({"clean", "cache-cleaner", "duplicate-finder", "~/Library", "--mode",
                       "permanent", "--yes"})
                  .status,
              0);
    EXPECT_THAT(folder.listing("home/Library"),
                ElementsAre("Caches/", "Documents/", "Documents/letter 2"));
}

TEST_F(ScanCommandTest, saysInOneSentenceWhatCannotBeScanned) {
    folder.makeFile("home/file");
    const std::vector<std::pair<std::vector<std::string>, const char*>> rows = {
        {{"duplicate-finder", "~/missing"}, "No such file"},
        {{"similar-images", "~/file"}, "is not a folder"},
        {{"uninstaller", "No Such App"}, "\"No Such App\""},
    };
    for (auto [arguments, sentence] : rows) {
        arguments.insert(arguments.begin(), "scan");
        const Run run = korvane(arguments);
        EXPECT_EQ(run.status, 1);
        EXPECT_THAT(run.errors, HasSubstr(sentence));
        EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1);
    }
}

TEST_F(ScanCommandTest, followsTheUsersOwnRules) {
    folder.makeFileOfSize("home/scratch/old/x", 9000);
    folder.makeFileOfSize("home/.cache/tool/x", 8000);
    const Json rule = korvane({"rules", "add", "~/scratch", "--id", "s", "--name", "Scratch",
                               "--note", "Only trials", "--enumerate-children", "--json"})
                          .json();
    EXPECT_EQ(rule, (Json{{"id", "s"},
                          {"name", "Scratch"},
                          {"path", "~/scratch"},
                          {"note", "Only trials"},
                          {"risk", "medium"},
                          {"minimumAgeDays", 0},
                          {"enumerateChildren", true}}));
    EXPECT_EQ(korvane({"rules", "add", "/x", "--id", "s"}).status, 1);
    EXPECT_EQ(korvane({"rules", "preset", "linux"}).status, 0);
    EXPECT_GT(korvane({"rules", "list", "--json"}).json().size(), 40U);
    EXPECT_THAT(found({"custom-rules"}), UnorderedElementsAre("scratch/old", ".cache/tool"));
    EXPECT_THAT(korvane({"scan", "custom-rules"}).output, HasSubstr("Only trials"));
    korvane({"protect", "add", "~/scratch/old/x"});
    EXPECT_THAT(found({"custom-rules"}), ElementsAre(".cache/tool"));
    EXPECT_EQ(korvane({"rules", "remove", "s"}).status, 0);
    EXPECT_EQ(korvane({"rules", "remove", "s"}).status, 1);

    folder.makeFile("home/.local/share/Korvane/custom-rules.json", "[\n {\"id\": }]");
    const Run spoilt = korvane({"scan", "custom-rules"});
    EXPECT_EQ(spoilt.status, 1);
    EXPECT_THAT(spoilt.errors, HasSubstr("line 2, column 9"));
}

TEST_F(ScanCommandTest, measuresTheBinButLeavesItsRemovalToEmptying) {
    folder.makeFileOfSize(trashFiles + "/x", 50000);
    const Run run =
        korvane({"clean", "trash", "--mode", "permanent", "--select", "all", "--yes", "--json"});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(folder.exists(trashFiles + "/x"));
    EXPECT_THAT(run.output, HasSubstr("korvane bin empty"));
}

TEST_F(ScanCommandTest, listsWhatCannotBeRead) {
    EXPECT_EQ(korvane({"access", "--json"}).json(), Json::array());
    EXPECT_EQ(korvane({"scan", "smart-scan"}).errors, "");
    if (geteuid() == 0) {
        GTEST_SKIP() << "root may read everything";
    }
    const FileURL barred = folder.makeFolder("home/.gradle/caches");
    ASSERT_EQ(chmod(barred.path().c_str(), 0), 0);
    const Json listed = korvane({"access", "--json"}).json();
    ASSERT_EQ(listed.size(), 1U);
    EXPECT_EQ(listed.at(0).at("id"), "dev.gradle.cache");
    EXPECT_EQ(listed.at(0).at("path"), barred.path());
    EXPECT_THAT(korvane({"scan", "smart-scan"}).errors, HasSubstr("1 place could not be read"));
    ASSERT_EQ(chmod(barred.path().c_str(), 0700), 0);
}

} // namespace
} // namespace korvane::testing
