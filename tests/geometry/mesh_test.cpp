#include <xum/geometry/mesh.h>

#include "slots.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>

using Points = std::vector<Vector3<float>>;

namespace {

Mesh makeTriangle(const Vector3<float>& a, const Vector3<float>& b, const Vector3<float>& c)
{
    return {{a, b, c}, {}, {0, 1, 2}};
}

/// With a right angle at the second corner, in the x-y plane.
Vector3<float> faceNormalOfRightTriangle(float leg, float otherLeg)
{
    Mesh mesh = makeTriangle({0, otherLeg, 0}, {0, 0, 0}, {leg, 0, 0});
    mesh.calculateFaceNormals();
    return mesh.getFaceNormals().at(0);
}

bool haveTheSameBits(const Points& a, const Points& b)
{
    return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof a[0]) == 0);
}

bool namesPosition(const Mesh& mesh, int index)
{
    return index >= 0 && static_cast<std::size_t>(index) < mesh.getPositions().size();
}

Vector3<float> normalOf(const Vector3<float>& v)
{
    const float size = length(v);
    return size < 0.00001f ? Vector3<float>() : v / size;
}

/// A search of all triangles for each position.
Points scanForVertexNormals(const Mesh& mesh)
{
    Points normals;
    const std::vector<int>& indexes = mesh.getIndexes();
    for (int vertex = 0; vertex < static_cast<int>(mesh.getPositions().size()); ++vertex) {
        Vector3<float> sum;
        for (std::size_t triangle = 0; triangle < mesh.getFaceNormals().size(); ++triangle) {
            const int* corners = &indexes[triangle * 3];
            if (corners[0] == vertex || corners[1] == vertex || corners[2] == vertex)
                sum += mesh.getFaceNormals()[triangle];
        }
        normals.push_back(normalOf(sum));
    }
    return normals;
}

Points calculatePlainFaceNormals(const Mesh& mesh)
{
    Points normals;
    const std::vector<int>& indexes = mesh.getIndexes();
    for (std::size_t i = 0; i + 2 < indexes.size(); i += 3) {
        if (!namesPosition(mesh, indexes[i]) || !namesPosition(mesh, indexes[i + 1]) ||
            !namesPosition(mesh, indexes[i + 2])) {
            normals.emplace_back();
            continue;
        }
        const Vector3<float> a = mesh.getPositions()[static_cast<std::size_t>(indexes[i])];
        const Vector3<float> b = mesh.getPositions()[static_cast<std::size_t>(indexes[i + 1])];
        const Vector3<float> c = mesh.getPositions()[static_cast<std::size_t>(indexes[i + 2])];
        normals.push_back(normalOf(cross(c - b, a - b)));
    }
    return normals;
}

} // namespace

TEST(Mesh, hasItsDestructorFirstAndOneMoreOperation)
{
    EXPECT_EQ(slotOf(&Mesh::isValid), 1 + 1); // the destructor is slot 0 and takes two places
    Mesh mesh({}, {}, {});
    EXPECT_TRUE(mesh.isValid());
}

TEST(Mesh, keepsCopiesOfWhatItIsMadeOf)
{
    Points positions = {{1, 2, 3}, {4, 5, 6}};
    std::vector<Vector2<float>> textureCoordinates = {{0.5f, 0.25f}, {1, 0}};
    std::vector<int> indexes = {0, 1, 0};
    const Mesh mesh(positions, textureCoordinates, indexes);
    positions[0] = {9, 9, 9};
    textureCoordinates.clear();
    indexes.push_back(7);
    EXPECT_EQ(mesh.getPositions(), (Points{{1, 2, 3}, {4, 5, 6}}));
    EXPECT_EQ(mesh.getTextureCoordinates(), (std::vector<Vector2<float>>{{0.5f, 0.25f}, {1, 0}}));
    EXPECT_EQ(mesh.getIndexes(), (std::vector<int>{0, 1, 0}));
}

TEST(Mesh, hasNoNormalsUntilTheyAreCalculated)
{
    Mesh mesh = makeTriangle({1, 0, 0}, {0, 0, 0}, {0, 1, 0});
    EXPECT_TRUE(mesh.getFaceNormals().empty());
    EXPECT_TRUE(mesh.getVertexNormals().empty());
    mesh.calculateFaceNormals();
    EXPECT_EQ(mesh.getFaceNormals().size(), 1u);
    EXPECT_TRUE(mesh.getVertexNormals().empty());
    mesh.calculateVertexNormals();
    EXPECT_EQ(mesh.getVertexNormals().size(), 3u);
}

TEST(Mesh, givesOutTheVectorsThemselves)
{
    const Mesh mesh = makeTriangle({1, 0, 0}, {0, 0, 0}, {0, 1, 0});
    EXPECT_EQ(&mesh.getPositions(), &mesh.getPositions());
    EXPECT_EQ(&mesh.getIndexes(), &mesh.getIndexes());
}

TEST(Mesh, boundingBoxOfNoPositionsIsTheEmptyBox)
{
    EXPECT_EQ(Mesh({}, {}, {}).calculateBoundingBox(), Box());
}

