#include <xum/engine/engine.h>
#include <xum/geometry/mesh.h>

#include "allocation_counter.h"
#include "recording_render_device.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

using Calls = std::vector<std::string>;
using Indices = std::vector<unsigned int>;
using Points = std::vector<Vector3<float>>;

namespace {

const Points positions = {{0, 0, 0}, {4, 0, 0}, {0, 3, 0}, {0, 0, 12}};
const std::vector<Vector2<float>> textureCoordinates = {{0, 0}, {1, 0}, {0, 1}, {0.5f, 0.25f}};

class MeshVertexBuffers : public ::testing::Test {
protected:
    using Create = VertexBuffer* (Mesh::*)(RenderDevice*) const;

    RecordingVertexBuffer& make(const Mesh& mesh, Create create)
    {
        VertexBuffer* buffer = (mesh.*create)(&device);
        EXPECT_EQ(device.calls.back(), "createVertexBuffer 0") << "a static one";
        EXPECT_EQ(device.buffers.size(), 1u);
        handedBack.reset(buffer);
        return *static_cast<RecordingVertexBuffer*>(buffer);
    }

    static constexpr Create all[] = {&Mesh::createVertexBuffer, &Mesh::createWireframeVertexBuffer,
                                     &Mesh::createFaceNormalsVertexBuffer, &Mesh::createVertexNormalsVertexBuffer};

    struct HandBack {
        RenderDevice* device;
        void operator()(VertexBuffer* buffer) const { device->destroyVertexBuffer(buffer); }
    };

    RecordingRenderDevice device;
    std::unique_ptr<VertexBuffer, HandBack> handedBack{nullptr, HandBack{&device}};
};

} // namespace

TEST_F(MeshVertexBuffers, ofTheTrianglesHaveAllArraysAtTheirLocations)
{
    Mesh mesh(positions, textureCoordinates, {0, 2, 1, 0, 1, 3});
    mesh.calculateFaceNormals();
    mesh.calculateVertexNormals();
    const RecordingVertexBuffer& buffer = make(mesh, &Mesh::createVertexBuffer);
    EXPECT_EQ(buffer.calls, (Calls{"setAttribute 0 Vector3 x 4", "setAttribute 1 Vector2 x 4",
                                   "setAttribute 2 Vector3 x 4", "setIndices 6"}));
    EXPECT_EQ(buffer.threes.at(0), positions);
    EXPECT_EQ(buffer.twos.at(1), textureCoordinates);
    EXPECT_EQ(buffer.threes.at(2), mesh.getVertexNormals());
    EXPECT_EQ(buffer.indices, (Indices{0, 2, 1, 0, 1, 3}));
    EXPECT_FALSE(buffer.dynamic);
}

TEST_F(MeshVertexBuffers, haveNoAttributeOfWhatTheMeshHasNot)
{
    const RecordingVertexBuffer& buffer = make(Mesh(positions, {}, {0, 2, 1}), &Mesh::createVertexBuffer);
    EXPECT_EQ(buffer.calls, (Calls{"setAttribute 0 Vector3 x 4", "setIndices 3"}));
}

TEST_F(MeshVertexBuffers, leaveTextureCoordinatesOutThatAreNotOneForEachPosition)
{
    const RecordingVertexBuffer& buffer = make(Mesh(positions, {{1, 1}}, {0, 2, 1}), &Mesh::createVertexBuffer);
    EXPECT_EQ(buffer.calls, (Calls{"setAttribute 0 Vector3 x 4", "setIndices 3"}));
}

TEST_F(MeshVertexBuffers, haveOnlyTrianglesThatNamePositions)
{
    const Mesh mesh(positions, {}, {0, 1, 2, 0, 1, 4, -1, 1, 2, 3, 2, 1, 0, 1});
    const RecordingVertexBuffer& triangles = make(mesh, &Mesh::createVertexBuffer);
    EXPECT_EQ(triangles.indices, (Indices{0, 1, 2, 3, 2, 1}));
    handedBack.reset();
    const RecordingVertexBuffer& lines = make(mesh, &Mesh::createWireframeVertexBuffer);
    EXPECT_EQ(lines.indices, (Indices{0, 1, 1, 2, 2, 0, 3, 2, 2, 1, 1, 3}));
}

TEST_F(MeshVertexBuffers, ofTheWireframeHaveTheThreeSidesOfEachTriangle)
{
    const Mesh mesh(positions, textureCoordinates, {0, 2, 1, 0, 1, 3});
    const RecordingVertexBuffer& buffer = make(mesh, &Mesh::createWireframeVertexBuffer);
    EXPECT_EQ(buffer.calls, (Calls{"setAttribute 0 Vector3 x 4", "setIndices 12"}));
    EXPECT_EQ(buffer.threes.at(0), positions);
    EXPECT_EQ(buffer.indices, (Indices{0, 2, 2, 1, 1, 0, 0, 1, 1, 3, 3, 0}));
}

