#include "lit_scene.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace lit_scene {

namespace {

constexpr float touching = 0.001f; // of distances, for what a ray starts on

std::optional<Hit> traceFloor(const Vector3<float>& origin, const Vector3<float>& direction)
{
    if (direction.z == 0) return {};
    const float distance = -origin.z / direction.z;
    const Vector3<float> point = origin + direction * distance;
    if (distance < touching || std::abs(point.x) > floorSize || std::abs(point.y) > floorSize) return {};
    return Hit{distance, point, {0, 0, 1}, floorColor};
}

/// Enters where the ray has passed the nearer plane of all three pairs; leaves where it passes a farther one.
std::optional<Hit> traceBox(const Vector3<float>& origin, const Vector3<float>& direction)
{
    float enter = -std::numeric_limits<float>::infinity();
    float leave = std::numeric_limits<float>::infinity();
    Vector3<float> normal;
    const auto cut = [&](float start, float speed, float low, float high, const Vector3<float>& axis) {
        const float toLow = (low - start) / speed;
        const float toHigh = (high - start) / speed;
        if (std::min(toLow, toHigh) > enter) {
            enter = std::min(toLow, toHigh);
            normal = speed > 0 ? -axis : axis;
        }
        leave = std::min(leave, std::max(toLow, toHigh));
    };
    cut(origin.x, direction.x, box.minimum.x, box.maximum.x, {1, 0, 0});
    cut(origin.y, direction.y, box.minimum.y, box.maximum.y, {0, 1, 0});
    cut(origin.z, direction.z, box.minimum.z, box.maximum.z, {0, 0, 1});
    if (enter >= leave || leave < touching || enter < touching) return {};
    return Hit{enter, origin + direction * enter, normal, boxColor};
}

std::optional<Hit> traceSphere(const Vector3<float>& origin, const Vector3<float>& direction)
{
    const Vector3<float> toCenter = sphereCenter - origin;
    const float along = dot(toCenter, direction);
    const float squared = sphereRadius * sphereRadius - (dot(toCenter, toCenter) - along * along);
    if (squared <= 0) return {};
    const float distance = along - std::sqrt(squared);
    if (distance < touching) return {};
    const Vector3<float> point = origin + direction * distance;
    return Hit{distance, point, (point - sphereCenter) / sphereRadius, sphereColor};
}

} // namespace

std::optional<Hit> trace(const Vector3<float>& origin, const Vector3<float>& direction)
{
    std::optional<Hit> nearest;
    for (const auto& hit : {traceFloor(origin, direction), traceBox(origin, direction), traceSphere(origin, direction)})
        if (hit && (!nearest || hit->distance < nearest->distance)) nearest = hit;
    return nearest;
}

bool isSeenFrom(const Vector3<float>& from, const Vector3<float>& to)
{
    const float distance = length(to - from);
    const std::optional<Hit> hit = trace(from, (to - from) / distance);
    return !hit || hit->distance > distance - touching;
}

} // namespace lit_scene
