#include "KorvaneCore/foundation/FileError.h"
#include "KorvaneCore/foundation/Task.h"
#include "KorvaneCore/scan/AccessProbe.h"
#include "KorvaneCore/scan/PathHeuristicRows.h"
#include "KorvaneCore/scan/PathHeuristics.h"
#include "KorvaneCore/scanners/CustomRuleStore.h"
#include "KorvaneCore/scanners/CustomRulesScanner.h"
#include "KorvaneCore/scanners/LinuxRulePreset.h"
#include "tests/support/TemporaryFolder.h"

#include <set>

#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvane {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class CustomRulesTest : public ::testing::Test {
  protected:
    std::vector<std::string> found(
        std::vector<CustomRule> rules,
        const CustomRulesScanner::Refusal& refusal = [](const FileURL&) { return false; }) const {
        std::vector<std::string> lines;
        const ScanResult result = CustomRulesScanner(std::move(rules), home.url(), refusal).scan();
        for (const ScanItem& item : result.items) {
            lines.push_back(item.path().substr(home.path().size() + 1) + " | " + item.heuristicID +
                            " | " + item.category);
        }
        return lines;
    }

    static CustomRule rule(std::string id, std::string path, bool children = false) {
        return {std::move(id), "Mine", std::move(path), "", HeuristicRisk::medium, 0, children};
    }

    std::string loadingError(const std::string& content) const {
        home.makeFile("rules.json", content);
        try {
            (void)store.load();
            return "";
        } catch (const DecodingError& error) {
            return error.what();
        }
    }

    testing::TemporaryFolder home;
    CustomRuleStore store{home.at("rules.json")};
};

TEST_F(CustomRulesTest, readsWhatPeopleWriteAndSaysWhereItIsWrong) {
    home.makeFile("rules.json", R"([{"id":"a","name":"A","path":"~/x"},
        {"id":"b","name":"B","path":"/y/*","note":"n","risk":"high","minimumAgeDays":7,
         "enumerateChildren":true}])");
    EXPECT_THAT(store.load(),
                ElementsAre(CustomRule{"a", "A", "~/x", "", HeuristicRisk::medium, 0, false},
                            CustomRule{"b", "B", "/y/*", "n", HeuristicRisk::high, 7, true}));
    const std::pair<const char*, const char*> wrong[] = {
        {"[\n  {,\n]", "line 2, column 4"},
        {R"({"id":"a"})", "an array of rules was expected"},
        {R"([{"id":"a","name":"A"}])", "rule 1: \"path\" is missing"},
        {R"([{"id":"a","name":"A","path":"x"}])", "must begin with"},
        {R"([{"id":"a","name":"A","path":"~/a/../.."}])", "must not hold \"..\""},
        {R"([{"id":"a","name":"A","path":"~/**/x"}])", "\"**\""},
        {R"([{"id":"a","name":"A","path":"/x","risk":"none"}])", "low, medium or high"},
        {R"([{"id":"a","name":"A","path":"/x","minimumAgeDays":-1}])", "between 0 and"},
        {R"([{"id":"a","name":"A","path":"/x"},{"id":"a","name":"A","path":"/y"}])", "twice"}};
    for (const auto& [content, sentence] : wrong) {
        EXPECT_THAT(loadingError(content), HasSubstr(sentence)) << content;
    }
    // A file that is not understood is never written over.
    const CustomRule another = rule("z", "/z");
    EXPECT_THROW(store.add({&another, 1}), DecodingError);
    EXPECT_EQ(home.content("rules.json"), wrong[8].first);
}

TEST_F(CustomRulesTest, addsEachIdOnceAndRemovesIt) {
    const CustomRuleStore fresh(home.at("new/folder/rules.json"));
    EXPECT_THAT(fresh.load(), IsEmpty());
    EXPECT_FALSE(fresh.remove("a"));
    EXPECT_FALSE(home.exists("new"));
    const std::vector<CustomRule> rules{rule("a", "~/a"), rule("\xC3\xA4", "/odd\xFF")};
    EXPECT_EQ(fresh.add(rules), rules);
    EXPECT_THAT(fresh.add(rules), IsEmpty());
    EXPECT_EQ(fresh.load(), rules);
    EXPECT_TRUE(fresh.remove("a"));
    EXPECT_THAT(fresh.load(), ElementsAre(rules[1]));
}

TEST_F(CustomRulesTest, findsPlacesByStarsWithinOneName) {
    for (const char* name : {"p/one/Cache/f", "p/two/Cache/f", "p/.hid/Cache/f", "p/a/b/Cache/f",
                             "p/one/Cache2/f", "other/x/Cache/f"}) {
        home.makeFile(name, "content");
    }
    home.makeLink("p/linked", home.at("other/x").path());
    home.makeLink("p/two/CacheLink", home.at("other/x/Cache").path());
    const std::pair<const char*, std::vector<std::string>> cases[] = {
        {"p/*/Cache", {"p/one/Cache", "p/two/Cache"}},
        {"p/o*e/C*e*", {"p/one/Cache", "p/one/Cache2"}},
        {"p/.*/Cache", {"p/.hid/Cache"}},
        {"p/*/*2", {"p/one/Cache2"}},
        {"p/two/*", {"p/two/Cache"}},
        {"p/none/*", {}},
        {"p/?ne/Cache", {}},
    };
    for (const auto& [pattern, expected] : cases) {
        std::vector<std::string> lines;
        for (const std::string& path : expected) {
            lines.push_back(path + " | custom-rules.r | Mine");
        }
        EXPECT_THAT(found({rule("r", "~/" + std::string(pattern))}),
                    ::testing::UnorderedElementsAreArray(lines))
            << pattern;
    }
}

