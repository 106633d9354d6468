#include <xum/engine/engine.h>
#include <xum/geometry/terrain.h>

#include "allocation_counter.h"
#include "recording_render_device.h"

#include <gtest/gtest.h>

#include <set>

using Calls = std::vector<std::string>;
using Indices = std::vector<unsigned int>;

namespace {

class TerrainVertexBuffers : public ::testing::Test {
protected:
    using Create = VertexBuffer* (Terrain::*)(RenderDevice*) const;

    RecordingVertexBuffer& make(const Terrain& terrain, Create create)
    {
        device.buffers.clear();
        VertexBuffer* buffer = (terrain.*create)(&device);
        EXPECT_EQ(device.calls.back(), "createVertexBuffer 0") << "a static one";
        EXPECT_EQ(device.buffers.size(), 1u);
        return *static_cast<RecordingVertexBuffer*>(buffer);
    }

    void TearDown() override { device.buffers.clear(); }

    RecordingRenderDevice device;
};

} // namespace

TEST_F(TerrainVertexBuffers, haveTheArraysOfTheGrid)
{
    Terrain terrain(2, 1, 3);
    terrain.modify(
        [](int x, int y, const Vector3<float>&) {
            return Vector3<float>(static_cast<float>(x), static_cast<float>(y), static_cast<float>(x * y));
        },
        1);
    const RecordingVertexBuffer& buffer = make(terrain, &Terrain::createVertexBuffer);
    EXPECT_EQ(buffer.calls, (Calls{"setAttribute 0 Vector3 x 15", "setAttribute 1 Vector2 x 15", "setIndices 48"}));
    EXPECT_EQ(buffer.threes.at(0), terrain.getPositions());
    EXPECT_EQ(buffer.twos.at(1), terrain.getTextureCoordinates());
    EXPECT_EQ(buffer.indices, Indices(terrain.getIndexes().begin(), terrain.getIndexes().end()));
}

TEST_F(TerrainVertexBuffers, forDebuggingHaveEachLineOfTheGridOnce)
{
    const Terrain terrain(2, 1, 3); // five columns, three rows
    const RecordingVertexBuffer& buffer = make(terrain, &Terrain::createDebugVertexBuffer);
    EXPECT_EQ(buffer.calls, (Calls{"setAttribute 0 Vector3 x 15", "setIndices 44"}));
    EXPECT_EQ(buffer.threes.at(0), terrain.getPositions());
    std::set<std::pair<unsigned int, unsigned int>> lines;
    for (std::size_t i = 0; i < buffer.indices->size(); i += 2)
        lines.insert({buffer.indices->at(i), buffer.indices->at(i + 1)});
    std::set<std::pair<unsigned int, unsigned int>> expected;
    for (unsigned int vertex = 0; vertex < 15; ++vertex) {
        if (vertex % 5 < 4) expected.insert({vertex, vertex + 1});
        if (vertex / 5 < 2) expected.insert({vertex, vertex + 5});
    }
    EXPECT_EQ(lines, expected);
}

TEST_F(TerrainVertexBuffers, ofOneVertexAndOfNoneDrawNothing)
{
    const Terrain point(0, 0, 1);
    EXPECT_EQ(make(point, &Terrain::createVertexBuffer).calls,
              (Calls{"setAttribute 0 Vector3 x 1", "setAttribute 1 Vector2 x 1", "setIndices 0"}));
    EXPECT_EQ(make(point, &Terrain::createDebugVertexBuffer).calls,
              (Calls{"setAttribute 0 Vector3 x 1", "setIndices 0"}));
    const Terrain none(-1, 4, 1);
    EXPECT_EQ(make(none, &Terrain::createVertexBuffer).calls, Calls{"setIndices 0"});
    EXPECT_EQ(make(none, &Terrain::createDebugVertexBuffer).calls, Calls{"setIndices 0"});
}

TEST_F(TerrainVertexBuffers, areNullWithoutADevice)
{
    const Terrain terrain(1, 1, 1);
    EXPECT_EQ(terrain.createVertexBuffer(nullptr), nullptr);
    EXPECT_EQ(terrain.createDebugVertexBuffer(nullptr), nullptr);
}

TEST_F(TerrainVertexBuffers, areNullFromADeviceThatMakesNone)
{
    Engine* engine = initEngine(false);
    ASSERT_NE(engine, nullptr);
    RenderDevice* inert = engine->createRenderDevice(nullptr, "Software");
    const Terrain terrain(1, 1, 1);
    EXPECT_EQ(terrain.createVertexBuffer(inert), nullptr);
    EXPECT_EQ(terrain.createDebugVertexBuffer(inert), nullptr);
    engine->destroyRenderDevice(inert);
    shutdownEngine(engine);
}

TEST_F(TerrainVertexBuffers, areNullAndHandedBackWhenMemoryRunsOut)
{
    const Terrain terrain(1, 1, 1);
    for (const Create create : {&Terrain::createVertexBuffer, &Terrain::createDebugVertexBuffer}) {
        int failures = 0;
        for (VertexBuffer* buffer = nullptr; buffer == nullptr; ++failures) {
            ASSERT_LT(failures, 1000);
            {
                const FailingAllocations failing(failures);
                buffer = (terrain.*create)(&device);
            }
            EXPECT_EQ(device.buffers.size(), buffer != nullptr ? 1u : 0u);
        }
        EXPECT_GT(failures, 3);
        device.buffers.clear();
    }
}
