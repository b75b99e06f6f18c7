#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/scanners/CompositeScanner.h"
#include "KorvaneCore/scanners/OldFilesScanner.h"
#include "KorvaneCore/scanners/OverlapRemoval.h"
#include "KorvaneCore/scanners/ProgressAggregator.h"
#include "KorvaneCore/scanners/ScannerComposition.h"
#include "KorvaneCore/scanners/SmartScanCoordinator.h"
#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <atomic>
#include <barrier>
#include <set>
#include <stdexcept>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Runs what the test wants and finds what it says.
class StubScanner final : public NamedScanner {
  public:
    using Body = std::function<std::vector<ScanItem>(const ScanProgressHandler&)>;
    StubScanner(std::string id, Body body)
        : NamedScanner(id, "The " + id), body_(std::move(body)) {}

    using ModuleScanner::scan;
    [[nodiscard]] ScanResult scan(const ScanProgressHandler& progress) const override {
        return {id(), Date::now(), Date::now(), body_(progress)};
    }

  private:
    Body body_;
};

ScanItem item(const std::string& path, std::int64_t bytes = 1, const std::string& category = "") {
    return {.url = FileURL(path), .sizeBytes = bytes, .category = category};
}

std::shared_ptr<const ModuleScanner> finding(std::vector<ScanItem> items) {
    return std::make_shared<StubScanner>("stub",
                                         [items](const ScanProgressHandler&) { return items; });
}

std::vector<std::string> paths(const std::vector<ScanItem>& items) {
    std::vector<std::string> texts;
    for (const ScanItem& one : items) {
        texts.push_back(one.path());
    }
    return texts;
}

TEST(CompositeScanner, runsItsPartsInOrderAndMapsTheirProgress) {
    std::vector<ScanProgress> reports;
    const auto part = [](std::string path) {
        return std::make_shared<StubScanner>("part", [path](const ScanProgressHandler& progress) {
            progress({"half of " + path, 0.5});
            progress({"unsure", std::nullopt});
            return std::vector{item(path), item("/same")};
        });
    };
    const CompositeScanner scanner("mine", "Mine", {part("/b"), part("/a")});
    const ScanResult result =
        scanner.scan([&](const ScanProgress& report) { reports.push_back(report); });
    EXPECT_THAT(reports,
                ElementsAre(ScanProgress{"half of /b", 0.25}, ScanProgress{"unsure", 0.0},
                            ScanProgress{"half of /a", 0.75}, ScanProgress{"unsure", 0.5}));
    EXPECT_EQ(result.scannerID, "mine");
    EXPECT_THAT(paths(result.items), ElementsAre("/b", "/same", "/a", "/same"));
    EXPECT_THAT(CompositeScanner("none", "None", {}).scan().items, IsEmpty());
}

TEST(CompositeScanner, stopsAfterTheCancelledPartAndPassesOnWhatAPartThrows) {
    const auto cancelling =
        std::make_shared<StubScanner>("cancelling", [](const ScanProgressHandler&) {
            Task::cancel(*Task::current());
            return std::vector{item("/gathered")};
        });
    const auto failing = std::make_shared<StubScanner>(
        "failing", [](const ScanProgressHandler&) -> std::vector<ScanItem> {
            throw std::runtime_error("no");
        });
    Task([&] {
        EXPECT_THAT(paths(CompositeScanner("a", "A", {cancelling, failing}).scan().items),
                    ElementsAre("/gathered"));
    }).wait();
    EXPECT_THROW((void)CompositeScanner("a", "A", {finding({}), failing}).scan(),
                 std::runtime_error);
}

