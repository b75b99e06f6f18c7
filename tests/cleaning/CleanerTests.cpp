#include "KorvaneCore/audit/AuditKeyStore.h"
#include "KorvaneCore/audit/AuditLog.h"
#include "KorvaneCore/cleaning/Cleaner.h"
#include "KorvaneCore/cleaning/ExclusionStore.h"
#include "KorvaneCore/cleaning/SafetyGuard.h"
#include "KorvaneCore/foundation/Task.h"
#include "tests/support/FakeFileManager.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <iterator>
#include <stdexcept>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace korvane;
using namespace korvane::testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Kind = CleanupFailure::Kind;
using enum DeletionMode;
using enum CleanupSkip::Reason::Case;

namespace {

class NoSecrets final : public SecretStore {
  public:
    SecretReading read(std::string_view, std::string_view) override { return {}; }
    bool store(std::string_view, std::string_view, std::string_view) override { return true; }
};

class CleanerTest : public ::testing::Test {
  protected:
    CleanerTest() { keys_.setTestingKey(Key256{1, 2, 3}); }

    /// "~" at the start is the home.
    [[nodiscard]] FileURL url(const std::string& path) const {
        return FileURL(expandingTilde(path, home_));
    }
    [[nodiscard]] ScanItem item(const std::string& path, std::int64_t size = 1) const {
        ScanItem made;
        made.url = url(path);
        made.sizeBytes = size;
        return made;
    }
    [[nodiscard]] CleanupOperation operation(const std::vector<std::string>& paths) const {
        CleanupOperation made;
        made.scannerID = "cache-cleaner";
        std::transform(paths.begin(), paths.end(), std::back_inserter(made.items),
                       [&](const std::string& path) { return item(path); });
        return made;
    }
    CleanupResult clean(const CleanupOperation& operation, DeletionMode mode,
                        const CleanupProgressHandler& progress = {}) {
        const SafetyGuard guard(home_);
        return Cleaner(audit_, files_, guard, exclusions_, home_).clean(operation, mode, progress);
    }

    static std::vector<RestorableItem> restorableOf(const AuditEntry& entry) {
        return entry.restorable.value_or(std::vector<RestorableItem>());
    }

    /// One line an item: "gone ~/a", "failed ~/b (inUse)", "skipped ~/c (alreadyGone)".
    [[nodiscard]] std::vector<std::string> account(const CleanupResult& result) const {
        const auto name = [&](const ScanItem& item) {
            const std::string& path = item.path();
            return path.starts_with(home_.path()) ? "~" + path.substr(home_.path().size()) : path;
        };
        std::vector<std::string> lines;
        lines.reserve(result.succeeded.size());
        for (const ScanItem& one : result.succeeded) {
            lines.push_back("gone " + name(one));
        }
        for (const CleanupFailure& one : result.failed) {
            lines.push_back("failed " + name(one.item) + " (" + std::string(rawValue(one.kind)) +
                            ")");
        }
        for (const CleanupSkip& one : result.skipped) {
            lines.push_back("skipped " + name(one.item) + " (" +
                            std::string(rawValue(one.reason.reason)) + ")");
        }
        return lines;
    }

