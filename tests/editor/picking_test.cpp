#include "made_maps.h"

#include <picking.h>
#include <picture_space.h>
#include <terrain_brush.h>

#include <gtest/gtest.h>

#include <cmath>

namespace {

Ray makeRay(const Vector3<double>& origin, const Vector3<double>& direction)
{
    return {origin, direction / length(direction)};
}

void expectNear(const Vector3<double>& actual, const Vector3<double>& expected, double margin = 1e-6)
{
    EXPECT_NEAR(actual.x, expected.x, margin);
    EXPECT_NEAR(actual.y, expected.y, margin);
    EXPECT_NEAR(actual.z, expected.z, margin);
}

} // namespace

TEST(Picking, rayMeetsTheSideThatItComesFrom)
{
    const MapDocument document = documentWithUnitBox();
    const Vector3<double> middle = {0.5, 0.5, 0.5};
    for (std::size_t side = 0; side < boxSides.size(); ++side) {
        const Vector3<double>& normal = boxSides[side].normal;
        const Hit hit = pick(document, {middle + normal * 3, -normal});
        EXPECT_EQ(hit.kind, Hit::Kind::Brush);
        EXPECT_EQ(hit.number, 0u);
        EXPECT_EQ(hit.side, side);
        EXPECT_NEAR(hit.distance, 2.5, 1e-9);
        expectNear(hit.point, middle + normal * 0.5);
        expectNear(hit.normal, normal);
    }
}

TEST(Picking, nearestBrushIsMet)
{
    MapDocument document = documentWithBox({{0, 10, 0}, {1, 11, 1}});
    addBox(document, {{0, 5, 0}, {1, 6, 1}}, "", 1);
    addBox(document, {{0, 7, 0}, {1, 8, 1}}, "", 1);
    EXPECT_EQ(pick(document, makeRay({0.5, 0, 0.5}, {0, 1, 0})).number, 1u);
    EXPECT_EQ(pick(document, makeRay({0.5, 20, 0.5}, {0, -1, 0})).number, 0u);
}

TEST(Picking, nothingIsMetBesideBehindAndTooFarAway)
{
    const MapDocument document = documentWithUnitBox();
    EXPECT_EQ(pick(document, makeRay({1.01, -5, 0.5}, {0, 1, 0})).kind, Hit::Kind::Nothing) << "parallel to two sides";
    EXPECT_EQ(pick(document, makeRay({0.5, -5, 0.5}, {0, -1, 0})).kind, Hit::Kind::Nothing);
    EXPECT_EQ(pick(document, makeRay({0.5, -2001, 0.5}, {0, 1, 0})).kind, Hit::Kind::Nothing);
    EXPECT_EQ(pick(document, makeRay({0.5, -1999, 0.5}, {0, 1, 0})).kind, Hit::Kind::Brush);
}

TEST(Picking, brushThatTheRayBeginsInIsNotMet)
{
    MapDocument document = documentWithBox({{-5, -5, -5}, {5, 5, 5}});
    EXPECT_EQ(pick(document, makeRay({0, 0, 0}, {0, 1, 0})).kind, Hit::Kind::Nothing);
    addBox(document, {{0, 2, 0}, {1, 3, 1}}, "", 1);
    EXPECT_EQ(pick(document, makeRay({0.5, 0, 0.5}, {0, 1, 0})).number, 1u) << "what is inside is";
}

TEST(Picking, slopeOfAWedgeIsMetWhereItIs)
{
    MapDocument document = makeEmptyDocument();
    document.meshOrigins[0] = {10, 0, 0};
    addBrush(document, makeWedge());
    const Hit hit = pick(document, makeRay({10.25, 0.5, 5}, {0, 0, -1}));
    EXPECT_EQ(hit.side, 0u);
    expectNear(hit.point, {10.25, 0.5, 0.75});
    EXPECT_EQ(pick(document, makeRay({10.9, 0.5, 0.5}, {0, 1, 0})).kind, Hit::Kind::Nothing) << "the other half";
}

TEST(Picking, entitiesAreSmallBoxes)
{
    MapDocument document = documentWithUnitBox();
    addEntity(document, "lamp", {5, 0, 0});
    addEntity(document, "urn", {0.5, -1, 0.5});
    const Hit hit = pick(document, makeRay({5.25, -5, 0.25}, {0, 1, 0}));
    EXPECT_EQ(hit.kind, Hit::Kind::Entity);
    EXPECT_EQ(hit.number, 0u);
    expectNear(hit.point, {5.25, -entityHalfSize, 0.25});
    EXPECT_EQ(pick(document, makeRay({5.35, -5, 0}, {0, 1, 0})).kind, Hit::Kind::Nothing);
    const Hit front = pick(document, makeRay({0.5, -5, 0.5}, {0, 1, 0}));
    EXPECT_EQ(front.kind, Hit::Kind::Entity) << "in front of the box";
    EXPECT_EQ(front.number, 1u);
}

