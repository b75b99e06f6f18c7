#include "KorvaneCore/audit/AuditKeyStore.h"
#include "KorvaneCore/audit/AuditLog.h"
#include "KorvaneCore/cleaning/Restorer.h"
#include "KorvaneCore/foundation/FileError.h"
#include "tests/support/FakeFileManager.h"
#include "tests/support/FakeSecretStore.h"
#include "tests/support/TemporaryFolder.h"

#include <filesystem>

#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace korvane::testing {

class RestorerTest : public ::testing::Test {
  protected:
    /// Puts a file with this content in the Bin, as if it had been at `original`.
    RestorableItem trash(std::string_view original, std::string_view content = "from the Bin") {
        const FileURL url = folder.makeFile(original, content);
        return {pathText(url.path()), pathText(files.openBin()->trashItem(url).path())};
    }

    std::string restoreError(const RestorableItem& item) const {
        const RestoreOutcome outcome = restorer.restore(std::vector{item});
        EXPECT_EQ(outcome.restored.size() + outcome.failed.size(), 1U);
        return outcome.failed.empty() ? "" : outcome.failed[0].error;
    }

    TemporaryFolder folder;
    FakeFileManager files{folder.at("Trash")};
    FakeSecretStore secrets;
    AuditKeyStore keys{secrets};
    AuditLog log{folder.at("Audit"), keys};
    Restorer restorer{log, files};
};

TEST_F(RestorerTest, putsThingsBackWhereTheyWereAndRecordsThat) {
    const RestorableItem plain = trash("home/a.txt");
    const RestorableItem deep = trash("home/gone/for/good/b.txt");
    const RestorableItem bytes = trash("home/c\xFF.txt");
    const RestorableItem emptied = trash("home/d.txt");
    std::filesystem::remove_all(folder.at("home/gone").path());
    ASSERT_EQ(unlink(emptied.trashed.c_str()), 0);
    EXPECT_TRUE(restorer.isStillInBin(bytes));
    EXPECT_FALSE(restorer.isStillInBin(emptied));

    const RestoreOutcome outcome = restorer.restore(std::vector{plain, emptied, deep, bytes});
    EXPECT_EQ(outcome.restored, (std::vector{plain, deep, bytes}));
    EXPECT_EQ(outcome.failed, (std::vector<RestoreFailure>{{emptied, "No longer in the Bin"}}));
    EXPECT_EQ(folder.listing("home"),
              (std::vector<std::string>{"a.txt", "c\xFF.txt", "gone/", "gone/for/",
                                        "gone/for/good/", "gone/for/good/b.txt"}));
    // The notes went with their items.
    EXPECT_EQ(folder.listing("Trash"),
              (std::vector<std::string>{"files/", "info/", "info/d.txt.trashinfo"}));

    const std::vector<AuditEntry> entries = log.entries();
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries[0].scannerID, "restore");
    EXPECT_EQ(entries[0].itemCount, 3);
    EXPECT_EQ(entries[0].succeededCount, 3);
    EXPECT_EQ(entries[0].failedCount, 0);
    EXPECT_EQ(entries[0].bytesReclaimed, 0);
    EXPECT_EQ(entries[0].paths, (std::vector{plain.original, deep.original, bytes.original}));
    EXPECT_FALSE(entries[0].restorable.has_value());
    EXPECT_EQ(log.verifyChain().coverage, AuditChainResult::Coverage::verified);
}

TEST_F(RestorerTest, neverReplacesWhatIsThereNow) {
    struct Case {
        std::string original;
        std::vector<std::string> taken;
        std::string expected;
    };
    const Case cases[] = {
        {"report.pdf", {}, "report (restored).pdf"},
        {"notes", {}, "notes (restored)"},
        {"a.txt", {"a (restored).txt"}, "a (restored 2).txt"},
        {"b.txt", {"b (restored).txt", "b (restored 2).txt"}, "b (restored 3).txt"},
        {"c.txt", {"c (restored 2).txt"}, "c (restored).txt"},
        {"archive.tar.gz", {}, "archive.tar (restored).gz"},
        {".bashrc", {}, ".bashrc (restored)"},
        {".config.json", {}, ".config (restored).json"},
        {"name.", {}, "name. (restored)"},
        {"odd\xFF.b\xC3", {}, "odd\xFF (restored).b\xC3"},
        {"two\nlines.txt", {}, "two\nlines (restored).txt"},
    };
    for (const Case& test : cases) {
        const RestorableItem item = trash("home/" + test.original);
        folder.makeFile("home/" + test.original, "new");
        for (const std::string& name : test.taken) {
            folder.makeFile("home/" + name, "taken");
        }
        EXPECT_EQ(restoreError(item), "") << test.original;
        EXPECT_EQ(folder.content("home/" + test.expected), "from the Bin") << test.expected;
        EXPECT_EQ(folder.content("home/" + test.original), "new");
        for (const std::string& name : test.taken) {
            EXPECT_EQ(folder.content("home/" + name), "taken") << name;
        }
        EXPECT_EQ(log.entries()[0].paths, std::vector{item.original});
    }
}