TEST_F(MeshVertexBuffers, ofTheFaceNormalsStartInTheMiddleOfEachFace)
{
    Mesh mesh(positions, {}, {0, 1, 2, 0, 1, 9, 0, 1, 3});
    mesh.calculateFaceNormals();
    const RecordingVertexBuffer& buffer = make(mesh, &Mesh::createFaceNormalsVertexBuffer);
    EXPECT_EQ(buffer.calls, (Calls{"setAttribute 0 Vector3 x 4"}));
    const float size = 13 * 0.05f; // a twentieth of the diagonal of 4 x 3 x 12
    const Points& ends = buffer.threes.at(0);
    const Points expected = {{4 / 3.0f, 1, 0}, {4 / 3.0f, 1, size}, {4 / 3.0f, 0, 4}, {4 / 3.0f, -size, 4}};
    ASSERT_EQ(ends.size(), 4u) << "none for a triangle without positions";
    for (std::size_t i = 0; i < 4; ++i) EXPECT_LT(length(ends[i] - expected[i]), 1e-5f) << i;
}

TEST_F(MeshVertexBuffers, ofTheVertexNormalsStartAtEachPosition)
{
    Mesh mesh(positions, {}, {0, 1, 2});
    mesh.calculateFaceNormals();
    mesh.calculateVertexNormals();
    const RecordingVertexBuffer& buffer = make(mesh, &Mesh::createVertexNormalsVertexBuffer);
    EXPECT_EQ(buffer.calls, (Calls{"setAttribute 0 Vector3 x 8"}));
    const float size = 13 * 0.05f;
    const Points& ends = buffer.threes.at(0);
    ASSERT_EQ(ends.size(), 8u);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(ends[i * 2], positions[i]);
        const Vector3<float> expected = positions[i] + Vector3<float>(0, 0, i < 3 ? size : 0);
        EXPECT_LT(length(ends[i * 2 + 1] - expected), 1e-5f);
    }
}

TEST_F(MeshVertexBuffers, ofNormalsThatWereNotCalculatedAreEmpty)
{
    const Mesh mesh(positions, {}, {0, 1, 2});
    EXPECT_EQ(make(mesh, &Mesh::createFaceNormalsVertexBuffer).calls, Calls());
    handedBack.reset();
    EXPECT_EQ(make(mesh, &Mesh::createVertexNormalsVertexBuffer).calls, Calls());
}

TEST_F(MeshVertexBuffers, ofAnEmptyMeshDrawNothing)
{
    Mesh mesh({}, {}, {});
    mesh.calculateFaceNormals();
    mesh.calculateVertexNormals();
    const Calls expected[] = {{"setIndices 0"}, {"setIndices 0"}, {}, {}};
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(make(mesh, all[i]).calls, expected[i]);
        handedBack.reset();
    }
}

TEST_F(MeshVertexBuffers, ofASphereHaveItsNumbers)
{
    const std::unique_ptr<Mesh> mesh(createSphereMesh(2, 3));
    EXPECT_EQ(make(*mesh, &Mesh::createVertexBuffer).calls,
              (Calls{"setAttribute 0 Vector3 x 66", "setAttribute 2 Vector3 x 66", "setIndices 384"}));
    handedBack.reset();
    EXPECT_EQ(make(*mesh, &Mesh::createWireframeVertexBuffer).calls,
              (Calls{"setAttribute 0 Vector3 x 66", "setIndices 768"}));
    handedBack.reset();
    EXPECT_EQ(make(*mesh, &Mesh::createFaceNormalsVertexBuffer).calls, Calls{"setAttribute 0 Vector3 x 256"});
    handedBack.reset();
    EXPECT_EQ(make(*mesh, &Mesh::createVertexNormalsVertexBuffer).calls, Calls{"setAttribute 0 Vector3 x 132"});
}

TEST_F(MeshVertexBuffers, areNullWithoutADevice)
{
    const Mesh mesh(positions, {}, {0, 1, 2});
    for (const Create create : all) EXPECT_EQ((mesh.*create)(nullptr), nullptr);
}

TEST_F(MeshVertexBuffers, areNullFromADeviceThatMakesNone)
{
    Engine* engine = initEngine(false);
    ASSERT_NE(engine, nullptr);
    RenderDevice* inert = engine->createRenderDevice(nullptr, "Software");
    const std::unique_ptr<Mesh> mesh(createSphereMesh(1, 1));
    for (const Create create : all) EXPECT_EQ((*mesh.*create)(inert), nullptr);
    engine->destroyRenderDevice(inert);
    shutdownEngine(engine);
}

TEST_F(MeshVertexBuffers, areNullAndHandedBackWhenMemoryRunsOut)
{
    Mesh mesh(positions, textureCoordinates, {0, 1, 2});
    mesh.calculateFaceNormals();
    mesh.calculateVertexNormals();
    for (const Create create : all) {
        int failures = 0;
        for (VertexBuffer* buffer = nullptr; buffer == nullptr; ++failures) {
            ASSERT_LT(failures, 1000);
            {
                const FailingAllocations failing(failures);
                buffer = (mesh.*create)(&device);
            }
            EXPECT_EQ(device.buffers.size(), buffer != nullptr ? 1u : 0u);
            handedBack.reset(buffer);
        }
        EXPECT_GT(failures, 3);
        handedBack.reset();
    }
}
