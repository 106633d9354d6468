#include <xum/render/light.h>

#include <xum/geometry/angles.h>
#include <xum/geometry/short_vectors.h>
#include <xum/render/quad.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr double pi = 3.14159265358979323846;

constexpr double nearest = 0.1;
constexpr double farthest = 2000;

// To the axes of clip space: y is up and z goes backwards.
constexpr Matrix4<float> axisChange = {1, 0, 0, 0, 0, 0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1};

constexpr Matrix4<float> bias = {0.5f, 0, 0, 0.5f, 0, 0.5f, 0, 0.5f, 0, 0, 0.5f, 0.5f, 0, 0, 0, 1};

Matrix4<float> calculatePerspective(float fieldOfView)
{
    const float f = 1.0f / tangentOfHalf(fieldOfView);
    constexpr auto depthScale = static_cast<float>(-(farthest + nearest) / (farthest - nearest));
    constexpr auto depthOffset = static_cast<float>(-2 * farthest * nearest / (farthest - nearest));
    return {f, 0, 0, 0, 0, f, 0, 0, 0, 0, depthScale, depthOffset, 0, 0, -1, 0};
}

/// Unlike cross(up, direction) this order of right keeps triangles counter-clockwise.
Matrix4<float> calculateView(const Vector3<float>& position, const Vector3<float>& direction, const Vector3<float>& up)
{
    const Vector3<float> forwards = directionOf(direction);
    const Vector3<float> right = directionOf(cross(forwards, directionOf(up)));
    const auto rotation = Matrix3<float>::fromRows(right, forwards, cross(right, forwards));
    return Matrix4<float>(rotation) * Matrix4<float>::translation(-position);
}

} // namespace

void Light::draw(RenderDevice* device)
{
    drawFullscreenQuad(device);
}

// In double precision, where the cosine of 60 degrees is one half; of the angle as a float it is a little less.
SpotLight::SpotLight()
    : innerCosine(static_cast<float>(std::cos(pi / 4))), outerCosine(static_cast<float>(std::cos(pi / 3)))
{}

Matrix4<float> SpotLight::calculateMatrix()
{
    return calculatePerspective(std::max(innerAngle, outerAngle)) * axisChange * calculateView(position, direction, up);
}

Matrix4<float> SpotLight::calculateShadowMatrix()
{
    return calculateMatrix() * bias;
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): hosts compile against the value
void SpotLight::generateShadowMap(RenderDevice*, std::function<void(const Matrix4<float>&)> drawScene)
{
    drawScene(calculateMatrix());
}