TEST_F(RestorerTest, treatsALinkAsAThing) {
    const RestorableItem item = trash("home/a.txt");
    folder.makeLink("home/a.txt", "nowhere");
    EXPECT_EQ(restoreError(item), "");
    EXPECT_EQ(folder.content("home/a (restored).txt"), "from the Bin");
    EXPECT_FALSE(folder.exists("home/nowhere"));

    const FileURL link = folder.makeLink("home/link", "gone");
    const RestorableItem dangling{link.path(), files.openBin()->trashItem(link).path()};
    EXPECT_TRUE(restorer.isStillInBin(dangling));
    EXPECT_EQ(restoreError(dangling), "");
    EXPECT_EQ(std::filesystem::read_symlink(link.path()), "gone");
}

TEST_F(RestorerTest, choosesAgainWhenThePlaceIsTakenAtTheLastMoment) {
    const RestorableItem item = trash("home/a.txt");
    files.onCall([this](const std::string& call) {
        if (call.starts_with("restore ") && call.ends_with("home/a.txt")) {
            folder.makeFile("home/a.txt", "quicker");
        }
    });
    EXPECT_EQ(restoreError(item), "");
    EXPECT_EQ(folder.content("home/a.txt"), "quicker");
    EXPECT_EQ(folder.content("home/a (restored).txt"), "from the Bin");
}

TEST_F(RestorerTest, saysWhatWentWrongAndLeavesTheItemInTheBin) {
    const RestorableItem blocked = trash("home/file/a.txt");
    std::filesystem::remove_all(folder.at("home/file").path());
    folder.makeFile("home/file", "no folder");
    const RestorableItem refused = trash("home/b.txt");
    files.failAt(folder.at("home/b.txt"), EACCES);
    const RestorableItem odd = trash("home/c.txt");
    files.failAt(folder.at("home/c.txt"), EEXIST); // though nothing is there
    const RestorableItem fine = trash("home/d.txt");

    const RestoreOutcome outcome = restorer.restore(std::vector{blocked, refused, odd, fine});
    ASSERT_EQ(outcome.failed.size(), 3U);
    for (const RestoreFailure& failure : outcome.failed) {
        EXPECT_FALSE(failure.error.empty());
        EXPECT_TRUE(restorer.isStillInBin(failure.item));
    }
    EXPECT_EQ(outcome.restored, std::vector{fine});
    EXPECT_EQ(folder.content("home/file"), "no folder");
}

TEST_F(RestorerTest, refusesPlacesThatAreNotPlain) {
    const RestorableItem item = trash("home/a.txt");
    const std::string root = folder.path();
    const std::pair<std::string, std::string> places[] = {
        {"home/b.txt", item.trashed},
        {"", item.trashed},
        {"/", item.trashed},
        {root + "/home/../b.txt", item.trashed},
        {root + std::string("/b\0.txt", 7), item.trashed},
        {root + "/b.txt", "Trash/files/a.txt"},
        {root + "/b.txt", root + "/Trash/files/../files/a.txt"},
        {root + "/b.txt", item.trashed + std::string("\0x", 2)},
    };
    const std::vector<std::string> before = folder.listing();
    for (const auto& [original, trashed] : places) {
        EXPECT_FALSE(restoreError({original, trashed}).empty()) << original << " " << trashed;
    }
    EXPECT_EQ(folder.listing(), before);
    EXPECT_FALSE(restorer.isStillInBin({"/b", item.trashed + std::string("\0x", 2)}));
}

TEST_F(RestorerTest, keepsWhatIsBackWhenTheLogCannotBeWritten) {
    folder.makeFile("Audit", "in the way");
    const RestorableItem item = trash("home/a.txt");
    EXPECT_EQ(restoreError(item), "");
    EXPECT_TRUE(folder.exists("home/a.txt"));
    EXPECT_EQ(folder.content("Audit"), "in the way");
}

TEST_F(RestorerTest, listsTheOperationsOfWhichSomethingIsLeft) {
    const RestorableItem kept = trash("home/a.txt");
    const RestorableItem emptied = trash("home/b.txt");
    ASSERT_EQ(unlink(emptied.trashed.c_str()), 0);
    const UUID both = UUID::random();
    const Date at = Date::now();
    log.record("trash", {kept.original, emptied.original}, 0, 2, both, {kept, emptied}, at);
    log.record("trash", {emptied.original}, 0, 1, UUID::random(), {emptied}, at);
    log.record("trash", {"/x"}, 0, 1, UUID::random(), {}, at);
    const UUID newest = UUID::random();
    log.record("trash", {kept.original}, 0, 1, newest, {kept}, at.adding(60));

    const std::vector<RestorableOp> operations = restorer.restorableOperations();
    ASSERT_EQ(operations.size(), 2U);
    EXPECT_EQ(operations[0].entry.operationID, newest);
    EXPECT_EQ(operations[1].entry.operationID, both);
    EXPECT_EQ(operations[1].restorableCount, 1);
    EXPECT_EQ(operations[1].entry.restorable, (std::vector{kept, emptied}));
}

} // namespace korvane::testing
