#include "KorvaneCore/cleaning/ExclusionStore.h"
#include "KorvaneCore/foundation/FileError.h"
#include "tests/cleaning/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

#include <sys/stat.h>

#include <gtest/gtest.h>

using namespace korvane;
using namespace korvane::testing;
using Case = ExclusionMatch::Case;

namespace {

class ExclusionStoreTest : public ::testing::Test {
  protected:
    static constexpr const char* fileName = "home/support/Korvane/exclusions.json";

    [[nodiscard]] ExclusionStore makeStore() const { return {folder_.at(fileName), home_}; }

    static Exclusion addPath(ExclusionStore& store, std::string path) {
        Exclusion exclusion{.id = UUID::random(), .path = std::move(path), .note = ""};
        store.add(exclusion);
        return exclusion;
    }

    /// "exact ~/x", or empty for no match; "~" in `path` is the home, "@" the folder around it.
    [[nodiscard]] std::string matchText(const ExclusionStore& store, std::string path) const {
        if (path.starts_with('@')) {
            path = folder_.path() + path.substr(1);
        }
        const FileURL url(expandingTilde(path, home_));
        const auto match = store.match(url);
        EXPECT_EQ(store.blocks(url), match.has_value());
        EXPECT_EQ(store.isExcluded(url), match && match->match != Case::contains);
        return match ? std::string(rawValue(match->match)) + " " + match->root : "";
    }

    TemporaryFolder folder_;
    FileURL home_ = folder_.makeFolder("home");
};

TEST_F(ExclusionStoreTest, findsWhatIsOnInsideOrAroundTheList) {
    ExclusionStore store = makeStore();
    EXPECT_EQ(matchText(store, "~/Projects/keep"), "");
    for (const char* path : {"~/Projects/keep", "~/A", "~/A/B", "~/C/x", "~/C/y/z", "/", "//./",
                             "relative/path", "~other"}) {
        addPath(store, path);
    }
    const std::vector<std::pair<std::string, std::string>> rows = {
        {"~/Projects/keep", "exact ~/Projects/keep"},
        {"~/projects/./KEEP/", "exact ~/Projects/keep"},
        {"~/Projects/keep/a/b", "inside ~/Projects/keep"},
        {"~/Projects", "contains ~/Projects/keep"},
        {"~/Projects/keeper", ""},
        {"~/Projects/kee", ""},
        {"~/A/B/c", "inside ~/A/B"}, // the most specific folder
        {"~/A/B", "exact ~/A/B"},    // hides the one around it
        {"~/A/x", "inside ~/A"},     // hides what it may contain
        {"~", "contains ~/A"},       // the outermost, the earlier of equals
        {"~/C", "contains ~/C/x"},
        {"~/D", ""},
        {"/srv/relative/path", ""},
        {"/", ""},
    };
    for (const auto& [path, expected] : rows) {
        EXPECT_EQ(matchText(store, path), expected) << path;
    }
}

TEST_F(ExclusionStoreTest, seesThroughLinksOnBothSides) {
    folder_.makeFolder("home/real/keep");
    folder_.makeFolder("data/inner");
    folder_.makeLink("alias", "home/real");
    folder_.makeLink("home/linked", folder_.at("data").path());
    folder_.makeLink("home/real/keep/link", folder_.at("data/inner").path());
    ExclusionStore store = makeStore();
    addPath(store, "~/linked");
    addPath(store, "~/real/keep");
    const std::string viaAlias = folder_.at("alias/other").path();
    addPath(store, viaAlias);
    EXPECT_EQ(matchText(store, "@/data/x"), "inside ~/linked");
    EXPECT_EQ(matchText(store, "@/alias/keep/a"), "inside ~/real/keep");
    EXPECT_EQ(matchText(store, "@/alias"), "contains " + viaAlias); // outermost as spelled
    EXPECT_EQ(matchText(store, "~/real/other/x"), "inside " + viaAlias);
    // A link that stands in a protected folder and is reached through another link: the first one
    // is what would be removed, wherever it points.
    ExclusionStore onlyKeep(folder_.at("second.json"), home_);
    addPath(onlyKeep, "~/real/keep");
    EXPECT_EQ(matchText(onlyKeep, "@/alias/keep/link"), "inside ~/real/keep");
    ExclusionStore linkItself(folder_.at("third.json"), home_);
    addPath(linkItself, folder_.at("alias/keep/link").path());
    EXPECT_EQ(matchText(linkItself, "~/real/keep").substr(0, 9), "contains ");
}

TEST_F(ExclusionStoreTest, keepsAPathAddedTwiceUntilBothAreGone) {
    ExclusionStore store = makeStore();
    const Exclusion first = addPath(store, "~/twice");
    const Exclusion second = addPath(store, home_.path() + "/TWICE");
    EXPECT_EQ(matchText(store, "~/twice/x"), "inside ~/twice");
    EXPECT_TRUE(store.remove(first.id));
    EXPECT_EQ(matchText(store, "~/twice/x"), "inside " + second.path);
    EXPECT_FALSE(store.remove(first.id));
    EXPECT_TRUE(store.remove(second.id));
    EXPECT_EQ(matchText(store, "~/twice/x"), "");
    EXPECT_EQ(folder_.content(fileName), "[]");
}

TEST_F(ExclusionStoreTest, writesAndReadsBackPathsOfAnyBytes) {
    ExclusionStore store = makeStore();
    const Exclusion plain{.id = UUID::random(), .path = "~/a \"b\"\n", .note = "why\xFFnot"};
    store.add(plain);
    EXPECT_EQ(folder_.content(fileName),
              R"([{"id":")" + plain.id.text() + R"(","path":"~/a \"b\"\n","note":"why\\xFFnot"}])");
    addPath(store, "/srv/\xFF/keep");
    addPath(store, "~/\xFE");
    const ExclusionStore reloaded = makeStore();
    EXPECT_EQ(reloaded.items(), store.items());
    EXPECT_EQ(matchText(reloaded, "/srv/\xFF/keep/x"), "inside /srv/\xFF/keep");
    EXPECT_EQ(matchText(reloaded, "/srv/\xFE/keep/x"), "");
    EXPECT_EQ(matchText(reloaded, "~/\xFE/x").substr(0, 7), "inside ");
}

