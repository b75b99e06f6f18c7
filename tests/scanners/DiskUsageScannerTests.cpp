#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/scanners/DiskUsageScanner.h"
#include "tests/scan/WalkTestSupport.h"

#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::TemporaryFolder;

// A multiple of every usual block size, so that this is what it takes on the disk.
constexpr std::int64_t block = 65'536;

/// "name size-in-blocks children", "/" behind a folder's name.
std::vector<std::string> listed(const FileURL& folder, const DiskUsageOptions& options = {}) {
    std::vector<std::string> texts;
    for (const DiskUsageNode& node : DiskUsageScanner().children(folder, options)) {
        EXPECT_EQ(node.url, folder.appending(node.name));
        EXPECT_EQ(node.sizeBytes % block, 0) << node.name;
        texts.push_back(node.name + (node.isDirectory ? "/ " : " ") +
                        std::to_string(node.sizeBytes / block) + " " +
                        std::to_string(node.childCount));
    }
    return texts;
}

class DiskUsageScannerTest : public ::testing::Test {
  protected:
    DiskUsageScannerTest() {
        folder.makeFileOfSize("a/1", block);
        folder.makeFileOfSize("a/sub/2", 2 * block);
        folder.makeFileOfSize("a/.hidden/3", 7 * block);
        folder.makeFileOfSize("a/.dot", 6 * block);
        folder.makeFileOfSize(".git/objects", 4 * block);
        folder.makeFileOfSize(".profile", 5 * block);
        folder.makeFileOfSize("b", block);
        folder.makeFileOfSize("c", block);
        folder.makeFolder("empty");
        folder.makeLink("a/link", "../b");
        folder.makeLink("link to a", "a");
        EXPECT_EQ(mkfifo(folder.at("pipe").path().c_str(), 0600), 0);
    }

    TemporaryFolder folder;
};

TEST_F(DiskUsageScannerTest, listsEveryEntryLargestFirst) {
    folder.setModified("a", 1'700'000'000);
    EXPECT_THAT(listed(folder.url()),
                ElementsAre(".profile 5 0", ".git/ 4 1", "a/ 3 5", "b 1 0", "c 1 0", "empty/ 0 0",
                            "link to a 0 0", "pipe 0 0"));
    EXPECT_EQ(DiskUsageScanner().children(folder.url())[2].lastModified,
              Date::fromUnixSeconds(1'700'000'000));
    EXPECT_THAT(listed(folder.url(), {.includeHidden = true}).front(), "a/ 16 5");
    EXPECT_THAT(listed(folder.at("link to a")),
                ElementsAre(".hidden/ 7 1", ".dot 6 0", "sub/ 2 1", "1 1 0", "link 0 0"));
    EXPECT_THAT(listed(folder.at("empty")), IsEmpty());
}

TEST_F(DiskUsageScannerTest, countsWhatIsOnTheDiskAndNotTheLength) {
    const TemporaryFolder other;
    other.makeFile("sparse");
    std::filesystem::resize_file(other.at("sparse").path(), 50'000'000);
    other.makeFile("folder/sparse");
    std::filesystem::resize_file(other.at("folder/sparse").path(), 50'000'000);
    for (const DiskUsageNode& node : DiskUsageScanner().children(other.url())) {
        EXPECT_LT(node.sizeBytes, block) << node.name;
    }
}

TEST_F(DiskUsageScannerTest, measuresNoFolderWhoseSizeIsKnown) {
    const FileURL known = folder.at("a");
    EXPECT_THAT(listed(folder.url(), {.knownSize =
                                          [&](const FileURL& url) {
                                              return url == known
                                                         ? std::optional<std::int64_t>(9 * block)
                                                         : std::nullopt;
                                          }}),
                ElementsAre("a/ 9 5", ".profile 5 0", ".git/ 4 1", "b 1 0", "c 1 0", "empty/ 0 0",
                            "link to a 0 0", "pipe 0 0"));
}

TEST_F(DiskUsageScannerTest, saysWhyAFolderCannotBeListed) {
    for (const std::string name : {"missing", "b", "pipe"}) {
        EXPECT_THROW(static_cast<void>(DiskUsageScanner().children(folder.at(name))), FileError)
            << name;
    }
    if (!testing::WithoutPrivileges::own(folder)) {
        GTEST_SKIP() << "other users may not enter the temporary folder";
    }
    std::filesystem::permissions(folder.at("a").path(), std::filesystem::perms::none);
    const testing::WithoutPrivileges guard;
    EXPECT_THROW(static_cast<void>(DiskUsageScanner().children(folder.at("a"))), FileError);
    const auto lines = listed(folder.url());
    EXPECT_NE(std::find(lines.begin(), lines.end(), "a/ 0 0"), lines.end());
}

} // namespace
} // namespace korvane
