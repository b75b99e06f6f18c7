#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/platform/FileManager.h"
#include "tests/support/FakeFileManager.h"
#include "tests/support/Sandbox.h"
#include "tests/support/TemporaryFolder.h"

#include <filesystem>
#include <string>

#include <sys/statvfs.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvane::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// What every file manager does; runs against the real one and the tests' own.
class FileManagerContract : public ::testing::TestWithParam<bool> {
  protected:
    TemporaryFolder folder;
    std::unique_ptr<FileManager> manager =
        GetParam() ? std::make_unique<FakeFileManager>(folder.at("Trash"))
                   : FileManager::withHomeTrash(folder.at("Trash"));
};

INSTANTIATE_TEST_SUITE_P(FileManager, FileManagerContract, ::testing::Bool(),
                         [](const auto& row) { return row.param ? "fake" : "real"; });

} // namespace

TEST_P(FileManagerContract, bringsAnItemBackFromTheBinWithoutItsNote) {
    folder.makeFile("tree/a", "content");
    const auto bin = manager->openBin();
    const FileURL trashed = bin->trashItem(folder.at("tree"));
    EXPECT_TRUE(bin->synchronize());
    EXPECT_FALSE(manager->itemExists(folder.at("tree")));

    folder.makeFile("occupied");
    EXPECT_EQ(errorOf([&] { manager->restoreItem(trashed, folder.at("occupied")); }), EEXIST);
    EXPECT_EQ(errorOf([&] { manager->restoreItem(trashed, folder.at("no/folder")); }), ENOENT);
    EXPECT_THAT(folder.listing("Trash"), ElementsAre("files/", "files/tree/", "files/tree/a",
                                                     "info/", "info/tree.trashinfo"));

    manager->restoreItem(trashed, folder.at("back"));
    EXPECT_EQ(folder.content("back/a"), "content");
    EXPECT_EQ(folder.content("occupied"), "x");
    EXPECT_THAT(folder.listing("Trash"), ElementsAre("files/", "info/"));
}

TEST_P(FileManagerContract, takesNothingThroughALinkAboveIt) {
    folder.makeFile("precious/letter");
    folder.makeLink("cache", "precious");
    EXPECT_EQ(errorOf([&] { manager->removeItem(folder.at("cache/letter")); }), ELOOP);
    const auto bin = manager->openBin();
    EXPECT_EQ(errorOf([&] { bin->trashItem(folder.at("cache/letter")); }), ELOOP);
    EXPECT_TRUE(folder.exists("precious/letter"));
}

TEST_P(FileManagerContract, movesWithoutReplacingAnything) {
    folder.makeFile("a", "a");
    folder.makeFolder("empty");
    folder.makeLink("dangling", "nowhere");
    folder.makeFile("files/b");
    folder.makeFile("info/b.trashinfo", "no note of a Bin");
    for (const char* taken : {"empty", "dangling", "files/b", "a"}) {
        EXPECT_EQ(errorOf([&] { manager->moveItem(folder.at("a"), folder.at(taken)); }), EEXIST)
            << taken;
    }
    EXPECT_EQ(errorOf([&] { manager->moveItem(folder.at("gone"), folder.at("x")); }), ENOENT);
    EXPECT_NE(errorOf([&] { manager->moveItem(folder.at("files"), folder.at("files/x")); }), 0);
    manager->moveItem(folder.at("dangling"), folder.at("moved"));
    manager->restoreItem(folder.at("files/b"), folder.at("b"));
    EXPECT_THAT(folder.listing(),
                ElementsAre("a", "b", "empty/", "files/", "info/", "info/b.trashinfo", "moved@"));
}

TEST_P(FileManagerContract, makesFoldersAndAnswersWhatIsThere) {
    folder.makeFile("file");
    folder.makeLink("dangling", "nowhere");
    folder.makeLink("alias", "a/b");
    manager->createDirectory(folder.at("a/b/c"));
    manager->createDirectory(folder.at("a/b"));
    manager->createDirectory(folder.at("alias/d"));
    for (const char* blocked : {"file", "file/x", "dangling"}) {
        EXPECT_EQ(errorOf([&] { manager->createDirectory(folder.at(blocked)); }), ENOTDIR)
            << blocked;
    }
    EXPECT_NE(errorOf([&] { manager->createDirectory(FileURL("relative")); }), 0);
    const struct {
        const char* name;
        bool exists;
    } rows[] = {{"a/b/c", true}, {"a/b/d", true},    {"dangling", true},
                {"alias", true}, {"nowhere", false}, {"file/x", false}};
    for (const auto& row : rows) {
        EXPECT_EQ(manager->itemExists(folder.at(row.name)), row.exists) << row.name;
    }
}

TEST_P(FileManagerContract, readsTheCapacityOfTheNearestFolderThatExists) {
    folder.makeFile("file");
    struct statvfs facts {};
    ASSERT_EQ(statvfs(folder.path().c_str(), &facts), 0);
    const auto whole = static_cast<std::int64_t>(facts.f_blocks * facts.f_frsize);
    for (const char* name : {"", "file", "file/not a folder", "gone/further/down"}) {
        const auto capacity = manager->availableCapacity(folder.at(name));
        ASSERT_TRUE(capacity) << name;
        EXPECT_GE(*capacity, 0) << name;
        EXPECT_LE(*capacity, whole) << name;
    }
    EXPECT_FALSE(manager->availableCapacity(FileURL("relative/gone")));
}

TEST(FakeFileManager, failsAndReportsAsTheTestAsks) {
    const TemporaryFolder folder;
    FakeFileManager manager(folder.at("Trash"));
    manager.failAt(folder.makeFile("a"), EBUSY);
    manager.failSynchronizing();
    manager.setAvailableCapacities({5, std::nullopt});
    std::vector<std::string> seen;
    manager.onCall([&](const std::string& call) { seen.push_back(call); });

    const auto bin = manager.openBin();
    EXPECT_EQ(errorOf([&] { bin->trashItem(folder.at("a")); }), EBUSY);
    EXPECT_EQ(errorOf([&] { manager.removeItem(folder.at("a")); }), EBUSY);
    EXPECT_FALSE(bin->synchronize());
    EXPECT_EQ(manager.availableCapacity(folder.url()), 5);
    EXPECT_EQ(manager.availableCapacity(folder.url()), std::nullopt);
    EXPECT_EQ(manager.availableCapacity(folder.url()), std::nullopt);
    const std::string a = folder.at("a").path();
    EXPECT_THAT(std::vector(seen.begin(), seen.begin() + 4),
                ElementsAre("openBin", "trash " + a, "remove " + a, "synchronize"));
    EXPECT_EQ(manager.calls(), seen);
    EXPECT_THAT(folder.listing(), ElementsAre("a"));
}

} // namespace korvane::testing
