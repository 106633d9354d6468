#include "shapes.h"

#include <xum/geometry/mesh.h>
#include <xum/geometry/terrain.h>

#include <gtest/gtest.h>

#include <memory>

TEST(Shapes, meshKeepsPositionsNormalsAndTriangles)
{
    Mesh mesh({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {{0, 0}, {1, 0}, {0, 1}}, {0, 1, 2});
    mesh.calculateFaceNormals();
    mesh.calculateVertexNormals();
    const Solid shape = makeShape(mesh);
    EXPECT_EQ(shape.positions, mesh.getPositions());
    EXPECT_EQ(shape.textureCoordinates, mesh.getTextureCoordinates());
    EXPECT_EQ(shape.normals, std::vector<Vector3<float>>(3, {0, 0, 1}));
    EXPECT_EQ(shape.triangles, (std::vector<unsigned int>{0, 1, 2}));
}

TEST(Shapes, meshWithoutTextureCoordinatesGetsThemFromTheFront)
{
    const std::unique_ptr<Mesh> sphere(createSphereMesh(1, 2.0f));
    const Solid shape = makeShape(*sphere);
    ASSERT_EQ(shape.textureCoordinates.size(), shape.positions.size());
    for (std::size_t i = 0; i < shape.positions.size(); ++i) {
        EXPECT_EQ(shape.textureCoordinates[i].x, shape.positions[i].x);
        EXPECT_EQ(shape.textureCoordinates[i].y, -shape.positions[i].z);
    }
}

TEST(Shapes, flatTerrainHasNormalsUpwards)
{
    const Terrain terrain(2, 3, 4);
    const Solid shape = makeShape(terrain);
    EXPECT_EQ(shape.normals, std::vector<Vector3<float>>(35, {0, 0, 1}));
    EXPECT_EQ(shape.triangles.size(), terrain.getIndexes().size());
}

TEST(Shapes, normalsOfASlopeLeanDownhill)
{
    Terrain terrain(2, 2, 1);
    terrain.modify([](int, int, const Vector3<float>& p) { return Vector3<float>(p.x, p.y, p.x); }, 0);
    for (const Vector3<float>& normal : makeShape(terrain).normals) {
        EXPECT_NEAR(normal.x, -std::sqrt(0.5f), 1e-5f);
        EXPECT_NEAR(normal.y, 0, 1e-5f);
        EXPECT_NEAR(normal.z, std::sqrt(0.5f), 1e-5f);
    }
}
