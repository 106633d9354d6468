#include <xum/geometry/camera.h>
#include <xum/geometry/clipper.h>
#include <xum/geometry/frustum.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>

namespace {

using V3 = Vector3<float>;
using RealVector = Vector3<double>;

constexpr double pi = 3.14159265358979323846;

Matrix3<float> viewOf(const V3& rotation)
{
    Camera camera;
    camera.setRotation(rotation);
    return camera.calculateViewMatrix();
}

void expectRow(const V3& actual, const V3& expected)
{
    EXPECT_NEAR(actual.x, expected.x, 1e-6f);
    EXPECT_NEAR(actual.y, expected.y, 1e-6f);
    EXPECT_NEAR(actual.z, expected.z, 1e-6f);
}

/// Counter-clockwise, seen from where the axis points to.
RealVector turned(const RealVector& v, const RealVector& axis, double degrees)
{
    const double angle = degrees * pi / 180;
    return v * std::cos(angle) + cross(axis, v) * std::sin(angle) + axis * (dot(axis, v) * (1 - std::cos(angle)));
}

/// The direction that the camera's own `v` has in the world: pitch first, then yaw, then the tilt about the world's y.
RealVector directionOf(const RealVector& v, const V3& rotation)
{
    const RealVector pitched = turned(v, {1, 0, 0}, static_cast<double>(rotation.x));
    const RealVector yawed = turned(pitched, {0, 0, 1}, static_cast<double>(rotation.z));
    return turned(yawed, {0, 1, 0}, static_cast<double>(rotation.y));
}

float between(std::mt19937& random, double least, double most)
{
    return static_cast<float>(least + (most - least) * static_cast<double>(random()) / 4294967295.0);
}

V3 pointWithin(std::mt19937& random, double size)
{
    const float x = between(random, -size, size);
    const float y = between(random, -size, size);
    return {x, y, between(random, -size, size)};
}

/// P * A * R * T, from world to clip space.
Matrix4<double> viewProjectionOf(const Camera& camera)
{
    constexpr double farthest = 1000;
    constexpr double nearest = 0.1;
    const double horizontal = std::tan(static_cast<double>(camera.getHorizontalFov()) * pi / 360);
    const double vertical = std::tan(static_cast<double>(camera.getVerticalFov()) * pi / 360);
    Matrix4<double> projection;
    projection(0, 0) = 1 / horizontal;
    projection(1, 1) = 1 / vertical;
    projection(2, 2) = -(farthest + nearest) / (farthest - nearest);
    projection(2, 3) = -2 * farthest * nearest / (farthest - nearest);
    projection(3, 2) = -1;
    projection(3, 3) = 0;
    const Matrix4<double> axes(1, 0, 0, 0, 0, 0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1);
    const Matrix3<float> view = camera.calculateViewMatrix();
    Matrix3<double> rotation;
    std::copy(std::begin(view.elements), std::end(view.elements), std::begin(rotation.elements));
    const V3& origin = camera.getOrigin();
    return projection * axes * Matrix4<double>(rotation) *
           Matrix4<double>::translation({-origin.x, -origin.y, -origin.z});
}

Frustum frustumOf(const Camera& camera)
{
    V3 a;
    V3 f;
    V3 c;
    viewVectorsFromViewMatrix(a, f, c, camera.calculateViewMatrix());
    Frustum frustum;
    frustum.setFromViewVectors(camera.getOrigin(), a, f, c, camera.getHorizontalFov(), camera.getVerticalFov(), 1);
    return frustum;
}

} // namespace

TEST(Camera, startsAtTheOriginWithRightAngles)
{
    const Camera camera;
    EXPECT_EQ(camera.getOrigin(), V3(0, 0, 0));
    EXPECT_EQ(camera.getRotation(), V3(0, 0, 0));
    EXPECT_EQ(camera.getHorizontalFov(), 90.0f);
    EXPECT_EQ(camera.getVerticalFov(), 90.0f);
}

TEST(Camera, keepsWhatItIsTold)
{
    Camera camera;
    camera.setOrigin({1, 2, 3});
    camera.setRotation({4000, -5, 6});
    camera.setHorizontalFov(-7);
    camera.setVerticalFov(8000);
    EXPECT_EQ(camera.getOrigin(), V3(1, 2, 3));
    EXPECT_EQ(camera.getRotation(), V3(4000, -5, 6));
    EXPECT_EQ(camera.getHorizontalFov(), -7.0f);
    EXPECT_EQ(camera.getVerticalFov(), 8000.0f);
}

TEST(Camera, isAssignedWithAllItsFields)
{
    Camera camera;
    camera.setOrigin({1, 2, 3});
    camera.setRotation({4, 5, 6});
    camera.setHorizontalFov(7);
    camera.setVerticalFov(8);
    Camera other;
    EXPECT_EQ(&(other = camera), &other);
    EXPECT_EQ(other.getOrigin(), V3(1, 2, 3));
    EXPECT_EQ(other.getRotation(), V3(4, 5, 6));
    EXPECT_EQ(other.getHorizontalFov(), 7.0f);
    EXPECT_EQ(other.getVerticalFov(), 8.0f);
}

TEST(Camera, hasTheIdentityForAViewMatrixAtTheStart)
{
    EXPECT_EQ(Camera().calculateViewMatrix(), Matrix3<float>());
}

