#include "debug_view.h"

#include "level.h"
#include "recording_render_device.h"

#include <xum/geometry/bsp.h>
#include <xum/geometry/bsp_mesh.h>
#include <xum/render/light.h>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

template <class Shape>
const Shape& shapeAt(const DebugShapes& group, std::size_t number)
{
    return dynamic_cast<const Shape&>(*group.shapes.at(number));
}

/// Two leaves, with one face from (1, 0, 0) on and one from (-2, 0, 0) on.
std::shared_ptr<const Level> makeLevel(Polygon& right, Polygon& left)
{
    auto map = std::make_unique<CompiledMap>("small", "<map><textures><0 wood.png/></textures>"
                                                      "<mesh><polygons \"0 0\"/></mesh></map>");
    auto* front = new BSPNode(false, {}, {&right});
    auto* back = new BSPNode(false, {}, {&left});
    map->getBSPMeshes().append(new BSPMesh({}, new BSP(new BSPNode(Plane<float>({1, 0, 0}, 0), front, back))));
    return std::make_shared<Level>(std::move(map), "small.map");
}

Polygon square(float x)
{
    return Polygon({Vertex({x, 0, 0}, {0, 1}), Vertex({x + 1, 0, 0}, {1, 1}), Vertex({x + 1, 1, 0}, {1, 0}),
                    Vertex({x, 1, 0}, {0, 0})});
}

bool contains(const std::vector<std::string>& calls, const std::string& call)
{
    return std::find(calls.begin(), calls.end(), call) != calls.end();
}

} // namespace

TEST(DebugView, thingsThatAreDrawnHaveBoxes)
{
    Scene scene;
    const Material stone = {TextureName::Limestone};
    for (float x : {0.0f, 10.0f, 20.0f}) scene.things.push_back(place(SolidKind::Box, stone, {x, 0, 0}, {2, 4, 6}));
    Visibility visibility = seeEverything(scene);
    visibility.things[1] = false;
    const auto groups = collectDebugShapes(scene, visibility, {}, nullptr);
    ASSERT_EQ(groups.size(), 2u); // no level, no light
    ASSERT_EQ(groups[0].shapes.size(), 2u);
    EXPECT_EQ(shapeAt<DebugBox>(groups[0], 0).minimum, (Vector3<float>{-1, -2, 0}));
    EXPECT_EQ(shapeAt<DebugBox>(groups[0], 0).maximum, (Vector3<float>{1, 2, 6}));
    EXPECT_EQ(shapeAt<DebugBox>(groups[0], 1).minimum, (Vector3<float>{19, -2, 0}));
    EXPECT_TRUE(groups[1].shapes.empty());
}

TEST(DebugView, leavesWithAFaceThatIsDrawnHaveBoxes)
{
    Polygon right = square(1);
    Polygon left = square(-2);
    Scene scene;
    scene.level = makeLevel(right, left);
    Visibility visibility = seeEverything(scene);
    EXPECT_EQ(collectDebugShapes(scene, visibility, {}, nullptr)[1].shapes.size(), 2u);
    visibility.faces[0] = false; // the leaf in front comes first
    const auto groups = collectDebugShapes(scene, visibility, {}, nullptr);
    ASSERT_EQ(groups[1].shapes.size(), 1u);
    EXPECT_EQ(shapeAt<DebugBox>(groups[1], 0).minimum, (Vector3<float>{-2, 0, 0}));
    EXPECT_EQ(shapeAt<DebugBox>(groups[1], 0).maximum, (Vector3<float>{-1, 1, 0}));
}

TEST(DebugView, soundsAreSpheresOfAFortiethOfTheirRange)
{
    const auto groups = collectDebugShapes(Scene(), {}, {{{1, 2, 3}, 40}, {{4, 5, 6}, 10}}, nullptr);
    ASSERT_EQ(groups[1].shapes.size(), 2u);
    EXPECT_EQ(shapeAt<DebugSphere>(groups[1], 0).center, (Vector3<float>{1, 2, 3}));
    EXPECT_EQ(shapeAt<DebugSphere>(groups[1], 0).radius, 1);
    EXPECT_EQ(shapeAt<DebugSphere>(groups[1], 1).center, (Vector3<float>{4, 5, 6}));
    EXPECT_EQ(shapeAt<DebugSphere>(groups[1], 1).radius, 0.25f);
}

TEST(DebugView, lightIsALineOfTwentyUnits)
{
    SpotLight light;
    light.position = {1, 2, 3};
    light.direction = {0, 0, -5};
    const auto groups = collectDebugShapes(Scene(), {}, {}, &light);
    ASSERT_EQ(groups.size(), 3u);
    ASSERT_EQ(groups[2].shapes.size(), 1u);
    EXPECT_EQ(shapeAt<DebugLine>(groups[2], 0).from, (Vector3<float>{1, 2, 3}));
    EXPECT_EQ(shapeAt<DebugLine>(groups[2], 0).to, (Vector3<float>{1, 2, -17}));
}

TEST(DebugView, groupsAreDrawnInTheirColorsOverEverything)
{
    SpotLight light;
    light.direction = {0, 0, -1};
    const auto groups = collectDebugShapes(Scene(), {}, {{{1, 2, 3}, 40}, {{4, 5, 6}, 10}}, &light);
    RecordingRenderDevice device;
    DrawCounter draws;
    drawDebugShapes(device, nullptr, Matrix4<float>(), groups, draws);
    EXPECT_EQ(draws.get(), 3u);
    EXPECT_EQ(std::count(device.calls.begin(), device.calls.end(), "createVertexBuffer 0"), 3);
    int colors = 0;
    for (const std::string& call : device.calls) colors += call.find("flatColor") != std::string::npos ? 1 : 0;
    EXPECT_EQ(colors, 3);
}

TEST(DebugView, stateIsSetBack)
{
    RecordingRenderDevice device;
    DrawCounter draws;
    drawDebugShapes(device, nullptr, Matrix4<float>(), {}, draws);
    EXPECT_TRUE(contains(device.calls, "disable 2"));
    EXPECT_TRUE(contains(device.calls, "setBlendMode 1"));
    ASSERT_GE(device.calls.size(), 2u);
    EXPECT_EQ(device.calls[device.calls.size() - 2], "enable 2"); // the depth test
    EXPECT_EQ(device.calls.back(), "setBlendMode 0");
}
