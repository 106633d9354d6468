#include "spot_lamp.h"

#include "failure.h"

#include <xum/render/render_target.h>

#include <cmath>
#include <string>

namespace {

constexpr float degree = 3.14159265f / 180.0f;
constexpr float innerAngle = 38; // degrees, of the whole cone
constexpr float outerAngle = 56;
constexpr float nearDistance = 0.1f; // as SpotLight projects
constexpr Vector3<float> lightColor = {2.8f, 6.4f, 10.0f};

constexpr float farthestSight = 22; // where it still lights somebody up

constexpr float circleRadius = 7.0f;
constexpr float circleHeight = 6.6f;
constexpr float turnSpeed = 0.5f; // radians in a second
constexpr float startAngle = -0.6f;

} // namespace

SpotLamp::SpotLamp(RenderDevice& device)
    : device(device),
      target(device.createRenderTarget(mapSize, mapSize, {TextureFormat(TextureFormat::Depth, 1)}), {&device})
{
    if (!target) throw Failure(ExitStatus::NoGraphics, "not enough memory for the lamp's shadows");
    light.color = lightColor;
    light.innerAngle = innerAngle;
    light.outerAngle = outerAngle;
    // A shader compares with the angle from the middle of the cone.
    light.innerCosine = std::cos(innerAngle / 2 * degree);
    light.outerCosine = std::cos(outerAngle / 2 * degree);
    setTime(0);
}

void SpotLamp::setTime(float seconds)
{
    const float angle = startAngle + turnSpeed * seconds;
    const Vector3<float> outwards = {std::cos(angle), std::sin(angle), 0};
    // Across the fountain, nearer and farther.
    shine(outwards * circleRadius + Vector3<float>(0, 0, circleHeight), outwards * (-3 - 3 * std::sin(0.7f * seconds)));
}

void SpotLamp::shine(const Vector3<float>& from, const Vector3<float>& towards)
{
    viewpoint.position = from;
    viewpoint.lookAt(towards);
    light.position = from;
    light.direction = viewpoint.getForward();
    light.up = viewpoint.getUp();
}

ViewVolume SpotLamp::getVolume() const
{
    const float extent = std::tan(outerAngle / 2 * degree);
    return {viewpoint, {extent, extent}, nearDistance};
}

void SpotLamp::drawMap(const std::function<void(const Matrix4<float>&)>& drawScene)
{
    device.bindRenderTarget(target.get(), TargetBinding::Both);
    device.setViewport(0, 0, mapSize, mapSize, mapSize);
    device.clear(false, true, false);
    light.generateShadowMap(&device, drawScene);
}

void SpotLamp::setUniforms(std::size_t number, int unit)
{
    const std::string place = "[" + std::to_string(number) + "]";
    device.bindTexture(unit, target->getDepthTexture());
    device.setUniform("spotMaps" + place, unit)
        .setUniform("spotProjections" + place, light.calculateMatrix())
        .setUniform("spotPositions" + place, light.position)
        .setUniform("spotDirections" + place, light.direction)
        .setUniform("spotColors" + place, light.color)
        .setUniform("spotInnerCosine", light.innerCosine)
        .setUniform("spotOuterCosine", light.outerCosine);
}

void SpotLamp::setDarkUniforms(RenderDevice& device, std::size_t number, int unit)
{
    const std::string place = "[" + std::to_string(number) + "]";
    device.setUniform("spotMaps" + place, unit).setUniform("spotColors" + place, Vector3<float>(0, 0, 0));
}

bool SpotLamp::reaches(const Vector3<float>& point) const
{
    const Vector3<float> way = point - light.position;
    const float distance = length(way);
    const float cosine = std::cos((innerAngle + outerAngle) / 4 * degree); // where it is half as bright
    return distance < farthestSight && dot(way, light.direction) > cosine * distance;
}
