#include "picture_space.h"

namespace {

constexpr float fieldOfView = 65; // degrees, vertical
constexpr float nearDistance = 0.1f;
constexpr float farDistance = 1500;

} // namespace

Matrix4<float> calculateEditorProjection(const Viewpoint& camera, int width, int height)
{
    return calculateViewProjection(camera, calculateViewExtents(fieldOfView, {width, height}), nearDistance,
                                   farDistance);
}

Ray calculateRay(const Viewpoint& camera, const ScreenArea& area, const Vector2<float>& pixel)
{
    const Vector2<float> extents = calculateViewExtents(fieldOfView, {area.width, area.height});
    const float right = ((pixel.x - static_cast<float>(area.x)) / static_cast<float>(area.width) * 2 - 1) * extents.x;
    const float up = (1 - (pixel.y - static_cast<float>(area.y)) / static_cast<float>(area.height) * 2) * extents.y;
    const Vector3<float> direction = normalize(camera.getForward() + camera.getRight() * right + camera.getUp() * up);
    return {{camera.position.x, camera.position.y, camera.position.z}, {direction.x, direction.y, direction.z}};
}

std::optional<Vector2<float>> findPixel(const Viewpoint& camera, const ScreenArea& area, const Vector3<double>& point)
{
    const Vector2<float> extents = calculateViewExtents(fieldOfView, {area.width, area.height});
    const Vector3<float> offset =
        Vector3<float>(static_cast<float>(point.x), static_cast<float>(point.y), static_cast<float>(point.z)) -
        camera.position;
    const float depth = dot(offset, camera.getForward());
    if (depth < nearDistance) return std::nullopt;
    const float right = dot(offset, camera.getRight()) / depth / extents.x;
    const float up = dot(offset, camera.getUp()) / depth / extents.y;
    return Vector2<float>(static_cast<float>(area.x) + (right + 1) / 2 * static_cast<float>(area.width),
                          static_cast<float>(area.y) + (1 - up) / 2 * static_cast<float>(area.height));
}
