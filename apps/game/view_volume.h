#pragma once

#include "viewpoint.h"

#include <xum/geometry/box.h>
#include <xum/geometry/clipper.h>
#include <xum/geometry/plane.h>
#include <xum/geometry/polygon.h>

#include <vector>

/// What a viewpoint can see of the world, a little more rather than less: what is outside leaves no trace in the
/// picture.
class ViewVolume {
public:
    enum class Part : int { Nothing, Some, All };

    ViewVolume(const Viewpoint& camera, const Vector2<float>& viewExtents, float nearDistance);

    /// How much of a box may be seen.
    Part seePart(const Box& box) const;

    /// Whether anything of a polygon may be seen.
    bool sees(const Polygon& polygon) const { return !clipper.clipPolygon(&polygon).empty(); }

    /// Facing inwards.
    const std::vector<Plane<float>>& getPlanes() const { return planes; }

private:
    std::vector<Plane<float>> planes;
    Clipper clipper;
};
