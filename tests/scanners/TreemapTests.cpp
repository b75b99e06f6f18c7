#include "KorvaneCore/scanners/Treemap.h"

#include <cmath>
#include <numeric>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

namespace korvane {
namespace {

using ::testing::Each;
using ::testing::IsEmpty;
using Treemap::layout;
using Treemap::Rectangle;

std::vector<Rectangle> laidOut(const std::vector<double>& values, double width, double height) {
    return layout(values, width, height);
}

void expectNear(const Rectangle& actual, const Rectangle& expected) {
    EXPECT_NEAR(actual.x, expected.x, 1e-9);
    EXPECT_NEAR(actual.y, expected.y, 1e-9);
    EXPECT_NEAR(actual.width, expected.width, 1e-9);
    EXPECT_NEAR(actual.height, expected.height, 1e-9);
}

TEST(Treemap, givesTheTextbookLayout) {
    const std::vector<Rectangle> expected = {{0, 0, 3, 2},
                                             {0, 2, 3, 2},
                                             {3, 0, 12.0 / 7, 7.0 / 3},
                                             {3 + 12.0 / 7, 0, 9.0 / 7, 7.0 / 3},
                                             {3, 7.0 / 3, 1.2, 5.0 / 3},
                                             {4.2, 7.0 / 3, 1.2, 5.0 / 3},
                                             {5.4, 7.0 / 3, 0.6, 5.0 / 3}};
    const auto actual = laidOut({6, 6, 4, 3, 2, 2, 1}, 6, 4);
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        SCOPED_TRACE(i);
        expectNear(actual[i], expected[i]);
    }
}

TEST(Treemap, showsNothingWhereThereIsNoRoomOrNothingToShow) {
    EXPECT_THAT(laidOut({}, 6, 4), IsEmpty());
    for (const auto& [values, width, height] : {std::tuple{std::vector<double>{3, 2}, 1.0, 100.0},
                                                {{3, 2}, 100, 1},
                                                {{3, 2}, -5, 100},
                                                {{3, 2}, std::nan(""), 100},
                                                {{0, 0}, 100, 100}}) {
        const auto rectangles = laidOut(values, width, height);
        EXPECT_EQ(rectangles.size(), 2U);
        EXPECT_THAT(rectangles, Each(Rectangle{}));
    }
}

TEST(Treemap, givesTheWholeRoomToTheOnlyValueThatCounts) {
    const Rectangle whole{0, 0, 6, 4};
    EXPECT_EQ(laidOut({7}, 6, 4).front(), whole);
    const auto beside = laidOut({0, 5}, 6, 4);
    EXPECT_EQ(beside[0].width * beside[0].height, 0);
    EXPECT_EQ(beside[1], whole);
    const auto trailing = laidOut({5, 0, 0}, 6, 4);
    EXPECT_EQ(trailing[0], whole);
    EXPECT_EQ(trailing[2], Rectangle());
}

RC_GTEST_PROP(Treemap, dividesTheRoomInProportionWithoutOverlap, ()) {
    const auto sizes = *rc::gen::nonEmpty(
        rc::gen::container<std::vector<std::int64_t>>(rc::gen::inRange<std::int64_t>(0, 100'000)));
    const double width = *rc::gen::inRange(2, 2000);
    const double height = *rc::gen::inRange(2, 2000);
    const std::vector<double> values(sizes.begin(), sizes.end());
    const double total = std::accumulate(values.begin(), values.end(), 0.0);
    RC_PRE(total > 0);
    const auto rectangles = laidOut(values, width, height);
    RC_ASSERT(rectangles.size() == values.size());
    const double slack = 1e-6 * (width + height);
    for (std::size_t i = 0; i < rectangles.size(); ++i) {
        const Rectangle& one = rectangles[i];
        const double area = values[i] * width * height / total;
        RC_ASSERT(std::abs(one.width * one.height - area) <= 1e-6 * width * height);
        RC_ASSERT(one.x >= 0 && one.y >= 0);
        RC_ASSERT(one.x + one.width <= width + slack && one.y + one.height <= height + slack);
        for (std::size_t j = 0; j < i && area > 0; ++j) {
            const Rectangle& other = rectangles[j];
            const double across =
                std::min(one.x + one.width, other.x + other.width) - std::max(one.x, other.x);
            const double along =
                std::min(one.y + one.height, other.y + other.height) - std::max(one.y, other.y);
            RC_ASSERT(across <= slack || along <= slack);
        }
    }
}

} // namespace
} // namespace korvane
