#include "print_vectors.h"

#include <xum/render/light.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <type_traits>

namespace {

using Matrix = Matrix4<float>;

/// A light at (1, 2, 3) that shines along +y.
SpotLight lightAlongY()
{
    SpotLight light;
    light.position = {1, 2, 3};
    light.direction = {0, 1, 0};
    light.up = {0, 0, 1};
    return light;
}

void expectNear(const Matrix& actual, const Matrix& expected, float tolerance = 1e-6f)
{
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            EXPECT_NEAR(actual(row, column), expected(row, column),
                        tolerance * std::max(1.0f, std::abs(expected(row, column))))
                << row << ", " << column;
}

void expectNear(const Vector4<float>& actual, const Vector4<float>& expected, float tolerance = 1e-5f)
{
    EXPECT_LT(length(actual - expected), tolerance)
        << ::testing::PrintToString(actual) << " instead of " << ::testing::PrintToString(expected);
}

Vector4<float> clipPoint(SpotLight& light, const Vector3<float>& point)
{
    return light.calculateMatrix() * Vector4<float>(point, 1);
}

/// On the screen, -1 to 1, with its depth.
Vector3<float> screenPoint(SpotLight& light, const Vector3<float>& point)
{
    const Vector4<float> clip = clipPoint(light, point);
    return Vector3<float>(clip.x, clip.y, clip.z) / clip.w;
}

bool isFinite(const Matrix& matrix)
{
    return std::all_of(std::begin(matrix.elements), std::end(matrix.elements),
                       [](float element) { return std::isfinite(element); });
}

/// How much a light magnifies: 1 / tan(angle / 2) of the angle that it sees.
float magnification(float innerAngle, float outerAngle)
{
    SpotLight light = lightAlongY();
    light.innerAngle = innerAngle;
    light.outerAngle = outerAngle;
    const Matrix matrix = light.calculateMatrix();
    EXPECT_EQ(matrix(0, 0), matrix(1, 2)) << "the same in both directions";
    return matrix(0, 0);
}

} // namespace

TEST(SpotLight, isWhiteAndHasAnglesOf45And60DegreesAtFirst)
{
    const SpotLight light;
    EXPECT_EQ(light.color, (Vector3<float>{1, 1, 1}));
    EXPECT_EQ(light.position, Vector3<float>());
    EXPECT_EQ(light.direction, Vector3<float>());
    EXPECT_EQ(light.up, Vector3<float>());
    EXPECT_EQ(light.innerAngle, 45.0f);
    EXPECT_EQ(light.innerCosine, static_cast<float>(std::cos(3.14159265358979323846 / 4)));
    EXPECT_EQ(light.outerAngle, 60.0f);
    EXPECT_EQ(light.outerCosine, 0.5f);
}

TEST(SpotLight, hasItsFieldsInOrder)
{
    const SpotLight light;
    const float* const first = &light.color.x;
    EXPECT_EQ(&light.position.x, first + 3);
    EXPECT_EQ(&light.direction.x, first + 6);
    EXPECT_EQ(&light.up.x, first + 9);
    EXPECT_EQ(&light.innerAngle, first + 12);
    EXPECT_EQ(&light.innerCosine, first + 13);
    EXPECT_EQ(&light.outerAngle, first + 14);
    EXPECT_EQ(&light.outerCosine, first + 15);
}

TEST(SpotLight, isCopied)
{
    static_assert(std::is_base_of_v<Light, SpotLight> && std::has_virtual_destructor_v<Light>);
    SpotLight light = lightAlongY();
    light.innerAngle = 70;
    SpotLight copy(light);
    EXPECT_EQ(copy.calculateMatrix(), light.calculateMatrix());
    SpotLight assigned;
    assigned = light;
    EXPECT_EQ(assigned.calculateMatrix(), light.calculateMatrix());
}

TEST(SpotLightMatrix, ofALightThatLooksAlongYIsTheOneCalculatedByHand)
{
    const float f = 1.7320508f;                        // 1 / tan 30 degrees
    const Matrix expected = {f, 0,       0, -f,        // right is +x
                             0, 0,       f, -3 * f,    // up is +z
                             0, 1.0001f, 0, -2.20021f, // depth grows along +y
                             0, 1,       0, -2};
    expectNear(lightAlongY().calculateMatrix(), expected);
}

TEST(SpotLightMatrix, takesWhatLiesStraightAheadToTheMiddle)
{
    SpotLight light = lightAlongY();
    expectNear(clipPoint(light, {1, 12, 3}), {0, 0, 9.80099f, 10});
}