TEST_F(ExclusionStoreTest, startsEmptyOnABadFileAndLeavesItUntilTheNextChange) {
    const UUID known = UUID::random();
    const std::string id = known.text();
    const std::vector<std::string> documents = {
        R"([{"id":")" + id + R"(","path":"~/a"}])",
        R"([{"id":")" + id + R"(","path":"~/a","note":null}])",
        R"([{"id":"1","path":"~/a","note":""}])",
        R"({"id":")" + id + R"(","path":"~/a","note":""})",
        R"([{"id":")" + id + R"(","path":"~/a","note":""},3])",
        "[",
        "",
    };
    for (const std::string& document : documents) {
        folder_.makeFile(fileName, document);
        ExclusionStore store = makeStore();
        EXPECT_TRUE(store.items().empty()) << document;
        EXPECT_FALSE(store.remove(known));
        EXPECT_EQ(folder_.content(fileName), document);
        const Exclusion added = addPath(store, "~/new");
        EXPECT_EQ(makeStore().items(), std::vector<Exclusion>{added}) << document;
    }
}

TEST_F(ExclusionStoreTest, changesNothingWhenItCannotWrite) {
    ExclusionStore store = makeStore();
    EXPECT_FALSE(store.remove(UUID::random()));
    EXPECT_FALSE(folder_.exists("home/support")) << "nothing to write";
    folder_.makeFile("home/support", "in the way");
    EXPECT_THROW(addPath(store, "~/a"), FileError);
    EXPECT_TRUE(store.items().empty());
    EXPECT_EQ(matchText(store, "~/a"), "");
}

TEST_F(ExclusionStoreTest, keepsListAndFileWhenTheFolderIsReadOnly) {
    if (geteuid() == 0) {
        GTEST_SKIP() << "root may write to a read-only folder";
    }
    ExclusionStore kept(folder_.at("locked/exclusions.json"), home_);
    const Exclusion first = addPath(kept, "~/a");
    const std::string content = folder_.content("locked/exclusions.json");
    ASSERT_EQ(chmod(folder_.at("locked").path().c_str(), 0500), 0);
    EXPECT_THROW(addPath(kept, "~/b"), FileError);
    EXPECT_THROW(kept.remove(first.id), FileError);
    EXPECT_EQ(kept.items(), std::vector<Exclusion>{first});
    EXPECT_EQ(folder_.content("locked/exclusions.json"), content);
    EXPECT_EQ(folder_.listing("locked"), std::vector<std::string>{"exclusions.json"});
}

TEST_F(ExclusionStoreTest, keepsTheChangesOfEveryProcess) {
    constexpr int each = 12;
    ExclusionStore mine = makeStore();
    const Exclusion early = addPath(mine, "~/early");
    const auto addAll = [](ExclusionStore& store, const std::string& name) {
        for (int i = 0; i < each; ++i) {
            addPath(store, "~/" + name + std::to_string(i));
        }
        return 0;
    };
    const pid_t child = startChild([&] {
        ExclusionStore theirs = makeStore();
        return theirs.remove(early.id) ? addAll(theirs, "theirs") : 1;
    });
    addAll(mine, "mine");
    EXPECT_EQ(waitForChild(child), 0);
    const Exclusion last = addPath(mine, "~/last");
    EXPECT_EQ(mine.items().size(), 2U * each + 1);
    EXPECT_EQ(makeStore().items(), mine.items());
    EXPECT_EQ(matchText(mine, "~/theirs3/x"), "inside ~/theirs3");
    EXPECT_EQ(matchText(mine, "~/early"), "");

    // A file that went missing or bad takes no protection of a running program with it.
    folder_.makeFile(fileName, "[");
    EXPECT_TRUE(mine.remove(last.id));
    EXPECT_EQ(makeStore().items().size(), 2U * each);
}

TEST(ExclusionMatch, tellsTheUserWithoutControlCharacters) {
    EXPECT_EQ((ExclusionMatch{Case::exact, "~/a"}.message()),
              "This is on your exclusion list, so Korvane left it alone.");
    EXPECT_EQ((ExclusionMatch{Case::inside, "~/a\x1B[2J"}.message()),
              "This is inside ~/a\\x1B[2J, which is on your exclusion list, so Korvane left it "
              "alone.");
    EXPECT_EQ((ExclusionMatch{Case::contains, "~/a"}.message()),
              "Deleting this would also delete ~/a, which is on your exclusion list - so Korvane "
              "left the whole thing alone.");
}

} // namespace
