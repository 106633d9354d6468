#pragma once

#include <xum/engine/export.h>
#include <xum/geometry/plane.h>
#include <xum/geometry/polygon.h>

#include <vector>

/// Clips lines and polygons against a convex set of planes, Frustum::getPlanes() for example. Inside means in front of
/// every plane by at least `margin` world units; what is cut ends at that distance.
class XUM_API Clipper {
public:
    static constexpr float margin = 0.01f; ///< in world units

    /// Copies the planes. With none, nothing is ever cut away.
    explicit Clipper(const std::vector<Plane<float>>& planes) : planes(planes) {}

    /// The part of start..end inside all planes. False, with the outputs as they were, when both ends lie outside one
    /// plane. The outputs may be the inputs.
    /// Kept on purpose: where the line enters and where it leaves are not compared. A line that passes outside a corner
    /// of the region still gives true, with its ends in reverse order.
    bool clipLine(Vector3<float>& outStart, Vector3<float>& outEnd, const Vector3<float>& start,
                  const Vector3<float>& end) const;

    /// The loop of what is left of the polygon, texture coordinates included (Sutherland-Hodgman); empty when it is all
    /// outside, and for null.
    /// Kept on purpose: as soon as fewer than 3 vertices are left the other planes are not looked at.
    std::vector<Vertex> clipPolygon(const struct Polygon* polygon) const;

private:
    std::vector<Plane<float>> planes;
};
