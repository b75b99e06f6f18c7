#include "KorvaneCore/platform/AppleScriptElevation.h"
#include "KorvaneCore/platform/linux/LinuxElevation.h"
#include "tests/support/FakeProcessLauncher.h"
#include "tests/support/TemporaryFolder.h"

#include <fstream>

#include <sys/stat.h>

#include <gtest/gtest.h>

namespace korvane {
namespace {

using testing::FakeProcessLauncher;
using testing::TemporaryFolder;

TEST(AppleScriptElevation, quotesWhatALiteralCanHold) {
    struct Row {
        std::string text;
        std::optional<std::string> literal;
    };
    for (const Row& row :
         {Row{"", "\"\""}, Row{"a 'b' é", "\"a 'b' é\""}, Row{R"(say "x\y")", R"("say \"x\\y\"")"},
          Row{"\t\n\r", R"("\t\n\r")"}, Row{"bell\a", {}}, Row{std::string("n\0l", 3), {}},
          Row{"escape\x1F", {}}, Row{"\x7F", {}}, Row{"\u2028", {}}, Row{"x\u2029", {}},
          Row{"\u2027\u202A", "\"\u2027\u202A\""}, Row{"\xFF", {}}}) {
        EXPECT_EQ(appleScriptLiteral(row.text), row.literal) << row.text;
    }
}

TEST(AppleScriptElevation, looksOnceMoreAndThenAsks) {
    struct Row {
        const char* name;
        std::string command;
        bool agrees;
        int status;
        std::size_t launches;
        bool completed;
    };
    for (const Row& row :
         {Row{"agreed", "rm \"x\"", true, 0, 1, true}, Row{"dismissed", "rm", true, 1, 1, false},
          Row{"last look says no", "rm", false, 0, 0, false},
          Row{"cannot be quoted", "rm \a", true, 0, 0, false}}) {
        SCOPED_TRACE(row.name);
        bool looked = false;
        FakeProcessLauncher launcher([&](const ProcessRequest&) {
            EXPECT_TRUE(looked);
            ProcessOutcome outcome = FakeProcessLauncher::saying("");
            outcome.exitStatus = row.status;
            return outcome;
        });
        AppleScriptElevation elevation(launcher);
        EXPECT_EQ(elevation.run(row.command,
                                [&] {
                                    looked = true;
                                    return row.agrees;
                                }),
                  row.completed);
        ASSERT_EQ(launcher.requests.size(), row.launches);
        if (row.completed) {
            EXPECT_EQ(launcher.requests[0].executable, "/usr/bin/osascript");
            EXPECT_EQ(launcher.requests[0].arguments,
                      (std::vector<std::string>{"-e", "do shell script \"rm \\\"x\\\"\" with "
                                                      "administrator privileges"}));
        }
    }
}

/// Programs that stand for polkit's and sudo: scripts that note their name and do what a row says.
class LinuxElevationTest : public ::testing::Test {
  protected:
    std::string program(const std::string& name, const std::string& script) const {
        if (script.empty()) {
            return folder.at("no-" + name).path();
        }
        const FileURL file =
            folder.makeFile(name, "#!/bin/sh\necho " + name + " >> '" + folder.at("asked").path() +
                                      "'\n[ \"$1\" = --disable-internal-agent ] && shift\n" +
                                      "[ \"$1\" = -- ] && shift\n" + script + "\n");
        chmod(file.path().c_str(), 0700);
        return file.path();
    }

    TemporaryFolder folder;
};

TEST_F(LinuxElevationTest, asksOnceThroughWhatThereIs) {
    const std::string agrees = "exec \"$@\"";
    const std::string dismissed = "exit 126";
    const std::string declined = "echo Not authorized >&2; exit 127";
    const std::string noAgent = "echo 'Error: No authentication agent found.' >&2; exit 127";
    const std::string noService = "echo 'Error getting authority: no' >&2; exit 127";
    struct Row {
        const char* name;
        std::string polkit;
        std::string sudo;
        std::string asked;
        bool isRoot;
        bool hasTerminal;
        bool completed;
        bool lastLook = true;
    };
    const Row rows[] = {
        {"root asks nobody", declined, declined, "", true, true, true},
        {"root, last look says no", "", "", "", true, true, false, false},
        {"polkit", agrees, agrees, "polkit\n", false, true, true},
        {"polkit without a terminal", agrees, agrees, "polkit\n", false, false, true},
        {"last look says no", agrees, agrees, "polkit\n", false, true, false, false},
        {"dismissed", dismissed, agrees, "polkit\n", false, true, false},
        {"declined", declined, agrees, "polkit\n", false, true, false},
        {"no agent", noAgent, agrees, "polkit\nsudo\n", false, true, true},
        {"no service", noService, agrees, "polkit\nsudo\n", false, true, true},
        {"no agent, no terminal", noAgent, agrees, "polkit\n", false, false, false},
        {"no polkit", "", agrees, "sudo\n", false, true, true},
        {"no polkit, no terminal", "", agrees, "", false, false, false},
        {"neither", "", "", "", false, true, false},
        {"says nothing", "exit 0", agrees, "polkit\n", false, true, false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        LinuxElevation::Means means{program("polkit", row.polkit), program("sudo", row.sudo),
                                    row.isRoot, row.hasTerminal};
        LinuxElevation elevation(ProcessLauncher::standard(), [&] { return means; });
        EXPECT_EQ(elevation.asksUser(), !row.isRoot);
        folder.makeFile("asked", "");
        const FileURL ran = folder.makeFile("ran", "");
        int looks = 0;
        EXPECT_EQ(elevation.run("echo ran >> '" + ran.path() + "'; exit 0",
                                [&] {
                                    ++looks;
                                    EXPECT_EQ(folder.content("ran"), "") << "ran before the look";
                                    return row.lastLook;
                                }),
                  row.completed);
        EXPECT_EQ(folder.content("asked"), row.asked);
        EXPECT_EQ(folder.content("ran"), row.completed ? "ran\n" : "");
        EXPECT_EQ(looks, row.completed || !row.lastLook ? 1 : 0);
    }
}

} // namespace
} // namespace korvane
