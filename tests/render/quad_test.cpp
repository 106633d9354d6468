#include "allocation_counter.h"
#include "print_vectors.h"
#include "recording_render_device.h"

#include <xum/geometry/vector.h>
#include <xum/render/light.h>
#include <xum/render/quad.h>

#include <gtest/gtest.h>

#include <new>

using Calls = std::vector<std::string>;
using Points = std::vector<Vector3<float>>;
using Coordinates = std::vector<Vector2<float>>;
using Colors = std::vector<Vector4<float>>;

TEST(QuadVertexes, lieInThePlaneOfXAndZ)
{
    Points positions;
    createQuadPositions(positions, {10, 20}, {30, 40});
    EXPECT_EQ(positions, (Points{{10, 0, 20}, {10, 0, 60}, {40, 0, 60}, {40, 0, 60}, {40, 0, 20}, {10, 0, 20}}));
}

TEST(QuadVertexes, lookAlongPositiveY)
{
    Points p;
    createQuadPositions(p, {10, 20}, {30, 40});
    for (const std::size_t first : {0u, 3u}) {
        const Vector3<float> normal = cross(p[first + 1] - p[first], p[first + 2] - p[first]);
        EXPECT_EQ(normal, (Vector3<float>{0, 30 * 40, 0}));
    }
}

TEST(QuadVertexes, mayHaveNegativeSizesAndNone)
{
    Points positions;
    createQuadPositions(positions, {1, 2}, {-3, -4});
    EXPECT_EQ(positions, (Points{{1, 0, 2}, {1, 0, -2}, {-2, 0, -2}, {-2, 0, -2}, {-2, 0, 2}, {1, 0, 2}}));
    positions.clear();
    createQuadPositions(positions, {1, 2}, {0, 0});
    EXPECT_EQ(positions, Points(6, {1, 0, 2}));
}

TEST(QuadVertexes, haveCoordinatesOfTheSameCorners)
{
    Coordinates c;
    createQuadTextureCoordinates(c, false, false);
    EXPECT_EQ(c, (Coordinates{{0, 0}, {0, 1}, {1, 1}, {1, 1}, {1, 0}, {0, 0}}));
}

TEST(QuadVertexes, haveFlippedCoordinates)
{
    Coordinates c;
    createQuadTextureCoordinates(c, true, true);
    EXPECT_EQ(c, (Coordinates{{1, 1}, {1, 0}, {0, 0}, {0, 0}, {0, 1}, {1, 1}}));
    c.clear();
    createQuadTextureCoordinates(c, true, false);
    EXPECT_EQ(c, (Coordinates{{1, 0}, {1, 1}, {0, 1}, {0, 1}, {0, 0}, {1, 0}}));
    c.clear();
    createQuadTextureCoordinates(c, false, true);
    EXPECT_EQ(c, (Coordinates{{0, 1}, {0, 0}, {1, 0}, {1, 0}, {1, 1}, {0, 1}}));
}

TEST(QuadVertexes, haveOneColor)
{
    Colors colors;
    createQuadColors(colors, {0.1f, 0.2f, 0.3f, 0.4f});
    EXPECT_EQ(colors, Colors(6, {0.1f, 0.2f, 0.3f, 0.4f}));
}

TEST(QuadVertexes, mayTakeTheirColorFromTheVectorThatTheyAreAppendedTo)
{
    Colors colors = {{1, 2, 3, 4}};
    colors.shrink_to_fit();
    createQuadColors(colors, colors[0]);
    EXPECT_EQ(colors, Colors(7, {1, 2, 3, 4}));
}

TEST(QuadVertexes, areAllOfThemTogether)
{
    Points positions;
    Coordinates coordinates;
    Colors colors;
    createQuadVertexes(positions, coordinates, colors, {10, 20}, {30, 40}, {1, 0, 0, 0.5f}, true, false);
    EXPECT_EQ(positions, (Points{{10, 0, 20}, {10, 0, 60}, {40, 0, 60}, {40, 0, 60}, {40, 0, 20}, {10, 0, 20}}));
    EXPECT_EQ(coordinates, (Coordinates{{1, 0}, {1, 1}, {0, 1}, {0, 1}, {0, 0}, {1, 0}}));
    EXPECT_EQ(colors, Colors(6, {1, 0, 0, 0.5f}));
}

