#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/foundation/StateFile.h"
#include "KorvaneCore/foundation/Task.h"
#include "tests/support/TemporaryFolder.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvane {
namespace {

using ::testing::ElementsAre;
using testing::TemporaryFolder;

mode_t modeOf(const FileURL& url) {
    struct stat facts {};
    return stat(url.path().c_str(), &facts) == 0 ? facts.st_mode & 0777U : 0;
}

/// The error number of the FileError that `work` throws, 0 when it throws none.
template <typename Work>
int errorOf(Work work) {
    try {
        work();
        return 0;
    } catch (const FileError& error) {
        return error.posixError();
    }
}

/// For a process of its own: the limit would hold for every other test.
[[noreturn]] void writeBeyondALimit(const FileURL& file) {
    const rlimit limit{1000, 1000};
    setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, SIG_IGN);
    std::_Exit(errorOf([&] { writeFileAtomically(file, std::string(5000, 'n')); }));
}

TEST(StateFile, replacesTheWholeContent) {
    const TemporaryFolder folder;
    const FileURL file = folder.at("a \xFF/state.json");
    folder.makeFolder("a \xFF");
    const std::string binary("\0\n\xFF", 3);
    for (const std::string& content :
         {std::string("first, long"), binary, std::string(), std::string(3'000'000, 'z')}) {
        writeFileAtomically(file, content);
        EXPECT_EQ(readFile(file), content);
        EXPECT_EQ(folder.listing("a \xFF").size(), 1U);
    }
    EXPECT_EQ(modeOf(file), 0600U);
}

TEST(StateFile, followsALinkAtItsPlace) {
    const TemporaryFolder folder;
    folder.makeFile("dotfiles/state", "old");
    folder.makeLink("state", "dotfiles/state");
    folder.makeLink("fresh", "dotfiles/fresh");
    writeFileAtomically(folder.at("state"), "new");
    writeFileAtomically(folder.at("fresh"), "made");
    EXPECT_THAT(folder.listing(),
                ElementsAre("dotfiles/", "dotfiles/fresh", "dotfiles/state", "fresh@", "state@"));
    EXPECT_EQ(folder.content("dotfiles/state"), "new");
    EXPECT_EQ(folder.content("dotfiles/fresh"), "made");
}

TEST(StateFile, keepsTheOldContentWhenItCannotWrite) {
    const TemporaryFolder folder;
    const FileURL file = folder.makeFile("state", "old");
    folder.makeFolder("folder");
    folder.makeLink("lost", "nowhere/state");
    EXPECT_EXIT(writeBeyondALimit(file), ::testing::ExitedWithCode(EFBIG), "");
    EXPECT_EQ(errorOf([&] { writeFileAtomically(folder.at("folder"), "x"); }), EISDIR);
    EXPECT_EQ(errorOf([&] { writeFileAtomically(folder.at("none/state"), "x"); }), ENOENT);
    EXPECT_EQ(errorOf([&] { writeFileAtomically(folder.at("lost"), "x"); }), ENOENT);
    EXPECT_EQ(folder.content("state"), "old");
    EXPECT_THAT(folder.listing(), ElementsAre("folder/", "lost@", "state"));
}

TEST(StateFile, cannotWriteIntoALockedFolder) {
    if (geteuid() == 0) {
        GTEST_SKIP() << "the superuser may write anywhere";
    }
    const TemporaryFolder folder;
    const FileURL file = folder.makeFile("locked/state", "old");
    chmod(folder.at("locked").path().c_str(), 0500);
    EXPECT_EQ(errorOf([&] { writeFileAtomically(file, "new"); }), EACCES);
    EXPECT_EQ(errorOf([&] { createDirectories(folder.at("locked/a/b")); }), EACCES);
    EXPECT_THAT(folder.listing("locked"), ElementsAre("state"));
    EXPECT_EQ(folder.content("locked/state"), "old");
}

TEST(StateFile, aReaderNeverSeesHalfAFile) {
    const TemporaryFolder folder;
    const FileURL file = folder.makeFile("state", std::string(200'000, 'a'));
    Task writer([&] {
        for (int i = 0; i < 20; ++i) {
            writeFileAtomically(file, std::string(200'000, static_cast<char>('b' + i)));
        }
    });
    do {
        const auto content = readFile(file);
        ASSERT_TRUE(content);
        ASSERT_EQ(*content, std::string(200'000, content->front()));
    } while (!writer.isFinished());
    writer.wait();
}

TEST(StateFile, readsOnlyRegularFiles) {
    const TemporaryFolder folder;
    folder.makeFile("file/inside");
    folder.makeLink("dangling", "nowhere");
    folder.makeLink("cycle", "cycle");
    mkfifo(folder.at("fifo").path().c_str(), 0600);
    EXPECT_EQ(readFile(folder.at("none")), std::nullopt);
    EXPECT_EQ(readFile(folder.at("dangling")), std::nullopt);
    const std::pair<const char*, int> rows[] = {
        {"file", EISDIR}, {"fifo", EINVAL}, {"cycle", ELOOP}, {"file/inside/deeper", ENOTDIR}};
    for (const auto& [name, error] : rows) {
        EXPECT_EQ(errorOf([&] { (void)readFile(folder.at(name)); }), error) << name;
    }
}

TEST(StateFile, makesMissingFoldersForTheUserAlone) {
    const TemporaryFolder folder;
    folder.makeFile("file");
    folder.makeFolder("real");
    folder.makeLink("link", "real");
    createDirectories(folder.at("a/b/c"));
    createDirectories(folder.at("a/b"));
    createDirectories(folder.at("link"));
    createDirectories(folder.at("link/below/"));
    createDirectories(FileURL("/"));
    EXPECT_EQ(modeOf(folder.at("a")), 0700U);
    EXPECT_EQ(modeOf(folder.at("a/b/c")), 0700U);
    EXPECT_TRUE(folder.exists("real/below"));
    EXPECT_EQ(errorOf([&] { createDirectories(folder.at("file")); }), ENOTDIR);
    EXPECT_EQ(errorOf([&] { createDirectories(folder.at("file/below")); }), ENOTDIR);
}

TEST(FolderLock, excludesEveryOtherHolder) {
    const TemporaryFolder folder;
    const FileDescriptor other(open(folder.path().c_str(), O_RDONLY | O_DIRECTORY));
    {
        const FolderLock lock(folder.url());
        EXPECT_EQ(flock(other.get(), LOCK_EX | LOCK_NB), -1);
        EXPECT_EQ(errno, EWOULDBLOCK);
    }
    EXPECT_EQ(flock(other.get(), LOCK_EX | LOCK_NB), 0);
    EXPECT_TRUE(folder.listing().empty()) << "no lock file";
    EXPECT_EQ(errorOf([&] { const FolderLock lock(folder.at("none")); }), ENOENT);
}

TEST(FolderLock, waitsForItsTurn) {
    const TemporaryFolder folder;
    int counter = 0; // guarded by nothing but the lock
    concurrentPerform(200, [&](std::size_t) {
        const FolderLock lock(folder.url());
        ++counter;
    });
    EXPECT_EQ(counter, 200);
}

} // namespace
} // namespace korvane
