#include <xum/geometry/mesh.h>
#include <xum/geometry/terrain.h>

#include "gl_fixture.h"

#include <cmath>
#include <memory>

// Meshes and terrain as they appear. The programs map the world's x and y to the target's from -1 to 1, seen from
// above.

namespace {

const std::string topViewSource = R"(#version 150
in vec3 position;
in vec2 textureCoordinate;
in vec3 normal;
out vec2 passedTextureCoordinate;
out vec3 passedNormal;
void main()
{
    passedTextureCoordinate = textureCoordinate;
    passedNormal = normal;
    gl_Position = vec4(position.xy, -position.z, 1.0);
}
)";

const std::string whiteSource = R"(#version 150
out vec4 outputColor;
void main() { outputColor = vec4(1.0); }
)";

class MeshDrawing : public GLTest {
protected:
    void SetUp() override
    {
        GLTest::SetUp();
        if (device != nullptr) makeTarget({rgba8, depth32});
    }

    template <class Shape>
    VertexBuffer* make(const Shape& shape, VertexBuffer* (Shape::*create)(RenderDevice*) const)
    {
        VertexBuffer* buffer = (shape.*create)(device);
        atEnd([this, buffer] { device->destroyVertexBuffer(buffer); });
        return buffer;
    }

    void useTopView(const std::string& fragmentSource = whiteSource)
    {
        device->useProgram(makeProgram(topViewSource, fragmentSource));
    }

    /// Of the middle of a pixel, from -1 to 1.
    static Vector2<float> placeOf(int x, int y)
    {
        const auto along = [](int i) { return (static_cast<float>(i) + 0.5f) / (size / 2.0f) - 1; };
        return {along(x), -along(y)};
    }
};

} // namespace

TEST_F(MeshDrawing, sphereSeenFromOutsideCoversItsDiscWithBackFacesCulled)
{
    const std::unique_ptr<Mesh> sphere(createSphereMesh(4, 0.8f));
    VertexBuffer* buffer = make(*sphere, &Mesh::createVertexBuffer);
    useTopView();
    device->setCullMode(CullMode::Back);
    buffer->drawTriangles();
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            const float distance = length(placeOf(x, y));
            if (distance > 0.79f && distance <= 0.8f) continue; // the polygon's rim
            EXPECT_EQ(pixelAt(x, y), distance < 0.8f ? white : black) << x << ", " << y;
        }
    }
}

TEST_F(MeshDrawing, sphereShowsItsNearHalfWithBackFacesCulledAndItsFarHalfWithFrontFacesCulled)
{
    const std::unique_ptr<Mesh> sphere(createSphereMesh(4, 0.8f));
    VertexBuffer* buffer = make(*sphere, &Mesh::createVertexBuffer);
    useTopView();
    device->enable(RenderFeature::DepthTest);
    device->setCullMode(CullMode::Back);
    buffer->drawTriangles();
    EXPECT_NEAR(depthAt(8, 8), 0.1f, 0.01f); // z = 0.8 towards the viewer
    device->clear(true, true, false);
    device->setCullMode(CullMode::Front);
    buffer->drawTriangles();
    EXPECT_NEAR(depthAt(8, 8), 0.9f, 0.01f);
}

TEST_F(MeshDrawing, sphereIsLitByItsNormals)
{
    const std::unique_ptr<Mesh> sphere(createSphereMesh(4, 0.8f));
    VertexBuffer* buffer = make(*sphere, &Mesh::createVertexBuffer);
    useTopView(R"(#version 150
in vec3 passedNormal;
out vec4 outputColor;
void main() { outputColor = vec4(normalize(passedNormal) * 0.5 + 0.5, 1.0); }
)");
    device->setCullMode(CullMode::Back);
    buffer->drawTriangles();
    int lit = 0;
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            const Vector2<float> place = placeOf(x, y) / 0.8f;
            const float square = dot(place, place);
            if (square > 0.8f) continue;
            const auto byte = [](float value) { return static_cast<unsigned char>((value * 0.5f + 0.5f) * 255); };
            const Pixel expected = {byte(place.x), byte(place.y), byte(std::sqrt(1 - square)), 255};
            EXPECT_TRUE(isNear(pixelAt(x, y), expected, 6))
                << x << ", " << y << ": " << ::testing::PrintToString(pixelAt(x, y)) << " instead of "
                << ::testing::PrintToString(expected);
            ++lit;
        }
    }
    EXPECT_GT(lit, 80);
}

TEST_F(MeshDrawing, meshHasItsTextureCoordinates)
{
    const Mesh mesh({{-1, -1, 0}, {1, -1, 0}, {1, 1, 0}, {-1, 1, 0}}, {{0, 0}, {1, 0}, {1, 1}, {0, 1}},
                    {0, 1, 2, 2, 3, 0});
    VertexBuffer* buffer = make(mesh, &Mesh::createVertexBuffer);
    useTopView(R"(#version 150
in vec2 passedTextureCoordinate;
out vec4 outputColor;
void main() { outputColor = vec4(passedTextureCoordinate, 0.0, 1.0); }
)");
    device->setCullMode(CullMode::Back);
    buffer->drawTriangles();
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            const Vector2<float> place = placeOf(x, y);
            const auto byte = [](float value) { return static_cast<unsigned char>((value + 1) / 2 * 255); };
            EXPECT_TRUE(isNear(pixelAt(x, y), {byte(place.x), byte(place.y), 0, 255}, 2)) << x << ", " << y;
        }
    }
}

