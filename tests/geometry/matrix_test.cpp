#include <xum/geometry/matrix.h>

#include <gtest/gtest.h>

#include <cstring>
#include <numeric>

namespace {

using M3 = Matrix3<float>;
using M4 = Matrix4<float>;
using V3 = Vector3<float>;
using V4 = Vector4<float>;

const M3 counted3(1, 2, 3, 4, 5, 6, 7, 8, 9);
const M4 counted4(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16);

V3 mapPoint(const M4& matrix, const V3& point)
{
    const V4 result = matrix * V4(point, 1.0f);
    EXPECT_EQ(result.w, 1.0f);
    return {result.x, result.y, result.z};
}

} // namespace

TEST(Matrix3, storesItsElementsRowByRow)
{
    float expected[9];
    std::iota(expected, expected + 9, 1.0f);
    static_assert(sizeof(M3) == sizeof expected);
    EXPECT_EQ(std::memcmp(&counted3, expected, sizeof expected), 0);
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 3; ++column)
            EXPECT_EQ(&counted3(row, column), counted3.elements + 3 * row + column);
    EXPECT_EQ(counted3.getRow(1), V3(4, 5, 6));
}

TEST(Matrix3, isTheIdentityByDefault)
{
    EXPECT_EQ(M3(), M3(1, 0, 0, 0, 1, 0, 0, 0, 1));
}

TEST(Matrix3, canBeMadeOfItsRows)
{
    EXPECT_EQ(M3::fromRows({1, 2, 3}, {4, 5, 6}, {7, 8, 9}), counted3);
}

TEST(Matrix3, swapsRowsAndColumnsWhenTransposed)
{
    EXPECT_EQ(counted3.transposed(), M3(1, 4, 7, 2, 5, 8, 3, 6, 9));
    EXPECT_EQ(counted3.transposed().transposed(), counted3);
}

TEST(Matrix3, multipliesRowsWithColumns)
{
    const M3 other(2, 0, 1, -1, 3, 0, 0, 1, 1);
    EXPECT_EQ(counted3 * other, M3(0, 9, 4, 3, 21, 10, 6, 33, 16));
    EXPECT_EQ(other * counted3, M3(9, 12, 15, 11, 13, 15, 11, 13, 15));
    EXPECT_EQ(counted3 * M3(), counted3);
    EXPECT_EQ(M3() * counted3, counted3);
}

TEST(Matrix3, mapsColumnVectors)
{
    EXPECT_EQ(counted3 * V3(1, 10, 100), V3(321, 654, 987));
}

TEST(Matrix3, canBeWrittenElementByElement)
{
    M3 matrix;
    matrix(0, 2) = 5;
    EXPECT_EQ(matrix, M3(1, 0, 5, 0, 1, 0, 0, 0, 1));
}

TEST(Matrix3, differsInAnyElement)
{
    for (int i = 0; i < 9; ++i) {
        M3 other = counted3;
        EXPECT_TRUE(other == counted3);
        EXPECT_FALSE(other != counted3);
        other.elements[i] += 1;
        EXPECT_FALSE(other == counted3);
        EXPECT_TRUE(other != counted3);
    }
}

TEST(Matrix4, storesItsElementsRowByRow)
{
    float expected[16];
    std::iota(expected, expected + 16, 1.0f);
    static_assert(sizeof(M4) == sizeof expected);
    EXPECT_EQ(std::memcmp(&counted4, expected, sizeof expected), 0);
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            EXPECT_EQ(&counted4(row, column), counted4.elements + 4 * row + column);
    EXPECT_EQ(counted4.getRow(2), V4(9, 10, 11, 12));
}

TEST(Matrix4, isTheIdentityByDefault)
{
    EXPECT_EQ(M4(), M4(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1));
}

TEST(Matrix4, takesAThreeByThreeMapIntoItsUpperLeft)
{
    EXPECT_EQ(M4(counted3), M4(1, 2, 3, 0, 4, 5, 6, 0, 7, 8, 9, 0, 0, 0, 0, 1));
}

