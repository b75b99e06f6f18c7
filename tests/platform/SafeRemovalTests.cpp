#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/platform/FileManager.h"
#include "KorvaneCore/platform/linux/FolderStack.h"
#include "KorvaneCore/platform/linux/MountTable.h"
#include "KorvaneCore/platform/linux/SafeRemoval.h"
#include "tests/support/Sandbox.h"
#include "tests/support/TemporaryFolder.h"

#include <atomic>
#include <filesystem>
#include <thread>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvane::testing {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// `levels` folders, one in the other, each with a file beside it. Goes by descriptors, because no
/// path reaches the deepest ones.
void makeDeepTree(const FileURL& top, std::size_t levels, std::size_t nameLength = 100) {
    const std::string name(nameLength, 'd');
    FileDescriptor folder(open(top.path().c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    for (std::size_t level = 0; level < levels; ++level) {
        ASSERT_EQ(mkdirat(folder.get(), name.c_str(), 0700), 0);
        const FileDescriptor file(
            openat(folder.get(), "file", O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
        folder = FileDescriptor(openat(folder.get(), name.c_str(), O_PATH | O_CLOEXEC));
    }
}

/// Asks a file manager of its own: one made before a child got mounts of its own knows the old
/// ones.
std::string reasonOf(const FileURL& url) {
    try {
        FileManager::withHomeTrash(FileURL("/nowhere"))->removeItem(url);
        return "";
    } catch (const FileError& error) {
        return std::to_string(error.posixError()) + " " + error.reason();
    }
}

} // namespace

TEST(SafeRemoval, takesEverythingInTheTreeAndNothingThatLinksPointTo) {
    const TemporaryFolder folder;
    folder.makeFile("precious/letter");
    folder.makeLink("tree/to folder", "../precious");
    folder.makeLink("tree/to file", "../precious/letter");
    folder.makeLink("tree/up", "..");
    folder.makeLink("tree/dangling", "nowhere");
    for (const std::string& name :
         {std::string("-rf"), std::string(".hidden"), std::string("line\nfeed"),
          std::string("not \xFFutf8"), std::string(255, 'n'), std::string("a/b/c/d/file")}) {
        folder.makeFile("tree/" + name);
    }
    folder.makeFolder("tree/empty");
    ASSERT_EQ(mkfifo(folder.at("tree/a/pipe").path().c_str(), 0600), 0);
    folder.makeLink("alias", "tree");

    FileManager& manager = FileManager::standard();
    manager.removeItem(FileURL(folder.path() + "/alias/"));
    EXPECT_TRUE(folder.exists("tree/up"))
        << "a trailing slash must not turn a link into its target";
    manager.removeItem(folder.at("tree"));

    EXPECT_THAT(folder.listing(), ElementsAre("precious/", "precious/letter"));
}

TEST(SafeRemoval, refusesPathsThatNameNoItemInAFolder) {
    const TemporaryFolder folder;
    folder.makeFile("a/b");
    for (const std::string& path :
         {std::string(), std::string("/"), std::string("//"), std::string("a"), std::string("."),
          folder.path() + "/a/.", folder.path() + "/a/..", folder.path() + "/a/../a/b",
          folder.path() + "/a" + std::string(1, '\0') + "b"}) {
        EXPECT_EQ(errorOf([&] { FileManager::standard().removeItem(FileURL(path)); }), EINVAL)
            << path;
    }
    EXPECT_EQ(reasonOf(folder.at("gone")),
              "2 Could not remove " + folder.path() + "/gone: No such file or directory");
    EXPECT_EQ(errorOf([&] { FileManager::standard().removeItem(folder.at("gone/x")); }), ENOENT);
    EXPECT_EQ(errorOf([&] { FileManager::standard().removeItem(folder.at("a/b/x")); }), ENOTDIR);
    EXPECT_THAT(folder.listing(), ElementsAre("a/", "a/b"));
}

TEST(SafeRemoval, handlesTreesDeeperThanDescriptorsAndPathsReach) {
    const TemporaryFolder folder(quickPlace());
    makeDeepTree(folder.makeFolder("tree"), 5000);
    for (int i = 0; i < 3000; ++i) {
        folder.makeFolder("tree/wide/" + std::to_string(i));
    }
    expectInChild([&] {
        const rlimit few{64, 64};
        setrlimit(RLIMIT_NOFILE, &few);
        return reasonOf(folder.at("tree"));
    });
    EXPECT_THAT(folder.listing(), IsEmpty());
}

TEST(SafeRemoval, removesAnItemWhosePathIsLongerThanOneCallTakes) {
    const TemporaryFolder folder;
    makeDeepTree(folder.makeFolder("tree"), 60);
    std::string path = folder.path() + "/tree";
    for (int level = 0; level < 60; ++level) {
        path += "/" + std::string(100, 'd');
    }
    FileManager& manager = FileManager::standard();
    EXPECT_TRUE(manager.itemExists(FileURL(path)));
    manager.removeItem(FileURL(path));
    EXPECT_FALSE(manager.itemExists(FileURL(path)));
    EXPECT_TRUE(manager.itemExists(FileURL(path).deletingLastPathComponent()));
}

TEST(SafeRemoval, neverFollowsALinkThatIsSwappedInMeanwhile) {
    const TemporaryFolder folder(quickPlace());
    folder.makeFile("precious/victim/letter");
    folder.makeFile("precious/deep/er/letter");
    const auto before = folder.listing("precious");
    for (int round = 0; round < 150; ++round) {
        for (int i = 0; i < 10; ++i) {
            folder.makeFile("above/tree/" + std::to_string(i) + "/victim/letter");
        }
        // The parent, a folder in the middle and the item itself change places with links.
        folder.makeLink("decoy-above", "precious");
        folder.makeLink("decoy-5", "precious");
        std::atomic<bool> isDone = false;
        std::jthread swapper([&] {
            const auto swap = [&](std::string_view a, std::string_view b) {
                renameat2(AT_FDCWD, folder.at(a).path().c_str(), AT_FDCWD,
                          folder.at(b).path().c_str(), RENAME_EXCHANGE);
            };
            while (!isDone) {
                swap("above/tree/5", "decoy-5");
                swap("above", "decoy-above");
                swap("above", "decoy-above");
                swap("above/tree/5", "decoy-5");
            }
        });
        static_cast<void>(reasonOf(folder.at("above/tree")));
        isDone = true;
        swapper.join();
        ASSERT_EQ(folder.listing("precious"), before) << "round " << round;
        for (const char* name : {"above", "decoy-above", "decoy-5"}) {
            std::filesystem::remove_all(folder.at(name).path());
        }
    }
}

TEST(FolderStack, refusesToGoOnInAnotherFolderThanItCameFrom) {
    const TemporaryFolder folder;
    const FileDescriptor base(open(folder.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    FolderStack stack(base.get());
    for (int level = 0; level < 60; ++level) {
        ASSERT_EQ(mkdirat(stack.descriptor(), "d", 0700), 0);
        ASSERT_EQ(stack.enter(FileDescriptor(openat(stack.descriptor(), "d", O_RDONLY)), "d"), 0);
    }
    // Level 10, closed by now, is moved; the folder above it is another one afterwards.
    std::string tenth = folder.path();
    for (int level = 0; level < 10; ++level) {
        tenth += "/d";
    }
    folder.makeFolder("elsewhere");
    std::filesystem::rename(tenth, folder.path() + "/elsewhere/d");
    int error = 0;
    std::string name;
    while (error == 0 && !stack.isAtBase()) {
        error = stack.leave(name);
    }
    EXPECT_EQ(error, ESTALE);
    EXPECT_EQ(stack.depth(), 10U);
}

TEST(MountTable, readsTheKernelsLinesWithTheirEscapes) {
    const auto mounts = MountTable::parse(
        "22 1 254:0 / / rw,relatime shared:1 - ext4 /dev/vda rw\n"
        "23 22 0:21 /root /mnt/a\\040b\\134040\\012c rw - tmpfs tmpfs rw,size=1k\n"
        "\nno number here at all\n24 22 0:9 net:[4026532] unreachable rw - nsfs nsfs rw\n");
    EXPECT_THAT(mounts,
                ElementsAre(MountTable::Mount{22, "/"}, MountTable::Mount{23, "/mnt/a b\\040\nc"}));
}

TEST(SafeRemoval, failsAnItemWithAMountInsideBeforeAnythingGoes) {
    const TemporaryFolder folder;
    expectInChild([&]() -> std::string {
        enterPrivateMounts();
        folder.makeFile("precious/letter");
        folder.makeFile("tree/1/file");
        folder.makeFile("tree-2/file");
        folder.makeFile("tree/z mount \\/file");
        folder.makeFile("file");
        MountTable beforeTheMount;
        beforeTheMount.refuseMountsWithin(folder.at("tree").path(), ItemAction::remove);
        bindMount(folder.at("precious").path(), folder.at("tree/z mount \\").path());
        bindMount(folder.at("precious/letter").path(), folder.at("file").path());
        const auto before = folder.listing();

        const std::string where = folder.at("tree/z mount \\").path();
        std::string reason = reasonOf(folder.at("tree"));
        if (!reason.starts_with("18 ") || !reason.ends_with("mounted inside it, at " + where)) {
            return "tree: " + reason;
        }
        for (const char* item : {"tree/z mount \\", "file"}) {
            reason = reasonOf(folder.at(item));
            if (!reason.ends_with("another file system is mounted there")) {
                return std::string(item) + ": " + reason;
            }
        }
        const int known = errorOf([&] {
            beforeTheMount.refuseMountsWithin(folder.at("tree").path(), ItemAction::remove);
        });
        if (known != EXDEV || folder.listing() != before) {
            return "the table kept an old state, or something went";
        }
        // Even with nobody asking the table, the mount itself is not entered.
        const FileDescriptor parent(open(folder.path().c_str(), O_PATH | O_CLOEXEC));
        const int belt = errorOf([&] { removeTree(parent.get(), "tree", folder.path()); });
        if (belt != EXDEV || !folder.exists("precious/letter")) {
            return "the mount was entered: " + std::to_string(belt);
        }
        return reasonOf(folder.at("tree-2"));
    });
}

TEST(SafeRemoval, namesTheFirstEntryThatWouldNotGoAndKeepsTheCode) {
    const TemporaryFolder folder;
    std::filesystem::permissions(folder.path(), std::filesystem::perms(0777));
    folder.makeFile("tree/locked/file");
    folder.makeFile("tmp/theirs");
    folder.makeFile("tmp/open/file");
    std::filesystem::permissions(folder.at("tmp/open").path(), std::filesystem::perms(0777));
    std::filesystem::permissions(folder.at("tmp").path(), std::filesystem::perms(01777));
    expectInChild([&]() -> std::string {
        becomeOrdinaryUser();
        const std::string locked = folder.at("tree/locked/file").path();
        if (reasonOf(folder.at("tree")) !=
            "13 Could not remove " + locked + ": Permission denied") {
            return reasonOf(folder.at("tree"));
        }
        // What must stay itself loses nothing that is inside it.
        for (const char* name : {"tmp/theirs", "tmp/open"}) {
            const std::string sticky = reasonOf(folder.at(name));
            if (!sticky.starts_with("1 ")) {
                return sticky;
            }
        }
        return "";
    });
    EXPECT_TRUE(folder.exists("tree/locked/file"));
    EXPECT_TRUE(folder.exists("tmp/open/file"));
    EXPECT_TRUE(folder.exists("tmp/theirs"));
    const TemporaryFolder mounted;
    expectInChild([&]() -> std::string {
        enterPrivateMounts();
        mountTmpfs(mounted.path());
        mounted.makeFile("tree/file");
        mountReadOnly(mounted.path());
        const std::string reason = reasonOf(mounted.at("tree"));
        return reason.starts_with("30 ") && mounted.exists("tree/file") ? "" : reason;
    });
}

} // namespace korvane::testing
