#include "KorvaneCore/memory/ScanDiff.h"

#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvane {
namespace {

using ::testing::Pair;
using ::testing::UnorderedElementsAre;

using Sizes = std::vector<std::pair<const char*, std::int64_t>>;

ScanResult resultOf(const Sizes& sizes, std::string scannerID = "cache-cleaner") {
    ScanResult result{
        .scannerID = std::move(scannerID), .startedAt = Date(100), .finishedAt = Date(200)};
    for (const auto& [path, size] : sizes) {
        result.items.push_back({.url = FileURL(path), .sizeBytes = size});
    }
    return result;
}

TEST(ScanDiff, tellsNewGrownAndVanishedItemsApart) {
    const ScanResult previous = resultOf({{"/same", 10},
                                          {"/grew", 10},
                                          {"/shrank", 10},
                                          {"/gone", 7},
                                          {"/gone too", 5},
                                          {"/twice", 1},
                                          {"/./twice", 50}});
    const ScanResult current = resultOf({{"/a/../same", 10},
                                         {"/grew/.", 11},
                                         {"/shrank", 9},
                                         {"/fresh", 3},
                                         {"/x/../fresh", 4},
                                         {"/twice", 60}});
    const auto diff = ScanDiff::make(previous, current);
    ASSERT_TRUE(diff);
    EXPECT_EQ(diff->previousScanDate, Date(200));
    EXPECT_THAT(diff->newPaths, UnorderedElementsAre("/fresh"));
    EXPECT_THAT(diff->growth, UnorderedElementsAre(Pair("/grew", 1), Pair("/twice", 10)));
    EXPECT_EQ(diff->vanishedCount, 2);
    EXPECT_EQ(diff->vanishedBytes, 12);

    using Case = ScanDiff::Change::Case;
    const std::pair<const char*, ScanDiff::Change> rows[] = {
        {"/same", {Case::unchanged, 0}},   {"/grew", {Case::grown, 1}},
        {"/./grew", {Case::grown, 1}},     {"/shrank", {Case::unchanged, 0}},
        {"/b/../fresh", {Case::added, 0}}, {"/never seen", {Case::unchanged, 0}}};
    for (const auto& [path, change] : rows) {
        EXPECT_EQ(diff->change({.url = FileURL(path)}), change) << path;
    }
}

TEST(ScanDiff, comparesOnlyResultsOfOneScanner) {
    EXPECT_FALSE(ScanDiff::make(resultOf({}, "trash"), resultOf({}, "Trash")));
    const auto empty = ScanDiff::make(resultOf({}), resultOf({}));
    ASSERT_TRUE(empty);
    EXPECT_EQ(empty->vanishedCount, 0);
}

TEST(ScanDiffDeathTest, neverWraps) {
    constexpr std::int64_t huge = std::numeric_limits<std::int64_t>::max();
    EXPECT_DEATH((void)ScanDiff::make(resultOf({{"/a", huge}, {"/b", 1}}), resultOf({})),
                 "overflow");
    EXPECT_DEATH((void)ScanDiff::make(resultOf({{"/a", -2}}), resultOf({{"/a", huge}})),
                 "overflow");
}

} // namespace
} // namespace korvane
