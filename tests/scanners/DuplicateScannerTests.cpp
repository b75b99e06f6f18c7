#include "KorvaneCore/foundation/Hashing.h"
#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/scanners/DuplicateScanner.h"
#include "tests/scan/WalkTestSupport.h"
#include "tests/support/Sandbox.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <random>
#include <set>
#include <span>
#include <system_error>
#include <thread>

#include <sys/resource.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::TemporaryFolder;

const std::string letters(4096, 'a');
const std::string aDigest = "c93eee2d0db02f10acc7460d9576e122dcf8cd53c4bf8dfcae1b3e74ebcfff5a";

/// The paths below the folder, groups divided by "--".
std::vector<std::string> lines(const ScanResult& result, const TemporaryFolder& folder) {
    std::vector<std::string> texts;
    std::string category;
    for (const ScanItem& item : result.items) {
        if (!category.empty() && item.category != category) {
            texts.emplace_back("--");
        }
        category = item.category;
        texts.push_back(item.path().substr(folder.path().size() + 1));
    }
    return texts;
}

std::vector<std::string> scanned(const TemporaryFolder& folder, std::int64_t minimum = 4096) {
    return lines(DuplicateScanner(folder.url(), minimum).scan(), folder);
}

TEST(DuplicateScanner, reportsEveryMemberOfAGroupNewestFirst) {
    const TemporaryFolder folder;
    folder.makeFile("older", letters);
    folder.makeFile("sub/newer", letters);
    folder.makeFile("sub/other", std::string(4095, 'a') + "b");
    folder.setModified("older", 1'700'000'000);
    folder.setModified("sub/newer", 1'700'000'000.25);
    const ScanResult result = DuplicateScanner(folder.url(), 4096).scan();
    EXPECT_EQ(result.scannerID, "duplicate-finder");
    ASSERT_THAT(lines(result, folder), ElementsAre("sub/newer", "older"));
    for (const ScanItem& item : result.items) {
        EXPECT_EQ(item.sizeBytes, 4096);
        EXPECT_EQ(item.category, aDigest);
        EXPECT_EQ(item.heuristicID, "duplicate-finder.duplicate");
        EXPECT_FALSE(item.isDirectory);
    }
    EXPECT_EQ(result.items[1].lastModified, Date::fromUnixSeconds(1'700'000'000));
    EXPECT_NE(result.items[0].id, result.items[1].id);
}

TEST(DuplicateScanner, keepsTheOrderOfTheWalkAmongEqualDates) {
    const TemporaryFolder folder;
    for (const std::string name : {"b", "a/z", "a.txt", "B", "c/d/e", "c/a"}) {
        folder.makeFile(name, letters);
        folder.setModified(name, 1'700'000'000);
    }
    folder.makeFile("a/second", letters + letters);
    folder.makeFile("second", letters + letters);
    folder.setModified("a/second", 1'600'000'000);
    EXPECT_THAT(scanned(folder),
                ElementsAre("B", "a/z", "a.txt", "b", "c/a", "c/d/e", "--", "second", "a/second"));
}

TEST(DuplicateScanner, comparesAllBytesAndNothingElse) {
    const TemporaryFolder folder;
    const std::string large(3'500'000, 'x');
    folder.makeFile("1", large);
    folder.makeFile("2", large.substr(1) + "y");
    folder.makeFile("3", "y" + large.substr(1));
    folder.makeFile("4/1", large);
    folder.makeFile("5", large + "x");
    folder.makeFile("small", std::string(4095, 'a'));
    folder.makeFile("small copy", std::string(4095, 'a'));
    folder.makeFile("empty");
    folder.makeFile("4/empty");
    folder.setModified("1", 1'600'000'000);
    EXPECT_THAT(scanned(folder), ElementsAre("4/1", "1"));
    EXPECT_EQ(scanned(folder, 4095).size(), 5U);
    EXPECT_EQ(scanned(folder, 0).size(), 8U);
}

TEST(DuplicateScanner, readsEveryByteWhereverABlockEnds) {
    const TemporaryFolder folder;
    std::mt19937 random(7); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same files every time
    std::set<std::string> digests;
    const std::vector<std::size_t> sizes{1,         4095,      65'535,    65'536,   65'537,
                                         1'048'575, 1'048'576, 1'048'577, 3'145'733};
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        std::string content(sizes[i], ' ');
        std::generate(content.begin(), content.end(),
                      [&] { return static_cast<char>(random() & 0xFFU); });
        folder.makeFile("a/" + std::to_string(i), content);
        folder.makeFile("b/" + std::to_string(sizes.size() - i), content);
        SHA256 sha256;
        sha256.update(std::as_bytes(std::span(content)));
        digests.insert(hexText(sha256.finish()));
    }
    std::multiset<std::string> found;
    for (const ScanItem& item : DuplicateScanner(folder.url(), 1).scan().items) {
        found.insert(item.category);
    }
    EXPECT_EQ(found.size(), 2 * sizes.size());
    EXPECT_EQ(std::set<std::string>(found.begin(), found.end()), digests);
}

TEST(DuplicateScanner, passesOverWhatIsNotTheUsersOwnFile) {
    const TemporaryFolder folder;
    const TemporaryFolder elsewhere;
    folder.makeFile("only", letters);
    elsewhere.makeFile("far/copy", letters);
    folder.makeLink("link", "only");
    folder.makeLink("linked folder", elsewhere.at("far").path());
    for (const std::string name :
         {".hidden", ".folder/x", "a/.git/x", "X.app/Contents/x", "X.APP/x", "x.framework/x",
          "x.xcframework/x", "x.bundle/x", "x.Plugin", "x.kext/x", "x.y.appex/x"}) {
        folder.makeFile(name, letters);
    }
    ASSERT_EQ(mkfifo(folder.at("pipe").path().c_str(), 0600), 0);
    EXPECT_THAT(scanned(folder, 0), IsEmpty());
    for (const std::string name : {"app", ".app.d/x", "x.apps", "x.app.d/x", "plugin/x"}) {
        folder.makeFile(name, letters);
    }
    EXPECT_EQ(scanned(folder).size(), 5U);
}

TEST(DuplicateScanner, entersARootThatIsALinkHiddenOrABundle) {
    const TemporaryFolder folder;
    folder.makeFile(".real.app/1", letters);
    folder.makeFile(".real.app/2", letters);
    folder.makeLink("link", ".real.app");
    for (const std::string root : {".real.app", "link"}) {
        const ScanResult result = DuplicateScanner(folder.at(root), 4096).scan();
        ASSERT_EQ(result.items.size(), 2U) << root;
        EXPECT_EQ(result.items[0].url.deletingLastPathComponent(), folder.at(root));
    }
    for (const std::string root : {".real.app/1", "missing"}) {
        EXPECT_THAT(DuplicateScanner(folder.at(root), 0).scan().items, IsEmpty()) << root;
    }
}

TEST(DuplicateScanner, findsCopiesAtAnyDepthUnderAnyName) {
    const TemporaryFolder folder;
    // Beyond the longest path of one system call and the folders that stay open: built outwards.
    folder.makeFile("inner/\xFF\n", letters);
    for (int level = 0; level < 60; ++level) {
        folder.makeFolder("outer");
        folder.makeFile("outer/z", std::to_string(level) + letters);
        std::filesystem::rename(folder.at("inner").path(),
                                folder.at("outer/" + std::string(100, 'd')).path());
        std::filesystem::rename(folder.at("outer").path(), folder.at("inner").path());
    }
    folder.makeFile("inner/y", letters);
    folder.makeFile("z", "0" + letters);
    const std::size_t descriptors = testing::openDescriptors();
    const ScanResult result = DuplicateScanner(folder.url(), 4096).scan();
    EXPECT_EQ(testing::openDescriptors(), descriptors);
    ASSERT_EQ(result.items.size(), 4U);
    std::set<std::string_view> names;
    for (const ScanItem& item : result.items) {
        names.insert(item.url.lastPathComponent());
    }
    EXPECT_THAT(names, ElementsAre("y", "z", "\xFF\n"));
}

TEST(DuplicateScanner, readsAFileWithTwoNamesAsTwoFiles) {
    const TemporaryFolder folder;
    folder.makeFile("1", letters);
    std::filesystem::create_hard_link(folder.at("1").path(), folder.at("2").path());
    folder.makeFile("3", letters);
    std::filesystem::create_hard_link(folder.at("3").path(), folder.at("0").path());
    folder.setModified("1", 1'700'000'000);
    folder.setModified("3", 1'600'000'000);
    EXPECT_THAT(scanned(folder), ElementsAre("1", "2", "0", "3"));
}

TEST(DuplicateScanner, neverTakesASecondViewOfAFileForACopy) {
    testing::expectInChild([] {
        testing::enterPrivateMounts();
        const TemporaryFolder folder;
        folder.makeFile("data/only", letters);
        folder.makeFile("data/twice", std::string(5000, 'b'));
        std::filesystem::create_hard_link(folder.at("data/twice").path(),
                                          folder.at("data/two").path());
        testing::bindMount(folder.path() + "/data", folder.makeFolder("view").path());
        const std::vector<std::string> found = scanned(folder);
        return found == std::vector<std::string>{"data/twice", "data/two"}
                   ? std::string()
                   : ::testing::PrintToString(found);
    });
}

TEST(DuplicateScanner, reportsEveryFiftiethFile) {
    const TemporaryFolder folder;
    std::vector<ScanProgress> reports;
    const auto scan = [&] {
        reports.clear();
        return DuplicateScanner(folder.url(), 1).scan([&](const ScanProgress& report) {
            reports.push_back(report);
        });
    };
    const ScanResult none = scan();
    EXPECT_THAT(reports, ElementsAre(ScanProgress{"Enumerating files…", 0.0}));
    EXPECT_LE(none.startedAt, none.finishedAt);
    EXPECT_NE(none.startedAt, Date());
    for (int i = 100; i < 225; ++i) {
        folder.makeFile("a/" + std::to_string(i) + "\xFF", std::to_string(i));
    }
    EXPECT_THAT(scan().items, IsEmpty());
    EXPECT_THAT(reports,
                ElementsAre(ScanProgress{"Enumerating files…", 0.0},
                            ScanProgress{"Hashing 100\\xFF…", 0.05},
                            ScanProgress{"Hashing 150\\xFF…", 0.05 + 0.85 * 50 / 125},
                            ScanProgress{"Hashing 200\\xFF…", 0.05 + 0.85 * 100 / 125},
                            ScanProgress{"Finding duplicates…", 0.92}, ScanProgress{"Done", 1.0}));
}

/// Scans while `act` happens at the report about the file `moment`.
ScanResult scannedWhile(const TemporaryFolder& folder, const std::string& moment,
                        const std::function<void()>& act) {
    return DuplicateScanner(folder.url(), 4096).scan([&](const ScanProgress& report) {
        if (report.message == "Hashing " + moment + "…") {
            act();
        }
    });
}

TEST(DuplicateScanner, leavesOutWhatChangesBeforeItIsRead) {
    const TemporaryFolder folder;
    for (const std::string name :
         {"0", "1", "gone", "grown", "link", "pipe", "swapped/x", "touched", "turned"}) {
        folder.makeFile(name, letters);
        folder.setModified(name, 1'700'000'000);
    }
    const ScanResult result = scannedWhile(folder, "0", [&] {
        for (const std::string name : {"gone", "link", "pipe", "turned"}) {
            std::filesystem::remove(folder.at(name).path());
        }
        folder.makeFile("grown", letters + "more");
        folder.setModified("grown", 1'700'000'000);
        folder.makeLink("link", "0");
        EXPECT_EQ(mkfifo(folder.at("pipe").path().c_str(), 0600), 0);
        std::filesystem::rename(folder.at("swapped").path(), folder.at("elsewhere").path());
        folder.makeLink("swapped", "elsewhere");
        folder.setModified("touched", 1'700'000'001);
        folder.makeFolder("turned");
    });
    EXPECT_THAT(lines(result, folder), ElementsAre("0", "1"));
}

TEST(DuplicateScanner, leavesOutWhatChangesAfterItWasOpened) {
    const TemporaryFolder folder;
    for (int i = 100; i < 160; ++i) {
        folder.makeFile(std::to_string(i), letters);
    }
    // More than is read before somebody takes it: those after it are open, and this one is not read
    // to its end.
    const std::string large(16'777'216, 'x');
    folder.makeFile("151", large);
    folder.makeFile("200", large);
    folder.makeFile("201", large);
    const ScanResult result = scannedWhile(folder, "150", [&] {
        folder.setModified("151", 1'700'000'000);
        folder.makeFile("152", letters + "more");
        folder.makeFile("153", letters.substr(1));
        folder.setModified("154", 1'700'000'000);
    });
    EXPECT_EQ(result.items.size(), 58U);
}

TEST(DuplicateScanner, returnsWhatItHadHashedWhenCancelled) {
    const TemporaryFolder folder;
    for (int i = 100; i < 160; ++i) {
        folder.makeFile(std::to_string(i), letters);
        folder.setModified(std::to_string(i), 1'700'000'000);
    }
    const auto cancellation = Task::makeCancellation();
    const Task::Scope scope(cancellation);
    const ScanResult result = scannedWhile(folder, "150", [&] { Task::cancel(*cancellation); });
    EXPECT_EQ(result.items.size(), 50U);
    EXPECT_EQ(result.items.back().url, folder.at("149"));
    EXPECT_THAT(scanned(folder), IsEmpty());
}

TEST(DuplicateScanner, needsNoThreadBesideItsOwn) {
    const TemporaryFolder folder;
    std::filesystem::permissions(folder.path(), std::filesystem::perms(0755));
    folder.makeFile("1", std::string(3'500'000, 'x'));
    folder.makeFile("2", std::string(3'500'000, 'x'));
    folder.makeFile("3", letters);
    folder.makeFile("4", letters);
    testing::expectInChild([&]() -> std::string {
        testing::becomeOrdinaryUser();
        const rlimit none{1, 1};
        setrlimit(RLIMIT_NPROC, &none);
        try {
            std::thread([] {}).join();
            return "there are threads all the same";
        } catch (const std::system_error&) {
        }
        const std::size_t found = scanned(folder).size();
        return found == 5 ? "" : std::to_string(found) + " lines";
    });
}

TEST(DuplicateScanner, passesOverWhatItMayNotRead) {
    const TemporaryFolder folder;
    for (const std::string name : {"1", "2", "closed/x", "locked", "unsearchable/x"}) {
        folder.makeFile(name, letters);
    }
    namespace fs = std::filesystem;
    if (!testing::WithoutPrivileges::own(folder)) {
        GTEST_SKIP() << "other users may not enter the temporary folder";
    }
    fs::permissions(folder.at("closed").path(), fs::perms::none);
    fs::permissions(folder.at("locked").path(), fs::perms::none);
    fs::permissions(folder.at("unsearchable").path(), fs::perms::owner_read);
    const testing::WithoutPrivileges guard;
    EXPECT_EQ(scanned(folder).size(), 2U);
}

} // namespace
} // namespace korvane
