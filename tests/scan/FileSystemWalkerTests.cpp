#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/scan/FileSystemWalker.h"
#include "tests/scan/WalkTestSupport.h"

#include <algorithm>
#include <filesystem>
#include <thread>

#include <fcntl.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvane {
namespace {

namespace fs = std::filesystem;
using korvane::testing::expectTotalAgrees;
using korvane::testing::openDescriptors;
using korvane::testing::TemporaryFolder;
using korvane::testing::walked;
using korvane::testing::Walked;
using korvane::testing::WithoutPrivileges;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

constexpr auto proceed = WalkDecision::proceed;

TEST(FileSystemWalker, visitsWhatTheOptionsSay) {
    const TemporaryFolder folder;
    folder.makeFile("B", "12");
    folder.makeFile("A", "1");
    folder.makeFile("a/x", "1234");
    folder.makeFile("a.b", "12345678");
    folder.makeFile("node_modules/deep/node_modules/file", std::string(16, 'x'));
    folder.makeFile(".hidden/seen", std::string(32, 'x'));
    folder.makeFile("a/.hidden", std::string(64, 'x'));
    folder.makeFile("bytes \xFF\n/\xC3", std::string(128, 'x'));
    folder.makeLink("toFolder", "a");
    folder.makeLink("toFile", "B");
    folder.makeLink("dangling", "nowhere");
    ASSERT_EQ(mkfifo(folder.at("pipe").path().c_str(), 0600), 0);

    const auto expectVisits = [&](const char* name, const WalkOptions& options,
                                  const std::vector<std::string>& lines) {
        SCOPED_TRACE(name);
        const Walked walk = walked(folder.url(), options);
        EXPECT_THAT(walk.lines, ElementsAreArray(lines));
        EXPECT_EQ(walk.summary.entriesVisited, static_cast<std::int64_t>(lines.size()));
        expectTotalAgrees(folder.url(), options, walk);
    };
    expectVisits("defaults", {},
                 {"0 ./", "1 A", "1 B", "1 a/", "2 a/x", "1 a.b", "1 bytes \xFF\n/",
                  "2 bytes \xFF\n/\xC3", "1 dangling@", "1 node_modules/", "2 node_modules/deep/",
                  "3 node_modules/deep/node_modules/", "4 node_modules/deep/node_modules/file",
                  "1 pipe", "1 toFile@", "1 toFolder@"});
    expectVisits("hidden, pruned below depth 0",
                 {.includeHidden = true, .pruneDirectoryNames = {"node_modules", "toFile", "a.b"}},
                 {"0 ./", "1 .hidden/", "2 .hidden/seen", "1 A", "1 B", "1 a/", "2 a/.hidden",
                  "2 a/x", "1 a.b", "1 bytes \xFF\n/", "2 bytes \xFF\n/\xC3", "1 dangling@",
                  "1 node_modules/", "1 pipe", "1 toFile@", "1 toFolder@"});
    expectVisits("depth 0", {.maxDepth = 0}, {"0 ./"});
    expectVisits("depth 1", {.maxDepth = 1},
                 {"0 ./", "1 A", "1 B", "1 a/", "1 a.b", "1 bytes \xFF\n/", "1 dangling@",
                  "1 node_modules/", "1 pipe", "1 toFile@", "1 toFolder@"});
    expectVisits("links followed, each folder once",
                 {.followSymlinks = true, .pruneDirectoryNames = {"deep"}},
                 {"0 ./", "1 A", "1 B", "1 a/", "2 a/x", "1 a.b", "1 bytes \xFF\n/",
                  "2 bytes \xFF\n/\xC3", "1 dangling@", "1 node_modules/", "2 node_modules/deep/",
                  "1 pipe", "1 toFile@", "1 toFolder/@"});
}

TEST(FileSystemWalker, treatsTheRootByItsOwnRules) {
    const TemporaryFolder folder;
    folder.makeFile(".Trash/seen", "123");
    folder.makeFile(".Trash/.unseen");
    folder.makeLink("link", ".Trash");
    folder.makeFile("plain", "12345");
    const auto expectVisits = [&](const char* root, const WalkOptions& options,
                                  const std::vector<std::string>& lines) {
        SCOPED_TRACE(root);
        const Walked walk = walked(folder.at(root), options);
        EXPECT_THAT(walk.lines, ElementsAreArray(lines));
        expectTotalAgrees(folder.at(root), options, walk);
    };
    expectVisits(".Trash", {.pruneDirectoryNames = {".Trash"}}, {"0 ./", "1 seen"});
    expectVisits("plain", {}, {"0 ."});
    expectVisits("link", {}, {"0 .@"});
    expectVisits("link", {.followSymlinks = true}, {"0 ./@", "1 seen"});
    expectVisits("missing", {}, {"!.: No such file or directory"});
    expectVisits("plain/below", {}, {"!.: Not a directory"});
    // "." and ".." are taken out of the root before anything is looked at.
    const auto summary = FileSystemWalker().walk(folder.at("no/../such/./gone"), nullptr,
                                                 [](const WalkEntry&) { return proceed; });
    ASSERT_EQ(summary.errors.size(), 1U);
    EXPECT_EQ(summary.errors[0].url, folder.at("such/gone"));
}

TEST(FileSystemWalker, tellsTheFactsOfEachItem) {
    const TemporaryFolder folder;
    folder.makeFile("file", "12345");
    folder.setModified("file", 1'700'000'000.25);
    folder.makeLink("link", "file");
    folder.setModified("link", 1'600'000'000);
    folder.makeFolder("sub");
    std::vector<WalkEntry> entries;
    FileSystemWalker().walk(folder.url(), nullptr, [&](const WalkEntry& entry) {
        entries.push_back(entry);
        return proceed;
    });
    ASSERT_EQ(entries.size(), 4U);
    EXPECT_EQ(entries[1], (WalkEntry{folder.at("file"), false, false, 5,
                                     Date::fromTimespec({1'700'000'000, 250'000'000}), 1}));
    EXPECT_EQ(entries[2], (WalkEntry{folder.at("link"), false, true, 4,
                                     Date::fromUnixSeconds(1'600'000'000), 1}));
    EXPECT_TRUE(entries[3].isDirectory);
    EXPECT_EQ(entries[3].sizeBytes, 0);
}

TEST(FileSystemWalker, obeysTheVisitor) {
    const TemporaryFolder folder;
    folder.makeFile("a/inner");
    folder.makeFile("b/inner");
    folder.makeFile("c");
    std::vector<std::string> seen;
    const auto summary =
        FileSystemWalker().walk(folder.url(), nullptr, [&](const WalkEntry& entry) {
            seen.emplace_back(entry.url.lastPathComponent());
            return seen.back() == "a"   ? WalkDecision::skipDescendants
                   : seen.back() == "b" ? WalkDecision::stop
                                        : proceed;
        });
    EXPECT_EQ(summary, (WalkSummary{.entriesVisited = 3, .stopped = true}));
    EXPECT_EQ(seen.back(), "b");
}

TEST(FileSystemWalker, endsAtTheNextItemWhenCancelled) {
    const TemporaryFolder folder;
    for (int i = 0; i < 20; ++i) {
        folder.makeFile("file" + std::to_string(i));
    }
    WalkCancellation token;
    int visited = 0;
    const FileSystemWalker walker;
    const auto cancelAtFifth = [&](const WalkEntry&) {
        if (++visited == 5) {
            std::thread([&] { token.cancel(); }).join();
        }
        return proceed;
    };
    const WalkSummary fifth{.entriesVisited = 5, .cancelled = true};
    const WalkSummary none{.cancelled = true};
    EXPECT_EQ(walker.walk(folder.url(), &token, cancelAtFifth), fifth);
    EXPECT_EQ(walker.walk(folder.at("missing"), &token, cancelAtFifth), none);
    EXPECT_EQ(walker.totalSize(folder.url(), &token), std::pair(std::int64_t{0}, none));
    EXPECT_THAT(walker.measure(std::vector{folder.url()}, &token), IsEmpty());

    visited = 0;
    Task task([&] {
        const auto cancelTask = [&](const WalkEntry&) {
            if (++visited == 5) {
                Task::cancel(*Task::current());
            }
            return proceed;
        };
        EXPECT_EQ(walker.walk(folder.url(), nullptr, cancelTask), fifth);
        EXPECT_EQ(walker.totalSize(folder.url()), std::pair(std::int64_t{0}, none));
    });
    task.wait();
}

TEST(FileSystemWalker, goesOnWhereSomethingCannotBeRead) {
    const TemporaryFolder folder;
    folder.makeFile("before", "1");
    folder.makeFile("listed only/.hidden");
    folder.makeFile("listed only/file", "12");
    folder.makeFolder("listed only/sub");
    folder.makeFile("locked/inner", "1234");
    folder.makeFile("tail", "12345678");
    if (!WithoutPrivileges::own(folder)) {
        GTEST_SKIP() << "the temporary folder lets no other user in";
    }
    fs::permissions(folder.at("locked").path(), fs::perms::none);
    fs::permissions(folder.at("listed only").path(), fs::perms::owner_read);
    const WithoutPrivileges guard;
    const Walked walk = walked(folder.url());
    EXPECT_THAT(walk.lines,
                ElementsAre("0 ./", "1 before", "1 listed only/", "1 locked/", "1 tail",
                            "!listed only/.hidden: Permission denied",
                            "!listed only/file: Permission denied",
                            "!listed only/sub: Permission denied", "!locked: Permission denied"));
    EXPECT_EQ(walk.fileBytes, 9);
    expectTotalAgrees(folder.url(), {}, walk);
}

TEST(FileSystemWalker, copesWithChangesMadeWhileItWalks) {
    const TemporaryFolder folder;
    folder.makeFile("a first");
    folder.makeFile("b gone");
    folder.makeFile("c swapped/inner");
    folder.makeFile("elsewhere/secret");
    std::vector<std::string> seen;
    const auto summary =
        FileSystemWalker().walk(folder.url(), nullptr, [&](const WalkEntry& entry) {
            seen.emplace_back(entry.url.lastPathComponent());
            if (seen.back() == "a first") {
                fs::remove(folder.at("b gone").path());
                folder.makeFile("b new");
            } else if (seen.back() == "c swapped") {
                fs::rename(entry.url.path(), folder.at("moved").path());
                folder.makeLink("c swapped", "elsewhere");
            }
            return proceed;
        });
    EXPECT_THAT(seen, ElementsAre(folder.url().lastPathComponent(), "a first", "c swapped",
                                  "elsewhere", "secret"));
    EXPECT_EQ(summary.errors,
              (std::vector<WalkError>{{folder.at("b gone"), "No such file or directory"},
                                      {folder.at("c swapped"), "Not a directory"}}));
}

TEST(FileSystemWalker, endsWhereLinksFormCycles) {
    const TemporaryFolder folder;
    folder.makeFile("a/file");
    folder.makeLink("a/up", "..");
    folder.makeLink("a/self", "self");
    folder.makeLink("b", "a");
    folder.makeLink("c", folder.path());
    EXPECT_THAT(walked(folder.url(), {.followSymlinks = true}).lines,
                ElementsAre("0 ./", "1 a/", "2 a/file", "2 a/self@", "2 a/up/@", "1 b/@", "1 c/@"));
}

/// A chain of folders far beyond what a path may be long, a file beside each of them. Taken down
/// level by level, which the usual ways to remove a tree cannot.
class DeepTree {
  public:
    DeepTree(const FileURL& folder, int levels) : top_(folder.path()), levels_(levels) {
        int current = open(top_.c_str(), O_RDONLY | O_DIRECTORY);
        for (int i = 0; i < levels; ++i) {
            close(openat(current, file, O_WRONLY | O_CREAT, 0600));
            EXPECT_EQ(mkdirat(current, name.c_str(), 0700), 0);
            current = into(current, name.c_str());
        }
        EXPECT_EQ(mkdirat(current, "target", 0700), 0);
        const int target = openat(current, "target", O_RDONLY | O_DIRECTORY);
        const int content = openat(target, file, O_WRONLY | O_CREAT, 0600);
        EXPECT_EQ(ftruncate(content, 5000), 0);
        close(content);
        close(target);
        close(current);
    }
    ~DeepTree() {
        int current = open(top_.c_str(), O_RDONLY | O_DIRECTORY);
        for (int i = 0; i < levels_; ++i) {
            current = into(current, name.c_str());
        }
        unlinkat(current, (std::string("target/") + file).c_str(), 0);
        unlinkat(current, "target", AT_REMOVEDIR);
        for (int i = 0; i < levels_; ++i) {
            current = into(current, "..");
            unlinkat(current, file, 0);
            unlinkat(current, name.c_str(), AT_REMOVEDIR);
        }
        close(current);
    }
    DeepTree(const DeepTree&) = delete;
    DeepTree& operator=(const DeepTree&) = delete;

    const std::string name = std::string(255, 'd');
    // Comes after the folder, so that every folder is needed again on the way up.
    static constexpr const char* file = "e";

  private:
    static int into(int parent, const char* child) {
        const int next = openat(parent, child, O_RDONLY | O_DIRECTORY);
        close(parent);
        return next;
    }

    std::string top_;
    int levels_;
};

TEST(FileSystemWalker, hasNoLimitOfDepth) {
    constexpr int levels = 600;
    const TemporaryFolder folder;
    const DeepTree tree(folder.url(), levels);
    const std::size_t before = openDescriptors();
    std::size_t most = 0;
    std::vector<std::int64_t> fileDepths;
    std::size_t longest = 0;
    for (const bool follow : {false, true}) {
        fileDepths.clear();
        const WalkOptions options{.followSymlinks = follow};
        const auto summary =
            FileSystemWalker(options).walk(folder.url(), nullptr, [&](const WalkEntry& entry) {
                longest = std::max(longest, entry.url.path().size());
                if (entry.depth == levels) {
                    most = std::max(most, openDescriptors());
                }
                if (!entry.isDirectory) {
                    fileDepths.push_back(entry.depth);
                }
                return proceed;
            });
        EXPECT_EQ(summary, (WalkSummary{.entriesVisited = 2 * levels + 3}));
        EXPECT_EQ(fileDepths.front(), levels + 2);
        EXPECT_EQ(fileDepths.back(), 1);
        EXPECT_EQ(FileSystemWalker(options).totalSize(folder.url()).first, 5000);
    }
    EXPECT_GT(longest, 256U * levels);
    EXPECT_LT(most, before + 64);
    EXPECT_EQ(openDescriptors(), before);

    const auto found = FileSystemWalker().findFolders({"target"}, folder.url());
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].sizeBytes, 5000);
    EXPECT_TRUE(found[0].lastModified);
}

TEST(FileSystemWalker, neverTakesAnotherFolderForTheOneItListed) {
    const TemporaryFolder folder;
    std::string path = "top";
    for (int i = 0; i < 60; ++i) {
        path += "/d";
        folder.makeFile(path + "/file");
    }
    std::vector<std::string> seen;
    const FileURL moved = folder.at("top/d/d/d");
    const auto summary =
        FileSystemWalker().walk(folder.at("top"), nullptr, [&](const WalkEntry& entry) {
            if (entry.depth == 61 && !entry.isDirectory) {
                fs::rename(moved.path(), folder.at("away").path());
                folder.makeFile("top/d/d/d/decoy");
                fs::rename(folder.at("top/d").path(), folder.at("top/renamed").path());
            }
            seen.push_back(entry.url.path());
            return proceed;
        });
    // The folders moved away are still the ones that were listed; the two above them are reached
    // neither through a child (which is elsewhere now) nor by name.
    EXPECT_EQ(summary.entriesVisited, 61 + 60 - 2);
    EXPECT_THAT(summary.errors,
                ElementsAre(WalkError{folder.at("top/d/d/file"), "No such file or directory"},
                            WalkError{folder.at("top/d/file"), "No such file or directory"}));
    EXPECT_TRUE(std::none_of(seen.begin(), seen.end(),
                             [](const std::string& one) { return one.ends_with("decoy"); }));
}

} // namespace
} // namespace korvane
