#include <xum/geometry/plane.h>

#include <gtest/gtest.h>

#include <cstring>

TEST(Plane, liesInMemoryAsNormalThenDistance)
{
    const Plane<float> plane({1, 2, 3}, 4);
    const float expected[] = {1, 2, 3, 4};
    static_assert(sizeof plane == sizeof expected);
    EXPECT_EQ(std::memcmp(&plane, expected, sizeof expected), 0);
}

TEST(Plane, isZeroByDefault)
{
    EXPECT_EQ(Plane<float>(), Plane<float>({0, 0, 0}, 0));
}

TEST(Plane, measuresAlongTheNormalLessTheDistance)
{
    const Plane<float> plane({0, 0, 1}, 5);
    EXPECT_EQ(plane.signedDistance({100, -100, 7}), 2.0f);
    EXPECT_EQ(plane.signedDistance({0, 0, 0}), -5.0f);
    EXPECT_EQ(Plane<float>({2, 3, 4}, 1).signedDistance({1, 1, 1}), 8.0f);
}

TEST(Plane, hasItsFrontWhereTheNormalPoints)
{
    const Plane<float> plane({0, -1, 0}, 2);
    EXPECT_TRUE(plane.isInFront({0, -3, 0}));
    EXPECT_FALSE(plane.isInFront({0, 0, 0}));
}

TEST(Plane, countsAPointExactlyOnItAsInFront)
{
    EXPECT_TRUE(Plane<float>({0, 0, 1}, 5).isInFront({3, 4, 5}));
    EXPECT_TRUE(Plane<float>({0, 0, -1}, -5).isInFront({3, 4, 5}));
}

TEST(Plane, isEqualInNormalAndDistance)
{
    const Plane<float> plane({1, 2, 3}, 4);
    EXPECT_TRUE(plane == Plane<float>({1, 2, 3}, 4));
    EXPECT_FALSE(plane != Plane<float>({1, 2, 3}, 4));
    EXPECT_TRUE(plane != Plane<float>({1, 2, 9}, 4));
    EXPECT_FALSE(plane == Plane<float>({1, 2, 3}, 9));
}
