#include "tests/support/Sandbox.h"
#include "tests/updater/UpdaterFixture.h"

#include <csignal>
#include <thread>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gmock/gmock.h>

namespace korvane::testing {

namespace {

/// The real command in a bundle that the project's script made, and the script's next release on a
/// real server.
class UpdateCommandTest : public UpdaterTest {
  protected:
    static void SetUpTestSuite() {
        made = std::make_unique<TemporaryFolder>();
        const std::vector<std::vector<std::string>> releases{{"1.0", "--zstd"}, {"2.0"}};
        for (const std::vector<std::string>& options : releases) {
            std::vector<std::string> command{
                KORVANE_MAKE_RELEASE, KORVANE_BUILD_TREE, made->at("release").path(),
                "--program",          "korvane",          "--version"};
            command.insert(command.end(), options.begin(), options.end());
            ASSERT_EQ(runProgram(command), 0);
        }
    }
    static void TearDownTestSuite() { made.reset(); }

    void SetUp() override {
        // An ordinary user must get to the bundle.
        chmod(folder.path().c_str(), 0755);
        std::filesystem::remove_all(folder.at("apps").path());
        folder.makeFolder("apps");
        ASSERT_EQ(runProgram({"tar", "-xf", made->at("release/Korvane-1.0.tar.zst").path(), "-C",
                              folder.at("apps").path()}),
                  0);
        publish(made->content("release/Korvane-2.0.tar.gz"), "2.0", "Korvane-2.0.tar.gz");
    }

    /// Runs the bundle's command, as an ordinary user where that is asked for.
    Json korvane(const std::string& verb, int expected, bool asNobody = false) const {
        const std::string output = folder.at("output").path();
        const std::string line = "exec \"$@\" update " + verb + " --json --feed " +
                                 server.url("/korvane/appcast.json") + " >'" + output + "' 2>&1";
        std::vector<std::string> command{"env",
                                         "-i",
                                         "PATH=/usr/bin:/bin",
                                         "HOME=" + folder.at("home").path(),
                                         "TMPDIR=" + folder.at("tmp").path(),
                                         "SSL_CERT_FILE=" + folder.at("root.pem").path(),
                                         "sh",
                                         "-c",
                                         line,
                                         "sh"};
        if (asNobody && geteuid() == 0) {
            command.insert(command.end(),
                           {"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups", "--"});
        }
        command.push_back(folder.at("apps/Korvane.app/Contents/Linux/bin/korvane").path());
        EXPECT_EQ(runProgram(command), expected);
        return parseJson(folder.content("output"));
    }

    std::string version() const {
        return AppBundle::at(folder.at("apps/Korvane.app")).value_or(AppBundle()).version;
    }

    static std::unique_ptr<TemporaryFolder> made;
};

std::unique_ptr<TemporaryFolder> UpdateCommandTest::made;

TEST_F(UpdateCommandTest, updatesTheBundleThatItRunsFrom) {
    EXPECT_EQ(korvane("check", 0)["phase"], "available");
    EXPECT_EQ(version(), "1.0");
    const Json installed = korvane("install", 0);
    EXPECT_EQ(installed["phase"], "relaunching");
    EXPECT_EQ(installed["release"]["version"], "2.0");
    EXPECT_EQ(version(), "2.0");
    const Json current = korvane("check", 0);
    EXPECT_EQ(current["phase"], "upToDate");
    EXPECT_EQ(current["message"], "You're on Korvane 2.0. 2.0 is the latest version.");
    EXPECT_TRUE(current["release"].is_null());
    EXPECT_THAT(folder.listing("tmp"), ::testing::IsEmpty());
    EXPECT_EQ(folder.listing("apps").size(), folder.listing("apps/Korvane.app").size() + 1);
}

TEST(Relauncher, opensTheAppOnceTheOldProcessHasEnded) {
    const TemporaryFolder folder;
    const FileURL marker = folder.at("it's open");
    const pid_t old = fork();
    if (old == 0) {
        pause();
        _exit(0);
    }
    ASSERT_EQ(startDetached("/bin/sh",
                            {"-c", relaunchScript(old, "touch " + shellQuoted(marker.path()))}),
              0);
    // Long enough for a script that does not wait; one that does is never early.
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    EXPECT_FALSE(folder.exists("it's open"));
    kill(old, SIGKILL);
    waitpid(old, nullptr, 0);
    for (int turn = 0; turn < 600 && !folder.exists("it's open"); ++turn) {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    EXPECT_TRUE(folder.exists("it's open"));
}

TEST_F(UpdateCommandTest, leavesTheImageWhereItMayNotInstall) {
    ASSERT_EQ(chmod(folder.at("apps").path().c_str(), 0555), 0);
    folder.makeFile("home/Downloads/Korvane-2.0.tar.gz", "an older download");
    if (geteuid() == 0) {
        ASSERT_EQ(runProgram({"chown", "-R", "65534:65534", folder.at("home").path(),
                              folder.at("tmp").path()}),
                  0);
    }
    const Json answered = korvane("install", 1, true);
    EXPECT_EQ(answered["phase"], "needsManualInstall");
    EXPECT_EQ(answered["message"], UpdateSentences::manualInstall);
    EXPECT_EQ(answered["location"], folder.at("home/Downloads/Korvane-2.0.tar.gz").path());
    EXPECT_EQ(folder.content("home/Downloads/Korvane-2.0.tar.gz"),
              made->content("release/Korvane-2.0.tar.gz"));
    EXPECT_THAT(folder.listing("home/Downloads"), ::testing::SizeIs(1));
    EXPECT_THAT(folder.listing("tmp"), ::testing::IsEmpty());
    EXPECT_EQ(version(), "1.0");
}

} // namespace

} // namespace korvane::testing