TEST(Picking, terrainIsMetFromAboveOnly)
{
    const MapDocument document = documentWithLand();
    const Hit hit = pick(document, makeRay({0.3, -4, 4}, {0, 1, -1}));
    EXPECT_EQ(hit.kind, Hit::Kind::Terrain);
    expectNear(hit.point, {0.3, 0, 0}, 1e-5);
    EXPECT_EQ(pick(document, makeRay({0.3, 0, -4}, {0, 0, 1})).kind, Hit::Kind::Nothing);
    EXPECT_EQ(pick(document, makeRay({2.1, 0, 4}, {0, 0, -1})).kind, Hit::Kind::Nothing) << "beside it";
    EXPECT_EQ(pick(document, makeRay({0, -9, -0.5}, {0, 1, 0})).kind, Hit::Kind::Nothing) << "under its rim";
}

TEST(Picking, hillIsMetWhereItIs)
{
    MapDocument document = documentWithLand();
    shapeTerrain(document, {TerrainChange::Raise, 1.5, 1}, {0, 0, 0}, 1);
    EXPECT_EQ(findHeight(document, 0, 0), 1);
    const Hit hit = pick(document, makeRay({0, -4, 0.5}, {0, 1, 0}));
    EXPECT_EQ(hit.kind, Hit::Kind::Terrain);
    EXPECT_NEAR(*findHeight(document, hit.point.x, hit.point.y), 0.5, 1e-5);
    EXPECT_LT(hit.point.y, 0);
}

TEST(Picking, whatStandsOnTheLandIsMetFirst)
{
    MapDocument document = documentWithLand();
    addBox(document, {{-1, -1, 0}, {1, 1, 1}}, "", 1);
    EXPECT_EQ(pick(document, makeRay({0, 0, 5}, {0, 0, -1})).kind, Hit::Kind::Brush);
    EXPECT_EQ(pick(document, makeRay({1.5, 0, 5}, {0, 0, -1})).kind, Hit::Kind::Terrain);
}

TEST(Picking, planeIsMetInFrontAndWithinReach)
{
    const Ray down = makeRay({1, 2, 10}, {0, 0, -1});
    EXPECT_EQ(meetPlane(down, {0, 0, 3}, {0, 0, 1}, 100), Vector3<double>(1, 2, 3));
    EXPECT_EQ(meetPlane(down, {0, 0, 11}, {0, 0, 1}, 100), std::nullopt) << "behind";
    EXPECT_EQ(meetPlane(down, {0, 0, 3}, {0, 0, 1}, 6.9), std::nullopt) << "too far";
    EXPECT_EQ(meetPlane(down, {0, 0, 3}, {1, 0, 0}, 100), std::nullopt) << "never";
}

TEST(Picking, nearestPointOfALineToARay)
{
    expectNear(nearestOnLine(makeRay({0, -5, 2}, {0, 1, 0}), {0, 0, 0}, {0, 0, 1}), {0, 0, 2});
    expectNear(nearestOnLine(makeRay({3, -5, -1}, {0, 1, 0}), {0, 0, 0}, {0, 0, 1}), {0, 0, -1});
    expectNear(nearestOnLine(makeRay({0, 0, 5}, {0, 0, -1}), {1, 2, 3}, {0, 0, 1}), {1, 2, 3});
}

// ---- the picture ----------------------------------------------------------------------------------------------------

TEST(PictureSpace, rayThroughTheMiddleGoesForward)
{
    Viewpoint camera;
    camera.position = {1, 2, 3};
    const ScreenArea area = {100, 50, 200, 100, 300};
    const Ray ray = calculateRay(camera, area, {200, 100});
    expectNear(ray.origin, {1, 2, 3});
    expectNear(ray.direction, {0, 1, 0});
    EXPECT_LT(calculateRay(camera, area, {100, 100}).direction.x, -0.5) << "to the left";
    EXPECT_GT(calculateRay(camera, area, {200, 50}).direction.z, 0.5) << "up";
}

TEST(PictureSpace, pixelOfAPointIsTheOneThatItsRayGoesThrough)
{
    Viewpoint camera;
    camera.position = {1, -2, 3};
    camera.yaw = 30;
    camera.pitch = -20;
    const ScreenArea area = {230, 20, 780, 580, 800};
    for (const Vector2<float> pixel : {Vector2<float>(230, 20), {1010, 600}, {500, 333}}) {
        const std::optional<Vector2<float>> found = findPixel(camera, area, calculateRay(camera, area, pixel).at(17));
        ASSERT_TRUE(found);
        EXPECT_NEAR(found->x, pixel.x, 0.01);
        EXPECT_NEAR(found->y, pixel.y, 0.01);
    }
}

TEST(PictureSpace, pixelIsWhereTheProjectionDraws)
{
    Viewpoint camera;
    camera.position = {0, -10, 2};
    camera.pitch = -10;
    const ScreenArea area = {0, 0, 640, 480, 480};
    const Vector4<float> clip = calculateEditorProjection(camera, 640, 480) * Vector4<float>(2, 3, 1, 1);
    const std::optional<Vector2<float>> pixel = findPixel(camera, area, {2, 3, 1});
    ASSERT_TRUE(pixel);
    EXPECT_NEAR(pixel->x, (clip.x / clip.w + 1) * 320, 0.01);
    EXPECT_NEAR(pixel->y, (1 - clip.y / clip.w) * 240, 0.01);
}

TEST(PictureSpace, whatIsBehindTheCameraHasNoPixel)
{
    EXPECT_EQ(findPixel({}, {0, 0, 100, 100, 100}, {0, -1, 0}), std::nullopt);
    EXPECT_EQ(findPixel({}, {0, 0, 100, 100, 100}, {0, 0, 0}), std::nullopt);
}
