#include <xum/geometry/mesh.h>

#include "allocation_counter.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <map>
#include <memory>
#include <utility>

using Points = std::vector<Vector3<float>>;
using Indexes = std::vector<int>;

namespace {

std::unique_ptr<Mesh> makeSphere(int subdivisions, float radius = 1)
{
    return std::unique_ptr<Mesh>(createSphereMesh(subdivisions, radius));
}

bool haveTheSameBits(const Points& a, const Points& b)
{
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof a[0]) == 0;
}

std::size_t countZeros(const Points& normals)
{
    std::size_t count = 0;
    for (const Vector3<float>& normal : normals)
        if (normal == Vector3<float>()) ++count;
    return count;
}

/// The sphere by the plain rules, with a search from the start for each corner.
struct PlainSphere {
    Points positions;
    Indexes indexes;

    PlainSphere(int subdivisions, float radius)
    {
        const float c = static_cast<float>(1 / std::sqrt(2.0));
        Points vertices = {{0, 0, -1}, {-c, -c, 0}, {c, -c, 0}, {c, c, 0}, {-c, c, 0}, {0, 0, 1}};
        std::vector<std::array<int, 3>> triangles = {{0, 2, 1}, {0, 3, 2}, {0, 4, 3}, {0, 1, 4},
                                                     {5, 1, 2}, {5, 2, 3}, {5, 3, 4}, {5, 4, 1}};
        for (int round = 0; round < subdivisions; ++round) {
            std::vector<std::array<int, 3>> smaller;
            for (const std::array<int, 3>& triangle : triangles) {
                const auto append = [&](int first, int second) {
                    const Vector3<float> sum =
                        vertices[static_cast<std::size_t>(first)] + vertices[static_cast<std::size_t>(second)];
                    vertices.push_back(length(sum) < 0.00001f ? Vector3<float>() : sum / length(sum));
                    return static_cast<int>(vertices.size()) - 1;
                };
                const int ab = append(triangle[0], triangle[1]);
                const int bc = append(triangle[2], triangle[1]);
                const int ca = append(triangle[2], triangle[0]);
                smaller.push_back({triangle[0], ab, ca});
                smaller.push_back({ab, triangle[1], bc});
                smaller.push_back({ca, bc, triangle[2]});
                smaller.push_back({ab, bc, ca});
            }
            triangles = smaller;
        }
        for (const Vector3<float>& vertex : vertices)
            if (search(vertex) < 0) positions.push_back(vertex);
        for (const std::array<int, 3>& triangle : triangles)
            for (const int corner : triangle) indexes.push_back(search(vertices[static_cast<std::size_t>(corner)]));
        for (Vector3<float>& position : positions) position = position * radius;
    }

    int search(const Vector3<float>& vertex) const
    {
        for (std::size_t i = 0; i < positions.size(); ++i)
            if (std::fabs(positions[i].x - vertex.x) < 0.001f && std::fabs(positions[i].y - vertex.y) < 0.001f &&
                std::fabs(positions[i].z - vertex.z) < 0.001f)
                return static_cast<int>(i);
        return -1;
    }
};

} // namespace

TEST(SphereMesh, ofNoSubdivisionIsAnOctahedron)
{
    const auto mesh = makeSphere(0);
    const float c = 0.70710678f;
    EXPECT_EQ(mesh->getPositions(), (Points{{0, 0, -1}, {-c, -c, 0}, {c, -c, 0}, {c, c, 0}, {-c, c, 0}, {0, 0, 1}}));
    EXPECT_EQ(mesh->getIndexes(), (Indexes{0, 2, 1, 0, 3, 2, 0, 4, 3, 0, 1, 4, 5, 1, 2, 5, 2, 3, 5, 3, 4, 5, 4, 1}));
    EXPECT_TRUE(mesh->getTextureCoordinates().empty());
}

