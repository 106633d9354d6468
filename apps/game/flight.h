#pragma once

#include "viewpoint.h"

class InputDevice;

/// Where the camera of an unattended run is after so many seconds. Time 0 is also where the player starts.
Viewpoint cameraOnFixedPath(float seconds);

/// Flies the camera as long as keys are held and the mouse or a joystick moves.
class PilotedFlight {
public:
    explicit PilotedFlight(InputDevice& input);

    /// With the mouse caught, its motion turns the camera.
    void setMouseCaught(bool isCaught);
    bool isMouseCaught() const { return mouseIsCaught; }

    /// Turns the camera and flies on.
    void move(Viewpoint& camera, float seconds);

    /// Only turns it.
    void look(Viewpoint& camera, float seconds);

    /// Where a walker wants to go, seen from the camera, in units a second; and whether it wants to jump.
    Vector3<float> getWalkingVelocity(const Viewpoint& camera) const;
    bool wantsToJump() const { return getMotion().z > 0; }

private:
    bool isFast() const;

    /// To the right, forwards and upwards.
    Vector3<float> getMotion() const;

    /// +1, -1 or, when none or both are held, 0.
    float axis(int positiveKey, int negativeKey) const;

    InputDevice& input;
    bool mouseIsCaught = false;
    int arrowLeft, arrowRight, arrowUp, arrowDown, leftShift, rightShift;
};
