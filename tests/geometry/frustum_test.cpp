#include <xum/geometry/clipper.h>
#include <xum/geometry/frustum.h>

#include <gtest/gtest.h>

#include <vector>

namespace {

using V3 = Vector3<float>;

const V3 right(1, 0, 0);
const V3 forwards(0, 1, 0);
const V3 upwards(0, 0, 1);
const V3 none(0, 0, 0);

enum Side { nearSide, leftSide, rightSide, bottomSide, topSide };

std::vector<Plane<float>> planesOf(const V3& eye, const V3& a, const V3& f, const V3& c, float angleA = 90,
                                   float angleC = 90, float divisorC = 1)
{
    Frustum frustum;
    frustum.setFromViewVectors(eye, a, f, c, angleA, angleC, divisorC);
    return frustum.getPlanes();
}

void expectPlane(const Plane<float>& actual, const V3& normal, float distance)
{
    EXPECT_NEAR(actual.normal.x, normal.x, 1e-6f);
    EXPECT_NEAR(actual.normal.y, normal.y, 1e-6f);
    EXPECT_NEAR(actual.normal.z, normal.z, 1e-6f);
    EXPECT_NEAR(actual.distance, distance, 1e-5f);
}

bool isVisible(const std::vector<Plane<float>>& planes, const V3& point)
{
    for (const Plane<float>& plane : planes)
        if (!plane.isInFront(point)) return false;
    return true;
}

void expectNothingIsKept(const std::vector<Plane<float>>& planes)
{
    const Clipper clipper(planes);
    const Polygon large({Vertex({-900, 500, -900}, {}), Vertex({900, 500, -900}, {}), Vertex({0, 500, 900}, {})});
    EXPECT_TRUE(clipper.clipPolygon(&large).empty());
    V3 start(0, 2, 0);
    V3 end(0, 500, 0);
    EXPECT_FALSE(clipper.clipLine(start, end, start, end));
}

} // namespace

TEST(Frustum, startsWithoutPlanesAndWithRoomForFive)
{
    const Frustum frustum;
    EXPECT_TRUE(frustum.getPlanes().empty());
    EXPECT_GE(frustum.getPlanes().capacity(), 5U);
}

TEST(Frustum, hasThePlanesNearLeftRightBottomTop)
{
    const std::vector<Plane<float>> planes = planesOf(none, right, forwards, upwards);
    ASSERT_EQ(planes.size(), 5U);
    constexpr float half = 0.70710678f;
    expectPlane(planes[nearSide], {0, 1, 0}, 1);
    expectPlane(planes[leftSide], {half, half, 0}, 0);
    expectPlane(planes[rightSide], {-half, half, 0}, 0);
    expectPlane(planes[bottomSide], {0, half, half}, 0);
    expectPlane(planes[topSide], {0, half, -half}, 0);
}

TEST(Frustum, goesThroughTheEye)
{
    const V3 eye(3, -4, 5);
    const std::vector<Plane<float>> planes = planesOf(eye, right, forwards, upwards);
    expectPlane(planes[nearSide], {0, 1, 0}, -3);
    for (const Side side : {leftSide, rightSide, bottomSide, topSide}) {
        EXPECT_NEAR(planes[side].signedDistance(eye), 0, 1e-6f);
        EXPECT_NEAR(planes[side].distance, dot(planes[side].normal, eye), 1e-6f);
    }
}

TEST(Frustum, isNearOneUnitInFrontOfTheEye)
{
    const V3 eye(10, 20, 30);
    const std::vector<Plane<float>> planes = planesOf(eye, right, forwards, upwards);
    EXPECT_TRUE(isVisible(planes, eye + forwards * 1.001f));
    EXPECT_FALSE(isVisible(planes, eye + forwards * 0.999f));
    EXPECT_TRUE(isVisible(planes, eye + forwards * 1e6f)) << "there is no far plane";
}

TEST(Frustum, hasANearPlaneOfTheLengthOfTheForwardVector)
{
    expectPlane(planesOf({1, 2, 3}, right, {0, 2, 0}, upwards)[nearSide], {0, 2, 0}, 8);
    expectPlane(planesOf({1, 2, 3}, right, {0, 0, 0}, upwards)[nearSide], {0, 0, 0}, 0);
}

TEST(Frustum, isAsWideAndAsHighAsItsAngles)
{
    const std::vector<Plane<float>> planes = planesOf(none, right, forwards, upwards, 120, 60);
    // tan 60 degrees to the sides, tan 30 degrees up and down, at a distance of 10.
    EXPECT_TRUE(isVisible(planes, {17.31f, 10, 0}));
    EXPECT_FALSE(isVisible(planes, {17.33f, 10, 0}));
    EXPECT_TRUE(isVisible(planes, {-17.31f, 10, 0}));
    EXPECT_FALSE(isVisible(planes, {-17.33f, 10, 0}));
    EXPECT_TRUE(isVisible(planes, {0, 10, 5.77f}));
    EXPECT_FALSE(isVisible(planes, {0, 10, 5.78f}));
    EXPECT_TRUE(isVisible(planes, {0, 10, -5.77f}));
    EXPECT_FALSE(isVisible(planes, {0, 10, -5.78f}));
}