    TemporaryFolder folder_;
    FileURL home_ = folder_.makeFolder("home");
    NoSecrets secrets_;
    AuditKeyStore keys_{secrets_};
    AuditLog audit_{folder_.at("Audit"), keys_};
    ExclusionStore exclusions_{folder_.at("exclusions.json"), home_};
    FakeFileManager files_{folder_.at("Trash")};
};

TEST_F(CleanerTest, removesAFolderBeforeWhatIsInsideAndEachPlaceOnce) {
    for (const DeletionMode mode : {trash, permanent}) {
        folder_.makeFile("home/c/app/deep/file");
        folder_.makeFile("home/c/app.log");
        folder_.makeFile("home/c/z");
        std::vector<CleanupProgress> reports;
        CleanupOperation all = operation({"~/c/app/deep/file", "~/c/z", "~/c//./app/", "~/c/app",
                                          "~/c/app.log", "~/c/app/deep"});
        for (std::size_t i = 0; i < all.items.size(); ++i) {
            all.items[i].sizeBytes = std::int64_t{1} << (4 * i);
        }
        const CleanupResult result =
            clean(all, mode, [&](const CleanupProgress& report) { reports.push_back(report); });
        EXPECT_THAT(account(result),
                    ElementsAre("gone ~/c//./app", "gone ~/c/app.log", "gone ~/c/z",
                                "skipped ~/c/app (duplicateOfEarlierItem)",
                                "skipped ~/c/app/deep (removedWithParent)",
                                "skipped ~/c/app/deep/file (removedWithParent)"));
        EXPECT_EQ(result.skipped.at(2).reason.parent, url("~/c/app"));
        EXPECT_EQ(result.operationID, all.id);
        EXPECT_EQ(result.mode, mode);
        EXPECT_THAT(folder_.listing("home"), ElementsAre("c/"));
        EXPECT_THAT(reports,
                    ElementsAre(CleanupProgress{0, 6, 0}, CleanupProgress{1, 6, 0x100},
                                CleanupProgress{2, 6, 0x100}, CleanupProgress{3, 6, 0x10100},
                                CleanupProgress{4, 6, 0x10110}, CleanupProgress{5, 6, 0x10110},
                                CleanupProgress{6, 6, 0x10110}));
    }
}

TEST_F(CleanerTest, saysOfEveryItemWhyItIsStillThere) {
    const std::vector<std::string> paths = {
        "~/c/busy",    "~/c/running", "~/c/denied",     "~/c/owned", "~/c/frozen", "~/c/broken",
        "~/c/lacking", "~/c/keep/in", "~/c/outer/keep", "~/c/gone",  "~/Library",  "~/c/../x"};
    for (const std::string& path : paths) {
        if (path != "~/c/gone" && path != "~/c/../x") {
            folder_.makeFile("home" + path.substr(1) + (path == "~/Library" ? "/file" : ""));
        }
    }
    exclusions_.add({.id = UUID::random(), .path = "~/c/keep", .note = ""});
    exclusions_.add({.id = UUID::random(), .path = "~/c/outer/keep", .note = ""});
    const std::vector<std::pair<std::string, int>> failures = {
        {"~/c/busy", EBUSY},    {"~/c/running", ETXTBSY}, {"~/c/denied", EACCES},
        {"~/c/owned", EPERM},   {"~/c/frozen", EROFS},    {"~/c/broken", EIO},
        {"~/c/lacking", ENOENT}};
    for (const auto& [path, error] : failures) {
        files_.failAt(url(path), error);
    }
    const auto before = folder_.listing("home");
    for (const DeletionMode mode : {trash, permanent}) {
        std::vector<std::string> all = paths;
        all.emplace_back("~/c/outer");
        const CleanupResult result = clean(operation(all), mode);
        EXPECT_THAT(account(result),
                    ElementsAre("failed ~/Library (protectedLocation)",
                                "failed ~/c/../x (protectedLocation)", "failed ~/c/broken (other)",
                                "failed ~/c/busy (inUse)", "failed ~/c/denied (permission)",
                                "failed ~/c/frozen (readOnlyVolume)", "failed ~/c/lacking (other)",
                                "failed ~/c/outer (excluded)", "failed ~/c/owned (permission)",
                                "failed ~/c/running (inUse)", "failed ~/c/keep/in (excluded)",
                                "failed ~/c/outer/keep (excluded)",
                                "skipped ~/c/gone (alreadyGone)"));
        EXPECT_EQ(result.failed.at(0).error,
                  "refusing to delete a protected system or home location");
        EXPECT_THAT(result.failed.at(3).error, ::testing::HasSubstr("busy"));
        EXPECT_EQ(result.failed.at(7).error,
                  "Deleting this would also delete ~/c/outer/keep, which is on your exclusion "
                  "list - so Korvane left the whole thing alone.");
        EXPECT_EQ(folder_.listing("home"), before);
    }
}

TEST_F(CleanerTest, triesTheContentsOfAFolderThatStayed) {
    folder_.makeFile("home/c/app/file");
    files_.failAt(url("~/c/app"), EACCES);
    EXPECT_THAT(account(clean(operation({"~/c/app/file", "~/c/app"}), permanent)),
                ElementsAre("gone ~/c/app/file", "failed ~/c/app (permission)"));
    EXPECT_THAT(folder_.listing("home/c"), ElementsAre("app/"));
}

TEST_F(CleanerTest, recordsWhereThingsWentOnceTheyAreThereForGood) {
    const std::string odd = "/c/\xFF\n";
    folder_.makeFile("home" + odd);
    folder_.makeFile("home/c/b", "bee");
    bool recordedBeforeSync = false;
    files_.onCall([&](const std::string& call) {
        recordedBeforeSync = recordedBeforeSync || (call == "synchronize" && audit_.hasLogFiles());
    });
    const CleanupOperation both = operation({"~" + odd, "~/c/./b"});
    EXPECT_EQ(clean(both, trash).auditFailure, std::nullopt);
    EXPECT_FALSE(recordedBeforeSync);
    EXPECT_THAT(files_.calls(), ::testing::Contains("synchronize").Times(1));
    EXPECT_THAT(files_.calls(), ::testing::Contains("openBin").Times(1));

    const auto entries = audit_.entries();
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries.at(0).operationID, both.id);
    const auto restorable = restorableOf(entries.at(0));
    ASSERT_EQ(restorable.size(), 2U);
    EXPECT_EQ(restorable.at(0).original, home_.path() + "/c/./b");
    EXPECT_EQ(pathFromText(restorable.at(1).original), home_.path() + odd);
    EXPECT_EQ(folder_.content(restorable.at(0).trashed.substr(folder_.path().size() + 1)), "bee");
    EXPECT_TRUE(files_.itemExists(FileURL(pathFromText(restorable.at(1).trashed))));
}

