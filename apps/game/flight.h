#pragma once

#include "camera.h"

class InputDevice;

/// Where the camera of an unattended run is after so many seconds. Time 0 is also where the player starts.
Camera cameraOnFixedPath(float seconds);

/// Flies the camera as long as keys are held and the mouse or a joystick moves.
class PilotedFlight {
public:
    explicit PilotedFlight(InputDevice& input);

    /// With the mouse caught, its motion turns the camera.
    void setMouseCaught(bool isCaught);
    bool isMouseCaught() const { return mouseIsCaught; }

    void move(Camera& camera, float seconds);

private:
    /// +1, -1 or, when none or both are held, 0.
    float axis(int positiveKey, int negativeKey) const;

    InputDevice& input;
    bool mouseIsCaught = false;
    int arrowLeft, arrowRight, arrowUp, arrowDown, leftShift, rightShift;
};
