#pragma once

#include <xum/geometry/vector.h>

#include <limits>
#include <vector>

/// An axis-aligned box. A default-constructed box is empty: minimum +infinity, maximum -infinity in every component, so
/// that the first point added sets both corners.
struct Box {
    /// The corners with the smallest and the largest coordinates; both belong to the box.
    /// @{
    Vector3<float> minimum{std::numeric_limits<float>::infinity(), std::numeric_limits<float>::infinity(),
                           std::numeric_limits<float>::infinity()};
    Vector3<float> maximum{-std::numeric_limits<float>::infinity(), -std::numeric_limits<float>::infinity(),
                           -std::numeric_limits<float>::infinity()};
    /// @}

    constexpr Box() = default;
    /// Nothing is sorted: with a minimum above its maximum the box is empty.
    constexpr Box(const Vector3<float>& minimum, const Vector3<float>& maximum) : minimum(minimum), maximum(maximum) {}

    /// Grows the box so that it holds the point.
    constexpr void add(const Vector3<float>& point)
    {
        minimum = {smaller(point.x, minimum.x), smaller(point.y, minimum.y), smaller(point.z, minimum.z)};
        maximum = {larger(point.x, maximum.x), larger(point.y, maximum.y), larger(point.z, maximum.z)};
    }

    /// The smallest box that holds all points; the empty box for none.
    static Box around(const std::vector<Vector3<float>>& points)
    {
        Box box;
        for (const Vector3<float>& point : points) box.add(point);
        return box;
    }

    /// True when no point was added: some minimum lies above its maximum.
    constexpr bool isEmpty() const { return minimum.x > maximum.x || minimum.y > maximum.y || minimum.z > maximum.z; }

    /// Exact, corner by corner.
    /// @{
    constexpr friend bool operator==(const Box& a, const Box& b)
    {
        return a.minimum == b.minimum && a.maximum == b.maximum;
    }
    constexpr friend bool operator!=(const Box& a, const Box& b) { return !(a == b); }
    /// @}

private:
    static constexpr float smaller(float a, float b) { return a < b ? a : b; }
    static constexpr float larger(float a, float b) { return a > b ? a : b; }
};

static_assert(sizeof(Box) == 24 && std::is_standard_layout_v<Box>);
