#pragma once

#include <xum/geometry/vector.h>

/// All points p with dot(normal, p) - distance = 0. The normal points to the front; a point on the plane is in front.
template <class T>
struct Plane {
    Vector3<T> normal; ///< zero at the start, which is no plane
    T distance{};      ///< how far the origin lies behind the plane: in world units when the normal has length 1

    constexpr Plane() = default;
    /// The normal stays as it is, of any length.
    constexpr Plane(const Vector3<T>& normal, T distance) : normal(normal), distance(distance) {}

    /// dot(normal, point) - distance: positive in front; in world units when the normal has length 1.
    constexpr T signedDistance(const Vector3<T>& point) const { return dot(normal, point) - distance; }

    /// Whether the signed distance is 0 or more.
    constexpr bool isInFront(const Vector3<T>& point) const { return signedDistance(point) >= T(0); }

    /// Exact: the same points by another normal are another plane.
    /// @{
    constexpr friend bool operator==(const Plane& a, const Plane& b)
    {
        return a.normal == b.normal && a.distance == b.distance;
    }
    constexpr friend bool operator!=(const Plane& a, const Plane& b) { return !(a == b); }
    /// @}
};

static_assert(sizeof(Plane<float>) == 16 && std::is_standard_layout_v<Plane<float>>);
