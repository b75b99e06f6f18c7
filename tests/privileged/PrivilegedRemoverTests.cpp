#include "Korvane/cleaning/PrivilegedRemoval.h"
#include "Korvane/tools/Services.h"
#include "KorvaneCore/cleaning/ExclusionStore.h"
#include "KorvaneCore/platform/ProcessLauncher.h"
#include "tests/support/TemporaryFolder.h"

#include <filesystem>
#include <fstream>

#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;
using ::testing::StartsWith;
using testing::TemporaryFolder;
using Kind = CleanupFailure::Kind;
namespace fs = std::filesystem;

/// Asks nobody: does what a user, or somebody else, does while the prompt is open, and then runs
/// the command with the rights that the test has.
class PromptlessElevation final : public Elevation {
  public:
    [[nodiscard]] bool asksUser() const override { return true; }

    [[nodiscard]] bool run(const std::string& shellCommand, const LastLook& lastLook) override {
        command = shellCommand;
        if (whilePrompting) {
            whilePrompting();
        }
        if (dismissed || !lastLook()) {
            return false;
        }
        if (beforeRunning) {
            beforeRunning();
        }
        ProcessRequest request;
        request.executable = "/bin/sh";
        request.arguments = {"-c", runs ? shellCommand : "exit 0"};
        return ProcessLauncher::standard().run(request).succeeded() && !endsEarly;
    }

    std::string command; ///< empty: there was no prompt
    std::function<void()> whilePrompting;
    std::function<void()> beforeRunning;
    bool dismissed = false;
    bool runs = true;
    bool endsEarly = false;
};

class PrivilegedRemoverTest : public ::testing::Test {
  protected:
    PrivilegedRemoverTest() {
        // Folders that a group may write are refused, whoever runs this.
        umask(022);
        folder.makeFolder("home/Library");
        folder.makeFolder("tmp");
    }

    void SetUp() override {
        for (fs::path above = folder.path(); above != above.root_path();
             above = above.parent_path()) {
            struct stat facts {};
            ASSERT_EQ(stat(above.c_str(), &facts), 0);
            const bool isShared = (facts.st_mode & 022U) != 0 && (facts.st_mode & S_ISVTX) == 0;
            if (isShared || (facts.st_uid != 0 && facts.st_uid != geteuid())) {
                GTEST_SKIP() << "somebody else may rename what is in " << above;
            }
        }
    }

    PrivilegedRemover::Result remove(const std::vector<FileURL>& urls) {
        return PrivilegedRemover(exclusions, folder.at("home"), folder.at("tmp"), elevation)
            .remove(urls);
    }

    /// The only file of the temporary folder.
    fs::path list() const { return *fs::directory_iterator(folder.at("tmp").path()); }

