#include "KorvaneCore/foundation/UUID.h"
#include "tests/command/CommandFixture.h"

#include <gmock/gmock.h>

namespace korvane::testing {
namespace {

using ::testing::HasSubstr;

class ExploreCommandTest : public CommandTest {};

TEST_F(ExploreCommandTest, judgesPathsAsTyped) {
    folder.makeFolder("home/Documents");
    folder.makeFile("home/Caches/a/b");
    korvane({"protect", "add", "~/Caches/a"});
    const std::string relative = "cd '" + home.path() + "/Caches' && \"$K\" check --json ";
    const Json rows = shell(relative + "~/Documents other ../Caches/x a a/b .").json();
    ASSERT_EQ(rows.size(), 6U);
    EXPECT_EQ(rows.at(0).at("path"), home.path() + "/Documents");
    EXPECT_EQ(rows.at(0).at("guard").at("reason"), "a protected system or home location");
    EXPECT_EQ(rows.at(1).at("guard").at("decision"), "allowed");
    EXPECT_TRUE(rows.at(1).at("exclusion").is_null());
    EXPECT_EQ(rows.at(2).at("guard").at("reason"), "a path containing '..' traversal");
    EXPECT_EQ(rows.at(3).at("exclusion").at("case"), "exact");
    EXPECT_EQ(rows.at(4).at("exclusion").at("case"), "inside");
    EXPECT_EQ(rows.at(4).at("exclusion").at("root"), "~/Caches/a");
    EXPECT_EQ(korvane({"check", home.path() + "/Caches/x"}).status, 0);
    EXPECT_EQ(korvane({"check", home.path() + "/Caches/x", "/"}).status, 1);
}

TEST_F(ExploreCommandTest, keepsProtectedPathsAsTyped) {
    const Json added = korvane({"protect", "add", "~/x", "--note", "n", "--json"}).json();
    EXPECT_EQ(added.at("path"), "~/x");
    shell("cd '" + home.path() + "' && \"$K\" protect add 'rel \xFF'");
    const Json list = korvane({"protect", "list", "--json"}).json();
    ASSERT_EQ(list.size(), 2U);
    EXPECT_EQ(list.at(0), added);
    EXPECT_EQ(list.at(1).at("path"), FileURL(home.path() + "/rel \xFF").absoluteString());
    EXPECT_EQ(korvane({"protect", "remove", UUID::random().text()}).status, 1);
    EXPECT_EQ(korvane({"protect", "remove", added.at("id").get<std::string>()}).status, 0);
    EXPECT_EQ(korvane({"protect", "list", "--json"}).json().size(), 1U);
    EXPECT_EQ(korvane({"protect", "add", "/"}).status, 1);
}

TEST_F(ExploreCommandTest, walksAndMeasures) {
    folder.makeFile("tree/a/.hidden", "12345");
    folder.makeFile("tree/a/file \xFF", "123");
    folder.makeFile("tree/node_modules/x/node_modules/y", "1234567");
    folder.makeFile("tree/.venv/z", "12");
    folder.makeLink("tree/link", "a");
    const std::string tree = folder.at("tree").path();

    const Json walk = korvane({"walk", tree, "--prune", "node_modules", "--json"}).json();
    std::vector<std::string> urls;
    for (const Json& entry : walk.at("entries")) {
        urls.push_back(entry.at("url").get<std::string>().substr(7 + folder.path().size()));
    }
    EXPECT_THAT(urls, ::testing::ElementsAre("/tree", "/tree/a", "/tree/a/file%20%FF", "/tree/link",
                                             "/tree/node_modules"));
    EXPECT_EQ(walk.at("summary").at("entriesVisited"), 5);
    EXPECT_EQ(walk.at("entries").at(2).at("sizeBytes"), 3);
    EXPECT_TRUE(
        korvane({"walk", tree, "--stop-after", "2", "--json"}).json().at("summary").at("stopped"));

    const Json found =
        korvane({"find-folders", "node_modules", ".venv", "--in", tree, "--json"}).json();
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found.at(0).at("sizeBytes"), 2);
    EXPECT_EQ(found.at(1).at("sizeBytes"), 7);
    EXPECT_EQ(found.at(1).at("depth"), -1);

    const Json large =
        korvane({"largest", tree, "--minimum-bytes", "3", "--limit", "1", "--json"}).json();
    ASSERT_EQ(large.size(), 1U);
    EXPECT_EQ(large.at(0).at("sizeBytes"), 7);

    const Json sizes = korvane({"measure", tree, tree + "/.venv/z", "--json"}).json();
    EXPECT_GT(sizes.at(0).at("bytes"), 0);
    EXPECT_EQ(sizes.at(1).at("bytes"), 2);
    EXPECT_GE(korvane({"measure", tree, "--disk-usage", "--json"}).json().at(0).at("bytes"),
              sizes.at(0).at("bytes"));
}

TEST_F(ExploreCommandTest, saysWhatIsMissing) {
    const std::string missing = folder.at("missing").path();
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{"walk", missing},
                                                      {"measure", missing},
                                                      {"largest", missing},
                                                      {"find-folders", "x", "--in", missing},
                                                      {"catalogue", "CACHE.USER"},
                                                      {"catalogue", "--scanner", "nobody"}}) {
        const Run run = korvane(arguments);
        EXPECT_EQ(run.status, 1) << arguments.front();
        EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1) << run.errors;
    }
}

TEST_F(ExploreCommandTest, showsTheCatalogueRowByRow) {
    EXPECT_EQ(korvane({"catalogue", "--json"}).json().size(), 98U);
    EXPECT_EQ(korvane({"catalogue", "--scanner", "browser-cache", "--json"}).json().size(), 8U);
    const Json rows = korvane({"catalogue", "cache.logs", "--json"}).json();
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows.at(0).at("expandedPath"), home.path() + "/Library/Logs");
    EXPECT_EQ(rows.at(0).at("claimedChildNames"), Json::array({"DiagnosticReports"}));
    EXPECT_THAT(korvane({"catalogue", "cache.logs"}).output, HasSubstr("Risk: low."));
}

} // namespace
} // namespace korvane::testing