TEST(QuadVertexes, areAppended)
{
    Points positions = {{7, 8, 9}};
    Coordinates coordinates = {{7, 8}, {9, 10}};
    Colors colors(3, {7, 8, 9, 10});
    createQuadVertexes(positions, coordinates, colors, {0, 0}, {1, 1}, {}, false, false);
    createQuadVertexes(positions, coordinates, colors, {5, 5}, {1, 1}, {}, true, true);
    ASSERT_EQ(positions.size(), 13u);
    ASSERT_EQ(coordinates.size(), 14u);
    ASSERT_EQ(colors.size(), 15u);
    EXPECT_EQ(positions[0], (Vector3<float>{7, 8, 9}));
    EXPECT_EQ(positions[1], (Vector3<float>{0, 0, 0}));
    EXPECT_EQ(positions[7], (Vector3<float>{5, 0, 5}));
    EXPECT_EQ(coordinates[1], (Vector2<float>{9, 10}));
    EXPECT_EQ(coordinates[2], (Vector2<float>{0, 0}));
    EXPECT_EQ(coordinates[8], (Vector2<float>{1, 1}));
    EXPECT_EQ(colors[2], (Vector4<float>{7, 8, 9, 10}));
    EXPECT_EQ(colors[3], Vector4<float>());
}

namespace {

/// What one call drew through a buffer of its own.
void expectFan(RecordingRenderDevice& device, const Points& corners)
{
    EXPECT_EQ(device.calls, Calls{"createVertexBuffer 1"}) << "a dynamic one, and no state changes";
    EXPECT_TRUE(device.buffers.empty());
    ASSERT_EQ(device.formerBuffers.size(), 1u);
    const RecordingVertexBuffer& buffer = device.formerBuffers.front();
    EXPECT_EQ(buffer.calls, (Calls{"setAttribute 0 Vector3 x 4", "drawTriangleFan 0 -1"}));
    EXPECT_EQ(buffer.threes.at(0), corners);
    device.calls.clear();
    device.formerBuffers.clear();
}

const Points wholeScreen = {{-1, -1, 0}, {1, -1, 0}, {1, 1, 0}, {-1, 1, 0}};

} // namespace

TEST(DrawQuad, drawsAFanOfFourCornersThroughABufferOfItsOwn)
{
    RecordingRenderDevice device;
    drawQuad(&device, 10, 20, 30, 40);
    expectFan(device, {{10, 20, 0}, {40, 20, 0}, {40, 60, 0}, {10, 60, 0}});
    drawQuad(&device, 0.5f, -1, -0.25f, 0);
    expectFan(device, {{0.5f, -1, 0}, {0.25f, -1, 0}, {0.25f, -1, 0}, {0.5f, -1, 0}});
}

TEST(DrawQuad, coversTheWholeScreen)
{
    RecordingRenderDevice device;
    drawFullscreenQuad(&device);
    expectFan(device, wholeScreen);
}

TEST(DrawQuad, isTheScreenPassOfALight)
{
    RecordingRenderDevice device;
    Light light;
    light.draw(&device);
    expectFan(device, wholeScreen);
    SpotLight spotLight;
    static_cast<Light&>(spotLight).draw(&device);
    expectFan(device, wholeScreen);
}

TEST(DrawQuad, drawsNothingWithoutABuffer)
{
    RecordingRenderDevice device;
    device.makesResources = false;
    drawQuad(&device, 1, 2, 3, 4);
    drawFullscreenQuad(&device);
    Light().draw(&device);
    EXPECT_EQ(device.calls, Calls(3, "createVertexBuffer 1"));
    drawQuad(nullptr, 1, 2, 3, 4);
    drawFullscreenQuad(nullptr);
    Light().draw(nullptr);
}

TEST(DrawQuad, handsItsBufferBackWhenMemoryRunsOut)
{
    RecordingRenderDevice device;
    device.isRecording = false;
    int failures = 0;
    for (bool hasDrawn = false; !hasDrawn; ++failures) {
        ASSERT_LT(failures, 100);
        try {
            const FailingAllocations failing(failures);
            drawQuad(&device, 1, 2, 3, 4);
            hasDrawn = true;
        } catch (const std::bad_alloc&) {
        }
        EXPECT_TRUE(device.buffers.empty());
    }
    EXPECT_EQ(failures, 1 + 2) << "the buffer and its corners need memory";
}
