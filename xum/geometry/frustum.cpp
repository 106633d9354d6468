#include <xum/geometry/frustum.h>

#include <xum/geometry/angles.h>
#include <xum/geometry/short_vectors.h>

namespace {

/// The plane through the eye and two directions.
Plane<float> makeSide(const Vector3<float>& eye, const Vector3<float>& first, const Vector3<float>& second)
{
    const Vector3<float> normal = directionOf(cross(first, second));
    return {normal, dot(normal, eye)};
}

} // namespace

Frustum::Frustum()
{
    planes.reserve(5);
}

void Frustum::setFromViewVectors(const Vector3<float>& eye, const Vector3<float>& a, const Vector3<float>& f,
                                 const Vector3<float>& c, float angleA, float angleC, float divisorC)
{
    const Vector3<float> across = a * tangentOfHalf(angleA);
    const Vector3<float> upwards = c * (tangentOfHalf(angleC) / divisorC);
    const Vector3<float> lowerLeft = f - across - upwards;
    const Vector3<float> upperLeft = f - across + upwards;
    const Vector3<float> upperRight = f + across + upwards;
    const Vector3<float> lowerRight = f + across - upwards;
    planes.clear();
    planes.emplace_back(f, dot(eye + f, f));
    planes.push_back(makeSide(eye, lowerLeft, upperLeft));
    planes.push_back(makeSide(eye, upperRight, lowerRight));
    planes.push_back(makeSide(eye, lowerRight, lowerLeft));
    planes.push_back(makeSide(eye, upperLeft, upperRight));
}