    static std::string content(const fs::path& file) {
        std::ifstream in(file);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    TemporaryFolder folder;
    ExclusionStore exclusions{folder.at("exclusions.json"), folder.at("home")};
    PromptlessElevation elevation;
};

TEST_F(PrivilegedRemoverTest, removesWhateverTheNameHolds) {
    const FileURL precious = folder.makeFile("precious/file");
    std::vector<FileURL> urls;
    for (const char* name : {"it's \n \"odd\" $HOME *", "-rf", "not \xFF utf-8", "a\\b"}) {
        urls.push_back(folder.makeFile(std::string("app/") + name));
    }
    folder.makeFile("app/tree/deep/file");
    folder.makeLink("app/tree/deep/link", folder.at("precious").path());
    urls.push_back(folder.at("app/tree"));
    urls.push_back(folder.makeLink("app/link", folder.at("precious").path()));
    urls.push_back(folder.makeLink("app/dangling", "nowhere"));
    std::string expected;
    for (const FileURL& url : urls) {
        expected += (expected.empty() ? "" : std::string(1, '\0')) + url.path();
    }
    elevation.whilePrompting = [&] {
        struct stat facts {};
        EXPECT_EQ(stat(list().c_str(), &facts), 0);
        EXPECT_EQ(facts.st_mode, S_IFREG | 0600U);
        EXPECT_EQ(content(list()), expected);
        EXPECT_THAT(list().filename().string(),
                    MatchesRegex("korvane-privileged-[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}"));
        EXPECT_EQ(elevation.command, "/usr/bin/xargs -0 /bin/rm -rf -- < '" + list().string() +
                                         "' 2>/dev/null; exit 0");
    };
    const auto result = remove(urls);
    EXPECT_TRUE(result.completed);
    EXPECT_EQ(result.removed, urls);
    EXPECT_THAT(result.refusals, IsEmpty());
    EXPECT_EQ(notice(result), std::nullopt);
    EXPECT_THAT(folder.listing("app"), IsEmpty());
    EXPECT_TRUE(folder.exists("precious/file"));
    EXPECT_THAT(folder.listing("tmp"), IsEmpty());
}

TEST_F(PrivilegedRemoverTest, showsNoPromptForWhatItRefuses) {
    exclusions.add({UUID::random(), folder.makeFolder("kept/inner").path(), ""});
    const FileURL writable = folder.makeFile("writable/item");
    chmod(folder.at("writable").path().c_str(), 0777);
    const FileURL shared = folder.makeFile("shared/item");
    chmod(folder.at("shared").path().c_str(), 0775);
    folder.makeFile("real/item");
    folder.makeLink("way", "real");
    const std::string rights = " Administrator rights don't override that.";
    struct Row {
        const char* name;
        FileURL url;
        Kind kind;
        std::string message;
    };
    const auto matched = [&](const char* name) {
        return exclusions.match(folder.at(name))->message() + rights;
    };
    const std::string guarded = "Korvane's safety rules protect this location, so it was never "
                                "passed to an administrator delete.";
    const std::vector<Row> rows{
        {"no file", FileURL("https://x"), Kind::other,
         "This isn't a file on disk, so an administrator delete doesn't apply to it."},
        {"excluded", folder.at("kept/inner"), Kind::excluded, matched("kept/inner")},
        {"inside", folder.at("kept/inner/x"), Kind::excluded, matched("kept/inner/x")},
        {"contains", folder.at("kept"), Kind::excluded, matched("kept")},
        {"guarded", folder.at("home/Library"), Kind::protectedLocation, guarded},
        {"system", FileURL("/usr"), Kind::protectedLocation, guarded},
        {"traversal", FileURL(folder.path() + "/a/../b"), Kind::protectedLocation, guarded},
        {"through a link", folder.at("way/item"), Kind::protectedLocation, "A folder above"},
        {"for all to write", writable, Kind::protectedLocation, "Another user could"},
        {"for a group to write", shared, Kind::protectedLocation, "Another user could"},
    };
    std::vector<FileURL> urls;
    urls.reserve(rows.size());
    for (const Row& row : rows) {
        urls.push_back(row.url);
    }
    const auto result = remove(urls);
    EXPECT_EQ(elevation.command, "");
    EXPECT_FALSE(result.completed);
    EXPECT_EQ(notice(result), std::nullopt);
    ASSERT_EQ(result.refusals.size(), rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        SCOPED_TRACE(rows[i].name);
        EXPECT_EQ(result.refusals[i].url, rows[i].url);
        EXPECT_EQ(result.refusals[i].kind, rows[i].kind);
        EXPECT_THAT(result.refusals[i].message, StartsWith(rows[i].message));
    }
    EXPECT_TRUE(folder.exists("real/item") && folder.exists("shared/item"));
}

TEST_F(PrivilegedRemoverTest, knowsWhoElseCouldChangeAPath) {
    using Trouble = HeldPlace::Trouble;
    EXPECT_EQ(HeldPlace::look(FileURL("/proc")).trouble(), Trouble::mount);
    EXPECT_EQ(HeldPlace::look(FileURL("/")).trouble(), Trouble::unreadable);
    const FileURL mine = folder.makeFile("sticky/mine");
    chmod(folder.at("sticky").path().c_str(), 01777);
    EXPECT_EQ(HeldPlace::look(mine).trouble(), std::nullopt);
    if (geteuid() != 0) {
        GTEST_SKIP() << "only root can give files away";
    }
    constexpr uid_t somebody = 65534;
    const auto giveAway = [&](const char* name) {
        const FileURL file = folder.makeFile(std::string(name) + "/item");
        return lchown(file.path().c_str(), somebody, somebody) == 0 ? file : FileURL();
    };
    EXPECT_EQ(HeldPlace::look(giveAway("sticky")).trouble(), Trouble::others);
    const FileURL inMine = giveAway("mine");
    EXPECT_EQ(HeldPlace::look(inMine).trouble(), std::nullopt);
    ASSERT_EQ(chown(folder.at("mine").path().c_str(), somebody, somebody), 0);
    EXPECT_EQ(HeldPlace::look(inMine).trouble(), Trouble::others);
}

TEST_F(PrivilegedRemoverTest, removesNothingThatWasExchangedWhileThePromptWasOpen) {
    const auto path = [&](const char* name) { return folder.at(name).path(); };
    struct Row {
        const char* name;
        Kind kind;
        std::function<void()> exchange;
    };
    const Row rows[] = {
        {"the folder for a link", Kind::protectedLocation,
         [&] {
             fs::rename(path("own/sub"), path("own/old"));
             folder.makeLink("own/sub", path("victim"));
         }},
        {"a folder further up for a link", Kind::protectedLocation,
         [&] {
             fs::rename(path("own"), path("old"));
             fs::create_directory_symlink(path("trap"), path("own"));
         }},
        {"the folder for another one", Kind::protectedLocation,
         [&] {
             fs::rename(path("own/sub"), path("own/old"));
             fs::rename(path("victim"), path("own/sub"));
         }},
        {"the folder, the item moved along", Kind::protectedLocation,
         [&] {
             fs::rename(path("own/sub"), path("own/old"));
             folder.makeFolder("own/sub");
             fs::rename(path("own/old/item"), path("own/sub/item"));
         }},
        {"the item for a link", Kind::protectedLocation,
         [&] {
             fs::remove_all(path("own/sub/item"));
             folder.makeLink("own/sub/item", path("victim/item"));
         }},
        {"the item for another one", Kind::protectedLocation,
         [&] {
             fs::remove_all(path("own/sub/item"));
             fs::rename(path("victim/item"), path("own/sub/item"));
         }},
        {"the rights of the folder", Kind::protectedLocation,
         [&] { chmod(path("own/sub").c_str(), 0777); }},
        {"a path protected meanwhile", Kind::excluded,
         [&] {
             ExclusionStore(exclusions.fileURL(), folder.at("home"))
                 .add({UUID::random(), path("own/sub"), ""});
         }},
        {"the list's content", Kind::other, // nobody is refused: the list is written again
         [&] { std::ofstream(list()) << path("victim/item"); }},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        fs::remove_all(path("own"));
        fs::remove_all(path("old"));
        fs::remove_all(path("exclusions.json"));
        folder.makeFile("victim/item/precious");
        folder.makeFile("trap/sub/item/precious");
        const FileURL item = folder.makeFile("own/sub/item/f").deletingLastPathComponent();
        const FileURL other = folder.makeFile("app/other");
        elevation.whilePrompting = row.exchange;
        const auto result = remove({item, other});
        EXPECT_TRUE(result.completed);
        EXPECT_THAT(result.removed, ::testing::Contains(other));
        EXPECT_TRUE(folder.exists("trap/sub/item/precious"));
        if (row.kind == Kind::other) {
            EXPECT_THAT(result.refusals, IsEmpty());
            EXPECT_FALSE(folder.exists("own/sub/item"));
            EXPECT_TRUE(folder.exists("victim/item/precious"));
            continue;
        }
        ASSERT_EQ(result.refusals.size(), 1U);
        EXPECT_EQ(result.refusals[0].url, item);
        EXPECT_EQ(result.refusals[0].kind, row.kind);
        EXPECT_TRUE(folder.exists("victim/item/precious") ||
                    folder.exists("own/sub/item/precious"));
    }
    // When nothing is left to remove, the command is not run at all.
    bool ran = false;
    elevation.beforeRunning = [&] { ran = true; };
    const FileURL late = folder.at("late");
    elevation.whilePrompting = [&] { folder.makeFile("late"); };
    const auto result = remove({late});
    EXPECT_FALSE(ran || result.completed);
    EXPECT_EQ(notice(result), std::nullopt);
    EXPECT_TRUE(folder.exists("late"));
}

TEST_F(PrivilegedRemoverTest, refusesEverythingWithoutItsListOfPaths) {
    const FileURL item = folder.makeFile("app/item");
    const FileURL victim = folder.makeFile("victim");
    struct Row {
        const char* name;
        std::function<void()> prepare;
        std::function<void()> whilePrompting;
    };
    const Row rows[] = {
        {"no temporary folder", [&] { fs::remove(folder.at("tmp").path()); }, {}},
        {"one that others write", [&] { chmod(folder.at("tmp").path().c_str(), 0777); }, {}},
        {"another file in its place", [] {},
         [&] {
             const fs::path file = list();
             fs::remove(file);
             std::ofstream(file) << victim.path();
         }},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        folder.makeFolder("tmp");
        chmod(folder.at("tmp").path().c_str(), 0700);
        row.prepare();
        elevation.command.clear();
        elevation.whilePrompting = row.whilePrompting;
        const auto result = remove({item});
        EXPECT_EQ(elevation.command.empty(), !row.whilePrompting);
        ASSERT_EQ(result.refusals.size(), 1U);
        EXPECT_EQ(result.refusals[0].kind, Kind::other);
        EXPECT_EQ(result.refusals[0].message,
                  "Korvane couldn't prepare the administrator delete - writing its list of paths "
                  "to a temporary file failed. Nothing was removed.");
        EXPECT_EQ(notice(result), std::nullopt);
        EXPECT_TRUE(folder.exists("app/item") && folder.exists("victim"));
        EXPECT_TRUE(!folder.exists("tmp") || fs::is_empty(folder.at("tmp").path()));
    }
}

TEST_F(PrivilegedRemoverTest, tellsTheOutcomeByWhatIsOnDisk) {
    struct Row {
        const char* name;
        bool dismissed;
        bool runs;
        bool endsEarly;
        bool removed;
        std::string notice;
    };
    for (const Row& row :
         {Row{"dismissed", true, false, false, false, "Nothing was removed - the administrator"},
          Row{"resisted", false, false, false, false, "The administrator delete ran, but these"},
          Row{"ended early", false, true, true, true, "Some of this went through before the"},
          Row{"done", false, true, false, true, ""}}) {
        SCOPED_TRACE(row.name);
        const FileURL item = folder.makeLink("app/item", "nowhere");
        const FileURL missing = folder.at("app/missing");
        elevation.dismissed = row.dismissed;
        elevation.runs = row.runs;
        elevation.endsEarly = row.endsEarly;
        const auto result = remove({item, missing});
        EXPECT_EQ(folder.exists("app/item"), !row.removed);
        EXPECT_EQ(result.removed.size(), row.removed ? 1U : 0U);
        EXPECT_EQ(result.survivors.size(), row.removed ? 0U : 1U);
        EXPECT_EQ(result.completed, !row.dismissed && !row.endsEarly);
        EXPECT_THAT(std::string(notice(result).value_or("")), StartsWith(row.notice));
        EXPECT_EQ(notice(result).has_value(), !row.notice.empty());
        EXPECT_THAT(folder.listing("tmp"), IsEmpty());
        fs::remove(item.path());
    }
}

TEST_F(PrivilegedRemoverTest, recordsWhatWentAndCountsEachByteOnce) {
    // The key goes into a file; a keyring of the tester's is not touched. One thread so far.
    unsetenv("DBUS_SESSION_BUS_ADDRESS"); // NOLINT(concurrency-mt-unsafe)
    Services services(
        {folder.at("home"), folder.at("home/data"), folder.at("home/config"), folder.at("tmp")});
    const FileURL file = folder.makeFileOfSize("app/tree/file", 50'000);
    const FileURL tree = folder.at("app/tree");
    const FileURL link = folder.makeLink("app/link", folder.makeFolder("big").path());
    folder.makeFileOfSize("big/file", 90'000);
    const std::vector<FileURL> urls{tree, file, tree, link, folder.at("home/Library")};
    PrivilegedRequest request = preparePrivilegedRemoval(urls, services);
    const Confirmation confirmation = makeConfirmation(request, elevation);
    EXPECT_EQ(confirmation.question, "Remove with administrator privileges?");
    EXPECT_THAT(confirmation.consequence, StartsWith("Korvane will ask for your administrator "
                                                     "password, then permanently remove these 4"));
    const auto removal = removeWithPrivileges(std::move(request), services, elevation);
    EXPECT_EQ(removal.auditFailure, std::nullopt);
    const auto entries = services.auditLog().entries();
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries[0].scannerID, "uninstaller");
    EXPECT_THAT(entries[0].paths, ElementsAre(tree.path(), file.path(), link.path()));
    EXPECT_EQ(entries[0].failedCount, 1);
    EXPECT_EQ(entries[0].bytesReclaimed, confirmation.selectedBytes);
    EXPECT_GE(confirmation.selectedBytes, 50'000);
    EXPECT_LT(confirmation.selectedBytes, 90'000);

    elevation.dismissed = true;
    const std::vector<FileURL> left{folder.at("big")};
    (void)removeWithPrivileges(preparePrivilegedRemoval(left, services), services, elevation);
    EXPECT_EQ(services.auditLog().entries().size(), 1U);
}

} // namespace
} // namespace korvane
