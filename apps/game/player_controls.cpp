#include "player_controls.h"

#include <xum/devices/input_device.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr float walkingSpeed = 3.2f; // units in a second
constexpr float runningSpeed = 6.5f;
constexpr float turnSpeed = 110.0f;      // degrees in a second
constexpr float degreesPerPixel = 0.12f; // of mouse motion
constexpr float steepest = 89.0f;        // degrees

} // namespace

void PlayerControls::setMouseCaught(bool isCaught)
{
    mouseIsCaught = isCaught;
    input.setRelativeMouseMode(isCaught);
}

float PlayerControls::axis(Action positive, Action negative) const
{
    return (keys.isDown(positive) ? 1.0f : 0.0f) - (keys.isDown(negative) ? 1.0f : 0.0f);
}

void PlayerControls::look(Viewpoint& camera, const Vector2<int>& mouse, float seconds) const
{
    camera.yaw += axis(Action::TurnLeft, Action::TurnRight) * turnSpeed * seconds;
    camera.pitch += axis(Action::LookUp, Action::LookDown) * turnSpeed * seconds;
    if (mouseIsCaught) {
        camera.yaw -= static_cast<float>(mouse.x) * degreesPerPixel;
        camera.pitch -= static_cast<float>(mouse.y) * degreesPerPixel;
    }
    camera.yaw = std::remainder(camera.yaw, 360.0f);
    camera.pitch = std::clamp(camera.pitch, -steepest, steepest);
}

Vector3<float> PlayerControls::getVelocity(const Viewpoint& camera) const
{
    Viewpoint level = camera;
    level.pitch = 0;
    const Vector3<float> way = level.getRight() * axis(Action::Right, Action::Left) +
                               level.getForward() * axis(Action::Forwards, Action::Backwards);
    return normalize(way) * (keys.isDown(Action::Run) ? runningSpeed : walkingSpeed);
}