TEST(Mesh, boundingBoxHoldsAllPositionsEvenUnusedOnes)
{
    const Mesh mesh({{1, -5, 3}, {-2, 7, 3.5f}, {0, 0, -9}}, {}, {});
    EXPECT_EQ(mesh.calculateBoundingBox(), Box({-2, -5, -9}, {1, 7, 3.5f}));
}

TEST(Mesh, faceNormalPointsToWhereTheCornersRunCounterClockwise)
{
    Mesh mesh({{0, 0, 5}, {4, 0, 5}, {0, 3, 5}}, {}, {0, 1, 2, 0, 2, 1, 1, 2, 0});
    mesh.calculateFaceNormals();
    EXPECT_EQ(mesh.getFaceNormals(), (Points{{0, 0, 1}, {0, 0, -1}, {0, 0, 1}}));
}

TEST(Mesh, faceNormalIsTheNormalizedProductAroundTheSecondCorner)
{
    const Vector3<float> a(0.1f, 0.7f, -0.3f);
    const Vector3<float> b(1.3f, -0.2f, 0.9f);
    const Vector3<float> c(-0.6f, 0.4f, 2.1f);
    Mesh mesh = makeTriangle(a, b, c);
    mesh.calculateFaceNormals();
    const Vector3<float> product = cross(c - b, a - b);
    EXPECT_TRUE(haveTheSameBits(mesh.getFaceNormals(), {product / length(product)}));
}

