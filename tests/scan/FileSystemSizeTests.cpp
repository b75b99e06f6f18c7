#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/platform/ProcessLauncher.h"
#include "KorvaneCore/scan/FileSystemSize.h"
#include "tests/support/TemporaryFolder.h"

#include <filesystem>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace korvane {
namespace {

using korvane::testing::TemporaryFolder;

std::int64_t bytesOnDisk(const FileURL& file) {
    struct stat facts {};
    EXPECT_EQ(lstat(file.path().c_str(), &facts), 0);
    return facts.st_blocks * 512;
}

TEST(FileSystemSize, countsWhatRemovalWouldFree) {
    const TemporaryFolder folder;
    const FileURL one = folder.makeFileOfSize("folder/sub/one", 10'000);
    const FileURL two = folder.makeFileOfSize("folder/two", 1);
    folder.makeFileOfSize("folder/.unseen", 50'000);
    folder.makeFileOfSize("folder/.hidden/unseen", 50'000);
    folder.makeFileOfSize("hidden only/.a/b", 50'000);
    const FileURL sparse = folder.makeFile("sparse/file", "");
    std::filesystem::resize_file(sparse.path(), 1'000'000);
    folder.makeFileOfSize("plain", 12'345);
    folder.makeFileOfSize(".Trash/one", 10'000);
    folder.makeLink("folder/link", "../plain");
    folder.makeLink("to folder", "folder");
    folder.makeLink("to file", "plain");
    folder.makeLink("dangling", "nowhere");
    std::filesystem::create_hard_link(one.path(), folder.at("folder/sub/again").path());
    ASSERT_EQ(mkfifo(folder.at("folder/pipe").path().c_str(), 0600), 0);

    const std::int64_t whole = 2 * bytesOnDisk(one) + bytesOnDisk(two);
    const std::pair<const char*, std::int64_t> rows[] = {
        {"folder", whole},
        {"to folder", whole},
        {"hidden only", 0},
        {"sparse", bytesOnDisk(sparse)},
        {".Trash", bytesOnDisk(folder.at(".Trash/one"))},
        {"plain", 12'345},
        {"to file", 5},
        {"dangling", 0},
        {"missing", 0},
        {"folder/pipe", 0},
    };
    std::vector<FileURL> urls;
    std::vector<std::int64_t> sizes;
    for (const auto& [name, size] : rows) {
        EXPECT_EQ(FileSystemSize::allocatedSize(folder.at(name)), size) << name;
        urls.push_back(folder.at(name));
        sizes.push_back(size);
    }
    EXPECT_EQ(FileSystemSize::allocatedSizes(urls), sizes);
    EXPECT_EQ(FileSystemSize::allocatedSizeAsync(urls[0]).get(), whole);

    Task task([&] {
        Task::cancel(*Task::current());
        EXPECT_EQ(FileSystemSize::allocatedSize(urls[0]), 0);
    });
    task.wait();
}

class FakeLauncher final : public ProcessLauncher {
  public:
    ProcessOutcome run(const ProcessRequest& request) override {
        asked = request;
        return answer;
    }
    ProcessRequest asked;
    ProcessOutcome answer;
};

TEST(FileSystemSize, readsTheFirstFieldOfDiskUsage) {
    struct Row {
        const char* output;
        bool launched;
        int status;
        std::int64_t bytes;
    };
    const Row rows[] = {
        {"12\t/x\n", true, 0, 12'288}, {"\n 7 /x 9", true, 0, 7168},
        {"0\t/x", true, 0, 0},         {"12\t/x\n", true, 1, 0},
        {"12\t/x\n", false, 0, 0},     {"", true, 0, 0},
        {"12K\t/x", true, 0, 0},       {"du: 12", true, 0, 0},
        {"5\t/\xFF", true, 0, 5120},   {"8589934592\t/x", true, 0, 8'796'093'022'208},
    };
    for (const Row& row : rows) {
        FakeLauncher launcher;
        launcher.answer.launched = row.launched;
        launcher.answer.exitStatus = row.status;
        launcher.answer.output = row.output;
        EXPECT_EQ(FileSystemSize::diskUsage(FileURL("/a b\n"), launcher), row.bytes) << row.output;
        EXPECT_EQ(launcher.asked.executable, "/usr/bin/du");
        EXPECT_EQ(launcher.asked.arguments, (std::vector<std::string>{"-sk", "/a b\n"}));
    }
}

TEST(FileSystemSize, asksTheSystemForDiskUsage) {
    const TemporaryFolder folder;
    folder.makeFileOfSize("odd \xFF\n name/.hidden", 100'000);
    ProcessLauncher& launcher = ProcessLauncher::standard();
    EXPECT_GE(FileSystemSize::diskUsage(folder.at("odd \xFF\n name"), launcher), 100'000);
    EXPECT_EQ(FileSystemSize::diskUsage(folder.at("missing"), launcher), 0);
}

} // namespace
} // namespace korvane