TEST(SpotLightMatrix, takesUpToUpAndRightToRight)
{
    SpotLight light = lightAlongY();
    expectNear(clipPoint(light, {1, 12, 4}), {0, 1.732051f, 9.80099f, 10});
    expectNear(clipPoint(light, {2, 12, 3}), {1.732051f, 0, 9.80099f, 10});
}

TEST(SpotLightMatrix, reachesFromATenthTo2000)
{
    SpotLight light = lightAlongY();
    EXPECT_NEAR(screenPoint(light, {1, 2.1f, 3}).z, -1, 1e-4f);
    EXPECT_NEAR(screenPoint(light, {1, 2002, 3}).z, 1, 1e-5f);
}

TEST(SpotLightMatrix, givesWhatLiesBehindANegativeW)
{
    SpotLight light = lightAlongY();
    EXPECT_EQ(clipPoint(light, {1, -8, 3}).w, -10.0f);
}

TEST(SpotLightMatrix, seesItsAngleFromEdgeToEdge)
{
    SpotLight light = lightAlongY();
    const float edge = 10 * std::tan(3.14159265f / 6);
    EXPECT_NEAR(screenPoint(light, {1 + edge, 12, 3}).x, 1, 1e-5f);
    EXPECT_NEAR(screenPoint(light, {1 - edge, 12, 3}).x, -1, 1e-5f);
    EXPECT_NEAR(screenPoint(light, {1, 12, 3 + edge}).y, 1, 1e-5f);
    EXPECT_NEAR(screenPoint(light, {1, 12, 3 - edge}).y, -1, 1e-5f);
}

TEST(SpotLightMatrix, keepsTrianglesCounterClockwise)
{
    // Seen along +y: right, then up.
    SpotLight light = lightAlongY();
    const Vector3<float> a = screenPoint(light, {1, 12, 3});
    const Vector3<float> b = screenPoint(light, {2, 12, 3});
    const Vector3<float> c = screenPoint(light, {1, 12, 4});
    EXPECT_GT(cross(b - a, c - a).z, 0.0f);
}

TEST(SpotLightMatrix, ofALightWithoutDirectionsIsNearlyZero)
{
    SpotLight light;
    Matrix expected = Matrix::scaling({0, 0, 0});
    expected(3, 3) = 0;
    expected(2, 3) = -0.20001f;
    EXPECT_EQ(light.calculateMatrix(), expected);
}

TEST(SpotLightMatrix, seesTheLargerAngle)
{
    EXPECT_NEAR(magnification(45, 60), 1.7320508f, 1e-6f);
    EXPECT_NEAR(magnification(60, 45), 1.7320508f, 1e-6f);
    EXPECT_NEAR(magnification(90, 60), 1.0f, 1e-6f);
    EXPECT_NEAR(magnification(45, 90), 1.0f, 1e-6f);
    EXPECT_NEAR(magnification(20, 20), 5.6712818f, 1e-5f);
}

TEST(SpotLightMatrix, doesNotCareForTheCosines)
{
    SpotLight light = lightAlongY();
    light.innerCosine = 17;
    light.outerCosine = -3;
    EXPECT_EQ(light.calculateMatrix(), lightAlongY().calculateMatrix());
    light.innerAngle = 90;
    light.calculateMatrix();
    EXPECT_EQ(light.innerCosine, 17) << "and leaves them";
}

TEST(SpotLightMatrix, doesNotCareForTheLengthOfTheDirections)
{
    SpotLight light = lightAlongY();
    light.direction = {0, 250, 0};
    light.up = {0, 0, 0.001f};
    expectNear(light.calculateMatrix(), lightAlongY().calculateMatrix());
}

TEST(SpotLightMatrix, takesAnUpThatLeansForwardsOrBackwards)
{
    for (const float lean : {-5.0f, -1.0f, 0.5f, 3.0f}) {
        SpotLight light = lightAlongY();
        light.up = {0, lean, 1};
        expectNear(light.calculateMatrix(), lightAlongY().calculateMatrix());
    }
}

TEST(SpotLightMatrix, isARigidMovementOfTheWorldWhateverTheDirections)
{
    const Vector3<float> directions[] = {{1, 2, 3}, {-4, 0.5f, 0.25f}, {0, 0, -1}, {3, -3, 1}};
    for (const Vector3<float>& direction : directions) {
        SpotLight light;
        light.position = {5, -6, 7};
        light.direction = direction;
        light.up = {0.1f, 1, 0.2f};
        light.outerAngle = 90; // so that x, y and w of clip space are right, up and forwards
        const Matrix m = light.calculateMatrix();
        const auto axis = [&](int row) { return Vector3<float>(m(row, 0), m(row, 1), m(row, 2)); };
        for (const int row : {0, 1, 3}) EXPECT_NEAR(length(axis(row)), 1, 1e-5f);
        EXPECT_NEAR(dot(axis(0), axis(1)), 0, 1e-5f);
        EXPECT_LT(length(cross(axis(0), axis(3)) - axis(1)), 1e-5f) << "right x forwards is up: no mirror";
        EXPECT_LT(length(axis(3) - direction / length(direction)), 1e-5f);
        EXPECT_GT(dot(axis(1), light.up), 0.0f);
        expectNear(clipPoint(light, light.position), {0, 0, -0.20001f, 0});
    }
}

