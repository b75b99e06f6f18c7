#include "KorvaneCore/cleaning/CleanupOperation.h"
#include "KorvaneCore/cleaning/CleanupResult.h"
#include "KorvaneCore/foundation/FileError.h"
#include "tests/audit/AuditFixture.h"

#include <cerrno>
#include <csignal>

#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace korvane::testing {

namespace {

mode_t modeOf(const FileURL& url) {
    struct stat facts {};
    EXPECT_EQ(lstat(url.path().c_str(), &facts), 0) << url.path();
    return facts.st_mode & 07777;
}

/// Runs `work` in a process of its own; whether it answered true.
template <typename Work>
bool succeedsInAChild(Work work) {
    const pid_t child = fork();
    if (child == 0) {
        _exit(work() ? 0 : 1);
    }
    int status = -1;
    return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

class AuditLogTest : public AuditFixture {};

TEST_F(AuditLogTest, recordsACleanupWithAllItsItems) {
    ScanItem removed;
    removed.url = FileURL("/home/ann/a\xFF");
    removed.sizeBytes = 100;
    ScanItem alsoRemoved = removed;
    alsoRemoved.url = FileURL("/home/ann/b");
    ScanItem refused = removed;
    refused.url = FileURL("/home/ann/c");
    CleanupOperation operation;
    operation.scannerID = "developer";
    operation.items = {refused, removed, alsoRemoved};
    CleanupResult result;
    result.succeeded = {removed, alsoRemoved};
    result.failed = {{refused, "no", CleanupFailure::Kind::other}};
    log.record(operation, result, {}, noon(14));

    const AuditEntry entry = log.entries().at(0);
    EXPECT_EQ(entry.operationID, operation.id);
    EXPECT_EQ(entry.scannerID, "developer");
    EXPECT_EQ(entry.itemCount, 3);
    EXPECT_EQ(entry.succeededCount, 2);
    EXPECT_EQ(entry.failedCount, 1);
    EXPECT_EQ(entry.bytesReclaimed, 200);
    EXPECT_EQ(entry.paths,
              (std::vector<std::string>{"/home/ann/c", "file:///home/ann/a%FF", "/home/ann/b"}));
    EXPECT_EQ(lines()[0].find("restorable"), std::string::npos);
    EXPECT_EQ(modeOf(log.rootURL()), 0700U);
    EXPECT_EQ(modeOf(folder.at(fileName(14))), 0600U);
    EXPECT_EQ(folder.listing("Korvane/Audit"), std::vector<std::string>{"audit-2026-11-14.jsonl"});
}

TEST_F(AuditLogTest, neverLosesARecordToBytesThatAreNoText) {
    log.record("odd\xC3", {"/a\xFF"}, 1, 5, UUID::random(), {{"/a\xFF", "/bin/a\xFF"}}, noon(14));
    const AuditEntry entry = log.entries().at(0);
    EXPECT_EQ(entry.itemCount, 2);
    EXPECT_EQ(entry.paths, std::vector<std::string>{"file:///a%FF"});
    EXPECT_EQ(entry.restorable,
              (std::vector<RestorableItem>{{"file:///a%FF", "file:///bin/a%FF"}}));
    expectVerified(1);
}

TEST_F(AuditLogTest, listsTheNewestFirstAndTheLaterWrittenFirstWithinASecond) {
    const UUID tuesday = record("/tuesday", 17);
    const UUID monday = record("/monday", 16);
    const UUID mondayToo = record("/monday too", 16);
    std::vector<UUID> order;
    for (const AuditEntry& entry : log.entries()) {
        order.push_back(entry.operationID);
    }
    EXPECT_EQ(order, (std::vector<UUID>{tuesday, mondayToo, monday}));
}

TEST_F(AuditLogTest, findsTheHeadBehindLinesLongerThanABlock) {
    const std::string longPath = "/" + std::string(700'000, 'a');
    for (int i = 0; i < 3; ++i) {
        record(longPath);
    }
    record("/short");
    expectVerified(4);
    EXPECT_EQ(log.entries()[1].paths[0], longPath);
}

TEST_F(AuditLogTest, closesATornLastLineInsteadOfRewritingIt) {
    record("/first");
    const std::string whole = folder.content(fileName(14));
    const std::string torn = R"({"timestamp":"2026-11)";
    folder.makeFile(fileName(14), whole + torn);
    const UUID next = record("/second");
    EXPECT_TRUE(folder.content(fileName(14)).starts_with(whole + torn + "\n{"));
    EXPECT_EQ(log.entries().size(), 2U);
    expectBrokenAt(next, 1);

    // Only the line feed is missing: nothing is lost and the chain goes on.
    folder.makeFile(fileName(14), whole.substr(0, whole.size() - 1));
    record("/third");
    expectVerified(2);
}

TEST_F(AuditLogTest, neverWritesThroughALinkAndNeverReadsOne) {
    folder.makeFile("precious", "mine\n");
    folder.makeLink(fileName(14), folder.path() + "/precious");
    EXPECT_THROW(record("/a"), FileError);
    EXPECT_EQ(folder.content("precious"), "mine\n");
    record("/b", 13);
    ASSERT_EQ(mkfifo(folder.at(fileName(15)).path().c_str(), 0600), 0);
    EXPECT_THROW(record("/c", 15), FileError);
    folder.makeFolder(fileName(16));
    record("/d", 12);
    EXPECT_EQ(log.entries().size(), 2U);
    EXPECT_EQ(log.entries()[1].prevHash, log.entries()[0].entryHash);
}

TEST_F(AuditLogTest, keepsOneChainWhenProcessesAppendAtOnce) {
    std::vector<pid_t> children;
    for (int process = 0; process < 4; ++process) {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            try {
                for (int i = 0; i < 50; ++i) {
                    record("/" + std::to_string(process) + "/" + std::to_string(i));
                }
                _exit(0);
            } catch (...) {
                _exit(1);
            }
        }
        children.push_back(child);
    }
    while (log.entries().size() < 100) {
        EXPECT_NE(log.verifyChain().coverage, Coverage::broken);
    }
    for (const pid_t child : children) {
        int status = -1;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
    expectVerified(200);
}

TEST_F(AuditLogTest, leavesNothingOfANewFileThatCannotBeWritten) {
    EXPECT_TRUE(succeedsInAChild([&] {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{64, 64};
        setrlimit(RLIMIT_FSIZE, &limit);
        try {
            record("/a");
        } catch (const FileError& error) {
            return error.posixError() == EFBIG;
        }
        return false;
    }));
    EXPECT_EQ(folder.listing("Korvane/Audit"), std::vector<std::string>());
    record("/b");
    expectVerified(1);
}

TEST_F(AuditLogTest, keepsTheChainWholeOnAFullDisk) {
    const FileURL root = folder.makeFolder("disk");
    if (mount("tmpfs", root.path().c_str(), "tmpfs", 0, "size=64k") != 0) {
        GTEST_SKIP() << "needs the right to mount a file system";
    }
    AuditLog full(root.appending("Audit"), keys);
    const auto recordIn = [&](std::size_t size) {
        full.record("trash", {"/" + std::string(size, 'a')}, 0, 1, UUID::random(), {}, noon(14));
    };
    recordIn(20'000);
    const std::string file = "disk/Audit/audit-2026-11-14.jsonl";
    const std::string before = folder.content(file);
    EXPECT_THROW(recordIn(50'000), FileError);
    EXPECT_EQ(folder.content(file), before);
    recordIn(20'000);
    EXPECT_EQ(full.verifyChain().checkedCount, 2);
    umount(root.path().c_str());
}

TEST_F(AuditLogTest, saysWhyItCouldNotRecordAndReadsNothingFromALockedFolder) {
    if (geteuid() == 0) {
        GTEST_SKIP() << "nothing is locked for root";
    }
    record("/a");
    ASSERT_EQ(chmod(log.rootURL().path().c_str(), 0), 0);
    try {
        record("/b");
        ADD_FAILURE() << "nothing was thrown";
    } catch (const FileError& error) {
        EXPECT_EQ(error.posixError(), EACCES);
    }
    EXPECT_EQ(log.verifyChain(), AuditChainResult());
    EXPECT_FALSE(log.hasLogFiles());
    ASSERT_EQ(chmod(log.rootURL().path().c_str(), 0700), 0);
    expectVerified(1);
}

} // namespace korvane::testing
