#include "solids.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <set>
#include <string>
#include <utility>

namespace {

class Solids : public ::testing::TestWithParam<int> {
protected:
    SolidKind kind = static_cast<SolidKind>(GetParam());
    Solid solid = makeSolid(kind);

    const Vector3<float>& corner(std::size_t index) const { return solid.positions[solid.triangles[index]]; }
};

float volume(const Solid& solid)
{
    float sixfold = 0;
    for (std::size_t i = 0; i < solid.triangles.size(); i += 3) {
        const Vector3<float>& a = solid.positions[solid.triangles[i]];
        const Vector3<float>& b = solid.positions[solid.triangles[i + 1]];
        const Vector3<float>& c = solid.positions[solid.triangles[i + 2]];
        sixfold += dot(a, cross(b, c));
    }
    return sixfold / 6;
}

constexpr float pi = 3.14159265f;

} // namespace

INSTANTIATE_TEST_SUITE_P(Each, Solids, ::testing::Range(0, static_cast<int>(solidKindCount)), [](const auto& kind) {
    return std::string(
        std::array{"Box", "Sphere", "Cylinder", "Cone", "Pyramid", "Ring"}.at(static_cast<std::size_t>(kind.param)));
});

TEST_P(Solids, verticesHaveAllAttributesAndIndicesStayAmongThem)
{
    EXPECT_FALSE(solid.positions.empty());
    EXPECT_EQ(solid.textureCoordinates.size(), solid.positions.size());
    EXPECT_EQ(solid.normals.size(), solid.positions.size());
    ASSERT_FALSE(solid.triangles.empty());
    EXPECT_EQ(solid.triangles.size() % 3, 0u);
    EXPECT_LT(*std::max_element(solid.triangles.begin(), solid.triangles.end()), solid.positions.size());
}

TEST_P(Solids, trianglesAreCounterClockwiseSeenFromWhereTheirNormalsPoint)
{
    for (std::size_t i = 0; i < solid.triangles.size(); i += 3) {
        const Vector3<float> facing = cross(corner(i + 1) - corner(i), corner(i + 2) - corner(i));
        for (std::size_t j = i; j < i + 3; ++j)
            EXPECT_GT(dot(normalize(facing), solid.normals[solid.triangles[j]]), 0.7f) << "triangle " << i / 3;
    }
}

TEST_P(Solids, normalsHaveLengthOne)
{
    for (const Vector3<float>& normal : solid.normals) EXPECT_NEAR(length(normal), 1, 1e-5f);
}

TEST_P(Solids, fitTheCubeAroundTheOrigin)
{
    Vector3<float> largest;
    for (const Vector3<float>& p : solid.positions) {
        largest.x = std::max(largest.x, std::abs(p.x));
        largest.y = std::max(largest.y, std::abs(p.y));
        largest.z = std::max(largest.z, std::abs(p.z));
    }
    EXPECT_NEAR(largest.x, 0.5f, 1e-6f);
    EXPECT_NEAR(largest.y, 0.5f, 1e-6f);
    EXPECT_NEAR(largest.z, kind == SolidKind::Ring ? 0.05f : 0.5f, 1e-6f);
}

TEST_P(Solids, textureCoordinatesRunFromZeroToOne)
{
    for (const Vector2<float>& t : solid.textureCoordinates) {
        EXPECT_TRUE(t.x >= -1e-6f && t.x <= 1 + 1e-6f) << t.x;
        EXPECT_TRUE(t.y >= -1e-6f && t.y <= 1 + 1e-6f) << t.y;
    }
}

// Only a closed surface has the volume of its shape; round ones lose a little to their flat sides.
TEST(SolidVolumes, areThoseOfTheShapes)
{
    EXPECT_NEAR(volume(makeSolid(SolidKind::Box)), 1, 1e-4f);
    EXPECT_NEAR(volume(makeSolid(SolidKind::Pyramid)), 1.0f / 3, 1e-4f);
    EXPECT_NEAR(volume(makeSolid(SolidKind::Cylinder)), pi / 4, 0.01f);
    EXPECT_NEAR(volume(makeSolid(SolidKind::Cone)), pi / 12, 0.01f);
    EXPECT_NEAR(volume(makeSolid(SolidKind::Sphere)), pi / 6, 0.01f);
    EXPECT_NEAR(volume(makeSolid(SolidKind::Ring)), 2 * pi * 0.45f * pi * 0.05f * 0.05f, 0.001f);
}

TEST(SolidEdges, eachEdgeAppearsOnce)
{
    const std::vector<unsigned int> edges = makeEdges({0, 1, 2, 0, 2, 3});
    std::set<std::pair<unsigned int, unsigned int>> pairs;
    for (std::size_t i = 0; i < edges.size(); i += 2) pairs.emplace(edges[i], edges[i + 1]);
    EXPECT_EQ(edges.size(), 10u);
    EXPECT_EQ(pairs, (std::set<std::pair<unsigned int, unsigned int>>{{0, 1}, {0, 2}, {0, 3}, {1, 2}, {2, 3}}));
}

TEST(SolidEdges, noTrianglesHaveNone)
{
    EXPECT_TRUE(makeEdges({}).empty());
}
