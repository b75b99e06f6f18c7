#include "Korvane/collector/CollectorStore.h"
#include "Korvane/collector/CollectorText.h"
#include "Korvane/tools/Services.h"
#include "tests/support/FakeFileManager.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvane {
namespace {

using ::testing::IsEmpty;

class CollectorStoreTest : public ::testing::Test {
  protected:
    ScanItem item(const std::string& name) const {
        ScanItem made;
        made.url = folder.makeFileOfSize("home/stuff/" + name, 100);
        made.sizeBytes = 100;
        made.heuristicID = "dev.maven.repo";
        return made;
    }

    UserFolders userFolders() const {
        return {folder.makeFolder("home"), folder.at("home/data"), folder.at("home/config"),
                folder.makeFolder("tmp")};
    }

    testing::TemporaryFolder folder;
    testing::FakeFileManager files{folder.at("Trash")};
    Services services{userFolders(), files};
    CollectorStore collector;
};

TEST_F(CollectorStoreTest, stagesEachPathOnceAndDropsWithoutDeleting) {
    const ScanItem a = item("a");
    ScanItem again = item("a");
    again.url = FileURL(again.path() + "/../a/");
    collector.stage(std::vector{a, again, item("b")});
    EXPECT_EQ(collector.count(), 2U);
    EXPECT_EQ(collector.totalBytes(), 200);
    collector.remove(again.id);
    EXPECT_EQ(collector.count(), 2U);
    collector.remove(a.id);
    collector.stage(std::vector{again}); // its path is free again
    EXPECT_EQ(collector.items().back().id, again.id);
    collector.clear();
    EXPECT_EQ(collector.totalBytes(), 0);
    EXPECT_TRUE(folder.exists("home/stuff/a") && folder.exists("home/stuff/b"));
    EXPECT_FALSE(services.auditLog().hasLogFiles());
}

TEST_F(CollectorStoreTest, removesEverythingTogetherAndEndsEmpty) {
    const ScanItem kept = item("kept");
    services.exclusions().add({UUID::random(), kept.path(), ""});
    ScanItem parent = item("folder/x");
    const ScanItem child = parent;
    parent = parent.withHeuristicID(parent.heuristicID);
    parent.url = folder.at("home/stuff/folder");
    parent.isDirectory = true;
    ScanItem cloud = item("cloud");
    cloud.heuristicID = "icloud.local-copies";
    collector.stage(std::vector{child, kept, parent, cloud});
    bool wasDeleting = false;
    const auto result =
        collector.deleteAll(DeletionMode::trash, services, [&](const CleanupProgress&) {
            wasDeleting = collector.isDeleting();
            EXPECT_FALSE(collector.deleteAll(DeletionMode::permanent, services));
            collector.stage(std::vector{item("late")});
            collector.clear();
        });
    EXPECT_TRUE(wasDeleting);
    EXPECT_FALSE(collector.isDeleting());
    EXPECT_THAT(collector.items(), IsEmpty());
    EXPECT_EQ(result->succeeded.size(), 1U);
    EXPECT_EQ(result->skipped.size(), 1U);
    EXPECT_EQ(result->failed.size(), 2U);
    EXPECT_TRUE(folder.exists("home/stuff/kept") && folder.exists("home/stuff/cloud"));
    EXPECT_TRUE(folder.exists("home/stuff/late"));
    const auto entries = services.auditLog().entries();
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries[0].scannerID, "collector");
}

TEST(CollectorText, namesCountAndConsequence) {
    EXPECT_EQ(CollectorText::deleteTitle(DeletionMode::trash, 3), "Move 3 to Bin");
    EXPECT_EQ(CollectorText::deleteTitle(DeletionMode::permanent, 3), "Delete permanently");
    EXPECT_EQ(CollectorText::permanentQuestion(1), "Delete 1 collected item permanently?");
    EXPECT_EQ(CollectorText::permanentQuestion(2), "Delete 2 collected items permanently?");
    EXPECT_THAT(CollectorText::permanentConsequence(2, 1'500'000'000),
                ::testing::EndsWith("1.5 GB, permanently. Cannot be undone."));
}

} // namespace
} // namespace korvane
