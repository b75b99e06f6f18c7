#include "KorvaneCore/foundation/Text.h"
#include "KorvaneCore/scan/PathHeuristicRows.h"
#include "KorvaneCore/scan/PathHeuristics.h"

#include <algorithm>
#include <map>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

std::vector<std::string_view> ids(const std::vector<const PathHeuristic*>& rows) {
    std::vector<std::string_view> result;
    for (const PathHeuristic* row : rows) {
        result.push_back(row->id);
    }
    return result;
}

bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

TEST(HeuristicRisk, isCodedByName) {
    const std::pair<HeuristicRisk, std::string_view> rows[] = {{HeuristicRisk::low, "low"},
                                                               {HeuristicRisk::medium, "medium"},
                                                               {HeuristicRisk::high, "high"}};
    for (const auto& [risk, name] : rows) {
        EXPECT_EQ(rawValue(risk), name);
        EXPECT_EQ(riskFromRawValue(name), risk);
    }
    for (const std::string_view other : {"", "Low", "medium ", "critical"}) {
        EXPECT_EQ(riskFromRawValue(other), std::nullopt) << other;
    }
    EXPECT_EQ(PathHeuristics::cacheUser.riskExplanation(),
              "Regenerates automatically when the app or system next needs it.");
    EXPECT_EQ(PathHeuristics::devMavenRepo.riskExplanation(),
              "May need to be re-downloaded or reconfigured after removal.");
    EXPECT_EQ(PathHeuristics::systemLimaVms.riskExplanation(),
              "Will not come back on its own - make sure you don't need it.");
}

TEST(PathHeuristics, everyScannerHasItsRows) {
    std::map<std::string_view, int> counts;
    for (const PathHeuristic* row : PathHeuristics::all()) {
        ++counts[row->scannerID];
        EXPECT_EQ(PathHeuristics::heuristic(row->id), row) << "id used twice: " << row->id;
    }
    EXPECT_EQ(counts, (std::map<std::string_view, int>{{"attachments", 2},
                                                       {"cache-cleaner", 37},
                                                       {"developer", 22},
                                                       {"ios-backup", 1},
                                                       {"uninstaller", 6},
                                                       {"time-machine", 1},
                                                       {"trash", 1},
                                                       {"old-files", 3},
                                                       {"large-files", 1},
                                                       {"orphaned-files", 3},
                                                       {"duplicate-finder", 1},
                                                       {"downloads", 1},
                                                       {"icloud-cleanup", 1},
                                                       {"similar-images", 1},
                                                       {"browser-cache", 8},
                                                       {"system-files", 9}}));
    EXPECT_EQ(PathHeuristics::all().size(), 98U);
    EXPECT_EQ(PathHeuristics::all().front(), &PathHeuristics::attachmentsMail);
    EXPECT_EQ(PathHeuristics::all()[57], &PathHeuristics::developerSimulatorRuntimes);
    EXPECT_EQ(PathHeuristics::all().back(), &PathHeuristics::systemLimaVms);
}

TEST(PathHeuristics, looksRowsUpExactly) {
    const PathHeuristic* row = PathHeuristics::heuristic("cache.user");
    ASSERT_EQ(row, &PathHeuristics::cacheUser);
    EXPECT_EQ(row->pathPattern, "~/Library/Caches");
    EXPECT_EQ(row->risk, HeuristicRisk::low);
    EXPECT_TRUE(row->enumerateChildren);
    for (const std::string_view unknown : {"CACHE.USER", "cache", "cache.user ", ""}) {
        EXPECT_EQ(PathHeuristics::heuristic(unknown), nullptr) << unknown;
    }
    EXPECT_THAT(ids(PathHeuristics::heuristics("browser-cache")),
                ElementsAre("browser.safari.cache", "browser.chrome.cache", "browser.firefox.cache",
                            "browser.brave.cache", "browser.arc.cache", "browser.edge.cache",
                            "browser.opera.cache", "browser.vivaldi.cache"));
    EXPECT_THAT(PathHeuristics::heuristics("Browser-Cache"), IsEmpty());
}

TEST(PathHeuristics, everyRowIsFitToBeShown) {
    for (const PathHeuristic* row : PathHeuristics::all()) {
        SCOPED_TRACE(row->id);
        for (const std::string_view text : {row->id, row->category, row->displayName,
                                            row->pathPattern, row->whySafe, row->scannerID}) {
            EXPECT_FALSE(text.empty());
            EXPECT_EQ(displayText(text), text);
            EXPECT_FALSE(contains(text, "  ") || text.starts_with(' ') || text.ends_with(' '));
        }
        EXPECT_TRUE(row->whySafe.ends_with('.'));
        EXPECT_TRUE(std::all_of(row->id.begin(), row->id.end(), [](char c) {
            return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '.' || c == '-';
        }));
        const std::string_view pattern = row->pathPattern;
        EXPECT_TRUE(pattern.starts_with("~/") || pattern.starts_with('/') ||
                    pattern.starts_with("**/") || pattern.starts_with('['));
    }
}

