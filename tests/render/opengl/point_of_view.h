#pragma once

#include <xum/geometry/matrix.h>
#include <xum/geometry/vector.h>

#include <cmath>

/// A camera with a square picture, worked out apart from the library: its matrix for shaders, and the way from points
/// to pixels and back.
class PointOfView {
public:
    /// Looks at a point, not straight up or down. `fov` is the whole angle in degrees.
    PointOfView(const Vector3<float>& position, const Vector3<float>& target, float fov, int canvasSize)
        : position(position), forwards(normalized(target - position)),
          right(normalized(cross(forwards, Vector3<float>(0, 0, 1)))), up(cross(right, forwards)),
          tangent(static_cast<float>(std::tan(static_cast<double>(fov) / 360.0 * 3.14159265358979323846))),
          canvasSize(static_cast<float>(canvasSize))
    {}

    /// For matrix * point. Near 0.5, far 100.
    Matrix4<float> getMatrix() const
    {
        const float f = 1.0f / tangent;
        const Matrix4<float> projection = {f, 0, 0, 0, 0, f, 0, 0, 0, 0, -100.5f / 99.5f, -100.0f / 99.5f, 0, 0, -1, 0};
        const Matrix4<float> view = {
            right.x,     right.y,     right.z,     -dot(right, position),   up.x, up.y, up.z, -dot(up, position),
            -forwards.x, -forwards.y, -forwards.z, dot(forwards, position), 0,    0,    0,    1};
        return projection * view;
    }

    /// Where a point in front of the camera is seen, in pixels from the top left; the middle of the first pixel is
    /// (0.5, 0.5).
    Vector2<float> project(const Vector3<float>& point) const
    {
        const Vector3<float> seen = point - position;
        const float scale = canvasSize / (2.0f * tangent * dot(seen, forwards));
        return {canvasSize / 2.0f + dot(seen, right) * scale, canvasSize / 2.0f - dot(seen, up) * scale};
    }

    /// From the position through that place of the picture.
    Vector3<float> getRay(const Vector2<float>& place) const
    {
        const float x = (place.x / canvasSize * 2.0f - 1.0f) * tangent;
        const float y = (1.0f - place.y / canvasSize * 2.0f) * tangent;
        return normalized(forwards + right * x + up * y);
    }

    const Vector3<float>& getPosition() const { return position; }

    static Vector3<float> normalized(const Vector3<float>& v) { return v / length(v); }

private:
    Vector3<float> position;
    Vector3<float> forwards;
    Vector3<float> right;
    Vector3<float> up;
    float tangent;
    float canvasSize;
};
