#include <xum/geometry/camera.h>

#include <xum/geometry/angles.h>

Matrix3<float> Camera::calculateViewMatrix() const
{
    const float sinX = sineOf(-rotation.x);
    const float cosX = cosineOf(-rotation.x);
    const float sinY = sineOf(-rotation.y);
    const float cosY = cosineOf(-rotation.y);
    const float sinZ = sineOf(-rotation.z);
    const float cosZ = cosineOf(-rotation.z);
    const Matrix3<float> aboutX = {1, 0, 0, 0, cosX, -sinX, 0, sinX, cosX};
    const Matrix3<float> aboutY = {cosY, 0, sinY, 0, 1, 0, -sinY, 0, cosY};
    const Matrix3<float> aboutZ = {cosZ, -sinZ, 0, sinZ, cosZ, 0, 0, 0, 1};
    return aboutX * aboutZ * aboutY;
}
