#include "Korvane/tools/Services.h"
#include "Korvane/tools/ToolDriver.h"
#include "KorvaneCore/foundation/Task.h"
#include "tests/support/FakeFileManager.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvane {
namespace {

using ::testing::ElementsAre;
using ::testing::UnorderedElementsAre;

/// Finds what the test says, and does on the way what the test wants.
class StubScanner final : public ModuleScanner {
  public:
    [[nodiscard]] const std::string& id() const override { return id_; }
    [[nodiscard]] const std::string& displayName() const override { return id_; }
    [[nodiscard]] ScanResult scan(const ScanProgressHandler& progress) const override {
        progress({"Looking…", std::nullopt});
        if (meanwhile) {
            meanwhile();
        }
        return {id_, Date::now(), Date::now(), items};
    }

    std::vector<ScanItem> items;
    std::function<void()> meanwhile;

  private:
    std::string id_ = "browser-cache";
};

class ToolDriverTest : public ::testing::Test {
  protected:
    ToolDriverTest() { folder.makeFolder("home/Documents"); }

    UserFolders userFolders() const {
        return {folder.makeFolder("home"), folder.at("home/data"), folder.at("home/config"),
                folder.makeFolder("tmp")};
    }

    ScanItem item(const std::string& name, const std::string& row, std::size_t bytes = 100) {
        ScanItem made;
        made.url = folder.makeFileOfSize("home/Caches/" + name, bytes);
        made.sizeBytes = static_cast<std::int64_t>(bytes);
        made.category = "Browser";
        made.heuristicID = row;
        return made;
    }

    std::vector<std::string> names(const std::unordered_set<UUID>& ids) const {
        std::vector<std::string> found;
        for (const ScanItem& one : driver.items(ids)) {
            found.emplace_back(one.url.lastPathComponent());
        }
        return found;
    }

