#include "view_volume.h"

#include "visibility.h"

#include <gtest/gtest.h>

#include <random>

namespace {

constexpr float nearDistance = 0.2f;
using Part = ViewVolume::Part;

Box cube(const Vector3<float>& centre, float halfSide)
{
    const Vector3<float> reach(halfSide, halfSide, halfSide);
    return {centre - reach, centre + reach};
}

/// Looks along +y from the origin, 45 degrees to each side.
ViewVolume straightView()
{
    return ViewVolume(Viewpoint(), {1, 1}, nearDistance);
}

Polygon triangleAt(const Vector3<float>& place)
{
    return Polygon(
        {Vertex(place, {}), Vertex(place + Vector3<float>(1, 0, 0), {}), Vertex(place + Vector3<float>(0, 0, 1), {})});
}

} // namespace

TEST(ViewVolume, seesBoxesInFrontAsAWhole)
{
    EXPECT_EQ(straightView().seePart(cube({0, 10, 0}, 1)), Part::All);
    EXPECT_EQ(straightView().seePart(cube({0, 1, 0}, 0.3f)), Part::All);
}

TEST(ViewVolume, seesPartOfABoxAtEachEdgeAndNothingBeyond)
{
    for (const Vector3<float>& side :
         {Vector3<float>(1, 0, 0), Vector3<float>(-1, 0, 0), Vector3<float>(0, 0, 1), Vector3<float>(0, 0, -1)}) {
        EXPECT_EQ(straightView().seePart(cube(Vector3<float>(0, 10, 0) + side * 10, 1)), Part::Some);
        EXPECT_EQ(straightView().seePart(cube(Vector3<float>(0, 10, 0) + side * 13, 1)), Part::Nothing);
    }
    EXPECT_EQ(straightView().seePart(cube({0, 0, 0}, 1)), Part::Some);
    EXPECT_EQ(straightView().seePart(cube({0, -2, 0}, 1)), Part::Nothing);
}

TEST(ViewVolume, beginsAtTheNearDistance)
{
    EXPECT_EQ(straightView().seePart(cube({0, nearDistance + 0.001f, 0}, 0.0005f)), Part::All);
    EXPECT_EQ(straightView().seePart(cube({0, nearDistance - 0.05f, 0}, 0.001f)), Part::Nothing);
}

TEST(ViewVolume, polygonsAreSeenThroughTheClipper)
{
    EXPECT_TRUE(straightView().sees(triangleAt({0, 10, 0})));
    EXPECT_TRUE(straightView().sees(triangleAt({-10.5f, 10, 0}))); // reaches in
    EXPECT_FALSE(straightView().sees(triangleAt({-12, 10, 0})));
    EXPECT_FALSE(straightView().sees(triangleAt({0, -1, 0})));
}

TEST(ViewVolume, planesFaceWhereTheViewpointLooks)
{
    Viewpoint camera;
    camera.position = {3, -2, 5};
    camera.yaw = 40;
    camera.pitch = -25;
    const ViewVolume view(camera, {1.2f, 0.7f}, nearDistance);
    ASSERT_EQ(view.getPlanes().size(), 5u);
    const Vector3<float> ahead = camera.getForward();
    EXPECT_NEAR(length(view.getPlanes()[0].normal - ahead), 0, 1e-5f);
    const auto isSeen = [&](float right, float up) {
        const Vector3<float> point =
            camera.position + (ahead + camera.getRight() * right + camera.getUp() * up) * 20.0f;
        return view.seePart(cube(point, 0.001f)) == Part::All;
    };
    for (const float side : {-1.0f, 1.0f}) {
        EXPECT_TRUE(isSeen(1.2f * side, 0));
        EXPECT_TRUE(isSeen(0, 0.7f * side));
        EXPECT_FALSE(isSeen(1.25f * side, 0));
        EXPECT_FALSE(isSeen(0, 0.75f * side));
    }
}

// Whatever lies in the picture by the projection must be seen by the volume.
TEST(ViewVolume, nothingInThePictureIsEverLeftOut)
{
    std::minstd_rand chance(7);
    const auto number = [&](float reach) { return (static_cast<float>(chance() % 20001) / 10000.0f - 1.0f) * reach; };
    int countInside = 0;
    for (int i = 0; i < 20000; ++i) {
        Viewpoint camera;
        camera.position = {number(50), number(50), number(50)};
        camera.yaw = number(180);
        camera.pitch = number(89);
        const Vector2<float> extents = {0.1f + std::fabs(number(3)), 0.1f + std::fabs(number(2))};
        const Vector3<float> point = camera.position + Vector3<float>(number(9), number(9), number(9));
        const Matrix4<float> projection = calculateViewProjection(camera, extents, nearDistance, 400);
        const Vector4<float> clip = projection * Vector4<float>(point, 1);
        const bool isInside =
            clip.w > 0 && std::fabs(clip.x) <= clip.w && std::fabs(clip.y) <= clip.w && std::fabs(clip.z) <= clip.w;
        if (!isInside) continue;
        ++countInside;
        const ViewVolume view(camera, extents, nearDistance);
        ASSERT_EQ(view.seePart(Box(point, point)), Part::All) << i;
        ASSERT_TRUE(view.sees(Polygon({Vertex(point, {}), Vertex(point, {}), Vertex(point, {})}))) << i;
    }
    EXPECT_GT(countInside, 1000);
}

TEST(Visibility, everythingIsDrawnWithoutCulling)
{
    const Scene scene = makeCourtyard();
    const Visibility visibility = seeEverything(scene);
    EXPECT_EQ(visibility.things, std::vector<bool>(scene.things.size(), true));
    EXPECT_TRUE(visibility.faces.empty());
    EXPECT_EQ(visibility.drawn, scene.things.size());
    EXPECT_EQ(visibility.culled, 0u);
}

TEST(Visibility, thingsBehindAreCulled)
{
    const Material stone = {TextureName::Limestone};
    Scene scene;
    scene.things = {place(SolidKind::Box, stone, {0, 10, 0}, {1, 1, 1}),
                    place(SolidKind::Box, stone, {0, -10, 0}, {1, 1, 1}),
                    place(SolidKind::Box, stone, {0, 0, 0}, {50, 50, 1})};
    const Visibility visibility = seeWithin(scene, straightView());
    EXPECT_EQ(visibility.things, (std::vector<bool>{true, false, true}));
    EXPECT_EQ(visibility.drawn, 2u);
    EXPECT_EQ(visibility.culled, 1u);
}