TEST(PathHeuristics, riskAgreesWithWhatTheTextPromises) {
    int reviewed = 0;
    int destructive = 0;
    for (const PathHeuristic* row : PathHeuristics::all()) {
        const std::string why = composedLowercase(row->whySafe);
        const auto says = [&](std::string_view part) { return contains(why, part); };
        if (says("unticked") || says("auto-select") || says("not selecting") || says(" review") ||
            says("is pre-selected") || says("never selects")) {
            EXPECT_NE(row->risk, HeuristicRisk::low) << row->id;
            ++reviewed;
        }
        if (says("auto-select") || says(" destroys ") != says("never destroys")) {
            EXPECT_EQ(row->risk, HeuristicRisk::high) << row->id;
            ++destructive;
        }
    }
    EXPECT_EQ(reviewed, 18);
    EXPECT_EQ(destructive, 6);
}

TEST(PathHeuristics, sharedLocationsAreTheIntendedOnes) {
    std::map<std::string_view, std::vector<std::string_view>> byPattern;
    for (const PathHeuristic* row : PathHeuristics::all()) {
        byPattern[row->pathPattern].push_back(row->id);
    }
    std::vector<std::vector<std::string_view>> shared;
    for (const auto& [pattern, rows] : byPattern) {
        if (rows.size() > 1) {
            shared.push_back(rows);
        }
    }
    EXPECT_THAT(shared,
                UnorderedElementsAre(
                    ElementsAre("attachments.mail", "mail.downloads"),
                    ElementsAre("attachments.messages", "system.messages-attachments"),
                    ElementsAre("dev.xcode.derived-data.stale", "dev.xcode.derived-data.active"),
                    ElementsAre("dev.xcode.ios-device-support.superseded",
                                "dev.xcode.ios-device-support.current"),
                    ElementsAre("duplicate-finder.duplicate", "similar-images.near-duplicate")));
    std::vector<std::string_view> enumerating;
    for (const PathHeuristic* row : PathHeuristics::all()) {
        if (row->enumerateChildren) {
            enumerating.push_back(row->id);
        }
    }
    EXPECT_THAT(enumerating, ElementsAre("cache.user", "cache.logs", "dev.xcode.derived-data",
                                         "dev.xcode.ios-device-support"));
}

TEST(PathHeuristic, claimsTheChildrenThatOtherRowsName) {
    const FileURL home("/Users/ann");
    const auto claimed = [&](const PathHeuristic& row) { return row.claimedChildNames(home); };
    EXPECT_THAT(claimed(PathHeuristics::cacheUser),
                UnorderedElementsAre(
                    "go-build", "org.carthage.CarthageKit", "Homebrew", "CocoaPods", "JetBrains",
                    "com.spotify.client", "com.apple.AMPLibraryAgent", "com.apple.TV",
                    "com.apple.QuickLook.thumbnailcache", "com.apple.Safari", "pip"));
    EXPECT_THAT(claimed(PathHeuristics::cacheLogs), UnorderedElementsAre("DiagnosticReports"));
    EXPECT_THAT(claimed(PathHeuristics::devXcodeDerivedData), UnorderedElementsAre("<project>"));
    EXPECT_THAT(claimed(PathHeuristics::devXcodeIosDeviceSupport), UnorderedElementsAre("<build>"));
    EXPECT_THAT(claimed(PathHeuristics::devNodeModules), IsEmpty());
    EXPECT_THAT(claimed(PathHeuristics::devGradleCache), IsEmpty());
    const auto support = claimed(PathHeuristics::uninstallAppSupport);
    EXPECT_TRUE(support.contains("Google") && support.contains("CrashReporter"));
    EXPECT_FALSE(support.contains("Code Cache")) << "a sibling name is no path of its own";
}

TEST(PathHeuristic, expandsOnlyALeadingTilde) {
    const FileURL home("/Users/ann");
    EXPECT_EQ(PathHeuristics::devGradleCache.expandedPath(home), "/Users/ann/.gradle/caches");
    EXPECT_EQ(PathHeuristics::devGradleCache.url(home), FileURL("/Users/ann/.gradle/caches"));
    EXPECT_EQ(PathHeuristics::icloudLocalCopies.expandedPath(home),
              "/Users/ann/Library/Mobile Documents/com~apple~CloudDocs");
    EXPECT_EQ(PathHeuristics::systemAppleIntelligence.expandedPath(home),
              PathHeuristics::systemAppleIntelligence.pathPattern);
}

} // namespace
} // namespace korvane