TEST(Frustum, isLowerByTheDivisor)
{
    // Twice the horizontal angle of 90 degrees and a picture of 16:9.
    const std::vector<Plane<float>> planes = planesOf(none, right, forwards, upwards, 90, 90, 16.0f / 9.0f);
    EXPECT_TRUE(isVisible(planes, {15.9f, 16, 8.9f}));
    EXPECT_FALSE(isVisible(planes, {16.1f, 16, 0}));
    EXPECT_FALSE(isVisible(planes, {0, 16, 9.1f}));
    EXPECT_FALSE(isVisible(planes, {0, 16, -9.1f}));
}

TEST(Frustum, hasSidesOfLengthOne)
{
    const std::vector<Plane<float>> planes = planesOf({1, 2, 3}, right * 3, forwards * 0.5f, upwards * 7, 100, 50);
    for (const Side side : {leftSide, rightSide, bottomSide, topSide})
        EXPECT_NEAR(length(planes[side].normal), 1, 1e-6f);
    EXPECT_NEAR(length(planes[nearSide].normal), 0.5f, 1e-6f);
}

TEST(Frustum, replacesItsPlanes)
{
    Frustum frustum;
    frustum.setFromViewVectors(none, right, forwards, upwards, 10, 20, 3);
    frustum.setFromViewVectors(none, right, forwards, upwards, 90, 90, 1);
    EXPECT_EQ(frustum.getPlanes(), planesOf(none, right, forwards, upwards));
}

TEST(Frustum, showsNothingWithALeftHandedBasis)
{
    EXPECT_FALSE(isVisible(planesOf(none, -right, forwards, upwards), {0, 10, 0}));
    EXPECT_FALSE(isVisible(planesOf(none, forwards, right, upwards), {10, 0, 0}));
    EXPECT_TRUE(isVisible(planesOf(none, -right, forwards, -upwards), {0, 10, 0}));
}

TEST(Frustum, hasZeroPlanesBelowAndAboveWithoutARightVector)
{
    const std::vector<Plane<float>> planes = planesOf({1, 2, 3}, none, forwards, upwards);
    expectPlane(planes[nearSide], {0, 1, 0}, 3);
    EXPECT_EQ(planes[bottomSide], Plane<float>());
    EXPECT_EQ(planes[topSide], Plane<float>());
    expectPlane(planes[leftSide], {1, 0, 0}, 1);
    expectPlane(planes[rightSide], {-1, 0, 0}, -1);
    expectNothingIsKept(planes);
}

TEST(Frustum, hasZeroPlanesAtTheSidesWithoutAnUpwardVector)
{
    const std::vector<Plane<float>> planes = planesOf({1, 2, 3}, right, forwards, none);
    EXPECT_EQ(planes[leftSide], Plane<float>());
    EXPECT_EQ(planes[rightSide], Plane<float>());
    expectPlane(planes[bottomSide], {0, 0, 1}, 3);
    expectPlane(planes[topSide], {0, 0, -1}, -3);
    expectNothingIsKept(planes);
}

TEST(Frustum, hasOnlyZeroPlanesWithoutAnyVector)
{
    for (const Plane<float>& plane : planesOf({1, 2, 3}, none, none, none)) EXPECT_EQ(plane, Plane<float>());
    expectNothingIsKept(planesOf({1, 2, 3}, none, none, none));
}

TEST(Frustum, hasZeroPlanesWhereACrossProductIsShorterThanTheThreshold)
{
    // With directions (0, 1, -s) and (0, 1, s) the cross product has a length of 2 s.
    const auto leftPlane = [](float s) { return planesOf(none, none, forwards, {0, 0, s})[leftSide]; };
    EXPECT_EQ(leftPlane(4.9e-6f), Plane<float>());
    expectPlane(leftPlane(5.1e-6f), {1, 0, 0}, 0);
    expectPlane(leftPlane(5e-6f), {1, 0, 0}, 0); // exactly the threshold
}

TEST(Frustum, canBeCopied)
{
    Frustum frustum;
    frustum.setFromViewVectors(none, right, forwards, upwards, 90, 90, 1);
    const Frustum copy(frustum); // NOLINT(performance-unnecessary-copy-initialization)
    frustum.setFromViewVectors(none, right, forwards, upwards, 60, 60, 1);
    EXPECT_EQ(copy.getPlanes(), planesOf(none, right, forwards, upwards));
}