TEST_F(CleanerTest, stopsBeforeTheNextItemWhenCancelledAndRecordsWhatWasDone) {
    std::vector<std::string> paths;
    for (char name = 'a'; name <= 'j'; ++name) {
        paths.push_back(std::string("~/c/") + name);
        folder_.makeFile(std::string("home/c/") + name);
    }
    const auto cancellation = Task::makeCancellation();
    const Task::Scope scope(cancellation);
    std::int64_t lastReport = 0;
    const CleanupResult result =
        clean(operation(paths), trash, [&](const CleanupProgress& progress) {
            lastReport = progress.processed;
            if (progress.processed == 3) {
                Task::cancel(*cancellation);
            }
        });
    EXPECT_THAT(account(result), ElementsAre("gone ~/c/a", "gone ~/c/b", "gone ~/c/c"));
    EXPECT_EQ(lastReport, 3);
    EXPECT_EQ(folder_.listing("home/c").size(), 7U);
    ASSERT_EQ(audit_.entries().size(), 1U);
    EXPECT_EQ(audit_.entries().at(0).succeededCount, 3);
    EXPECT_EQ(files_.calls().back(), "synchronize");
}

TEST_F(CleanerTest, recordsAnEmptyOperationToo) {
    std::vector<CleanupProgress> reports;
    const CleanupResult result = clean(
        operation({}), trash, [&](const CleanupProgress& report) { reports.push_back(report); });
    EXPECT_THAT(account(result), IsEmpty());
    EXPECT_THAT(reports, ElementsAre(CleanupProgress{0, 0, 0}));
    EXPECT_THAT(files_.calls(), ElementsAre("availableCapacity " + home_.path()));
    EXPECT_EQ(audit_.entries().size(), 1U);
}

