#include <xum/geometry/vector.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

// All component values are small integers or halves, so that every result is exact.

namespace {

using V2 = Vector2<float>;
using V3 = Vector3<float>;
using V4 = Vector4<float>;

template <class V, class... Components>
void expectMemory(const V& vector, Components... components)
{
    const float expected[] = {components...};
    static_assert(sizeof(V) == sizeof expected);
    EXPECT_EQ(std::memcmp(&vector, expected, sizeof expected), 0);
}

// The rules that hold for two, three and four components alike.
template <class V>
void expectLinearArithmetic(const V& a, const V& b, const V& sum, const V& difference, const V& doubled)
{
    EXPECT_EQ(a + b, sum);
    EXPECT_EQ(a - b, difference);
    EXPECT_EQ(-(a - b), b - a);
    EXPECT_EQ(a * 2.0f, doubled);
    EXPECT_EQ(2.0f * a, doubled);
    EXPECT_EQ(doubled / 2.0f, a);

    V value = a;
    EXPECT_EQ(value += b, sum);
    EXPECT_EQ(value -= b, a);
    EXPECT_EQ(value *= 2.0f, doubled);
    EXPECT_EQ(value /= 2.0f, a);
    EXPECT_EQ(&(value += b), &value);
    EXPECT_EQ(value, sum);
}

template <class V>
void expectNotEqualInEachComponent(const V& a, std::initializer_list<V> others)
{
    EXPECT_TRUE(a == a);
    EXPECT_FALSE(a != a);
    for (const V& other : others) {
        EXPECT_FALSE(a == other);
        EXPECT_TRUE(a != other);
    }
}

} // namespace

TEST(Vectors, lieInMemoryAsTheirComponentsInOrder)
{
    expectMemory(V2(1, 2), 1.0f, 2.0f);
    expectMemory(V3(1, 2, 3), 1.0f, 2.0f, 3.0f);
    expectMemory(V4(1, 2, 3, 4), 1.0f, 2.0f, 3.0f, 4.0f);
}

TEST(Vectors, areZeroByDefault)
{
    expectMemory(V2(), 0.0f, 0.0f);
    expectMemory(V3(), 0.0f, 0.0f, 0.0f);
    expectMemory(V4(), 0.0f, 0.0f, 0.0f, 0.0f);
}

TEST(Vectors, addSubtractAndScaleByComponent)
{
    expectLinearArithmetic<V2>({1, 2}, {10, -20}, {11, -18}, {-9, 22}, {2, 4});
    expectLinearArithmetic<V3>({1, 2, 3}, {10, -20, 30}, {11, -18, 33}, {-9, 22, -27}, {2, 4, 6});
    expectLinearArithmetic<V4>({1, 2, 3, 4}, {10, -20, 30, -40}, {11, -18, 33, -36}, {-9, 22, -27, 44}, {2, 4, 6, 8});
}

TEST(Vectors, negateEveryComponent)
{
    EXPECT_EQ(-V2(1, -2), V2(-1, 2));
    EXPECT_EQ(-V3(1, -2, 3), V3(-1, 2, -3));
    EXPECT_EQ(-V4(1, -2, 3, -4), V4(-1, 2, -3, 4));
}

TEST(Vectors, areEqualOnlyInAllComponents)
{
    expectNotEqualInEachComponent<V2>({1, 2}, {{9, 2}, {1, 9}});
    expectNotEqualInEachComponent<V3>({1, 2, 3}, {{9, 2, 3}, {1, 9, 3}, {1, 2, 9}});
    expectNotEqualInEachComponent<V4>({1, 2, 3, 4}, {{9, 2, 3, 4}, {1, 9, 3, 4}, {1, 2, 9, 4}, {1, 2, 3, 9}});
}

TEST(Vectors, workWithIntegerComponents)
{
    EXPECT_EQ(Vector2<int>(7, -7) / 2, Vector2<int>(3, -3));
    EXPECT_EQ(dot(Vector3<int>(1, 2, 3), Vector3<int>(4, 5, 6)), 32);
}

TEST(Vector4, extendsAPointByItsFourthComponent)
{
    EXPECT_EQ(V4(V3(1, 2, 3), 4.0f), V4(1, 2, 3, 4));
}

TEST(Dot, sumsTheProductsOfAllComponents)
{
    EXPECT_EQ(dot(V2(1, 2), V2(3, -4)), -5.0f);
    EXPECT_EQ(dot(V3(1, 2, 3), V3(4, -5, 6)), 12.0f);
    EXPECT_EQ(dot(V4(1, 2, 3, 4), V4(5, 6, -7, 8)), 28.0f);
}

TEST(Cross, isRightHanded)
{
    const V3 x(1, 0, 0), y(0, 1, 0), z(0, 0, 1);
    EXPECT_EQ(cross(x, y), z);
    EXPECT_EQ(cross(y, z), x);
    EXPECT_EQ(cross(z, x), y);
    EXPECT_EQ(cross(y, x), -z);
}

TEST(Cross, standsUprightOnBothArguments)
{
    const V3 a(1, 2, 3), b(4, 5, -6);
    EXPECT_EQ(cross(a, b), V3(-27, 18, -3));
    EXPECT_EQ(dot(cross(a, b), a), 0.0f);
    EXPECT_EQ(dot(cross(a, b), b), 0.0f);
}

TEST(Cross, ofParallelVectorsIsZero)
{
    EXPECT_EQ(cross(V3(1, 2, 3), V3(-2, -4, -6)), V3());
}

TEST(Scale, multipliesComponentByComponent)
{
    EXPECT_EQ(scale(V3(1, 2, 3), V3(4, -5, 0.5f)), V3(4, -10, 1.5f));
}

TEST(Length, isEuclidean)
{
    EXPECT_EQ(length(V2(3, -4)), 5.0f);
    EXPECT_EQ(length(V3(2, -3, 6)), 7.0f);
    EXPECT_EQ(length(V4(1, -1, 7, 7)), 10.0f);
    EXPECT_EQ(length(V3()), 0.0f);
}

TEST(Normalize, keepsTheDirectionAndMakesTheLengthOne)
{
    EXPECT_EQ(normalize(V2(0, -8)), V2(0, -1));
    EXPECT_EQ(normalize(V3(3, 0, 4)), V3(0.6f, 0, 0.8f));
    EXPECT_EQ(normalize(V4(0, 0, 0, 2)), V4(0, 0, 0, 1));
    EXPECT_NEAR(length(normalize(V3(1, 2, 3))), 1.0f, 1e-6f);
    EXPECT_NEAR(length(normalize(V4(1, 2, 3, 4))), 1.0f, 1e-6f);
}

TEST(Normalize, leavesTheZeroVectorZero)
{
    EXPECT_EQ(normalize(V2()), V2());
    EXPECT_EQ(normalize(V3()), V3());
    EXPECT_EQ(normalize(V4()), V4());
}
