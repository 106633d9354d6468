#include "occlusion_map.h"

#include "occluders.h"
#include "visibility.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace {

constexpr float nearDistance = 0.2f;
const Material stone = {TextureName::Limestone};

/// Of a viewpoint at the origin that looks along +y, 45 degrees to each side.
OcclusionMap straightMap()
{
    OcclusionMap map;
    map.begin(Viewpoint(), {1, 1}, nearDistance);
    return map;
}

/// Upright at y, around the middle of the view, facing the viewpoint.
Polygon wallAt(float y, float halfSide)
{
    return Polygon({Vertex({-halfSide, y, -halfSide}, {}), Vertex({halfSide, y, -halfSide}, {}),
                    Vertex({halfSide, y, halfSide}, {}), Vertex({-halfSide, y, halfSide}, {})});
}

Box cube(const Vector3<float>& centre, float halfSide)
{
    const Vector3<float> reach(halfSide, halfSide, halfSide);
    return {centre - reach, centre + reach};
}

} // namespace

TEST(OcclusionMap, emptyOneHidesNothing)
{
    const OcclusionMap map = straightMap();
    EXPECT_FALSE(map.isHidden(cube({0, 10, 0}, 1)));
    EXPECT_EQ(map.getDepth(80, 45), 0);
}

TEST(OcclusionMap, holdsOneThroughTheDistance)
{
    OcclusionMap map = straightMap();
    map.addOccluder(wallAt(5, 2));
    EXPECT_NEAR(map.getDepth(80, 45), 0.2f, 1e-5f);
    EXPECT_EQ(map.getDepth(80, 45 + 20), 0); // the wall reaches 18 pixels up
    EXPECT_GT(map.getDepth(80, 45 + 16), 0);
    EXPECT_GT(map.getDepth(80 + 30, 45), 0); // and 32 to each side
    EXPECT_EQ(map.getDepth(80 + 33, 45), 0);
    map.addOccluder(wallAt(4, 1));
    EXPECT_NEAR(map.getDepth(80, 45), 0.25f, 1e-5f);
    map.addOccluder(wallAt(8, 1));
    EXPECT_NEAR(map.getDepth(80, 45), 0.25f, 1e-5f);
    map.begin(Viewpoint(), {1, 1}, nearDistance);
    EXPECT_EQ(map.getDepth(80, 45), 0);
}

TEST(OcclusionMap, wallHidesWhatIsBehindItAndNothingElse)
{
    OcclusionMap map = straightMap();
    map.addOccluder(wallAt(5, 2));
    EXPECT_TRUE(map.isHidden(cube({0, 10, 0}, 1)));
    EXPECT_TRUE(map.isHidden(cube({1.5f, 10, -1.5f}, 1)));
    EXPECT_FALSE(map.isHidden(cube({3.5f, 10, 0}, 1))); // looks out at the side
    EXPECT_FALSE(map.isHidden(cube({0, 3, 0}, 1)));     // in front
    EXPECT_FALSE(map.isHidden(cube({0, 5, 0}, 1)));     // across
    EXPECT_FALSE(map.isHidden(cube({0, -9, 0}, 1)));    // behind the viewpoint
    EXPECT_FALSE(map.isHidden(cube({0, 10, 0}, 30)));
    EXPECT_FALSE(map.isHidden(cube({90, 10, 0}, 1))); // not in the picture
}

TEST(OcclusionMap, backsHideNothing)
{
    Polygon wall = wallAt(5, 2);
    std::reverse(wall.vertices.begin(), wall.vertices.end());
    OcclusionMap map = straightMap();
    map.addOccluder(wall);
    EXPECT_FALSE(map.isHidden(cube({0, 10, 0}, 1)));
}

TEST(OcclusionMap, slantedWallCountsWithItsFarthestPointInAPixel)
{
    // The ground below the viewpoint, far ahead of it.
    OcclusionMap map = straightMap();
    map.addOccluder(Polygon({Vertex({-100, 2, -1}, {}), Vertex({100, 2, -1}, {}), Vertex({100, 100, -1}, {}),
                             Vertex({-100, 100, -1}, {})}));
    for (int y = 0; y < 44; ++y) {
        const float lower = 1 - 2 * static_cast<float>(y) / OcclusionMap::height; // 1 / distance at its lower edge
        const float depth = map.getDepth(80, y);
        EXPECT_TRUE(depth == 0 || (depth < lower && depth <= lower - 2.0f / OcclusionMap::height + 1e-4f)) << y;
    }
    EXPECT_GT(map.getDepth(80, 25), 0);
    EXPECT_TRUE(map.isHidden(cube({0, 6, -1.8f}, 0.3f)));
    EXPECT_FALSE(map.isHidden(cube({0, 6, -1.1f}, 0.3f)));
}

TEST(OcclusionMap, wallThatReachesBehindTheViewpointIsCut)
{
    OcclusionMap map = straightMap();
    map.addOccluder(Polygon(
        {Vertex({-1, -9, -9}, {}), Vertex({-1, 50, -9}, {}), Vertex({-1, 50, 9}, {}), Vertex({-1, -9, 9}, {})}));
    EXPECT_TRUE(map.isHidden(cube({-6, 10, 0}, 1)));
    EXPECT_FALSE(map.isHidden(cube({0, 10, 0}, 0.5f)));
}

