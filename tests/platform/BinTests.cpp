#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/foundation/Text.h"
#include "KorvaneCore/platform/FileManager.h"
#include "KorvaneCore/platform/linux/TrashInfo.h"
#include "tests/support/Sandbox.h"
#include "tests/support/TemporaryFolder.h"

#include <filesystem>
#include <regex>
#include <set>

#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvane::testing {

namespace {

using ::testing::ElementsAre;

/// The path in the note of what is `<trash>/files/NAME` now.
std::string notedPath(const TemporaryFolder& folder, const FileURL& trashed) {
    const std::string trash =
        trashed.deletingLastPathComponent().deletingLastPathComponent().path();
    const std::string note =
        folder.content(trash.substr(folder.path().size() + 1) + "/info/" +
                       std::string(trashed.lastPathComponent()) + ".trashinfo");
    static const std::regex form("\\[Trash Info\\]\nPath=([-A-Za-z0-9_.~/%]+)\n"
                                 "DeletionDate=\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\n");
    std::smatch match;
    if (!std::regex_match(note, match, form)) {
        return "no note: " + note;
    }
    const std::string coded = match[1];
    const bool isRelative = !coded.starts_with('/');
    const auto url = FileURL::fromAbsoluteString("file://" + (isRelative ? "/" + coded : coded));
    return url ? url->path().substr(isRelative ? 1 : 0) : "bad path: " + coded;
}

struct Home {
    TemporaryFolder folder;
    std::unique_ptr<FileManager> manager = FileManager::withHomeTrash(folder.at("data/Trash"));
    std::unique_ptr<BinSession> bin = manager->openBin();
};

} // namespace

TEST(TrashName, isCutAtACharacterAndKeepsTheExtension) {
    const std::string longest(245, 'a');
    const auto repeated = [](int count, std::string_view text) {
        std::string whole;
        while (count-- > 0) {
            whole += text;
        }
        return whole;
    };
    const struct {
        const char* name;
        std::string original;
        std::uint64_t number;
        std::string expected;
    } rows[] = {
        {"own name", "report.pdf", 1, "report.pdf"},
        {"second", "report.pdf", 2, "report 2.pdf"},
        {"no extension", ".bashrc", 3, ".bashrc 3"},
        {"trailing dot", "name.", 2, "name. 2"},
        {"as long as may be", longest, 1, longest},
        {"one too long", longest + "b", 1, longest},
        {"number in a long one", longest, 12, std::string(242, 'a') + " 12"},
        {"extension of a long one", longest + "a.pdf", 1, std::string(241, 'a') + ".pdf"},
        {"two-byte characters", repeated(127, "é"), 1, repeated(122, "é")},
        {"four-byte characters", "ab" + repeated(63, "😀"), 1, "ab" + repeated(60, "😀")},
        {"not UTF-8", repeated(255, "\x80"), 1, repeated(245, "\x80")},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(trashName(row.original, row.number, 255), row.expected) << row.name;
    }
}