TEST_F(CleanerTest, reportsOnlyMeasuredGrowthOfFreeSpace) {
    struct Row {
        DeletionMode mode;
        std::vector<std::optional<std::int64_t>> capacities;
        std::optional<std::int64_t> expected;
    };
    const std::vector<Row> rows = {
        {permanent, {100, 101}, 1},
        {permanent, {100, 100}, std::nullopt},
        {permanent, {100, 40}, std::nullopt},
        {permanent, {100, std::nullopt}, std::nullopt},
        {permanent, {std::nullopt, 100}, std::nullopt},
        {trash, {100, 200}, std::nullopt},
    };
    for (const Row& row : rows) {
        folder_.makeFile("home/c/z");
        folder_.makeFile("home/c/deep/a");
        files_.setAvailableCapacities(row.capacities);
        const auto result = clean(operation({"~/c/deep/a", "~/c/z"}), row.mode);
        EXPECT_EQ(result.spaceFreedOnDisk, row.expected) << &row - rows.data();
    }
    EXPECT_EQ(files_.calls().front(), "availableCapacity " + home_.path() + "/c/deep/a")
        << "the first item as it was handed over";
}

TEST_F(CleanerTest, tellsWhenTheRecordCouldNotBeWrittenOrTheScreenFailed) {
    folder_.makeFile("Audit", "no folder");
    folder_.makeFile("home/c/a");
    folder_.makeFile("home/c/b");
    const CleanupResult result =
        clean(operation({"~/c/a", "~/c/b"}), permanent,
              [](const CleanupProgress&) { throw std::runtime_error("the window is gone"); });
    EXPECT_THAT(account(result), ElementsAre("gone ~/c/a", "gone ~/c/b"));
    EXPECT_THAT(result.auditFailure.value_or("none"), ::testing::HasSubstr("Audit"));
    EXPECT_THAT(folder_.listing("home/c"), IsEmpty());
}

TEST_F(CleanerTest, judgesAnItemThatBecameALinkByWhereItPoints) {
    folder_.makeFolder("home/Documents");
    folder_.makeFile("other/data");
    folder_.makeFolder("home/c");
    folder_.makeLink("home/c/home", home_.path());
    folder_.makeLink("home/c/other", folder_.at("other").path());
    EXPECT_THAT(
        account(clean(operation({"~/c/home", "~/c/other", "~/c/home/Documents"}), permanent)),
        ElementsAre("gone ~/c/other", "failed ~/c/home (protectedLocation)",
                    "failed ~/c/home/Documents (protectedLocation)"));
    EXPECT_THAT(folder_.listing("home"), ElementsAre("Documents/", "c/", "c/home@"));
    EXPECT_TRUE(folder_.exists("other/data"));
}

TEST_F(CleanerTest, doesNotFollowALinkPutInPlaceOfAFolderAfterTheJudgement) {
    for (const DeletionMode mode : {trash, permanent}) {
        for (const std::string& inside : {std::string("/file"), std::string("/deep/file")}) {
            folder_.makeFile("home/c/app" + inside, "cache");
            folder_.makeFile("home/Documents" + inside, "thesis");
            files_.onCall([&](const std::string& call) {
                if (call.ends_with("/c/app" + inside) && !call.starts_with("available")) {
                    std::filesystem::rename(url("~/c/app").path(), url("~/c/moved").path());
                    folder_.makeLink("home/c/app", url("~/Documents").path());
                }
            });
            EXPECT_THAT(account(clean(operation({"~/c/app" + inside}), mode)),
                        ElementsAre("failed ~/c/app" + inside + " (other)"));
            EXPECT_EQ(folder_.content("home/Documents" + inside), "thesis");
            EXPECT_EQ(folder_.content("home/c/moved" + inside), "cache");
            std::filesystem::remove_all(url("~/c").path());
        }
    }
}

TEST_F(CleanerTest, removesThroughALinkedFolderWhatWasJudged) {
    folder_.makeFile("disk/cache/app/file");
    folder_.makeLink("home/.cache", folder_.at("disk/cache").path());
    EXPECT_THAT(account(clean(operation({"~/.cache/app", "~/.cache"}), trash)),
                ElementsAre("gone ~/.cache/app", "failed ~/.cache (protectedLocation)"));
    EXPECT_THAT(folder_.listing("disk"), ElementsAre("cache/"));
    EXPECT_EQ(restorableOf(audit_.entries().at(0)).at(0).original, home_.path() + "/.cache/app");
}

} // namespace
