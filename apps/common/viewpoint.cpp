#include "viewpoint.h"

#include <cmath>

namespace {

constexpr float degree = 3.14159265f / 180.0f;

/// From world to eye coordinates as the projections below want them: x to the right, y up, the view along -z. The
/// rows of the camera's own matrix are right, forward and up.
Matrix4<float> calculateView(const Viewpoint& camera)
{
    const Matrix3<float> axes = Matrix3<float>::fromRows(camera.getRight(), camera.getUp(), -camera.getForward());
    return Matrix4<float>(axes) * Matrix4<float>::translation(-camera.position);
}

} // namespace

Vector3<float> Viewpoint::getForward() const
{
    const float level = std::cos(pitch * degree);
    return {-std::sin(yaw * degree) * level, std::cos(yaw * degree) * level, std::sin(pitch * degree)};
}

Vector3<float> Viewpoint::getRight() const
{
    return {std::cos(yaw * degree), std::sin(yaw * degree), 0.0f};
}

Vector3<float> Viewpoint::getUp() const
{
    return cross(getRight(), getForward());
}

void Viewpoint::lookAt(const Vector3<float>& point)
{
    const Vector3<float> direction = normalize(point - position);
    yaw = std::atan2(-direction.x, direction.y) / degree;
    pitch = std::asin(direction.z) / degree;
}

Vector2<float> calculateViewExtents(float verticalFieldOfView, const Vector2<int>& size)
{
    const float height = std::tan(verticalFieldOfView * degree / 2.0f);
    return {height * static_cast<float>(size.x) / static_cast<float>(size.y), height};
}

Matrix4<float> calculateViewProjection(const Viewpoint& camera, const Vector2<float>& viewExtents, float near,
                                       float far)
{
    Matrix4<float> projection;
    projection(0, 0) = 1.0f / viewExtents.x;
    projection(1, 1) = 1.0f / viewExtents.y;
    projection(2, 2) = -(far + near) / (far - near);
    projection(2, 3) = -2.0f * far * near / (far - near);
    projection(3, 2) = -1.0f;
    projection(3, 3) = 0.0f;
    return projection * calculateView(camera);
}

Matrix4<float> calculateParallelProjection(const Viewpoint& camera, float halfWidth, float near, float far)
{
    Matrix4<float> projection;
    projection(0, 0) = 1.0f / halfWidth;
    projection(1, 1) = 1.0f / halfWidth;
    projection(2, 2) = -2.0f / (far - near);
    projection(2, 3) = -(far + near) / (far - near);
    return projection * calculateView(camera);
}
