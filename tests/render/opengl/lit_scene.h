#pragma once

#include <xum/geometry/box.h>
#include <xum/geometry/vector.h>
#include <xum/render/image.h>

#include <optional>

/// A floor, a box that stands on it and a sphere that hovers above it, for rays.
namespace lit_scene {

constexpr float floorSize = 6; // from the middle to each side, at the height 0
const Box box({-2, -0.75f, 0}, {-0.5f, 0.75f, 1.5f});
constexpr Vector3<float> sphereCenter(1.5f, 0.5f, 1.25f);
constexpr float sphereRadius = 0.8f;

constexpr Pixel floorColor{200, 200, 200, 255};
constexpr Pixel boxColor{230, 120, 60, 255};
constexpr Pixel sphereColor{80, 160, 240, 255};

/// Where a ray meets the scene first.
struct Hit {
    float distance;
    Vector3<float> point;
    Vector3<float> normal;
    Pixel color;
};

/// Of a ray with a direction of length 1. None when nothing is met.
std::optional<Hit> trace(const Vector3<float>& origin, const Vector3<float>& direction);

/// Whether nothing lies between the two points. What `from` lies on does not count.
bool isSeenFrom(const Vector3<float>& from, const Vector3<float>& to);

} // namespace lit_scene
