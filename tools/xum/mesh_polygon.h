#pragma once

#include <xum/geometry/vector.h>

#include <array>
#include <vector>

/// Triangles of the same winding that fill a polygon, as indexes of its corners. Corners that stand in may be anywhere
/// (an ear is cut off at a time); a convex polygon becomes a fan around its first corner. What has no area or crosses
/// itself gets triangles, too, as good as they may be. Always two less than there are corners.
std::vector<std::array<int, 3>> triangulate(const std::vector<Vector3<float>>& corners);
