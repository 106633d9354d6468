#pragma once

#include <xum/geometry/matrix.h>
#include <xum/geometry/vector.h>

/// A point of view. The world is right-handed with z up; a camera with both angles 0 looks along +y, +x to its right.
struct Viewpoint {
    Vector3<float> position;
    float yaw = 0;   ///< degrees, positive turns to the left
    float pitch = 0; ///< degrees, positive looks up

    Vector3<float> getForward() const;
    Vector3<float> getRight() const;
    Vector3<float> getUp() const;

    /// Turns towards a point elsewhere than the camera.
    void lookAt(const Vector3<float>& point);
};

/// The half extents of the picture at distance 1: how wide and how high the camera sees.
Vector2<float> calculateViewExtents(float verticalFieldOfView, const Vector2<int>& size);

/// From world to clip coordinates with perspective. On the CPU viewProjection * point, in shaders
/// vec4(point, 1.0) * viewProjection.
Matrix4<float> calculateViewProjection(const Viewpoint& camera, const Vector2<float>& viewExtents, float near,
                                       float far);

/// The same without perspective: what a camera sees of a box `2 * halfWidth` wide and high, from near to far.
Matrix4<float> calculateParallelProjection(const Viewpoint& camera, float halfWidth, float near, float far);
