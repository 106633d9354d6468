#pragma once

#include <xum/geometry/vector.h>

/// Of length 1, or zero for what is too short to have a direction. This is not normalize, which only spares zero.
inline Vector3<float> directionOf(const Vector3<float>& v)
{
    constexpr float shortest = 0.00001f;
    const float size = length(v);
    return size < shortest ? Vector3<float>() : v / size;
}
