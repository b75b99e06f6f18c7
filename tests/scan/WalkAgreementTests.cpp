#include "KorvaneCore/scan/FileSystemWalker.h"
#include "tests/scan/WalkTestSupport.h"

#include <algorithm>
#include <filesystem>
#include <random>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck.h>

namespace korvane {
namespace {

namespace fs = std::filesystem;
using korvane::testing::expectTotalAgrees;
using korvane::testing::TemporaryFolder;
using korvane::testing::walked;
using korvane::testing::Walked;
using korvane::testing::WithoutPrivileges;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr auto proceed = WalkDecision::proceed;

/// Lays out a random tree: hidden names, links, empty folders, names of any bytes.
void makeRandomTree(const TemporaryFolder& folder, unsigned seed, int entries) {
    std::mt19937 dice(seed);
    std::vector<std::string> folders{"top"};
    folder.makeFolder("top");
    for (int i = 0; i < entries; ++i) {
        const std::string parent = folders[dice() % folders.size()];
        std::string name = parent + (dice() % 6 == 0 ? "/." : "/");
        name += "aZ~\xE9 \n"[dice() % 6];
        name += std::to_string(i);
        switch (dice() % 8) {
        case 0:
        case 1:
            folder.makeFolder(name);
            folders.push_back(name);
            break;
        case 2:
            folder.makeLink(name, folder.path() + "/" + folders[dice() % folders.size()]);
            break;
        default:
            folder.makeFileOfSize(name, dice() % 9000);
        }
    }
}

struct Expected {
    std::vector<std::string> lines;
    std::int64_t logical = 0;
    std::int64_t allocated = 0;
};

// The plain, recursive way over the standard library.
void expectBelow(const fs::path& path, std::int64_t depth, const WalkOptions& options,
                 Expected& expected) {
    std::vector<fs::path> children;
    for (const auto& entry : fs::directory_iterator(path)) {
        children.push_back(entry.path());
    }
    std::sort(children.begin(), children.end(), [](const fs::path& a, const fs::path& b) {
        return a.filename().string() < b.filename().string();
    });
    for (const fs::path& child : children) {
        const std::string name = child.filename().string();
        if (name.starts_with('.') && !options.includeHidden) {
            continue;
        }
        struct stat facts {};
        ASSERT_EQ(lstat(child.c_str(), &facts), 0);
        const bool isFolder = S_ISDIR(facts.st_mode);
        expected.lines.push_back(std::to_string(depth) + child.string() + (isFolder ? "/" : ""));
        if (S_ISREG(facts.st_mode)) {
            expected.logical += facts.st_size;
            expected.allocated += facts.st_blocks * 512;
        }
        if (isFolder && (!options.maxDepth || depth < *options.maxDepth) &&
            !options.pruneDirectoryNames.contains(name)) {
            expectBelow(child, depth + 1, options, expected);
        }
    }
}

void expectLikeTheOracle(const FileURL& root, const WalkOptions& options) {
    Expected expected;
    expected.lines.push_back("0" + root.path() + "/");
    if (!options.maxDepth || *options.maxDepth > 0) {
        expectBelow(root.path(), 1, options, expected);
    }
    std::vector<std::string> lines;
    const FileSystemWalker walker(options);
    const auto summary = walker.walk(root, nullptr, [&](const WalkEntry& entry) {
        lines.push_back(std::to_string(entry.depth) + entry.url.path() +
                        (entry.isDirectory ? "/" : ""));
        return proceed;
    });
    EXPECT_EQ(lines, expected.lines);
    EXPECT_EQ(summary.entriesVisited, static_cast<std::int64_t>(lines.size()));
    EXPECT_EQ(walker.totalSize(root), std::pair(expected.logical, summary));
}

TEST(FileSystemWalker, agreesWithAPlainRecursion) {
    rc::check([](unsigned seed, bool hidden, std::uint8_t depth, std::uint8_t pruned) {
        const TemporaryFolder folder;
        makeRandomTree(folder, seed, 40);
        WalkOptions options{.includeHidden = hidden};
        if (depth < 5) {
            options.maxDepth = depth;
        }
        for (const char* letter : {"a", "Z", "~"}) {
            options.pruneDirectoryNames.insert(letter + std::to_string(pruned % 40));
        }
        expectLikeTheOracle(folder.at("top"), options);
        RC_ASSERT(!::testing::Test::HasFailure());
    });
}

TEST(FileSystemWalker, comesToTheSameOnSeveralThreads) {
    const TemporaryFolder folder;
    makeRandomTree(folder, 7, 3500);
    const FileURL root = folder.at("top");
    for (const bool hidden : {false, true}) {
        expectLikeTheOracle(root, {.includeHidden = hidden});
    }
    const FileSystemWalker walker;
    const auto [total, summary] = walker.totalSize(root);
    const auto measured = walker.measure(std::vector(5, root));
    ASSERT_EQ(measured.size(), 5U);
    EXPECT_TRUE(std::all_of(measured.begin(), measured.end(),
                            [&](const WalkEntry& one) { return one.sizeBytes == total; }));
    // Cancelled at any moment it ends with a part of the whole, and says so.
    for (int i = 0; i < 20; ++i) {
        WalkCancellation token;
        std::thread other([&] {
            std::this_thread::sleep_for(std::chrono::microseconds(200 * i));
            token.cancel();
        });
        const auto [part, partSummary] = walker.totalSize(root, &token);
        other.join();
        EXPECT_EQ(partSummary.cancelled, partSummary.entriesVisited < summary.entriesVisited);
        EXPECT_LE(part, total);
    }
}

TEST(FileSystemWalker, reportsErrorsInPathOrderFromSeveralThreads) {
    const TemporaryFolder folder;
    // Enough before them that further threads have started.
    for (int i = 0; i < 2100; ++i) {
        folder.makeFile("bulk/" + std::to_string(i), "");
    }
    constexpr int folders = 90;
    for (int i = 0; i < folders; ++i) {
        const std::string name = "f" + std::to_string(i);
        folder.makeFile(name + "/sub/locked/unseen");
        folder.makeFile(name + "/sub/file");
        folder.makeFolder(name + "/sub.b");
    }
    if (!WithoutPrivileges::own(folder)) {
        GTEST_SKIP() << "the temporary folder lets no other user in";
    }
    for (int i = 0; i < folders; i += 3) {
        const std::string name = "f" + std::to_string(i);
        fs::permissions(folder.at(name + "/sub/locked").path(), fs::perms::none);
        fs::permissions(folder.at(name + "/sub.b").path(), fs::perms::none);
    }
    const WithoutPrivileges guard;
    const Walked walk = walked(folder.url());
    EXPECT_EQ(walk.summary.errors.size(), folders / 3 * 2U);
    expectTotalAgrees(folder.url(), {}, walk);
}

TEST(FileSystemWalker, measuresInTheOrderAsked) {
    const TemporaryFolder folder;
    folder.makeFile("a/one", "123");
    folder.makeFile("a/.unseen", "12345");
    folder.makeFile("b", "1234567");
    folder.setModified("b", 1'700'000'000);
    const std::vector urls{folder.at("b"), folder.at("missing"), folder.at("a"), folder.at("b")};
    for (const bool follow : {false, true}) {
        const auto entries = FileSystemWalker({.followSymlinks = follow}).measure(urls);
        ASSERT_EQ(entries.size(), 4U);
        EXPECT_EQ(entries[0],
                  (WalkEntry{urls[0], true, false, 7, Date::fromUnixSeconds(1'700'000'000), -1}));
        EXPECT_EQ(entries[1], (WalkEntry{urls[1], true, false, 0, std::nullopt, -1}));
        EXPECT_EQ(entries[2].sizeBytes, 3);
        EXPECT_EQ(entries[3], entries[0]);
    }
}

TEST(FileSystemWalker, findsFoldersByName) {
    const TemporaryFolder folder;
    folder.makeFile("build/x/build/file", "12");
    folder.makeFile("src/target/file", "1234");
    folder.makeFile("src/build", "a file of that name");
    folder.makeFile(".venv/file");
    folder.makeLink("target", "src");
    const auto find = [&](const std::set<std::string>& names, const char* root) {
        std::vector<std::string> found;
        for (const WalkEntry& entry : FileSystemWalker().findFolders(names, folder.at(root))) {
            EXPECT_EQ(entry.depth, -1);
            found.push_back(entry.url.path().substr(folder.path().size()) + " " +
                            std::to_string(entry.sizeBytes));
        }
        return found;
    };
    EXPECT_THAT(find({"build", "target", ".venv"}, ""), ElementsAre("/build 2", "/src/target 4"));
    EXPECT_THAT(find({"build"}, "build"), ElementsAre("/build 2"));
    EXPECT_THAT(find({}, ""), IsEmpty());
}

TEST(FileSystemWalker, keepsTheLargestFiles) {
    const TemporaryFolder folder;
    for (const auto& [name, size] : {std::pair("a", 5U),
                                     {"b", 9U},
                                     {"c/d", 9U},
                                     {"e", 2U},
                                     {"f", 9U},
                                     {".g", 99U},
                                     {"h", 5U}}) {
        folder.makeFileOfSize(name, size);
    }
    folder.makeLink("link", std::string(50, 'x'));
    struct Row {
        std::int64_t minimum;
        std::size_t limit;
        std::string names;
    };
    const Row rows[] = {{0, 0, ""},
                        {0, 1, "b"},
                        {0, 2, "bd"},
                        {0, 4, "bdfa"},
                        {5, 9, "bdfah"},
                        {6, 9, "bdf"},
                        {0, SIZE_MAX, "bdfahe"},
                        {10, 9, ""}};
    for (const Row& row : rows) {
        std::string names;
        for (const auto& entry :
             FileSystemWalker().largestFiles(folder.url(), row.minimum, row.limit)) {
            names += entry.url.lastPathComponent();
        }
        EXPECT_EQ(names, row.names) << row.minimum << ", " << row.limit;
    }
}

} // namespace
} // namespace korvane
