#pragma once

#include "key_bindings.h"
#include "viewpoint.h"

class InputDevice;

/// A player on foot: where to look and where to go.
class PlayerControls {
public:
    PlayerControls(InputDevice& input, KeyBindings& keys) : input(input), keys(keys) {}

    /// With the mouse caught, its motion turns the view.
    void setMouseCaught(bool isCaught);
    bool isMouseCaught() const { return mouseIsCaught; }

    /// Turns the view; the motion of the mouse is given, in pixels.
    void look(Viewpoint& camera, const Vector2<int>& mouse, float seconds) const;

    /// In units a second, level.
    Vector3<float> getVelocity(const Viewpoint& camera) const;

    bool wantsToJump() const { return keys.isDown(Action::Jump); }

private:
    float axis(Action positive, Action negative) const;

    InputDevice& input;
    KeyBindings& keys;
    bool mouseIsCaught = false;
};
