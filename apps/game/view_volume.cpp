#include "view_volume.h"

#include <xum/geometry/camera.h>
#include <xum/geometry/frustum.h>

#include <cmath>

namespace {

// The clipper wants things to lie inside by its margin, and angles are rounded.
constexpr float slack = 2.0f * Clipper::margin;
constexpr float slackOfExtents = 1.01f;

float wholeAngle(float extent)
{
    return 2.0f * std::atan(extent * slackOfExtents) * 180.0f / 3.14159265f;
}

std::vector<Plane<float>> makePlanes(const Viewpoint& viewpoint, const Vector2<float>& viewExtents, float nearDistance)
{
    Camera camera;
    camera.setOrigin(viewpoint.position);
    camera.setRotation({viewpoint.pitch, 0, viewpoint.yaw});
    camera.setHorizontalFov(wholeAngle(viewExtents.x));
    camera.setVerticalFov(wholeAngle(viewExtents.y));
    Vector3<float> right;
    Vector3<float> forward;
    Vector3<float> up;
    viewVectorsFromViewMatrix(right, forward, up, camera.calculateViewMatrix());
    Frustum frustum;
    frustum.setFromViewVectors(camera.getOrigin(), right, forward, up, camera.getHorizontalFov(),
                               camera.getVerticalFov(), 1.0f);

    std::vector<Plane<float>> planes = frustum.getPlanes();
    planes.front().distance += nearDistance - 1.0f; // the first plane is the near one, at distance 1
    for (Plane<float>& plane : planes) plane.distance -= slack;
    return planes;
}

/// The corner of a box that lies farthest along a direction.
Vector3<float> farthestCorner(const Box& box, const Vector3<float>& direction)
{
    return {direction.x >= 0 ? box.maximum.x : box.minimum.x, direction.y >= 0 ? box.maximum.y : box.minimum.y,
            direction.z >= 0 ? box.maximum.z : box.minimum.z};
}

} // namespace

ViewVolume::ViewVolume(const Viewpoint& camera, const Vector2<float>& viewExtents, float nearDistance)
    : planes(makePlanes(camera, viewExtents, nearDistance)), clipper(planes)
{}

ViewVolume::Part ViewVolume::seePart(const Box& box) const
{
    Part part = Part::All;
    for (const Plane<float>& plane : planes) {
        if (plane.signedDistance(farthestCorner(box, plane.normal)) < 0) return Part::Nothing;
        if (plane.signedDistance(farthestCorner(box, -plane.normal)) < 0) part = Part::Some;
    }
    return part;
}
