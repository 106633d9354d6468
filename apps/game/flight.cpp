#include "flight.h"

#include <xum/devices/input_device.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr float speed = 5.0f;      // units in a second
constexpr float fastFactor = 4.0f; // with Shift
constexpr float walkingSpeed = 2.5f;
constexpr float runningSpeed = 6.0f;     // with Shift
constexpr float turnSpeed = 70.0f;       // degrees in a second
constexpr float degreesPerPixel = 0.12f; // of mouse motion
constexpr float steepest = 89.0f;        // degrees

} // namespace

Viewpoint cameraOnFixedPath(float seconds)
{
    // Slowly around the fountain, starting in front of the entrance and to its left.
    const float angle = -1.83f + 0.16f * seconds;
    Viewpoint camera;
    camera.position = {15.5f * std::cos(angle), 15.5f * std::sin(angle), 5.4f + 0.3f * std::sin(0.5f * seconds)};
    camera.lookAt({0.0f, 1.5f, 2.0f});
    return camera;
}

PilotedFlight::PilotedFlight(InputDevice& input)
    : input(input), arrowLeft(input.getKeyFromName("Left")), arrowRight(input.getKeyFromName("Right")),
      arrowUp(input.getKeyFromName("Up")), arrowDown(input.getKeyFromName("Down")),
      leftShift(input.getKeyFromName("Left Shift")), rightShift(input.getKeyFromName("Right Shift"))
{}

void PilotedFlight::setMouseCaught(bool isCaught)
{
    mouseIsCaught = isCaught;
    input.setRelativeMouseMode(isCaught);
}

float PilotedFlight::axis(int positiveKey, int negativeKey) const
{
    return (input.isDown(positiveKey) ? 1.0f : 0.0f) - (input.isDown(negativeKey) ? 1.0f : 0.0f);
}

bool PilotedFlight::isFast() const
{
    return input.isDown(leftShift) || input.isDown(rightShift) || input.isDown(KeyCode::JoystickButton2);
}

Vector3<float> PilotedFlight::getMotion() const
{
    return {axis('d', 'a') + axis(KeyCode::JoystickAxis0Positive, KeyCode::JoystickAxis0Negative),
            axis('w', 's') + axis(KeyCode::JoystickAxis1Negative, KeyCode::JoystickAxis1Positive),
            axis('e', 'q') + axis(KeyCode::JoystickButton0, KeyCode::JoystickButton1)};
}

Vector3<float> PilotedFlight::getWalkingVelocity(const Viewpoint& camera) const
{
    Viewpoint level = camera;
    level.pitch = 0;
    const Vector3<float> motion = getMotion();
    return normalize(level.getRight() * motion.x + level.getForward() * motion.y) *
           (isFast() ? runningSpeed : walkingSpeed);
}

void PilotedFlight::look(Viewpoint& camera, float seconds)
{
    camera.yaw += axis(arrowLeft, arrowRight) * turnSpeed * seconds;
    camera.pitch += axis(arrowUp, arrowDown) * turnSpeed * seconds;
    if (mouseIsCaught) {
        const Vector2<int> motion = input.getMouseMovement();
        camera.yaw -= static_cast<float>(motion.x) * degreesPerPixel;
        camera.pitch -= static_cast<float>(motion.y) * degreesPerPixel;
    }
    camera.yaw = std::remainder(camera.yaw, 360.0f);
    camera.pitch = std::clamp(camera.pitch, -steepest, steepest);
}

void PilotedFlight::move(Viewpoint& camera, float seconds)
{
    look(camera, seconds);
    const Vector3<float> motion = getMotion();
    const Vector3<float> direction =
        normalize(camera.getRight() * motion.x + camera.getForward() * motion.y + Vector3<float>(0, 0, motion.z));
    camera.position += direction * (speed * (isFast() ? fastFactor : 1.0f) * seconds);
    camera.position.z = std::max(camera.position.z, 0.5f); // above the meadow
}