TEST(SmartScanCoordinator, mergesWhatAllFoundAndCarriesOnWithoutTheOneThatFails) {
    std::vector<ScanProgress> reports;
    std::mutex lock;
    const auto failing = std::make_shared<StubScanner>(
        "failing", [](const ScanProgressHandler&) -> std::vector<ScanItem> {
            throw std::runtime_error("no");
        });
    const SmartScanCoordinator scanner(
        "smart", "Smart",
        {finding({item("/c/A/b.db", 9), item("/x", 5, "first")}), failing,
         finding({item("/c/A", 7), item("/x/", 5, "second"), item("/y", 5)})});
    const ScanResult result = scanner.scan([&](const ScanProgress& report) {
        const std::lock_guard guard(lock);
        reports.push_back(report);
    });
    EXPECT_EQ(result.scannerID, "smart");
    EXPECT_THAT(paths(result.items), ElementsAre("/c/A", "/x", "/y"));
    EXPECT_EQ(result.items[1].category, "first");
    EXPECT_THAT(reports, ElementsAre(ScanProgress{"Running 3 scanners…", std::nullopt},
                                     ScanProgress{"Done", 1.0}));
    reports.clear();
    EXPECT_THAT(SmartScanCoordinator("smart", "Smart", {})
                    .scan([&](const ScanProgress& report) { reports.push_back(report); })
                    .items,
                IsEmpty());
    EXPECT_THAT(reports, ElementsAre(ScanProgress{"Running 0 scanners…", std::nullopt},
                                     ScanProgress{"Done", 1.0}));
}

TEST(SmartScanCoordinator, runsAllAtOnceAndCancelsThemAll) {
    constexpr int count = 5;
    // Nobody gets past this unless everybody runs at the same time.
    std::barrier together(count + 1);
    std::atomic<int> cancelled = 0;
    ScannerList list;
    for (int i = 0; i < count; ++i) {
        list.push_back(
            std::make_shared<StubScanner>("waiting", [&, i](const ScanProgressHandler& progress) {
                progress({"waiting", 0.5});
                together.arrive_and_wait();
                while (!Task::isCancelled()) {
                    std::this_thread::yield();
                }
                ++cancelled;
                return std::vector{item("/found" + std::to_string(i), i)};
            }));
    }
    ScanResult result;
    Task task([&] { result = SmartScanCoordinator("smart", "Smart", list).scan(); });
    together.arrive_and_wait();
    task.cancel();
    task.wait();
    EXPECT_EQ(cancelled, count);
    EXPECT_THAT(paths(result.items),
                ElementsAre("/found4", "/found3", "/found2", "/found1", "/found0"));
}

TEST(ProgressAggregator, addsUpSharesAndShowsTheHighestChildThatSpoke) {
    std::vector<ScanProgress> reports;
    const ScanProgressHandler downstream = [&](const ScanProgress& report) {
        reports.push_back(report);
    };
    ProgressAggregator aggregator(3, downstream);
    aggregator.update(3, "Nobody", "x", 1.0);
    aggregator.update(-1, "Nobody", "x", 1.0);
    aggregator.update(1, "Second", "half", 0.5);
    aggregator.update(1, "Second", "still", std::nullopt);
    aggregator.update(0, "First", "go", 1.0);
    aggregator.update(2, "Third", "go", std::nullopt);
    EXPECT_THAT(reports,
                ElementsAre(ScanProgress{"Second: half", 0.5 / 3},
                            ScanProgress{"Second: still", 0.5 / 3},
                            ScanProgress{"Second: still", 0.5}, ScanProgress{"Third: go", 0.5}));
}

TEST(OverlapRemoval, keepsTheOutermostOfNestedFindings) {
    struct Case {
        const char* name;
        std::vector<const char*> found;
        std::vector<std::string> kept;
    };
    const Case cases[] = {
        {"a folder hides what is deep inside it", {"/a/b/c/d", "/a/b"}, {"/a/b"}},
        {"a name that only begins alike is no ancestor", {"/a/bc", "/a/b"}, {"/a/b", "/a/bc"}},
        {"other spellings are one path", {"/a/./b/", "/a/x/../b", "/a/b/c"}, {"/a/./b"}},
        {"by components, then by path", {"/z", "/a/b", "/b"}, {"/b", "/z", "/a/b"}},
        {"the root hides nothing", {"/", "/a"}, {"/", "/a"}},
    };
    for (const Case& one : cases) {
        SCOPED_TRACE(one.name);
        std::vector<ScanItem> items;
        for (const char* path : one.found) {
            items.push_back(item(path));
        }
        EXPECT_EQ(paths(removingOverlaps(items)), one.kept);
    }
}

TEST(ScannerComposition, knowsWhatAToolIsMadeOf) {
    EXPECT_THAT(ScannerComposition::componentScannerIDs("cache-cleaner"),
                ElementsAre("cache-cleaner", "browser-cache"));
    EXPECT_THAT(ScannerComposition::componentScannerIDs("trash"), ElementsAre("trash"));
    EXPECT_TRUE(ScannerComposition::toolCovers("cache-cleaner", "browser-cache"));
    EXPECT_FALSE(ScannerComposition::toolCovers("large-files", "browser-cache"));
    EXPECT_FALSE(ScannerComposition::toolCovers("browser-cache", "cache-cleaner"));
}

