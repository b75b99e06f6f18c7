#include "KorvaneCore/platform/FileManager.h"
#include "tests/support/Sandbox.h"
#include "tests/support/TemporaryFolder.h"

#include <filesystem>
#include <fstream>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvane::testing {

namespace {

using ::testing::ElementsAre;

struct stat factsOf(const FileURL& url) {
    struct stat facts {};
    EXPECT_EQ(lstat(url.path().c_str(), &facts), 0) << url.path();
    return facts;
}

/// A folder here and one on another file system, or a skipped test.
class MoveAcrossFileSystems : public ::testing::Test {
  protected:
    void SetUp() override {
        if (access("/dev/shm", W_OK) != 0) {
            GTEST_SKIP() << "no second file system";
        }
        other = std::make_unique<TemporaryFolder>("/dev/shm");
        if (factsOf(other->url()).st_dev == factsOf(folder.url()).st_dev) {
            GTEST_SKIP() << "the temporary folder is on /dev/shm itself";
        }
    }

    TemporaryFolder folder;
    std::unique_ptr<TemporaryFolder> other;
    FileManager& manager = FileManager::standard();
};

} // namespace

TEST_F(MoveAcrossFileSystems, bringsEverythingOver) {
    std::string noise(3'000'017, '\0');
    for (std::size_t i = 0; i < noise.size(); ++i) {
        noise[i] = static_cast<char>((i * i) >> 7U);
    }
    folder.makeFile("precious/letter");
    folder.makeFile("tree/noise", noise);
    folder.makeFile("tree/empty", "");
    folder.makeFile("tree/locked/not \xFFutf8\n", "x");
    folder.makeLink("tree/link", "../precious");
    folder.makeLink("tree/dangling", "nowhere");
    ASSERT_EQ(mkfifo(folder.at("tree/pipe").path().c_str(), 0640), 0);
    std::ofstream(folder.at("tree/sparse").path()) << "start";
    std::filesystem::resize_file(folder.at("tree/sparse").path(), 40'000'000);
    chmod(folder.at("tree/noise").path().c_str(), 04751);
    setxattr(folder.at("tree/noise").path().c_str(), "user.mark", "seen", 4, 0);
    std::string deep = "tree/deep";
    for (int level = 0; level < 100; ++level) {
        deep += "/d";
    }
    folder.makeFile(deep + "/file");
    for (const char* name : {"tree/noise", "tree/link", "tree/locked", "tree"}) {
        folder.setModified(name, 1234567890.25);
    }
    chmod(folder.at("tree/locked").path().c_str(), 0700);
    const auto before = folder.listing("tree");
    const struct stat noiseBefore = factsOf(folder.at("tree/noise"));

    manager.moveItem(folder.at("tree"), other->at("tree"));

    EXPECT_THAT(folder.listing(), ElementsAre("precious/", "precious/letter"));
    EXPECT_EQ(other->listing("tree"), before);
    EXPECT_EQ(other->listing().size(), before.size() + 1) << "something lies beside it";
    EXPECT_TRUE(other->content("tree/noise") == noise);
    EXPECT_EQ(std::filesystem::read_symlink(other->at("tree/link").path()), "../precious");
    const struct stat noiseNow = factsOf(other->at("tree/noise"));
    EXPECT_EQ(noiseNow.st_mode, noiseBefore.st_mode);
    EXPECT_EQ(noiseNow.st_uid, noiseBefore.st_uid);
    EXPECT_TRUE(S_ISFIFO(factsOf(other->at("tree/pipe")).st_mode));
    EXPECT_LT(factsOf(other->at("tree/sparse")).st_blocks * 512, 1'000'000);
    for (const char* name : {"tree/noise", "tree/link", "tree/locked", "tree"}) {
        const struct stat facts = factsOf(other->at(name));
        EXPECT_EQ(facts.st_mtim.tv_sec, 1234567890) << name;
        EXPECT_EQ(facts.st_mtim.tv_nsec, 250'000'000) << name;
    }
    char mark[8] = {};
    if (getxattr(other->at("tree/noise").path().c_str(), "user.mark", mark, sizeof mark) < 0) {
        EXPECT_EQ(errno, ENOTSUP);
    } else {
        EXPECT_STREQ(mark, "seen");
    }
}

TEST_F(MoveAcrossFileSystems, replacesNothingAndDropsTheNoteOnlyWhenItIsBack) {
    const auto own = FileManager::withHomeTrash(folder.at("Trash"));
    const FileURL trashed = own->openBin()->trashItem(folder.makeFile("a", "a"));
    other->makeFolder("taken");
    EXPECT_EQ(errorOf([&] { own->restoreItem(trashed, other->at("taken")); }), EEXIST);
    EXPECT_TRUE(folder.exists("Trash/files/a") && folder.exists("Trash/info/a.trashinfo"));
    EXPECT_THAT(other->listing(), ElementsAre("taken/"));

    own->restoreItem(trashed, other->at("a"));
    EXPECT_EQ(other->content("a"), "a");
    EXPECT_THAT(folder.listing(), ElementsAre("Trash/", "Trash/files/", "Trash/info/"));
}

TEST(MoveItem, leavesTheSourceWholeAndNoCopyWhenTheDiskFillsUp) {
    const TemporaryFolder folder;
    const TemporaryFolder full;
    expectInChild([&]() -> std::string {
        enterPrivateMounts();
        mountTmpfs(full.path(), "size=256k");
        for (int i = 0; i < 20; ++i) {
            folder.makeFileOfSize("tree/" + std::to_string(i), 50'000);
        }
        const auto before = folder.listing();
        const int error =
            errorOf([&] { FileManager::standard().moveItem(folder.at("tree"), full.at("tree")); });
        if (error != ENOSPC || folder.listing() != before || !full.listing().empty()) {
            return "error " + std::to_string(error);
        }
        mountReadOnly(full.path());
        const int readOnly =
            errorOf([&] { FileManager::standard().moveItem(folder.at("tree"), full.at("tree")); });
        return readOnly == EROFS && folder.listing() == before ? "" : std::to_string(readOnly);
    });
}

} // namespace korvane::testing