TEST(Matrix4, keepsATranslationInItsLastColumn)
{
    EXPECT_EQ(M4::translation({5, 6, 7}), M4(1, 0, 0, 5, 0, 1, 0, 6, 0, 0, 1, 7, 0, 0, 0, 1));
    EXPECT_EQ(mapPoint(M4::translation({5, 6, 7}), {1, 2, 3}), V3(6, 8, 10));
}

TEST(Matrix4, scalesOnItsDiagonal)
{
    EXPECT_EQ(M4::scaling({5, 6, 7}), M4(5, 0, 0, 0, 0, 6, 0, 0, 0, 0, 7, 0, 0, 0, 0, 1));
}

TEST(Matrix4, swapsRowsAndColumnsWhenTransposed)
{
    EXPECT_EQ(counted4.transposed(), M4(1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15, 4, 8, 12, 16));
    EXPECT_EQ(counted4.transposed().transposed(), counted4);
}

TEST(Matrix4, multipliesRowsWithColumns)
{
    const M4 other(1, 0, 2, 0, 0, 1, 0, -1, 3, 0, 1, 0, 0, 1, 0, 1);
    EXPECT_EQ(counted4 * other, M4(10, 6, 5, 2, 26, 14, 17, 2, 42, 22, 29, 2, 58, 30, 41, 2));
    EXPECT_EQ(other * counted4, M4(19, 22, 25, 28, -8, -8, -8, -8, 12, 16, 20, 24, 18, 20, 22, 24));
    EXPECT_EQ(counted4 * M4(), counted4);
    EXPECT_EQ(M4() * counted4, counted4);
}

TEST(Matrix4, appliesTheRightFactorFirst)
{
    const M4 scaleAfterMove = M4::scaling({2, 2, 2}) * M4::translation({1, 0, 0});
    const M4 moveAfterScale = M4::translation({1, 0, 0}) * M4::scaling({2, 2, 2});
    EXPECT_EQ(mapPoint(scaleAfterMove, {0, 0, 0}), V3(2, 0, 0));
    EXPECT_EQ(mapPoint(moveAfterScale, {0, 0, 0}), V3(1, 0, 0));
}

TEST(Matrix4, mapsColumnVectors)
{
    EXPECT_EQ(counted4 * V4(1, 10, 100, 1000), V4(4321, 8765, 13209, 17653));
}

TEST(Matrix4, canBeWrittenElementByElement)
{
    M4 matrix;
    matrix(1, 3) = 5;
    EXPECT_EQ(matrix, M4::translation({0, 5, 0}));
}

TEST(Matrix4, differsInAnyElement)
{
    for (int i = 0; i < 16; ++i) {
        M4 other = counted4;
        EXPECT_TRUE(other == counted4);
        EXPECT_FALSE(other != counted4);
        other.elements[i] += 1;
        EXPECT_FALSE(other == counted4);
        EXPECT_TRUE(other != counted4);
    }
}

TEST(ViewVectors, areTheRowsOfTheViewMatrix)
{
    V3 a, b, c;
    viewVectorsFromViewMatrix(a, b, c, counted3);
    EXPECT_EQ(a, V3(1, 2, 3));
    EXPECT_EQ(b, V3(4, 5, 6));
    EXPECT_EQ(c, V3(7, 8, 9));
}

TEST(MeshMatrix, scalesAfterTheTranslation)
{
    const M4 matrix = calculateMeshMatrix({1, 2, 3}, {}, {2, 4, 8});
    EXPECT_EQ(matrix, M4(2, 0, 0, 2, 0, 4, 0, 8, 0, 0, 8, 24, 0, 0, 0, 1));
    EXPECT_EQ(mapPoint(matrix, {10, 20, 30}), scale(V3(2, 4, 8), V3(10, 20, 30) + V3(1, 2, 3)));
}

TEST(MeshMatrix, movesTheOriginByTheScaledPosition)
{
    EXPECT_EQ(mapPoint(calculateMeshMatrix({1, 0, 0}, {7, 8, 9}, {2, 2, 2}), {0, 0, 0}), V3(2, 0, 0));
}

TEST(MeshMatrix, ignoresItsSecondArgument)
{
    EXPECT_EQ(calculateMeshMatrix({1, 2, 3}, {90, 180, 270}, {4, 5, 6}), calculateMeshMatrix({1, 2, 3}, {}, {4, 5, 6}));
}