TEST(Mesh, degenerateTriangleHasAZeroNormal)
{
    Mesh mesh({{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}, {}, {0, 0, 1, 0, 1, 1, 0, 1, 0, 2, 2, 2, 0, 1, 2});
    mesh.calculateFaceNormals();
    EXPECT_EQ(mesh.getFaceNormals(), Points(5)) << "two equal corners, three, and three in a line";
}

TEST(Mesh, smallTriangleHasAZeroNormal)
{
    EXPECT_EQ(faceNormalOfRightTriangle(0.003f, 0.003f), Vector3<float>());
    EXPECT_EQ(faceNormalOfRightTriangle(0.0032f, 0.0032f), Vector3<float>(0, 0, 1));
}

TEST(Mesh, faceNormalIsZeroBelowTheShortestProductAlone)
{
    EXPECT_EQ(faceNormalOfRightTriangle(0.00001f, 1), Vector3<float>(0, 0, 1));
    EXPECT_EQ(faceNormalOfRightTriangle(std::nextafter(0.00001f, 0.0f), 1), Vector3<float>());
}

TEST(Mesh, hugeTriangleHasANormal)
{
    EXPECT_EQ(faceNormalOfRightTriangle(1e9f, 1e9f), Vector3<float>(0, 0, 1));
}

TEST(Mesh, triangleThatNamesNoPositionHasAZeroNormal)
{
    Mesh mesh({{1, 0, 0}, {0, 0, 0}, {0, 1, 0}}, {}, {0, 1, 3, -1, 1, 2, 0, 2147483647, 2, 0, -2147483647 - 1, 2});
    mesh.calculateFaceNormals();
    EXPECT_EQ(mesh.getFaceNormals(), Points(4));
    mesh.calculateVertexNormals();
    EXPECT_EQ(mesh.getVertexNormals(), Points(3));
}

TEST(Mesh, indexesBeyondTheLastWholeTriangleAreKeptButNoFace)
{
    Mesh mesh({{0, 1, 0}, {0, 0, 0}, {1, 0, 0}}, {}, {0, 1, 2, 0, 1});
    mesh.calculateFaceNormals();
    mesh.calculateVertexNormals();
    EXPECT_EQ(mesh.getFaceNormals(), Points(1, {0, 0, 1}));
    EXPECT_EQ(mesh.getVertexNormals(), Points(3, {0, 0, 1}));
    EXPECT_EQ(mesh.getIndexes().size(), 5u);
}

TEST(Mesh, calculatesNormalsAnewEachTime)
{
    Mesh mesh({{0, 1, 0}, {0, 0, 0}, {1, 0, 0}}, {}, {0, 1, 2});
    for (int i = 0; i < 3; ++i) {
        mesh.calculateFaceNormals();
        mesh.calculateVertexNormals();
        EXPECT_EQ(mesh.getFaceNormals(), Points(1, {0, 0, 1}));
        EXPECT_EQ(mesh.getVertexNormals(), Points(3, {0, 0, 1}));
    }
}

TEST(Mesh, vertexNormalIsTheNormalizedSumOfItsFaces)
{
    // Two walls that meet at the z axis.
    Mesh mesh({{0, 0, 0}, {0, 0, 1}, {1, 0, 0}, {0, 1, 0}}, {}, {1, 0, 2, 0, 1, 3});
    mesh.calculateFaceNormals();
    ASSERT_EQ(mesh.getFaceNormals(), (Points{{0, -1, 0}, {-1, 0, 0}}));
    mesh.calculateVertexNormals();
    const float half = 1 / std::sqrt(2.0f);
    EXPECT_EQ(mesh.getVertexNormals(), (Points{{-half, -half, 0}, {-half, -half, 0}, {0, -1, 0}, {-1, 0, 0}}));
}

TEST(Mesh, facesOfAllSizesCountTheSameAtAVertex)
{
    Mesh mesh({{0, 0, 0}, {0, 0, 1}, {1000, 0, 0}, {0, 0.1f, 0}}, {}, {1, 0, 2, 0, 1, 3});
    mesh.calculateFaceNormals();
    mesh.calculateVertexNormals();
    const float half = 1 / std::sqrt(2.0f);
    EXPECT_EQ(mesh.getVertexNormals()[0], Vector3<float>(-half, -half, 0));
}

TEST(Mesh, vertexOfNoTriangleHasAZeroNormal)
{
    Mesh mesh({{0, 1, 0}, {0, 0, 0}, {5, 5, 5}, {1, 0, 0}}, {}, {0, 1, 3});
    mesh.calculateFaceNormals();
    mesh.calculateVertexNormals();
    EXPECT_EQ(mesh.getVertexNormals(), (Points{{0, 0, 1}, {0, 0, 1}, {}, {0, 0, 1}}));
}

TEST(Mesh, vertexBetweenOppositeFacesHasAZeroNormal)
{
    Mesh mesh({{0, 1, 0}, {0, 0, 0}, {1, 0, 0}}, {}, {0, 1, 2, 0, 2, 1});
    mesh.calculateFaceNormals();
    mesh.calculateVertexNormals();
    EXPECT_EQ(mesh.getVertexNormals(), Points(3));
}

TEST(Mesh, vertexNormalIsZeroWhereTheSumIsTooShort)
{
    // Two faces back to back, the second tilted a little: the sum is as long as the tilt.
    const auto normalForTilt = [](float tilt) {
        Mesh mesh({{0, 1, 0}, {0, 0, 0}, {1, 0, 0}, {1, 0, tilt}}, {}, {0, 1, 2, 3, 1, 0});
        mesh.calculateFaceNormals();
        mesh.calculateVertexNormals();
        return mesh.getVertexNormals()[1];
    };
    EXPECT_EQ(normalForTilt(0.000009f), Vector3<float>());
    EXPECT_NE(normalForTilt(0.000011f), Vector3<float>());
}

TEST(Mesh, degenerateTriangleAddsNothingToItsVertices)
{
    Mesh mesh({{0, 1, 0}, {0, 0, 0}, {1, 0, 0}}, {}, {0, 1, 2, 1, 1, 2, 0, 0, 0});
    mesh.calculateFaceNormals();
    mesh.calculateVertexNormals();
    EXPECT_EQ(mesh.getVertexNormals(), Points(3, {0, 0, 1}));
}

TEST(Mesh, vertexNormalsWithoutFaceNormalsAreZero)
{
    Mesh mesh = makeTriangle({0, 1, 0}, {0, 0, 0}, {1, 0, 0});
    mesh.calculateVertexNormals();
    EXPECT_EQ(mesh.getVertexNormals(), Points(3));
}

TEST(Mesh, withoutTrianglesHasOnlyZeroVertexNormals)
{
    Mesh mesh({{1, 2, 3}, {4, 5, 6}}, {}, {});
    mesh.calculateFaceNormals();
    mesh.calculateVertexNormals();
    EXPECT_TRUE(mesh.getFaceNormals().empty());
    EXPECT_EQ(mesh.getVertexNormals(), Points(2));
    Mesh empty({}, {}, {});
    empty.calculateFaceNormals();
    empty.calculateVertexNormals();
    EXPECT_TRUE(empty.getVertexNormals().empty());
}

TEST(Mesh, vertexNormalsHaveTheBitsOfAPlainScan)
{
    std::mt19937 random(20);
    const auto number = [&random](int most) { return static_cast<int>(random() % static_cast<unsigned>(most + 1)); };
    for (int round = 0; round < 3000; ++round) {
        const int vertexCount = number(40);
        const float extent = round % 3 == 0 ? 0.01f : 2.0f; // in the small one many faces have no normal
        std::uniform_real_distribution<float> coordinate(-extent, extent);
        Points positions;
        for (int i = 0; i < vertexCount; ++i)
            positions.emplace_back(coordinate(random), coordinate(random), coordinate(random));
        for (int i = 0; i < vertexCount / 8; ++i)
            positions[static_cast<std::size_t>(number(vertexCount - 1))] = positions[0];

        const bool areWild = round % 4 == 0;
        std::vector<int> indexes;
        for (int i = number(300); i > 0; --i) indexes.push_back(areWild ? number(vertexCount + 4) - 2 : number(9));
        Mesh mesh(positions, {}, indexes);
        mesh.calculateFaceNormals();
        mesh.calculateVertexNormals();
        ASSERT_TRUE(haveTheSameBits(mesh.getFaceNormals(), calculatePlainFaceNormals(mesh))) << "round " << round;
        ASSERT_TRUE(haveTheSameBits(mesh.getVertexNormals(), scanForVertexNormals(mesh))) << "round " << round;
    }
}