TEST_F(CustomRulesTest, leavesToOthersWhatTheyNameMoreClosely) {
    for (const char* name : {"foo/f", "thumbnails/f", "mozilla/firefox/p/cache2/f",
                             "mozilla/other/f", "huggingface/hub/f", ".hidden/f"}) {
        home.makeFile(".cache/" + std::string(name), "content");
    }
    EXPECT_THAT(found({rule("all", "~/.cache", true), rule("thumbs", "~/.cache/thumbnails"),
                       rule("fox", "~/.cache/mozilla/firefox/*/cache2")}),
                ElementsAre(".cache/foo | custom-rules.all | Mine",
                            ".cache/thumbnails | custom-rules.thumbs | Mine",
                            ".cache/mozilla/firefox/p/cache2 | custom-rules.fox | Mine"));
}

TEST_F(CustomRulesTest, proposesNothingThatMustStayOrIsTooYoung) {
    for (const char* name : {"a/old", "a/young", "a/kept", "a/mixed/old", "a/mixed/young"}) {
        home.makeFile(name, "content");
        home.setModified(name, std::string_view(name).ends_with("young") ? 4e9 : 1e9);
    }
    CustomRule aged = rule("r", "~/a", true);
    aged.minimumAgeDays = 30;
    EXPECT_THAT(found({aged}, [&](const FileURL& url) { return url == home.at("a/kept"); }),
                ElementsAre("a/old | custom-rules.r | Mine"));
    EXPECT_THAT(found({rule("r", "~/a")}, [&](const FileURL& url) { return url == home.at("a"); }),
                IsEmpty());
}

TEST_F(CustomRulesTest, offersAPresetOfValidRulesWithReasons) {
    std::set<std::string> ids;
    for (const CustomRule& one : linuxRulePreset()) {
        EXPECT_NO_THROW(one.validate()) << one.id;
        EXPECT_TRUE(ids.insert(one.id).second) << one.id;
        EXPECT_FALSE(one.note.empty()) << one.id;
        EXPECT_TRUE(one.path.starts_with("~/.") || one.path.starts_with("~/snap/")) << one.path;
        for (const PathHeuristic* row : PathHeuristics::all()) {
            EXPECT_NE(row->pathPattern, one.path) << "the catalogue has it already";
        }
    }
    EXPECT_GT(ids.size(), 40U);
}

TEST_F(CustomRulesTest, namesThePlacesOfTheCatalogueOutright) {
    const FileURL user("/h");
    const auto paths = [&](const PathHeuristic& row) {
        std::vector<std::string> texts;
        for (const FileURL& url : row.places(user)) {
            texts.push_back(url.path());
        }
        return texts;
    };
    using namespace PathHeuristics;
    EXPECT_THAT(paths(devMavenRepo), ElementsAre("/h/.m2/repository"));
    EXPECT_THAT(paths(uninstallCrashLogs),
                ElementsAre("/h/Library/Application Support/CrashReporter", "/h/Library/Crashes"));
    EXPECT_THAT(paths(browserBraveCache),
                ElementsAre("/h/Library/Application Support/BraveSoftware/Brave-Browser"));
    EXPECT_THAT(paths(oldFilesScreenshots), ElementsAre("/h/Desktop"));
    EXPECT_THAT(paths(oldFilesDownloads), ElementsAre("/h/Downloads"));
    EXPECT_THAT(paths(systemTrashAllVolumes), ElementsAre("/h/.Trash"));
    EXPECT_THAT(paths(devNodeModules), IsEmpty());
    EXPECT_THAT(paths(largeFilesUserSelected), IsEmpty());
}

TEST_F(CustomRulesTest, probesWhatExistsAndCannotBeRead) {
    home.makeFolder(".m2/repository");
    home.makeFolder(".gradle/caches");
    EXPECT_THAT(probeAccess(home.url()), IsEmpty());
    if (geteuid() == 0) {
        GTEST_SKIP() << "root may read everything";
    }
    ASSERT_EQ(chmod(home.at(".m2/repository").path().c_str(), 0), 0);
    EXPECT_THAT(
        probeAccess(home.url()),
        ElementsAre(AccessProblem{"dev.maven.repo", home.at(".m2/repository"), errorText(EACCES)}));
    ASSERT_EQ(chmod(home.at(".m2/repository").path().c_str(), 0700), 0);
}

} // namespace
} // namespace korvane