TEST(ScannerComposition, buildsTheSmartScanWithoutTheDownloadFolder) {
    const testing::TemporaryFolder home;
    const UserFolders folders{home.url(), home.at("data"), home.at("config"), home.at("tmp")};
    const auto ids = [](const ScannerList& list) {
        std::vector<std::string> texts;
        for (const auto& scanner : list) {
            texts.push_back(scanner->id() + "|" + scanner->displayName());
        }
        return texts;
    };
    const ScannerList list = ScannerComposition::defaultSmartScan(folders);
    EXPECT_THAT(ids(list), ElementsAre("cache-cleaner|Cache Cleaner", "old-files|Old Files",
                                       "developer|Developer Tools", "orphaned-files|Orphaned Files",
                                       "browser-cache|Browser Cache", "system-files|System Files"));
    for (const OldFilesTarget& target : dynamic_cast<const OldFilesScanner&>(*list[1]).targets()) {
        EXPECT_NE(target.heuristic->id, "old-files.downloads");
    }
    EXPECT_THAT(ids(ScannerComposition::scanners(
                    std::array{SmartScanScope::browsers, SmartScanScope::caches}, folders)),
                ElementsAre("browser-cache|Browser Cache", "cache-cleaner|Cache Cleaner"));
}

TEST(ScannerComposition, findsTheSameOnEveryRunAndNothingElseWhenCancelledAtAnyMoment) {
    const testing::TemporaryFolder home;
    const UserFolders folders{home.url(), home.at("data"), home.at("config"), home.at("tmp")};
    for (const char* name :
         {"Library/Caches/A", "Library/Caches/B/deep", "Library/Logs/C", ".npm/_cacache",
          "p/node_modules/x", "q/.venv", "Library/Application Support/Google/Chrome/Default/Cache",
          "Library/Application Support/com.gone.app", ".local/share/lima", "go/pkg/mod"}) {
        for (int i = 0; i < 20; ++i) {
            home.makeFileOfSize(std::string(name) + "/f" + std::to_string(i), 3000);
        }
    }
    home.makeFile("Desktop/Screenshot.png");
    home.setModified("Desktop/Screenshot.png", 1e9);
    const SmartScanCoordinator scanner("smart-scan", "Smart Scan",
                                       ScannerComposition::defaultSmartScan(folders));
    using Found = std::set<std::pair<std::string, std::int64_t>>;
    const auto found = [](const ScanResult& result) {
        Found places;
        for (const ScanItem& one : result.items) {
            places.emplace(one.path(), one.sizeBytes);
        }
        return places;
    };
    std::atomic<int> reports = 0;
    const ScanResult whole = scanner.scan([&](const ScanProgress&) { ++reports; });
    ASSERT_GE(whole.items.size(), 9U);
    EXPECT_EQ(paths(scanner.scan().items), paths(whole.items));
    const Found all = found(whole);
    for (int moment = 1; moment <= reports; moment += 3) {
        std::atomic<int> count = 0;
        Found some;
        Task([&] {
            const auto own = Task::current();
            some = found(scanner.scan([&](const ScanProgress&) {
                if (++count == moment) {
                    Task::cancel(*own);
                }
            }));
        }).wait();
        EXPECT_TRUE(std::includes(all.begin(), all.end(), some.begin(), some.end())) << moment;
    }
}

TEST(SmartScanScope, isRelevantForDevelopersOnlyWhereThereIsATrace) {
    const testing::TemporaryFolder home;
    for (const SmartScanScope scope : allSmartScanScopes) {
        EXPECT_EQ(isRelevant(scope, home.url()), scope != SmartScanScope::developer);
        EXPECT_EQ(smartScanScopeFromRawValue(rawValue(scope)), scope);
        EXPECT_FALSE(title(scope).empty() || explanation(scope).empty() || symbol(scope).empty());
    }
    EXPECT_FALSE(smartScanScopeFromRawValue("Caches"));
    home.makeFolder(".cargo");
    EXPECT_TRUE(isRelevant(SmartScanScope::developer, home.url()));
}

} // namespace
} // namespace korvane