TEST(Camera, looksToKnownDirections)
{
    struct View {
        V3 rotation;
        V3 right;
        V3 forwards;
        V3 upwards;
    };
    const View views[] = {
        {{90, 0, 0}, {1, 0, 0}, {0, 0, 1}, {0, -1, 0}},
        {{0, 90, 0}, {0, 0, -1}, {0, 1, 0}, {1, 0, 0}},
        {{0, 0, 90}, {0, 1, 0}, {-1, 0, 0}, {0, 0, 1}},
        {{30, 0, 45}, {.7071068f, .7071068f, 0}, {-.6123724f, .6123724f, .5f}, {.3535534f, -.3535534f, .8660254f}},
        {{10, 20, 30},
         {.8137977f, .5f, -.2961981f},
         {-.4033171f, .8528685f, .3315880f},
         {.4184120f, -.1503837f, .8957210f}},
    };
    for (const View& view : views) {
        SCOPED_TRACE(view.rotation.x);
        V3 right;
        V3 forwards;
        V3 upwards;
        viewVectorsFromViewMatrix(right, forwards, upwards, viewOf(view.rotation));
        expectRow(right, view.right);
        expectRow(forwards, view.forwards);
        expectRow(upwards, view.upwards);
    }
}

TEST(Camera, roundsAnglesAndTheirSinesToFloats)
{
    // Of the float next to a quarter turn: the cosine is not 0, and its sign shows which side it lies on.
    constexpr float cosine = -4.37113883e-08f;
    EXPECT_EQ(viewOf({90, 0, 0}), Matrix3<float>(1, 0, 0, 0, cosine, 1, 0, -1, cosine));
    EXPECT_EQ(viewOf({0, 0, 90}), Matrix3<float>(cosine, 1, 0, -1, cosine, 0, 0, 0, 1));
    EXPECT_EQ(viewOf({0, 90, 0}), Matrix3<float>(cosine, 0, -1, 0, 1, 0, 1, 0, cosine));
}

TEST(Camera, leavesItsOriginAndAnglesOfViewOutOfTheViewMatrix)
{
    Camera camera;
    camera.setRotation({10, 20, 30});
    camera.setOrigin({100, 200, 300});
    camera.setHorizontalFov(10);
    camera.setVerticalFov(20);
    EXPECT_EQ(camera.calculateViewMatrix(), viewOf({10, 20, 30}));
}

TEST(Camera, turnsAboutItsRightThenTheWorldsUpThenTheWorldsY)
{
    std::mt19937 random(1);
    for (int i = 0; i < 2000; ++i) {
        const V3 rotation = pointWithin(random, 400);
        const Matrix3<float> view = viewOf(rotation);
        const RealVector axes[] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
        for (int row = 0; row < 3; ++row) {
            const RealVector expected = directionOf(axes[row], rotation);
            const V3 actual = view.getRow(row);
            ASSERT_NEAR(static_cast<double>(actual.x), expected.x, 2e-6) << i;
            ASSERT_NEAR(static_cast<double>(actual.y), expected.y, 2e-6) << i;
            ASSERT_NEAR(static_cast<double>(actual.z), expected.z, 2e-6) << i;
        }
        // Right-handed.
        ASSERT_LT(length(cross(view.getRow(0), view.getRow(1)) - view.getRow(2)), 2e-6f) << i;
    }
}

TEST(Camera, seesWhatItsFrustumHolds)
{
    std::mt19937 random(2);
    int inside = 0;
    for (int i = 0; i < 400; ++i) {
        Camera camera;
        camera.setOrigin(pointWithin(random, 50));
        camera.setRotation(pointWithin(random, 360));
        camera.setHorizontalFov(between(random, 20, 140));
        camera.setVerticalFov(between(random, 20, 140));
        const Matrix4<double> matrix = viewProjectionOf(camera);
        const Frustum frustum = frustumOf(camera);
        for (int k = 0; k < 500; ++k) {
            const V3 offset = pointWithin(random, k % 2 == 0 ? 100 : 4);
            const V3 point = camera.getOrigin() + offset;
            const Vector4<double> clipped = matrix * Vector4<double>(point.x, point.y, point.z, 1);
            const double borders[] = {clipped.w - std::abs(clipped.x), clipped.w - std::abs(clipped.y), clipped.w - 1};
            if (std::any_of(std::begin(borders), std::end(borders),
                            [](double border) { return std::abs(border) < 1e-3; }))
                continue; // rounding decides there
            const bool isSeen =
                std::all_of(std::begin(borders), std::end(borders), [](double border) { return border >= 0; });
            bool isHeld = true;
            for (const Plane<float>& plane : frustum.getPlanes()) isHeld = isHeld && plane.isInFront(point);
            ASSERT_EQ(isHeld, isSeen) << i << " " << k;
            if (isSeen) ++inside;
        }
    }
    EXPECT_GT(inside, 10000);
}

TEST(Camera, looksAlongItsForwardVector)
{
    Camera camera;
    camera.setOrigin({10, 20, 30});
    camera.setRotation({-30, 0, 120});
    const V3 forwards = camera.calculateViewMatrix().getRow(1);
    EXPECT_LT(forwards.z, 0) << "down";
    const Matrix4<double> matrix = viewProjectionOf(camera);
    const V3 point = camera.getOrigin() + forwards * 8;
    const Vector4<double> clipped = matrix * Vector4<double>(point.x, point.y, point.z, 1);
    EXPECT_NEAR(clipped.x, 0, 1e-4);
    EXPECT_NEAR(clipped.y, 0, 1e-4);
    EXPECT_NEAR(clipped.w, 8, 1e-4);
}
