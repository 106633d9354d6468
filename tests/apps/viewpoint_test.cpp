#include "viewpoint.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

constexpr float tolerance = 1e-5f;

void expectNear(const Vector3<float>& actual, const Vector3<float>& expected)
{
    EXPECT_NEAR(actual.x, expected.x, tolerance);
    EXPECT_NEAR(actual.y, expected.y, tolerance);
    EXPECT_NEAR(actual.z, expected.z, tolerance);
}

Vector3<float> divided(const Vector4<float>& point)
{
    return {point.x / point.w, point.y / point.w, point.z / point.w};
}

Viewpoint makeTiltedCamera()
{
    Viewpoint camera;
    camera.position = {3, -2, 5};
    camera.yaw = 40;
    camera.pitch = -25;
    return camera;
}

} // namespace

TEST(Viewpoint, unturnedLooksAlongYWithXToItsRightAndZUp)
{
    const Viewpoint camera;
    expectNear(camera.getForward(), {0, 1, 0});
    expectNear(camera.getRight(), {1, 0, 0});
    expectNear(camera.getUp(), {0, 0, 1});
}

TEST(Viewpoint, positiveYawTurnsToTheLeft)
{
    Viewpoint camera;
    camera.yaw = 90;
    expectNear(camera.getForward(), {-1, 0, 0});
    expectNear(camera.getRight(), {0, 1, 0});
}

TEST(Viewpoint, positivePitchLooksUp)
{
    Viewpoint camera;
    camera.pitch = 30;
    expectNear(camera.getForward(), {0, std::sqrt(0.75f), 0.5f});
    expectNear(camera.getUp(), {0, -0.5f, std::sqrt(0.75f)});
}

TEST(Viewpoint, lookingAtAPointPutsItIntoTheMiddleOfThePicture)
{
    Viewpoint camera = makeTiltedCamera();
    camera.lookAt({-7, 4, 1});
    const Vector3<float> seen =
        divided(calculateViewProjection(camera, {1, 1}, 0.5f, 100) * Vector4<float>(-7, 4, 1, 1));
    EXPECT_NEAR(seen.x, 0, tolerance);
    EXPECT_NEAR(seen.y, 0, tolerance);
    EXPECT_LT(std::abs(seen.z), 1);
}

TEST(Viewpoint, nearAndFarDistancesAreTheEndsOfTheDepthRange)
{
    const Viewpoint camera = makeTiltedCamera();
    const Matrix4<float> projection = calculateViewProjection(camera, {1, 1}, 2, 50);
    EXPECT_NEAR(divided(projection * Vector4<float>(camera.position + camera.getForward() * 2.0f, 1)).z, -1, 1e-4f);
    EXPECT_NEAR(divided(projection * Vector4<float>(camera.position + camera.getForward() * 50.0f, 1)).z, 1, 1e-4f);
}

TEST(Viewpoint, viewExtentsAreTheEdgesOfThePictureAtDistanceOne)
{
    const Viewpoint camera = makeTiltedCamera();
    const Vector2<float> extents = {1.5f, 0.75f};
    const Vector3<float> upperRight =
        camera.position + camera.getForward() + camera.getRight() * extents.x + camera.getUp() * extents.y;
    const Vector3<float> seen =
        divided(calculateViewProjection(camera, extents, 0.1f, 10) * Vector4<float>(upperRight, 1));
    EXPECT_NEAR(seen.x, 1, tolerance);
    EXPECT_NEAR(seen.y, 1, tolerance);
}

TEST(Viewpoint, aWiderPictureSeesMoreToTheSidesAndAsMuchUpwards)
{
    const Vector2<float> square = calculateViewExtents(90, {300, 300});
    const Vector2<float> wide = calculateViewExtents(90, {600, 300});
    EXPECT_NEAR(square.x, 1, tolerance);
    EXPECT_NEAR(square.y, 1, tolerance);
    EXPECT_NEAR(wide.x, 2, tolerance);
    EXPECT_NEAR(wide.y, 1, tolerance);
}

TEST(Viewpoint, parallelProjectionDoesNotShrinkWithDistance)
{
    const Viewpoint camera = makeTiltedCamera();
    const Matrix4<float> projection = calculateParallelProjection(camera, 4, 0, 20);
    for (const float distance : {0.0f, 10.0f, 20.0f}) {
        const Vector3<float> point =
            camera.position + camera.getForward() * distance + camera.getRight() * 4.0f - camera.getUp() * 2.0f;
        const Vector3<float> seen = divided(projection * Vector4<float>(point, 1));
        expectNear(seen, {1, -0.5f, distance / 10.0f - 1.0f});
    }
}
