#include "scene.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <set>

namespace {

const Material stone = {TextureName::Limestone, 0.5f};

Vector3<float> placed(const Thing& thing, const Vector3<float>& point)
{
    const Vector4<float> result = thing.world * Vector4<float>(point, 1);
    return {result.x, result.y, result.z};
}

void expectNear(const Vector3<float>& actual, const Vector3<float>& expected)
{
    EXPECT_NEAR(actual.x, expected.x, 1e-5f);
    EXPECT_NEAR(actual.y, expected.y, 1e-5f);
    EXPECT_NEAR(actual.z, expected.z, 1e-5f);
}

} // namespace

TEST(Scene, solidStandsOnItsFoot)
{
    const Thing thing = place(SolidKind::Box, stone, {10, 20, 3}, {2, 4, 6});
    expectNear(placed(thing, {0, 0, -0.5f}), {10, 20, 3});
    expectNear(placed(thing, {0.5f, 0.5f, 0.5f}), {11, 22, 9});
}

TEST(Scene, ringLiesOnItsLowerSide)
{
    const Thing thing = place(SolidKind::Ring, stone, {1, 2, 3}, {4, 4, 2});
    expectNear(placed(thing, {0.45f, 0, -0.05f}), {2.8f, 2, 3});
}

TEST(Scene, positiveTurnIsCounterClockwiseSeenFromAbove)
{
    const Thing thing = place(SolidKind::Box, stone, {0, 0, 0}, {2, 4, 2}, 90);
    expectNear(placed(thing, {0.5f, 0, 0}), {0, 1, 1});
    expectNear(placed(thing, {0, 0.5f, 0}), {-2, 0, 1});
}

TEST(Scene, normalsStayPerpendicularOnAStretchedSolid)
{
    const Thing thing = place(SolidKind::Pyramid, stone, {5, 5, 5}, {1, 2, 7}, 30);
    const Solid pyramid = makeSolid(SolidKind::Pyramid);
    for (std::size_t i = 0; i < pyramid.triangles.size(); i += 3) {
        const Vector3<float> a = placed(thing, pyramid.positions[pyramid.triangles[i]]);
        const Vector3<float> b = placed(thing, pyramid.positions[pyramid.triangles[i + 1]]);
        const Vector3<float> c = placed(thing, pyramid.positions[pyramid.triangles[i + 2]]);
        const Vector3<float> normal = normalize(thing.normals * pyramid.normals[pyramid.triangles[i]]);
        expectNear(normal, normalize(cross(b - a, c - a)));
    }
}

TEST(Scene, flatSolidsRepeatTheTextureByLength)
{
    EXPECT_EQ(place(SolidKind::Box, stone, {}, {2, 4, 7}).textureRepeat, (Vector3<float>{1, 2, 3.5f}));
}

TEST(Scene, roundSolidsRepeatTheTextureAWholeNumberOfTimesAround)
{
    for (const SolidKind kind : {SolidKind::Sphere, SolidKind::Cylinder, SolidKind::Cone, SolidKind::Ring}) {
        for (const float width : {0.1f, 0.9f, 2.37f}) {
            const Vector3<float> repeat = place(kind, stone, {}, {width, width, 1}).textureRepeat;
            EXPECT_EQ(repeat.x, std::round(repeat.x));
            EXPECT_GE(repeat.x, 1);
            EXPECT_EQ(repeat.x, repeat.y);
        }
    }
}

TEST(Scene, courtyardShowsEveryKindOfSolidAndEveryTextureButTheMeadow)
{
    const Scene scene = makeCourtyard();
    std::set<std::size_t> shapes;
    std::set<TextureName> textures;
    for (const Thing& thing : scene.things) {
        shapes.insert(thing.shape);
        textures.insert(thing.material.texture);
    }
    EXPECT_GT(scene.things.size(), 20u);
    EXPECT_EQ(shapes.size(), solidKindCount + scene.ownShapes.size());
    EXPECT_EQ(*shapes.rbegin(), solidKindCount + scene.ownShapes.size() - 1);
    EXPECT_EQ(textures.size(), textureCount - 1);
    EXPECT_EQ(textures.count(TextureName::Grass), 0u);
}

TEST(Scene, lampsFountainAndBirdsAreWhereTheyAreSeen)
{
    const Scene scene = makeCourtyard();
    for (const Vector3<float>& lamp : scene.lamps) EXPECT_GT(lamp.z, 3);
    EXPECT_EQ(scene.fountain, (Vector3<float>{0, 0, 1.8f}));
    EXPECT_EQ(scene.treeTops.size(), 13u);
    for (const Vector3<float>& top : scene.treeTops) {
        EXPECT_GT(std::max(std::abs(top.x), std::abs(top.y)), 14); // outside the walls
        EXPECT_GT(top.z, 5);
    }
}

TEST(Scene, sunStandsAboveTheHorizonAtDistanceOne)
{
    const Scene scene = makeCourtyard();
    EXPECT_NEAR(length(scene.sunDirection), 1, 1e-5f);
    EXPECT_GT(scene.sunDirection.z, 0);
}

TEST(Scene, boundsHoldTheTurnedSolid)
{
    for (std::size_t kind = 0; kind < solidKindCount; ++kind) {
        const Thing thing = place(static_cast<SolidKind>(kind), stone, {10, -20, 3}, {2, 4, 6}, 30);
        Box actual;
        for (const Vector3<float>& point : makeSolid(static_cast<SolidKind>(kind)).positions)
            actual.add(placed(thing, point));
        for (int axis = 0; axis < 3; ++axis) {
            const auto part = [&](const Vector3<float>& v) { return axis == 0 ? v.x : axis == 1 ? v.y : v.z; };
            EXPECT_LE(part(thing.bounds.minimum), part(actual.minimum) + 1e-4f);
            EXPECT_GE(part(thing.bounds.maximum), part(actual.maximum) - 1e-4f);
        }
    }
    const Thing box = place(SolidKind::Box, stone, {10, 20, 3}, {2, 4, 6}, 90);
    expectNear(box.bounds.minimum, {8, 19, 3});
    expectNear(box.bounds.maximum, {12, 21, 9});
}

TEST(Scene, ownShapeIsNumberedAndHasBoundsAtItsPlace)
{
    Scene scene;
    Solid shape;
    shape.positions = {{0, 0, 0}, {1, 2, 3}, {-1, 0, 0}};
    addOwnShape(scene, shape, stone, {10, 20, 30}, 4);
    addOwnShape(scene, shape, stone, {0, 0, 0}, 1);
    EXPECT_EQ(scene.things[0].shape, solidKindCount);
    EXPECT_EQ(scene.things[1].shape, solidKindCount + 1);
    EXPECT_EQ(scene.things[0].textureRepeat, (Vector3<float>{4, 4, 4}));
    EXPECT_EQ(scene.things[0].bounds, Box({9, 20, 30}, {11, 22, 33}));
    expectNear(placed(scene.things[0], {1, 2, 3}), {11, 22, 33});
}

TEST(Scene, materialOfATextureIsThatOfTheCourtyard)
{
    for (std::size_t i = 0; i < textureCount; ++i)
        EXPECT_EQ(materialOf(static_cast<TextureName>(i)).texture, static_cast<TextureName>(i));
    EXPECT_EQ(materialOf(TextureName::Paving).specular, 0.06f);
    EXPECT_EQ(materialOf(TextureName::Water).specular, 0.8f);
}
