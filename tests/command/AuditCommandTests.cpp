#include "tests/command/CommandFixture.h"

#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>

namespace korvane::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

class AuditCommandTest : public CommandTest {
  protected:
    void cleanOnce(const std::string& profile) const {
        makeChromeCache(profile, 40'000);
        ASSERT_EQ(korvane({"clean", "browser-cache", "--yes"}).status, 0);
    }

    [[nodiscard]] std::filesystem::path logFile() const {
        std::string path = korvane({"audit", "folder"}).output;
        path.pop_back();
        return std::filesystem::directory_iterator(path)->path();
    }

    /// Changes the log behind the program's back.
    void replaceInLog(const std::string& from, const std::string& to) const {
        std::ifstream in(logFile());
        std::string text{std::istreambuf_iterator<char>(in), {}};
        text.replace(text.find(from), from.size(), to);
        std::ofstream(logFile()) << text;
    }
};

TEST_F(AuditCommandTest, findsAnEditAndRecordsItsAcknowledgement) {
    EXPECT_EQ(korvane({"audit", "verify", "--json"}).json().at("coverage"), "empty");
    cleanOnce("Default");
    cleanOnce("Profile 2");
    EXPECT_EQ(korvane({"audit", "acknowledge", "--reason", "why not"}).status, 1);

    // The second entry loses the link to the first.
    const Json log = korvane({"audit", "list", "--json"}).json();
    const std::string first = log.at(1).dump();
    replaceInLog("\n", " \n"); // white space is no edit
    EXPECT_EQ(korvane({"audit", "verify"}).status, 0);
    std::ifstream in(logFile());
    std::string line;
    std::getline(in, line);
    replaceInLog(line + "\n", "");

    const Run broken = korvane({"audit", "verify", "--json"});
    EXPECT_EQ(broken.status, 1);
    EXPECT_EQ(broken.json().at("coverage"), "broken");
    EXPECT_EQ(broken.json().at("firstBrokenOperationID"), log.at(0).at("operationID"));

    const Run restart =
        korvane({"audit", "acknowledge", "--reason", "restored a backup", "--json"});
    EXPECT_EQ(restart.status, 0);
    EXPECT_EQ(restart.json().at("chainRestart").at("acknowledgedOperationID"),
              log.at(0).at("operationID"));
    const Json verified = korvane({"audit", "verify", "--json"}).json();
    EXPECT_EQ(verified.at("coverage"), "verified");
    EXPECT_EQ(verified.at("recordedRestarts"), 1);

    replaceInLog("restored a backup", "nothing happened");
    EXPECT_EQ(korvane({"audit", "verify"}).status, 1);
}

TEST_F(AuditCommandTest, listsWhatIsAskedFor) {
    cleanOnce("Default");
    cleanOnce("Profile 2");
    EXPECT_EQ(korvane({"audit", "list", "--query", "profile 2", "--json"}).json().size(), 1U);
    EXPECT_EQ(korvane({"audit", "list", "--query", "BROWSER cache", "--json"}).json().size(), 2U);
    EXPECT_EQ(korvane({"audit", "list", "--module", "trash", "--json"}).json().size(), 0U);
    EXPECT_THAT(korvane({"audit", "list"}).output, HasSubstr(chrome("Profile 2/Cache")));
}

TEST_F(AuditCommandTest, warnsWhenAnOldLogMeetsANewKey) {
    cleanOnce("Default");
    EXPECT_THAT(korvane({"audit", "verify"}).errors, IsEmpty());
    std::filesystem::remove_all(folder.at("home/.local/share/Korvane/Secrets").path());
    const Run run = korvane({"audit", "verify"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.errors, HasSubstr("a new one was made"));
}

} // namespace
} // namespace korvane::testing