TEST(OcclusionMap, pictureIsBrighterWhereItIsNearer)
{
    OcclusionMap map = straightMap();
    map.addOccluder(wallAt(5, 2));
    map.addOccluder(wallAt(16, 8));
    const std::vector<unsigned char> pixels = map.makePicture();
    ASSERT_EQ(pixels.size(), 4u * OcclusionMap::width * OcclusionMap::height);
    const auto pixel = [&](int x, int y) {
        const std::size_t i = 4 * static_cast<std::size_t>(y * OcclusionMap::width + x);
        return std::vector<int>(pixels.begin() + static_cast<std::ptrdiff_t>(i),
                                pixels.begin() + static_cast<std::ptrdiff_t>(i + 4));
    };
    EXPECT_EQ(pixel(80, 45), (std::vector<int>{228, 228, 228, 255}));
    EXPECT_EQ(pixel(80 + 36, 45), (std::vector<int>{127, 127, 127, 255}));
    EXPECT_EQ(pixel(0, 0), (std::vector<int>{0, 0, 40, 255}));
}

// No ray to any point of a hidden box may pass the solid.
TEST(OcclusionMap, hiddenBoxesAreReallyBehindTheSolid)
{
    std::minstd_rand chance(5);
    const auto number = [&](float low, float high) {
        return low + (high - low) * static_cast<float>(chance() % 10001) / 10000.0f;
    };
    int countHidden = 0;
    for (int i = 0; i < 3000; ++i) {
        Scene scene;
        scene.things = {
            place(SolidKind::Box, stone, {0, 6, -2}, {number(2, 6), number(0.2f, 2), number(2, 5)}, number(0, 90))};
        Viewpoint camera;
        camera.position = {number(-3, 3), number(-3, 3), number(-2, 2)};
        camera.yaw = number(-20, 20);
        OcclusionMap map;
        map.begin(camera, {1.2f, 0.8f}, nearDistance);
        Occluders(scene).addTo(map, camera.position, 0.4f);
        const Box box = cube({number(-4, 4), number(2, 14), number(-2, 2)}, number(0.1f, 0.6f));
        if (!map.isHidden(box)) continue;
        ++countHidden;
        for (int corner = 0; corner < 8; ++corner) {
            const Vector3<float> point = {(corner & 1) != 0 ? box.maximum.x : box.minimum.x,
                                          (corner & 2) != 0 ? box.maximum.y : box.minimum.y,
                                          (corner & 4) != 0 ? box.maximum.z : box.minimum.z};
            bool meetsSolid = false;
            const Matrix3<float> toSolid = scene.things[0].normals.transposed();
            for (int step = 0; step <= 400 && !meetsSolid; ++step) {
                const Vector3<float> at =
                    camera.position + (point - camera.position) * (static_cast<float>(step) / 400.0f);
                const Vector4<float> middle = scene.things[0].world * Vector4<float>(0, 0, 0, 1);
                const Vector3<float> inside = toSolid * (at - Vector3<float>(middle.x, middle.y, middle.z));
                meetsSolid =
                    std::fabs(inside.x) <= 0.501f && std::fabs(inside.y) <= 0.501f && std::fabs(inside.z) <= 0.501f;
            }
            // What lies beyond the edge of the picture may look out there.
            const Vector4<float> clip =
                calculateViewProjection(camera, {1.2f, 0.8f}, nearDistance, 400) * Vector4<float>(point, 1);
            const bool isInPicture = std::fabs(clip.x) < clip.w && std::fabs(clip.y) < clip.w;
            EXPECT_TRUE(meetsSolid || !isInPicture) << i;
        }
    }
    EXPECT_GT(countHidden, 100);
}

TEST(Occluders, areTheLargeSidesOfBoxes)
{
    Scene scene;
    scene.things = {place(SolidKind::Box, stone, {0, 0, 0}, {4, 0.2f, 3}),
                    place(SolidKind::Box, stone, {0, 0, 0}, {0.5f, 0.5f, 0.5f}),
                    place(SolidKind::Sphere, stone, {0, 0, 0}, {5, 5, 5})};
    EXPECT_EQ(Occluders(scene).count(), 2u); // the others have less than a square metre, or are round
}

TEST(Visibility, whatIsHiddenIsTakenAwayAndCounted)
{
    Scene scene;
    scene.things = {place(SolidKind::Box, stone, {0, 5, -2}, {4, 0.5f, 4}),
                    place(SolidKind::Box, stone, {0, 10, 0}, {1, 1, 1}),
                    place(SolidKind::Box, stone, {0, -10, 0}, {1, 1, 1})};
    OcclusionMap map = straightMap();
    Occluders(scene).addTo(map, {0, 0, 0}, 0.4f);
    Visibility visibility = seeWithin(scene, ViewVolume(Viewpoint(), {1, 1}, nearDistance));
    hide(visibility, scene, map);
    EXPECT_EQ(visibility.things, (std::vector<bool>{true, false, false}));
    EXPECT_EQ(visibility.drawn, 1u);
    EXPECT_EQ(visibility.culled, 1u);
    EXPECT_EQ(visibility.hidden, 1u);
}