    const std::string low = "browser.chrome.cache";
    const std::string medium = "dev.maven.repo";
    testing::TemporaryFolder folder;
    testing::FakeFileManager files{folder.at("Trash")};
    Services services{userFolders(), files};
    StubScanner scanner;
    ToolDriver driver{"browser-cache", services};
};

TEST_F(ToolDriverTest, ticksLowRiskOnlyAndNeverWhatMustStay) {
    const ScanItem kept = item("kept", low);
    services.exclusions().add({UUID::random(), kept.path(), ""});
    ScanItem documents = item("x", low);
    documents.url = folder.at("home/Documents");
    scanner.items = {item("a", low), item("b", medium), kept, documents,
                     item("unknown", "rule.of-the-user")};

    ASSERT_TRUE(driver.scan(scanner));
    const auto review = driver.review();
    EXPECT_EQ(driver.phase(), ToolPhase::results);
    EXPECT_THAT(names(review->preselected), ElementsAre("a"));
    EXPECT_EQ(review->refused.at(kept.id),
              "This is on your exclusion list, so Korvane left it alone.");
    EXPECT_EQ(review->refused.at(documents.id),
              "refusing to delete a protected system or home location");
    EXPECT_EQ(review->refused.size(), 2U);
}

TEST_F(ToolDriverTest, ticksAllCopiesButOneAndNothingThatOnlyAPersonCanJudge) {
    const auto copy = [&](const std::string& name, const std::string& digest) {
        ScanItem made = item(name, "duplicate-finder.duplicate");
        made.category = digest;
        return made;
    };
    scanner.items = {copy("a1", "a"),
                     copy("b1", "b"),
                     copy("a2", "a"),
                     copy("a3", "a"),
                     copy("b2", "b"),
                     item("large", "large-files.user-selected"),
                     item("download", "downloads.all-files"),
                     item("similar", "similar-images.near-duplicate")};
    ASSERT_TRUE(driver.scan(scanner));
    EXPECT_THAT(names(driver.review()->preselected), ElementsAre("a2", "a3", "b2"));
}

TEST_F(ToolDriverTest, neverRemovesWhatIsFreedInAnotherWay) {
    const std::string rows[] = {"icloud.local-copies", "system.trash-all-volumes",
                                "system.time-machine-snapshots"};
    for (const std::string& row : rows) {
        scanner.items.push_back(item(row, row));
    }
    scanner.items.push_back(item("cache", low));
    ASSERT_TRUE(driver.scan(scanner));
    EXPECT_THAT(names(driver.review()->preselected), ElementsAre("cache"));
    EXPECT_EQ(driver.review()->refused.size(), 3U);
    std::unordered_set<UUID> all;
    for (const ScanItem& one : driver.review()->result.items) {
        all.insert(one.id);
    }
    const auto result = driver.clean(all, DeletionMode::permanent);
    ASSERT_TRUE(result);
    EXPECT_EQ(result->succeeded.size(), 1U);
    EXPECT_EQ(result->failed.size(), 3U);
    for (const std::string& row : rows) {
        EXPECT_TRUE(folder.exists("home/Caches/" + row));
    }
}

TEST_F(ToolDriverTest, comparesWithTheScanBeforeAndKeepsTheNewOne) {
    scanner.items = {item("same", low), item("grows", low, 100), item("goes", low, 70)};
    ASSERT_TRUE(driver.scan(scanner));
    EXPECT_FALSE(driver.review()->diff.has_value());

    const ScanItem grown = item("grows", low, 150);
    const ScanItem added = item("new", low);
    scanner.items = {item("same", low), grown, added};
    ASSERT_TRUE(driver.scan(scanner));
    const ScanDiff& diff = *driver.review()->diff;
    EXPECT_THAT(diff.newPaths, UnorderedElementsAre(added.path()));
    EXPECT_EQ(diff.change(grown).growth, 50);
    EXPECT_EQ(diff.vanishedCount, 1);
    EXPECT_EQ(diff.vanishedBytes, 70);

    ToolDriver later("browser-cache", services);
    ASSERT_TRUE(later.loadPrevious());
    EXPECT_EQ(later.review()->result.items.size(), 3U);
    EXPECT_FALSE(ToolDriver("never-ran", services).loadPrevious());
}

TEST_F(ToolDriverTest, aCancelledScanIsShownButNotTakenForTheWhole) {
    scanner.items = {item("a", low), item("b", low)};
    ASSERT_TRUE(driver.scan(scanner));

    StubScanner partial;
    partial.items = {item("a", low)};
    Task task([&] {
        partial.meanwhile = [&] { Task::cancel(*Task::current()); };
        EXPECT_TRUE(driver.scan(partial));
    });
    task.wait();
    EXPECT_EQ(driver.review()->result.items.size(), 1U);
    EXPECT_FALSE(driver.review()->diff.has_value());
    EXPECT_EQ(services.scanCache().load("browser-cache")->items.size(), 2U);
}

TEST_F(ToolDriverTest, cleansExactlyWhatWasConfirmedAndRemembersWhatWasKept) {
    const ScanItem gone = item("gone", low);
    const ScanItem kept = item("kept", low);
    scanner.items = {gone, kept};
    ASSERT_TRUE(driver.scan(scanner));
    const auto result = driver.clean({gone.id}, DeletionMode::trash);

    ASSERT_TRUE(result.has_value());
    EXPECT_EQ(driver.phase(), ToolPhase::finished);
    EXPECT_EQ(driver.outcome(), result);
    EXPECT_FALSE(folder.exists("home/Caches/gone"));
    EXPECT_TRUE(folder.exists("home/Caches/kept"));
    EXPECT_TRUE(folder.exists("Trash/files/gone"));
    const auto log = services.auditLog().entries();
    ASSERT_EQ(log.size(), 1U);
    EXPECT_THAT(log.front().paths, ElementsAre(gone.path()));

    ASSERT_TRUE(driver.scan(scanner));
    EXPECT_TRUE(driver.review()->skippedBefore.contains(kept.id));
    EXPECT_FALSE(driver.review()->skippedBefore.contains(gone.id));

    // Removed at last, it is offered as new when it comes back.
    ASSERT_TRUE(driver.clean({kept.id}, DeletionMode::permanent).has_value());
    scanner.items = {item("kept", low)};
    ASSERT_TRUE(driver.scan(scanner));
    EXPECT_TRUE(driver.review()->skippedBefore.empty());
}

TEST_F(ToolDriverTest, refusesASecondJobWhileOneRuns) {
    scanner.items = {item("a", low)};
    scanner.meanwhile = [&] {
        EXPECT_EQ(driver.phase(), ToolPhase::scanning);
        StubScanner other;
        EXPECT_FALSE(driver.scan(other));
        EXPECT_FALSE(driver.clean({}, DeletionMode::trash).has_value());
    };
    ASSERT_TRUE(driver.scan(scanner));

    bool asked = false;
    files.onCall([&](const std::string& call) {
        if (call.starts_with("trash")) {
            asked = true;
            EXPECT_EQ(driver.phase(), ToolPhase::cleaning);
            EXPECT_FALSE(driver.loadPrevious());
        }
    });
    const auto ids = driver.review()->preselected;
    ASSERT_TRUE(driver.clean(ids, DeletionMode::trash).has_value());
    EXPECT_TRUE(asked);
}

TEST_F(ToolDriverTest, tellsWhyAScannerFailedAndCanScanAgain) {
    scanner.meanwhile = [] { throw std::runtime_error("the disk went away"); };
    EXPECT_FALSE(driver.scan(scanner));
    EXPECT_EQ(driver.phase(), ToolPhase::failed);
    EXPECT_EQ(driver.failure(), "the disk went away");
    scanner.meanwhile = {};
    EXPECT_TRUE(driver.scan(scanner));
    EXPECT_EQ(driver.failure(), "");
}

TEST_F(ToolDriverTest, showsGivenItemsWithTheirOwnTicks) {
    const ScanItem ticked = item("medium", medium);
    ScanItem documents = item("x", low);
    documents.url = folder.at("home/Documents");
    ScanResult given{"large-files", Date::now(), Date::now(), {ticked, item("a", low), documents}};
    ASSERT_TRUE(driver.show(given, std::unordered_set{ticked.id, documents.id}));
    EXPECT_THAT(names(driver.review()->preselected), ElementsAre("medium"));

    const auto result = driver.clean({ticked.id, documents.id}, DeletionMode::trash);
    EXPECT_EQ(result->succeeded.size(), 1U);
    EXPECT_EQ(result->failed.size(), 1U);
    EXPECT_TRUE(folder.exists("home/Documents"));
    EXPECT_EQ(services.auditLog().entries().front().scannerID, "large-files");
}

} // namespace
} // namespace korvane
