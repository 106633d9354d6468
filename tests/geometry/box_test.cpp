#include <xum/geometry/box.h>

#include <gtest/gtest.h>

#include <cstring>
#include <limits>

namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();

} // namespace

TEST(Box, liesInMemoryAsMinimumThenMaximum)
{
    const Box box({1, 2, 3}, {4, 5, 6});
    const float expected[] = {1, 2, 3, 4, 5, 6};
    static_assert(sizeof box == sizeof expected);
    EXPECT_EQ(std::memcmp(&box, expected, sizeof expected), 0);
}

TEST(Box, ofNoPointsIsTheInvertedInfiniteBox)
{
    const Box box = Box::around({});
    EXPECT_EQ(box.minimum, Vector3<float>(infinity, infinity, infinity));
    EXPECT_EQ(box.maximum, Vector3<float>(-infinity, -infinity, -infinity));
    EXPECT_EQ(box, Box());
    EXPECT_TRUE(box.isEmpty());
}

TEST(Box, hasBothCornersAtItsFirstPoint)
{
    Box box;
    box.add({-1, 2, -3});
    EXPECT_EQ(box, Box({-1, 2, -3}, {-1, 2, -3}));
    EXPECT_FALSE(box.isEmpty());
}

TEST(Box, aroundPointsTakesEachComponentForItself)
{
    EXPECT_EQ(Box::around({{1, -5, 3}, {-2, 7, 3.5f}, {0, 0, -9}}), Box({-2, -5, -9}, {1, 7, 3.5f}));
}

TEST(Box, doesNotGrowForAPointInside)
{
    Box box({0, 0, 0}, {2, 2, 2});
    box.add({1, 2, 0});
    EXPECT_EQ(box, Box({0, 0, 0}, {2, 2, 2}));
}

TEST(Box, isEmptyWhenInvertedInAnyDirection)
{
    EXPECT_FALSE(Box({0, 0, 0}, {0, 0, 0}).isEmpty());
    EXPECT_TRUE(Box({1, 0, 0}, {0, 0, 0}).isEmpty());
    EXPECT_TRUE(Box({0, 1, 0}, {0, 0, 0}).isEmpty());
    EXPECT_TRUE(Box({0, 0, 1}, {0, 0, 0}).isEmpty());
}

TEST(Box, isEqualInBothCorners)
{
    const Box box({1, 2, 3}, {4, 5, 6});
    EXPECT_TRUE(box == Box({1, 2, 3}, {4, 5, 6}));
    EXPECT_FALSE(box != Box({1, 2, 3}, {4, 5, 6}));
    EXPECT_TRUE(box != Box({1, 2, 9}, {4, 5, 6}));
    EXPECT_FALSE(box == Box({1, 2, 3}, {4, 5, 9}));
}
