#pragma once

#include <xum/engine/export.h>
#include <xum/geometry/plane.h>

#include <vector>

/// The planes that bound what a camera sees, all facing inwards. There is no far plane.
class XUM_API Frustum {
public:
    /// Without planes: nothing bounds it.
    Frustum();

    /// Replaces the planes by five: near, left, right, bottom, top. `a`, `f` and `c` are the directions to the right,
    /// forwards and upwards, the rows of Camera::calculateViewMatrix. angleA and angleC are the whole angles of view
    /// along `a` and `c`, in degrees; tan(angleC / 2) is divided by divisorC: 1 for a true vertical angle, or width /
    /// height where both angles are the horizontal one.
    ///
    /// The near plane goes through eye + f. A side plane whose directions are degenerate gets a zero normal and
    /// distance 0; a Clipper keeps nothing of such a frustum.
    void setFromViewVectors(const Vector3<float>& eye, const Vector3<float>& a, const Vector3<float>& f,
                            const Vector3<float>& c, float angleA, float angleC, float divisorC);

    /// In the order of setFromViewVectors; none before it is called.
    const std::vector<Plane<float>>& getPlanes() const { return planes; }

private:
    std::vector<Plane<float>> planes;
};