TEST(SpotLightMatrix, isFiniteForDirectionsThatAreParallelOrNone)
{
    const Vector3<float> vectors[] = {{0, 1, 0},     {0, -1, 0},    {0, 1000, 0}, {0, 1e30f, 0},
                                      {0, 1e-7f, 0}, {1e-7f, 0, 0}, {0, 0, 0}};
    for (const Vector3<float>& direction : vectors) {
        for (const Vector3<float>& up : vectors) {
            SpotLight light = lightAlongY();
            light.direction = direction;
            light.up = up;
            EXPECT_TRUE(isFinite(light.calculateMatrix()));
            EXPECT_TRUE(isFinite(light.calculateShadowMatrix()));
        }
    }
}

TEST(SpotLightMatrix, takesVectorsShorterThanAHundredThousandthForNone)
{
    SpotLight none = lightAlongY();
    none.up = {0, 0, 0};
    SpotLight light = lightAlongY();
    light.up = {0, 0, 0.000009f};
    EXPECT_EQ(light.calculateMatrix(), none.calculateMatrix());
    light.up = {0, 1, 0.000009f};
    EXPECT_EQ(light.calculateMatrix(), none.calculateMatrix()) << "nearly parallel to the direction";
    light.up = {0, 0, 0.00002f};
    EXPECT_EQ(light.calculateMatrix(), lightAlongY().calculateMatrix());

    none.direction = {0, 0, 0};
    light.direction = {0, 0.000009f, 0};
    EXPECT_EQ(light.calculateMatrix(), none.calculateMatrix());
}

TEST(SpotLightShadowMatrix, appliesTheBiasBeforeTheProjection)
{
    SpotLight light;
    light.position = {0, 0, 10};
    light.direction = {0, 0, -1};
    light.up = {0, 1, 0};
    light.outerAngle = 90;
    const Matrix expected = {0.5f, 0,    0,         0.5f,     //
                             0,    0.5f, 0,         0.5f,     //
                             0,    0,    -0.50005f, 9.30094f, //
                             0,    0,    -0.5f,     9.5f};
    expectNear(light.calculateShadowMatrix(), expected);
}

TEST(SpotLightShadowMatrix, isTheProductOfMatrixAndBiasInThisOrder)
{
    SpotLight light = lightAlongY();
    const Matrix bias = {0.5f, 0, 0, 0.5f, 0, 0.5f, 0, 0.5f, 0, 0, 0.5f, 0.5f, 0, 0, 0, 1};
    EXPECT_EQ(light.calculateShadowMatrix(), light.calculateMatrix() * bias);
    EXPECT_NE(light.calculateShadowMatrix(), bias * light.calculateMatrix());
}

TEST(SpotLightShadowMap, isDrawnOnceWithTheMatrixOfTheLight)
{
    SpotLight light = lightAlongY();
    std::vector<Matrix> matrices;
    light.generateShadowMap(nullptr, [&](const Matrix& matrix) { matrices.push_back(matrix); });
    EXPECT_EQ(matrices, std::vector<Matrix>{light.calculateMatrix()});
}

TEST(SpotLightShadowMap, cannotBeDrawnByAnEmptyFunction)
{
    EXPECT_THROW(lightAlongY().generateShadowMap(nullptr, {}), std::bad_function_call);
}

TEST(SpotLightShadowMap, passesOnWhatTheFunctionThrows)
{
    EXPECT_THROW(lightAlongY().generateShadowMap(nullptr, [](const Matrix&) { throw 17; }), int);
}

TEST(SpotLightShadowMap, isDrawnWithTheMatrixOfALightThatOverridesIt)
{
    class OwnLight final : public SpotLight {
    public:
        Matrix calculateMatrix() override { return Matrix::translation({1, 2, 3}); }
    };
    OwnLight light;
    SpotLight& base = light;
    base.generateShadowMap(nullptr, [](const Matrix& m) { EXPECT_EQ(m, Matrix::translation({1, 2, 3})); });
    EXPECT_EQ(base.calculateShadowMatrix()(0, 3), 1.5f) << "half of 1 more";
}
