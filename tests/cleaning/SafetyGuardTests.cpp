#include "KorvaneCore/cleaning/SafetyGuard.h"
#include "tests/cleaning/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

using namespace korvane;
using namespace korvane::testing;
using Reason = SafetyGuard::BlockReason;

namespace {

constexpr auto allowed = std::nullopt;

class SafetyGuardTest : public ::testing::Test {
  protected:
    /// "~" is the home, "@" the folder two levels above it.
    [[nodiscard]] FileURL expand(const std::string& path) const {
        if (path.starts_with('~')) {
            return FileURL(home_.path() + path.substr(1));
        }
        return FileURL(path.starts_with('@') ? folder_.path() + path.substr(1) : path);
    }

    struct Row {
        std::string path;
        std::optional<Reason> expected;
    };
    void check(const std::vector<Row>& rows) const {
        const SafetyGuard guard(home_);
        for (const Row& row : rows) {
            EXPECT_EQ(guard.evaluate(expand(row.path)).reason(), row.expected) << row.path;
        }
    }

    TemporaryFolder folder_;
    FileURL home_ = folder_.makeFolder("users/bob");
};

TEST_F(SafetyGuardTest, refusesWholeFoldersAndAllowsWhatIsInside) {
    folder_.makeFolder("users/bob/Projects/app");
    folder_.makeFolder("users/bob/.hidden");
    folder_.makeFile("users/bob/notes.txt");
    folder_.makeFolder("outside");
    folder_.makeLink("users/bob/elsewhere", folder_.at("outside").path());
    check({
        {"/System/Library", Reason::protectedLocation},
        {"/SYSTEM", Reason::protectedLocation},
        {"/library/application support", Reason::protectedLocation},
        {"/Library/Application Support/Foo", allowed},
        {"/Volumes/Data", allowed},
        {"~", Reason::protectedLocation},
        {"~/Library", Reason::protectedLocation},
        {"~/Library/Caches", Reason::protectedLocation},
        {"~/library/CACHES", Reason::protectedLocation},
        {"~/Library/Caches/com.example", allowed},
        {"~/Library/Mobile Documents", Reason::protectedLocation},
        {"~/Library/Mobile Documents/x", allowed},
        {"~/Library/Mobile", allowed},
        {"~/Library/Group Containers", allowed},
        {"~/.ssh", Reason::protectedLocation},
        {"~/.ssh/known_hosts.old", allowed},
        {"~/.password-store", Reason::protectedLocation},
        {"~/Projects", Reason::protectedLocation},
        {"~/projects", Reason::protectedLocation},
        {"~/Projects/app", allowed},
        {"~/.hidden", Reason::protectedLocation},
        {"~/notes.txt", allowed},
        {"~/elsewhere", allowed}, // a link is no folder: only the link would go
        {"@/users", Reason::protectedAncestor},
        {"@/USERS", Reason::protectedAncestor},
        {"@", Reason::protectedAncestor},
        {"@/users/bo", allowed},
        {"@/users/bob-old", allowed},
        {"@/users/bobby", allowed},
    });
}

TEST_F(SafetyGuardTest, refusesTheFoldersOfThisSystem) {
    for (const char* path :
         {"/boot",      "/dev",           "/home", "/lib",     "/lib32",         "/lib64",
          "/media",     "/mnt",           "/proc", "/root",    "/run",           "/snap",
          "/srv",       "/sys",           "/tmp",  "~/.local", "~/.local/share", "~/.cache",
          "~/.mozilla", "~/.thunderbird", "~/.var"}) {
        check({{path, Reason::protectedLocation}, {std::string(path) + "/korvane-x/y", allowed}});
    }
}

TEST_F(SafetyGuardTest, judgesTheFormOfAPathFirst) {
    check({
        {"/", Reason::filesystemRoot},
        {"//./", Reason::filesystemRoot},
        {"", Reason::emptyPath},
        {"Library/Caches/x", Reason::emptyPath},
        {std::string("/srv/data\0/x", 12), Reason::emptyPath},
        {"~/Library/Caches/../Caches/x", Reason::pathTraversal},
        {"/..", Reason::pathTraversal},
        {"..", Reason::pathTraversal},
        {"~/Library/Caches/..", Reason::pathTraversal},
        {"~/Library/Caches/a..b", allowed},
        {"~//Library/./Caches/", Reason::protectedLocation},
    });
}

TEST_F(SafetyGuardTest, seesThroughLinksOnBothSides) {
    folder_.makeFolder("users/bob/Library/Caches/app");
    folder_.makeFolder("big/Documents");
    folder_.makeLink("users/bob/Documents", folder_.at("big/Documents").path());
    folder_.makeLink("alias", "users/bob");
    folder_.makeLink("twice", "alias");
    folder_.makeLink("above", "users");
    folder_.makeLink("cache", "users/bob/Library/Caches/app");
    folder_.makeLink("keys", "users/bob/.SSH"); // which is not there
    folder_.makeLink("top", "/");
    check({
        {"@/alias", Reason::protectedLocation},
        {"@/twice", Reason::protectedLocation},
        {"@/twice/Library", Reason::protectedLocation},
        {"@/above/bob/Downloads", Reason::protectedLocation},
        {"@/above", Reason::protectedAncestor},
        {"@/keys", Reason::protectedLocation},
        {"@/top", Reason::protectedLocation},
        {"@/cache", allowed},
        {"@/alias/Library/Caches/app", allowed},
        {"@/big/Documents", Reason::protectedLocation},
        {"@/big", Reason::protectedAncestor},
        {"@/big/Documents/x", allowed},
    });
}

TEST_F(SafetyGuardTest, takesBothFormsOfAnAccentForOneName) {
    folder_.makeFolder("users/bob/Caf\u00E9");
    folder_.makeFolder("users/bob/Re\u0301sume\u0301");
    check({{"~/Cafe\u0301", Reason::protectedLocation},
           {"~/CAFE\u0301", Reason::protectedLocation},
           {"~/R\u00E9sum\u00E9", Reason::protectedLocation},
           {"~/Cafe", allowed}});
}

TEST_F(SafetyGuardTest, protectsFoldersMadeLaterOnlyInANewGuard) {
    const SafetyGuard before(home_);
    const FileURL later = folder_.makeFolder("users/bob/Later");
    EXPECT_TRUE(before.allows(later));
    EXPECT_FALSE(SafetyGuard(home_).allows(later));
}

TEST_F(SafetyGuardTest, keepsTheFixedListWithoutAUsableHome) {
    for (const char* home : {"", "relative"}) {
        const SafetyGuard guard{FileURL(home)};
        EXPECT_FALSE(guard.allows(FileURL("/usr"))) << home;
        EXPECT_TRUE(guard.allows(FileURL("/Music"))) << home;
    }
    const FileURL missing = folder_.at("missing");
    EXPECT_FALSE(SafetyGuard(missing).allows(missing.appending(".ssh")));
}

TEST_F(SafetyGuardTest, seesThroughABindMount) {
    folder_.makeFolder("users/bob/Documents/letters");
    const FileURL mirror = folder_.makeFolder("mirror");
    const FileURL upper = folder_.makeFolder("upper");
    const int status = waitForChild(startChild([&] {
        if (!enterPrivateMounts() || !bindMount(home_.path().c_str(), mirror.path().c_str()) ||
            !bindMount(folder_.at("users").path().c_str(), upper.path().c_str())) {
            return notPermitted;
        }
        const SafetyGuard guard(home_);
        const auto reason = [&](const FileURL& url) { return guard.evaluate(url).reason(); };
        const bool right = reason(mirror) == Reason::protectedLocation &&
                           reason(mirror.appending("Documents")) == Reason::protectedLocation &&
                           reason(upper) == Reason::protectedAncestor &&
                           reason(mirror.appending("Documents/letters")) == allowed;
        return right ? 0 : 1;
    }));
    if (status == notPermitted) {
        GTEST_SKIP() << "no private mount namespace here";
    }
    EXPECT_EQ(status, 0);
}

TEST(SafetyGuardReason, readsAsASentenceAndBack) {
    for (const Reason reason :
         {Reason::filesystemRoot, Reason::protectedLocation, Reason::protectedAncestor,
          Reason::pathTraversal, Reason::emptyPath}) {
        EXPECT_EQ(blockReasonFromRawValue(rawValue(reason)), reason);
    }
    EXPECT_EQ(blockReasonFromRawValue("an empty"), std::nullopt);
    EXPECT_EQ(message(Reason::protectedAncestor),
              "refusing to delete a folder that contains protected system or home locations");
}

} // namespace