TEST(SphereMesh, octahedronHasAllPositionsAtTheRadius)
{
    const auto mesh = makeSphere(0, 2.5f);
    ASSERT_EQ(mesh->getPositions().size(), 6u);
    for (const Vector3<float>& position : mesh->getPositions()) EXPECT_NEAR(length(position), 2.5f, 1e-6f);
}

TEST(SphereMesh, splitsEachTriangleIntoFourInOrder)
{
    const auto mesh = makeSphere(1);
    // The first triangle was 0, 2, 1; its middles are the first new positions.
    EXPECT_EQ(Indexes(mesh->getIndexes().begin(), mesh->getIndexes().begin() + 12),
              (Indexes{0, 6, 8, 6, 2, 7, 8, 7, 1, 6, 7, 8}));
    const Points& positions = mesh->getPositions();
    const auto middle = [&positions](std::size_t a, std::size_t b) {
        const Vector3<float> sum = positions[a] + positions[b];
        return sum / length(sum);
    };
    EXPECT_EQ(positions[6], middle(0, 2));
    EXPECT_EQ(positions[7], middle(1, 2));
    EXPECT_EQ(positions[8], middle(1, 0));
    EXPECT_EQ(positions[7], Vector3<float>(0, -1, 0));
}

TEST(SphereMesh, hasSoManyTrianglesAndPositions)
{
    const std::size_t triangles[] = {8, 32, 128, 512, 2048, 8192, 32768, 131072};
    const std::size_t positions[] = {6, 18, 66, 258, 1026, 4098, 16386, 65538};
    for (int subdivisions = 0; subdivisions <= 7; ++subdivisions) {
        const auto mesh = makeSphere(subdivisions);
        const auto i = static_cast<std::size_t>(subdivisions);
        EXPECT_EQ(mesh->getIndexes().size(), triangles[i] * 3) << subdivisions;
        EXPECT_EQ(mesh->getPositions().size(), positions[i]) << subdivisions;
        EXPECT_EQ(mesh->getFaceNormals().size(), triangles[i]) << subdivisions;
        EXPECT_EQ(mesh->getVertexNormals().size(), positions[i]) << subdivisions;
    }
}

TEST(SphereMesh, isMergedAsByASearchFromTheStart)
{
    for (int subdivisions = 0; subdivisions <= 5; ++subdivisions) {
        for (const float radius : {1.0f, 3.7f}) {
            const auto mesh = makeSphere(subdivisions, radius);
            const PlainSphere plain(subdivisions, radius);
            EXPECT_TRUE(haveTheSameBits(mesh->getPositions(), plain.positions)) << subdivisions << ", " << radius;
            EXPECT_EQ(mesh->getIndexes(), plain.indexes) << subdivisions << ", " << radius;
        }
    }
}

TEST(SphereMesh, hasTheNormalsOfItsScaledTriangles)
{
    const auto mesh = makeSphere(3, 0.05f);
    Mesh again(mesh->getPositions(), {}, mesh->getIndexes());
    again.calculateFaceNormals();
    again.calculateVertexNormals();
    EXPECT_TRUE(haveTheSameBits(mesh->getFaceNormals(), again.getFaceNormals()));
    EXPECT_TRUE(haveTheSameBits(mesh->getVertexNormals(), again.getVertexNormals()));
}

TEST(SphereMesh, isClosedWithItsFrontOutside)
{
    for (int subdivisions = 0; subdivisions <= 4; ++subdivisions) {
        const auto mesh = makeSphere(subdivisions, 7);
        std::map<std::pair<int, int>, int> sides;
        const Indexes& indexes = mesh->getIndexes();
        for (std::size_t i = 0; i < indexes.size(); i += 3) {
            for (std::size_t corner = 0; corner < 3; ++corner)
                ++sides[{indexes[i + corner], indexes[i + (corner + 1) % 3]}];
            const Vector3<float> outward = mesh->getPositions()[static_cast<std::size_t>(indexes[i])] +
                                           mesh->getPositions()[static_cast<std::size_t>(indexes[i + 1])] +
                                           mesh->getPositions()[static_cast<std::size_t>(indexes[i + 2])];
            EXPECT_GT(dot(normalize(outward), mesh->getFaceNormals()[i / 3]), 0.99f);
        }
        for (const auto& [side, count] : sides) {
            EXPECT_EQ(count, 1);
            EXPECT_EQ((sides.count({side.second, side.first})), 1u);
        }
        for (std::size_t i = 0; i < mesh->getPositions().size(); ++i) {
            EXPECT_NEAR(length(mesh->getPositions()[i]), 7, 1e-5f);
            EXPECT_GT(dot(mesh->getPositions()[i] / 7.0f, mesh->getVertexNormals()[i]), 0.98f);
        }
    }
}

