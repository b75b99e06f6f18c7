#include "tests/command/CommandFixture.h"

#include <gmock/gmock.h>

namespace korvane::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

class CommandLineTest : public CommandTest {};

TEST_F(CommandLineTest, answersWrongUseWithOneLineAndStatusTwo) {
    struct Row {
        std::vector<std::string> arguments;
        std::string says;
    };
    const std::vector<Row> rows = {
        {{}, "--help"},
        {{"frobnicate"}, "frobnicate"},
        {{"scan"}, "TOOL"},
        {{"scan", "no-such-tool"}, "korvane tools"},
        {{"scan", "browser-cache", "/tmp"}, "takes no folder"},
        {{"scan", "browser-cache", "--colour"}, "--colour"},
        {{"scan", "duplicate-finder"}, "needs the folder"},
        {{"scan", "downloads", "--limit", "3"}, "downloads takes no --limit"},
        {{"scan", "large-files", "/tmp", "--limit", "-3"}, "limit"},
        {{"scan", "smart-scan", "--scopes", "caches,all"}, "oldFiles"},
        {{"rules", "preset", "plan9"}, "plan9"},
        {{"rules", "add", "/a/../b"}, ".."},
        {{"clean"}, "--items"},
        {{"clean", "browser-cache"}, "--yes"},
        {{"clean", "browser-cache", "--mode", "shred", "--yes"}, "shred"},
        {{"clean", "browser-cache", "--items", "x", "--yes"}, "--items"},
        {{"protect", "add"}, "PATH"},
        {{"protect", "remove", "first"}, "first"},
        {{"restore", "--all", "nonsense"}, "--all"},
        {{"restore", "nonsense"}, "nonsense"},
        {{"audit", "acknowledge", "--reason", ""}, "reason"},
        {{"walk", "/tmp", "--max-depth", "-1"}, "max-depth"},
        {{"settings", "set", "korvane.deletionMode", "shred"}, "shred"},
        {{"settings", "get", "other.key"}, "korvane."},
    };
    for (const Row& row : rows) {
        const Run run = korvane(row.arguments);
        SCOPED_TRACE(::testing::PrintToString(row.arguments));
        EXPECT_EQ(run.status, 2);
        EXPECT_THAT(run.output, IsEmpty());
        EXPECT_THAT(run.errors, StartsWith("korvane: "));
        EXPECT_THAT(run.errors, HasSubstr(row.says));
        EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1);
    }
    EXPECT_THAT(folder.listing("home"), IsEmpty()) << "wrong use must leave no trace";
}

TEST_F(CommandLineTest, showsHelpAndVersionAndTools) {
    EXPECT_THAT(korvane({"--version"}).output, StartsWith("korvane "));
    for (const std::vector<std::string>& level :
         {std::vector<std::string>{"--help"}, {"audit", "--help"}, {"audit", "verify", "--help"}}) {
        const Run run = korvane(level);
        EXPECT_EQ(run.status, 0);
        EXPECT_THAT(run.output, HasSubstr("Usage: korvane"));
    }
    const Json tools = korvane({"tools", "--json"}).json();
    ASSERT_EQ(tools.size(), 19U);
    EXPECT_EQ(tools.at(0),
              (Json{{"id", "smart-scan"}, {"displayName", "Smart Scan"}, {"needs", "nothing"}}));
    EXPECT_EQ(tools.at(18).at("needs"), "app");
}

TEST_F(CommandLineTest, keepsSettingsAndWhatItDoesNotKnow) {
    EXPECT_EQ(korvane({"settings", "get", "korvane.deletionMode"}).output, "trash\n");
    folder.makeFile("home/.config/Korvane/defaults.json", R"({"korvane.other":7})");
    EXPECT_EQ(korvane({"settings", "set", "korvane.deletionMode", "permanent"}).status, 0);
    EXPECT_EQ(korvane({"settings", "get", "korvane.deletionMode"}).output, "permanent\n");
    EXPECT_EQ(parseJson(folder.content("home/.config/Korvane/defaults.json")).at("korvane.other"),
              7);
    EXPECT_EQ(korvane({"settings", "get", "korvane.missing"}).status, 1);

    folder.makeFile("home/.config/Korvane/defaults.json", "{torn");
    EXPECT_EQ(korvane({"settings", "set", "korvane.deletionMode", "trash"}).status, 1);
    EXPECT_EQ(folder.content("home/.config/Korvane/defaults.json"), "{torn");
}

TEST_F(CommandLineTest, reportsOutputThatDidNotArrive) {
    const Run run = shell("\"$K\" catalogue > /dev/full");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.errors, HasSubstr("could not be written"));
    EXPECT_EQ(shell("\"$K\" catalogue | head -n 1 > /dev/null").errors.find("signal"),
              std::string::npos);
}

TEST_F(CommandLineTest, doesTheWholeJobOnASampleHome) {
    const Run run = korvane({"demo", folder.at("sample").path()});
    EXPECT_EQ(run.status, 0) << run.output << run.errors;
    EXPECT_THAT(run.output, HasSubstr("Everything is back"));
    EXPECT_THAT(folder.listing("home"), IsEmpty()) << "the real home is not the demo's";

    folder.makeFile("taken/mine");
    EXPECT_EQ(korvane({"demo", folder.at("taken").path()}).status, 1);
    EXPECT_THAT(folder.listing("taken"), ::testing::ElementsAre("mine"));
}

} // namespace
} // namespace korvane::testing
