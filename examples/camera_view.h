#pragma once

#include <xum/xum.h>

#include <algorithm>
#include <cmath>

constexpr float degreesPerRadian = 57.2957795f;

/// A camera at `eye` that looks at `target`, for a window of that size.
inline Camera lookAt(const Vector3<float>& eye, const Vector3<float>& target, const Vector2<int>& size)
{
    const Vector3<float> way = target - eye;
    const float verticalFov = 50.0f;
    const float aspect = static_cast<float>(size.x) / static_cast<float>(std::max(size.y, 1));
    Camera camera;
    camera.setOrigin(eye);
    // Unturned it looks along +y; positive x looks up, positive z turns left.
    camera.setRotation({std::atan2(way.z, std::hypot(way.x, way.y)) * degreesPerRadian, 0,
                        std::atan2(-way.x, way.y) * degreesPerRadian});
    camera.setVerticalFov(verticalFov);
    camera.setHorizontalFov(2 * std::atan(std::tan(verticalFov / 2 / degreesPerRadian) * aspect) * degreesPerRadian);
    return camera;
}

/// From world to clip coordinates: P * A * R * T, as camera.h has it.
inline Matrix4<float> viewProjection(const Camera& camera)
{
    const float nearest = 0.1f;
    const float farthest = 500.0f;
    const float depth = farthest - nearest;
    const float x = 1 / std::tan(camera.getHorizontalFov() / 2 / degreesPerRadian);
    const float y = 1 / std::tan(camera.getVerticalFov() / 2 / degreesPerRadian);
    const Matrix4<float> projection(x, 0, 0, 0, 0, y, 0, 0, 0, 0, -(farthest + nearest) / depth,
                                    -2 * farthest * nearest / depth, 0, 0, -1, 0);
    const Matrix4<float> axes(1, 0, 0, 0, 0, 0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1);
    return projection * axes * Matrix4<float>(camera.calculateViewMatrix()) *
           Matrix4<float>::translation(-camera.getOrigin());
}