TEST(SphereMesh, hasTheBoxOfItsPositions)
{
    const float c = 0.70710678f;
    EXPECT_EQ(makeSphere(0)->calculateBoundingBox(), Box({-c, -c, -1}, {c, c, 1})) << "the equator touches no side";
    for (int subdivisions = 1; subdivisions <= 4; ++subdivisions)
        EXPECT_EQ(makeSphere(subdivisions, 2)->calculateBoundingBox(), Box({-2, -2, -2}, {2, 2, 2})) << subdivisions;
}

TEST(SphereMesh, tooSmallForNormalsHasZeroNormals)
{
    const auto mesh = makeSphere(3, 0.01f);
    EXPECT_EQ(countZeros(mesh->getFaceNormals()), 512u);
    EXPECT_EQ(countZeros(mesh->getVertexNormals()), 258u);
}

TEST(SphereMesh, hasAllNormalsUpToEightSubdivisionsAndNotAllAtNine)
{
    EXPECT_EQ(countZeros(makeSphere(8)->getFaceNormals()), 0u);
    const auto mesh = makeSphere(9);
    EXPECT_EQ(mesh->getPositions().size(), 1048578u);
    EXPECT_EQ(mesh->getFaceNormals().size(), 2097152u);
    EXPECT_EQ(countZeros(mesh->getFaceNormals()), 393216u);
}

TEST(SphereMesh, ofRadiusZeroIsAPoint)
{
    const auto mesh = makeSphere(2, 0);
    EXPECT_EQ(mesh->getPositions().size(), 66u) << "merged before it is scaled";
    EXPECT_EQ(countZeros(mesh->getPositions()), 66u);
    EXPECT_EQ(countZeros(mesh->getFaceNormals()), 128u);
    EXPECT_EQ(countZeros(mesh->getVertexNormals()), 66u);
}

TEST(SphereMesh, ofANegativeRadiusIsTurnedInsideOut)
{
    const auto mesh = makeSphere(2, -3);
    const auto other = makeSphere(2, 3);
    for (std::size_t i = 0; i < mesh->getPositions().size(); ++i)
        EXPECT_EQ(mesh->getPositions()[i], -other->getPositions()[i]);
    EXPECT_EQ(mesh->getIndexes(), other->getIndexes());
    EXPECT_EQ(mesh->getFaceNormals(), other->getFaceNormals());
}

TEST(SphereMesh, takesANegativeNumberOfSubdivisionsForNone)
{
    EXPECT_EQ(makeSphere(-1)->getPositions(), makeSphere(0)->getPositions());
    EXPECT_EQ(makeSphere(-2147483647 - 1)->getIndexes(), makeSphere(0)->getIndexes());
}

TEST(SphereMesh, isRefusedWithMoreThanTwelveSubdivisions)
{
    EXPECT_EQ(makeSphere(13), nullptr);
    EXPECT_EQ(makeSphere(2147483647), nullptr);
}

TEST(SphereMesh, isNullWhenMemoryRunsOut)
{
    std::unique_ptr<Mesh> mesh;
    int failures = -1;
    for (; !mesh; ++failures) {
        ASSERT_LT(failures, 1000);
        const FailingAllocations failing(failures + 1);
        mesh = makeSphere(1);
    }
    EXPECT_GT(failures, 4);
    EXPECT_EQ(mesh->getPositions().size(), 18u);
}
