#include "Korvane/tools/ReviewSelection.h"
#include "Korvane/tools/ReviewTable.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct Wanted {
    const char* path;
    std::int64_t size = 1;
    const char* category = "Caches";
    const char* row = "cache.user"; // of low risk
};

class ReviewTest : public ::testing::Test {
  protected:
    static constexpr const char* duplicate = "duplicate-finder.duplicate";

    ReviewTable table(const std::vector<Wanted>& wanted) {
        for (const Wanted& one : wanted) {
            ScanItem item;
            item.url = FileURL(one.path);
            item.sizeBytes = one.size;
            item.category = one.category;
            item.heuristicID = one.row;
            item.lastModified = Date::fromUnixSeconds(1'000'000 - one.size);
            review->result.items.push_back(item);
        }
        return ReviewTable(review, FileURL("/home/u"));
    }

    void preselect(std::initializer_list<std::size_t> items) const {
        for (const std::size_t item : items) {
            review->preselected.insert(review->result.items.at(item).id);
        }
    }

    static std::vector<std::string> layout(const ReviewTable& table) {
        std::vector<std::string> rows;
        for (const ReviewTable::Group& group : table.groups()) {
            rows.push_back("[" + group.category + " " + std::to_string(group.reclaimable) + "]");
            for (const std::size_t item : group.items) {
                rows.emplace_back(table.items()[item].url.lastPathComponent());
            }
        }
        return rows;
    }

    std::shared_ptr<ToolReview> review = std::make_shared<ToolReview>();
};

TEST_F(ReviewTest, sortsGroupsByWhatTheyGiveAndItemsByEveryColumn) {
    ReviewTable shown = table({{"/home/u/b", 5},
                               {"/home/u/A", 7},
                               {"/home/u/log", 100, "Logs", "unknown.row"},
                               {"/home/u/c", 7}});
    EXPECT_THAT(layout(shown), ElementsAre("[Logs 100]", "log", "[Caches 19]", "c", "A", "b"));
    EXPECT_EQ(shown.risk(2), HeuristicRisk::high); // nobody knows the row
    shown.sort(ReviewOrder::name, false);
    EXPECT_THAT(layout(shown), ElementsAre("[Logs 100]", "log", "[Caches 19]", "A", "b", "c"));
    shown.sort(ReviewOrder::date, true);
    EXPECT_THAT(layout(shown), ElementsAre("[Logs 100]", "log", "[Caches 19]", "b", "c", "A"));
    shown.sortGroups(GroupOrder::count);
    EXPECT_THAT(layout(shown), ElementsAre("[Caches 19]", "b", "c", "A", "[Logs 100]", "log"));
    EXPECT_THAT(layout(ReviewTable()), IsEmpty());
}

TEST_F(ReviewTest, findsInPathsAndCategoriesWhateverTheirCase) {
    ReviewTable shown =
        table({{"/home/u/Überall/x", 1}, {"/home/u/y", 2, "Logs"}, {"/srv/home/u\n/z\xFF", 3}});
    shown.find("ÜBER");
    EXPECT_THAT(layout(shown), ElementsAre("[Caches 1]", "x"));
    EXPECT_EQ(shown.groups().front().total, 2U);
    shown.find("logs");
    EXPECT_THAT(layout(shown), ElementsAre("[Logs 2]", "y"));
    shown.find("~/y"); // as it is shown
    EXPECT_THAT(layout(shown), ElementsAre("[Logs 2]", "y"));
    shown.find("/home/u/y"); // "~" stands there instead
    EXPECT_EQ(shown.foundCount(), 0U);
    shown.find("x\ncaches"); // one item's text does not run into the next
    EXPECT_EQ(shown.foundCount(), 1U);
    shown.find("");
    EXPECT_EQ(shown.foundCount(), 3U);
}

TEST_F(ReviewTest, countsWhatIsTickedThroughEveryChange) {
    const ReviewTable shown =
        table({{"/a", 10}, {"/b", 20}, {"/c", 40, "Other", "nobody.knows"}, {"/d", 80}});
    preselect({0, 3});
    review->refused.emplace(review->result.items[3].id, "It must stay.");
    ReviewSelection selection(shown);
    EXPECT_EQ(selection.bytes(), 10); // what may not go is not ticked, whatever was preselected
    EXPECT_FALSE(selection.tick(shown, 3, true));
    EXPECT_TRUE(selection.tick(shown, 2, true));
    EXPECT_TRUE(selection.tick(shown, 2, true)); // again changes nothing
    EXPECT_EQ(selection.bytes(), 50);
    EXPECT_EQ(selection.highRiskCount(), 1U);
    const std::vector<std::size_t> all = {0, 1, 2, 3};
    selection.tickAll(shown, all, true);
    EXPECT_EQ(selection.count(), 3U);
    selection.tickPreselected(shown, std::vector<std::size_t>{1, 2});
    EXPECT_EQ(selection.ids(shown), std::unordered_set<UUID>({review->result.items[0].id}));
    selection.clear(shown);
    EXPECT_EQ(selection.count() + static_cast<std::size_t>(selection.bytes()) +
                  selection.highRiskCount(),
              0U);
}

TEST_F(ReviewTest, leavesOneCopyOfEveryGroupOfDuplicates) {
    const ReviewTable shown = table({{"/new", 10, "digest", duplicate},
                                     {"/old", 10, "digest", duplicate},
                                     {"/older", 10, "digest", duplicate},
                                     {"/guarded", 5, "two", duplicate},
                                     {"/free", 5, "two", duplicate}});
    EXPECT_THAT(layout(shown),
                ElementsAre("[digest 20]", "older", "old", "new", "[two 5]", "free", "guarded"));
    preselect({1, 2, 4});
    review->refused.emplace(review->result.items[3].id, "It must stay.");
    ReviewSelection selection(shown);
    EXPECT_TRUE(selection.isKeeper(shown, 0));
    EXPECT_FALSE(selection.tick(shown, 0, true));
    selection.tickAll(shown, std::vector<std::size_t>{0, 1, 2}, true);
    EXPECT_EQ(selection.count(), 3U);
    selection.keep(shown, 2);
    EXPECT_TRUE(selection.isKeeper(shown, 2));
    EXPECT_TRUE(selection.isTicked(0) && selection.isTicked(1));
    // A copy that must stay anyway is the one that stays.
    EXPECT_TRUE(selection.isKeeper(shown, 3));
    EXPECT_FALSE(selection.tick(shown, 3, true));
}

} // namespace
} // namespace korvane
