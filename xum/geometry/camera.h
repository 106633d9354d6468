#pragma once

#include <xum/engine/export.h>
#include <xum/geometry/matrix.h>
#include <xum/geometry/vector.h>

/// A point of view. Unturned it looks along +y, with +x to its right and +z upwards.
///
/// The matrix that takes world points to clip space is, on the CPU, P * A * R * T: the translation T by -origin, the
/// view matrix as R, the change of axes A with the rows (1,0,0,0), (0,0,1,0), (0,-1,0,0), (0,0,0,1), and a perspective
/// projection P. A shader multiplies with the vector on the left: vec4(point, 1.0) * matrix.
class XUM_API Camera {
public:
    /// The eye, in world units; (0, 0, 0) at the start.
    /// @{
    const Vector3<float>& getOrigin() const { return origin; }
    void setOrigin(const Vector3<float>& newOrigin) { origin = newOrigin; }
    /// @}

    /// Degrees about the x, y and z axes: positive x looks up, positive z turns left, y tilts about the world's y axis.
    /// @{
    const Vector3<float>& getRotation() const { return rotation; }
    void setRotation(const Vector3<float>& newRotation) { rotation = newRotation; }
    /// @}

    /// The whole angles of view in degrees, 90 at the start.
    /// @{
    float getHorizontalFov() const { return horizontalFov; }
    void setHorizontalFov(float fov) { horizontalFov = fov; }
    float getVerticalFov() const { return verticalFov; }
    void setVerticalFov(float fov) { verticalFov = fov; }
    /// @}

    /// The rotation from world to view; its rows are the directions to the right, forwards and upwards (see
    /// viewVectorsFromViewMatrix). X(-x) * Z(-z) * Y(-y) of the rotation's angles, in this order on purpose.
    Matrix3<float> calculateViewMatrix() const;

private:
    Vector3<float> origin = {0, 0, 0};
    Vector3<float> rotation = {0, 0, 0};
    float horizontalFov = 90.0f;
    float verticalFov = 90.0f;
};