TEST(Bin, takesTheItemItselfWithANoteOfWhereItWas) {
    Home home;
    const TemporaryFolder& folder = home.folder;
    folder.makeFile("precious/letter");
    folder.makeFile("tree/a/b");
    folder.makeLink("link", "precious");
    folder.makeLink("dangling", "nowhere");
    std::set<std::string> trashed;
    for (const std::string& name :
         {std::string("tree"), std::string("link"), std::string("dangling"),
          std::string("-n \n%41\xFFé"), std::string(255, 'x')}) {
        if (!folder.exists(name)) {
            folder.makeFile(name, name);
        }
        const FileURL now = home.bin->trashItem(folder.at(name));
        EXPECT_TRUE(trashed.insert(now.path()).second);
        EXPECT_EQ(now.deletingLastPathComponent(), folder.at("data/Trash/files"));
        EXPECT_TRUE(home.manager->itemExists(now));
        EXPECT_FALSE(folder.exists(name));
        EXPECT_EQ(notedPath(folder, now), folder.at(name).path());
    }
    EXPECT_TRUE(home.bin->synchronize());
    EXPECT_TRUE(folder.exists("precious/letter"));
    EXPECT_EQ(folder.content("data/Trash/files/tree/a/b"), "x");
    struct stat facts {};
    ASSERT_EQ(stat(folder.at("data/Trash").path().c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 0777U, 0700U);
}

TEST(Bin, givesManyItemsOfOneNameNamesOfTheirOwnAndReplacesNothing) {
    const TemporaryFolder folder;
    const auto manager = FileManager::withHomeTrash(folder.at("Trash"));
    folder.makeFile("Trash/files/cache", "without a note");
    folder.makeFile("Trash/info/cache 2.trashinfo", "without an item");
    std::set<std::string> contents;
    for (int session = 0; session < 3; ++session) {
        const auto bin = manager->openBin();
        for (int i = 0; i < 150; ++i) {
            const std::string content = std::to_string(session * 1000 + i);
            const FileURL now = bin->trashItem(folder.makeFile("cache", content));
            EXPECT_EQ(folder.content("Trash/files/" + std::string(now.lastPathComponent())),
                      content);
            contents.insert(now.path());
        }
    }
    EXPECT_EQ(contents.size(), 450U);
    EXPECT_TRUE(folder.exists("Trash/files/cache 452")) << "numbers are not given in a row";
    EXPECT_EQ(folder.content("Trash/files/cache"), "without a note");
    EXPECT_EQ(folder.content("Trash/info/cache 2.trashinfo"), "without an item");
}

TEST(Bin, refusesWhatItCannotHoldAndLeavesItWhereItIs) {
    Home home;
    const TemporaryFolder& folder = home.folder;
    const FileURL old = home.bin->trashItem(folder.makeFile("old/file"));
    const auto before = folder.listing();
    const struct {
        FileURL url;
        int error;
    } rows[] = {
        {old, EINVAL},
        {folder.at("data/Trash/files"), EINVAL},
        {folder.at("data/Trash"), EINVAL},
        {folder.at("data"), EINVAL},
        {folder.url(), EINVAL},
        {FileURL("/"), EINVAL},
        {folder.at("old/.."), EINVAL},
        {folder.at("gone"), ENOENT},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(errorOf([&] { home.bin->trashItem(row.url); }), row.error) << row.url.path();
    }
    EXPECT_EQ(folder.listing(), before);
}

TEST(Bin, isMadeAnewWhenItIsRemovedDuringASession) {
    Home home;
    home.bin->trashItem(home.folder.makeFile("first"));
    std::filesystem::remove_all(home.folder.at("data").path());
    home.bin->trashItem(home.folder.makeFile("second"));
    EXPECT_TRUE(home.folder.exists("data/Trash/info/second.trashinfo"));
    EXPECT_TRUE(home.folder.exists("data/Trash/files/second"));
}

TEST(Bin, keepsTheCodeOfWhatAnOrdinaryUserMayNotMove) {
    const TemporaryFolder folder;
    folder.makeFile("locked/file");
    folder.makeFolder("mine");
    std::filesystem::permissions(folder.path(), std::filesystem::perms(0755));
    std::filesystem::permissions(folder.at("mine").path(), std::filesystem::perms(0777));
    expectInChild([&]() -> std::string {
        becomeOrdinaryUser();
        const auto manager = FileManager::withHomeTrash(folder.at("mine/Trash"));
        const auto bin = manager->openBin();
        try {
            bin->trashItem(folder.at("locked/file"));
        } catch (const FileError& error) {
            const std::string expected = "Could not move " + folder.at("locked/file").path() +
                                         " to the Bin: Permission denied";
            return error.reason() == expected && error.posixError() == EACCES ? "" : error.reason();
        }
        return "moved";
    });
    if (IsSkipped()) {
        return;
    }
    EXPECT_TRUE(folder.exists("locked/file"));
    EXPECT_THAT(folder.listing("mine/Trash"), ElementsAre("files/", "info/"));
}

TEST(Bin, ofAnotherVolumeIsUsedOnlyWhenItIsTheUsersOwn) {
    const TemporaryFolder folder;
    const TemporaryFolder volume;
    expectInChild([&]() -> std::string {
        enterPrivateMounts();
        mountTmpfs(volume.path());
        const auto manager = FileManager::withHomeTrash(folder.at("Trash"));
        const std::string user = std::to_string(geteuid());
        const std::string own = ".Trash-" + user;
        const auto trashOne = [&]() -> std::string {
            volume.makeFile("a b/file");
            try {
                const auto bin = manager->openBin();
                const FileURL now = bin->trashItem(volume.at("a b/file"));
                const bool isWhole = bin->synchronize() && notedPath(volume, now) == "a b/file" &&
                                     !volume.exists("a b/file");
                return isWhole ? now.path().substr(volume.path().size() + 1) : "not whole";
            } catch (const FileError& error) {
                return volume.exists("a b/file") ? "failed" : "lost: " + error.reason();
            }
        };
        const auto shared = volume.at(".Trash").path();
        volume.makeFolder("elsewhere");
        volume.makeLink(".Trash", "elsewhere");
        const std::string besideALink = trashOne();
        std::filesystem::remove(shared);
        volume.makeFolder(".Trash");
        const std::string besideAPlainFolder = trashOne();
        chmod(shared.c_str(), 01777);
        const std::string inASharedOne = trashOne();
        std::filesystem::remove_all(shared);
        std::filesystem::remove_all(volume.at(own).path());
        volume.makeLink(own, "elsewhere");
        const std::string throughALink = trashOne();
        std::filesystem::remove(volume.at(own).path());
        volume.makeFolder(own);
        std::string inSomebodyElses = "failed";
        if (chown(volume.at(own).path().c_str(), 4711, 4711) == 0) {
            inSomebodyElses = trashOne();
        }
        const bool isRight = besideALink == own + "/files/file" &&
                             besideAPlainFolder == own + "/files/file 2" &&
                             inASharedOne == ".Trash/" + user + "/files/file" &&
                             throughALink == "failed" && inSomebodyElses == "failed" &&
                             volume.listing("elsewhere").empty() && !folder.exists("Trash");
        return isRight ? ""
                       : besideALink + ", " + besideAPlainFolder + ", " + inASharedOne + ", " +
                             throughALink + ", " + inSomebodyElses;
    });
}

TEST(Bin, refusesItemsWithAMountInsideAndReadOnlyVolumes) {
    const TemporaryFolder folder;
    const TemporaryFolder volume;
    expectInChild([&]() -> std::string {
        enterPrivateMounts();
        const auto manager = FileManager::withHomeTrash(folder.at("Trash"));
        folder.makeFile("tree/file");
        folder.makeFolder("tree/mount");
        bindMount(volume.path(), folder.at("tree/mount").path());
        const auto bin = manager->openBin();
        if (errorOf([&] { bin->trashItem(folder.at("tree")); }) != EXDEV ||
            errorOf([&] { bin->trashItem(folder.at("tree/mount")); }) != EXDEV ||
            folder.listing() != std::vector<std::string>{"tree/", "tree/file", "tree/mount/"}) {
            return "a mount went to the Bin";
        }
        mountTmpfs(volume.path());
        volume.makeFile("file");
        mountReadOnly(volume.path());
        const int error = errorOf([&] { bin->trashItem(volume.at("file")); });
        return error == EROFS ? "" : "read-only: " + std::to_string(error);
    });
}

} // namespace korvane::testing
