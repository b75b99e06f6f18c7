#include "KorvaneCore/platform/Volumes.h"
#include "tests/support/TemporaryFolder.h"

#include <set>

#include <sys/statvfs.h>

#include <gtest/gtest.h>

namespace korvane {
namespace {

using testing::TemporaryFolder;

TEST(Volumes, listsTheDiskOfTheHomeFolderFirstAndEachDiskOnce) {
    const TemporaryFolder home;
    const std::vector<Volume> volumes = mountedVolumes(home.url());
    ASSERT_FALSE(volumes.empty());
    EXPECT_TRUE(volumes.front().holdsHome);
    struct statvfs facts {};
    ASSERT_EQ(statvfs(home.path().c_str(), &facts), 0);
    EXPECT_LE(volumes.front().total, static_cast<std::int64_t>(facts.f_blocks * facts.f_frsize));
    std::set<std::string> tops;
    int systems = 0;
    for (const Volume& volume : volumes) {
        EXPECT_TRUE(tops.insert(volume.top.path()).second) << volume.top.path();
        EXPECT_EQ(volume.holdsHome, &volume == volumes.data()) << volume.top.path();
        EXPECT_GE(volume.available, 0) << volume.top.path();
        EXPECT_LE(volume.available, volume.total) << volume.top.path();
        systems += volume.isSystem ? 1 : 0;
    }
    EXPECT_LE(systems, 1);
    EXPECT_EQ(mountedVolumes(FileURL("/")).front().isSystem, true);
}

TEST(Volumes, leavesOutAHomeThatIsNotThere) {
    for (const Volume& volume : mountedVolumes(FileURL("/nowhere/at all"))) {
        EXPECT_FALSE(volume.holdsHome);
    }
}

TEST(Volumes, saysHowMuchIsUsed) {
    EXPECT_EQ((Volume{.available = 25, .total = 100}).usedShare(), 0.75);
    EXPECT_EQ((Volume{.available = 0, .total = 100}).usedShare(), 1);
    EXPECT_EQ((Volume{.available = 120, .total = 100}).usedShare(), 0);
    EXPECT_EQ(Volume{}.usedShare(), 0);
}

} // namespace
} // namespace korvane
