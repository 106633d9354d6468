#pragma once

#include <xum/geometry/vector.h>

/// Where a texture lies on a side: as seen along the axis that the side faces most, upright on walls, with v downwards.
/// `scale` counts repeats a world unit.
Vector2<float> calculateTextureCoordinate(const Vector3<double>& point, const Vector3<double>& normal, double scale);
