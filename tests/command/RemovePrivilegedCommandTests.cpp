#include "tests/command/CommandFixture.h"

#include <sys/stat.h>
#include <unistd.h>

namespace korvane::testing {
namespace {

using RemovePrivilegedCommandTest = CommandTest;

TEST_F(RemovePrivilegedCommandTest, refusesWithoutAskingAnybody) {
    const std::string library = folder.makeFolder("home/Library").path();
    EXPECT_EQ(korvane({"remove-privileged"}).status, 2);
    EXPECT_EQ(shell("\"$K\" remove-privileged '" + library + "' < /dev/null").status, 2);
    const Run run = korvane({"remove-privileged", library, "https://x/y", "--yes", "--json"});
    EXPECT_EQ(run.status, 1);
    const Json document = run.json();
    EXPECT_EQ(document.at("refusals").at(0).at("url"), FileURL(library).absoluteString());
    EXPECT_EQ(document.at("refusals").at(0).at("kind"), "protectedLocation");
    EXPECT_EQ(document.at("refusals").at(1).at("url"), "https://x/y");
    EXPECT_EQ(document.at("refusals").at(1).at("kind"), "other");
    EXPECT_EQ(document.at("survivors"), Json::array());
    EXPECT_EQ(document.at("completed"), false);
    EXPECT_EQ(document.at("notice"), nullptr);
}

TEST_F(RemovePrivilegedCommandTest, removesForGoodAsRootAndRecordsIt) {
    if (geteuid() != 0) {
        GTEST_SKIP() << "anybody but root would be asked for a password";
    }
    const std::string item = folder.makeFile("app/it's \xFF\n odd").path();
    chmod(folder.at("app").path().c_str(), 0755);
    const Run run = korvane({"remove-privileged", item, "--yes", "--json"});
    if (run.json().at("refusals").size() == 1) {
        GTEST_SKIP() << run.json().at("refusals").at(0).at("message");
    }
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.json().at("completed"), true);
    EXPECT_EQ(run.json().at("notice"), nullptr);
    EXPECT_EQ(folder.listing("app"), std::vector<std::string>{});
    EXPECT_EQ(folder.listing("tmp"), std::vector<std::string>{});
    const Json log = korvane({"audit", "list", "--json"}).json();
    EXPECT_EQ(log.at(0).at("scannerID"), "uninstaller");
    EXPECT_EQ(log.at(0).at("paths").at(0), FileURL(item).absoluteString());
}

} // namespace
} // namespace korvane::testing