TEST_F(MeshDrawing, wireframeDrawsTheSidesAndNothingBetween)
{
    // A square along the middles of pixels, and its diagonal from the lower left to the upper right.
    const float at = 0.8125f;
    const Mesh mesh({{-at, -at, 0}, {at, -at, 0}, {at, at, 0}, {-at, at, 0}}, {}, {0, 1, 2, 2, 3, 0});
    VertexBuffer* buffer = make(mesh, &Mesh::createWireframeVertexBuffer);
    useTopView();
    buffer->drawLines();
    for (int x = 2; x < 14; ++x) {
        EXPECT_EQ(pixelAt(x, 1), white) << x;
        EXPECT_EQ(pixelAt(x, 14), white) << x;
        EXPECT_EQ(pixelAt(1, x), white) << x;
        EXPECT_EQ(pixelAt(14, x), white) << x;
        EXPECT_EQ(pixelAt(x, 15 - x), white) << x;
    }
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            const bool isSide = x == 1 || x == 14 || y == 1 || y == 14 || std::abs(x + y - 15) <= 1;
            const bool isOutside = x == 0 || x == 15 || y == 0 || y == 15;
            if (isSide && !isOutside) continue;
            EXPECT_EQ(pixelAt(x, y), black) << x << ", " << y;
        }
    }
}

TEST_F(MeshDrawing, normalsStandOnTheFaceAndOnTheVertices)
{
    // A wall along the x axis, whose front is at the lower side.
    Mesh mesh({{-1, 0, -1}, {1, 0, -1}, {0, 0, 1}}, {}, {0, 1, 2});
    mesh.calculateFaceNormals();
    mesh.calculateVertexNormals();
    ASSERT_EQ(mesh.getFaceNormals()[0], Vector3<float>(0, -1, 0));
    useTopView();
    make(mesh, &Mesh::createFaceNormalsVertexBuffer)->drawLines();
    EXPECT_GT(countPixels(white), 0);
    const int ofFace = countPixels(white);
    for (int y = 0; y < 7; ++y) EXPECT_EQ(litPixelsOfRow(y), "................") << y;
    device->clear(true, true, false);
    make(mesh, &Mesh::createVertexNormalsVertexBuffer)->drawLines();
    EXPECT_GT(countPixels(white), ofFace) << "the left one at least is another";
    for (int y = 0; y < 7; ++y) EXPECT_EQ(litPixelsOfRow(y), "................") << y;
}

TEST_F(MeshDrawing, terrainSeenFromAboveCoversItsSquare)
{
    Terrain terrain(3, 3, 1);
    terrain.modify(
        [](int, int, const Vector3<float>& position) {
            return Vector3<float>(position.x * 0.25f, position.y * 0.25f, position.x * position.y * 0.01f);
        },
        1);
    VertexBuffer* buffer = make(terrain, &Terrain::createVertexBuffer);
    useTopView(R"(#version 150
in vec2 passedTextureCoordinate;
out vec4 outputColor;
void main() { outputColor = vec4(passedTextureCoordinate, 1.0, 1.0); }
)");
    device->setCullMode(CullMode::Back);
    buffer->drawTriangles();
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            const Vector2<float> place = placeOf(x, y);
            const bool isInside = std::fabs(place.x) < 0.75f && std::fabs(place.y) < 0.75f;
            const auto byte = [](float value) { return static_cast<unsigned char>((value / 1.5f + 0.5f) * 255); };
            const Pixel expected = isInside ? Pixel{byte(place.x), byte(place.y), 255, 255} : black;
            EXPECT_TRUE(isNear(pixelAt(x, y), expected, 2)) << x << ", " << y;
        }
    }
    device->clear(true, true, false);
    device->setCullMode(CullMode::Front);
    buffer->drawTriangles();
    EXPECT_EQ(countPixels(black), size * size) << "nothing from above is a back";
}

TEST_F(MeshDrawing, debugLinesOfTerrainAreItsGrid)
{
    // Lines through the middles of every fourth pixel.
    Terrain terrain(1, 1, 1);
    terrain.modify(
        [](int x, int y, const Vector3<float>&) {
            const Vector2<float> place = placeOf(3 + 4 * x, 11 - 4 * y);
            return Vector3<float>(place.x, place.y, 0);
        },
        0);
    VertexBuffer* buffer = make(terrain, &Terrain::createDebugVertexBuffer);
    useTopView();
    buffer->drawLines();
    for (int y = 4; y < 11; ++y) {
        const std::string row = litPixelsOfRow(y);
        EXPECT_EQ(row.substr(0, 3) + row.substr(12), ".......") << y;
        EXPECT_EQ(row.substr(4, 7), y == 7 ? "#######" : "...#...") << y;
        EXPECT_EQ(row[3], '#') << y;
        EXPECT_EQ(row[11], '#') << y;
    }
    for (const int y : {3, 11}) EXPECT_EQ(litPixelsOfRow(y).substr(4, 7), "#######") << y;
    for (const int y : {2, 12}) EXPECT_EQ(litPixelsOfRow(y), "................") << y;
}
