#pragma once

#include <xum/devices/key_codes.h>
#include <xum/engine/export.h>
#include <xum/geometry/vector.h>

#include <string>
#include <vector>

/// A recorded key change.
struct InputEvent {
    int code;     ///< see KeyCode
    int released; ///< 0 for a press, 1 for a release
};

/// Keyboard, mouse, joysticks and typed text. Made by Engine::createInputDevice, given back to
/// Engine::destroyInputDevice. Engine::update feeds it; key states, dead zone, recording and text are process-wide and
/// outlive the device. Keys are named by KeyCode or SDL keycode. Slot order is ABI.
class XUM_API InputDevice {
public:
    /// True hides the cursor and confines the mouse to endless relative motion, counted from now on; false gives the
    /// cursor back.
    virtual void setRelativeMouseMode(bool enabled) = 0;

    /// How far an axis (-32768 to 32767) must leave its centre to count; 20000 at the start. The value itself is
    /// inside.
    virtual void setJoystickDeadZone(int deadZone) = 0;

    /// The cursor in window pixels from the top left.
    virtual Vector2<int> getMousePosition() = 0;

    /// The motion in pixels since the previous query, x to the right and y downwards.
    virtual Vector2<int> getMouseMovement() = 0;

    /// Whether the key went down during the current frame. Key repeats, and each further motion of a joystick axis that
    /// is held out, count again.
    virtual bool wasPressed(int key) = 0;

    /// Whether the key went up during the current frame.
    virtual bool wasReleased(int key) = 0;

    /// Whether the key is held, as of the latest Engine::update; never true of a wheel step.
    virtual bool isDown(int key) = 0;

    /// Whether wasPressed is true of any key, KeyCode::None included.
    virtual bool anyKeyPressed() = 0;

    /// From now on presses and releases are recorded. Nothing ends it.
    virtual void startRecording() = 0;

    /// Replaces the contents of `out` by what was recorded since the last call, in order of arrival.
    virtual void getEvents(std::vector<InputEvent>& out) = 0;

    /// Forgets what was typed; do so when a text field opens.
    virtual void clearText() = 0;

    /// Replaces the contents of `out` by the ASCII characters typed since the text was last taken, at most the latest
    /// 32, and empties the text.
    virtual void getText(std::vector<unsigned int>& out) = 0;

    /// SDL's name of an SDL keycode, which is not masked here: 58 is ":", F1 is SDLK_F1. Empty when there is none.
    virtual std::string getKeyName(int key) = 0;

    /// The SDL keycode of a name as getKeyName gives it, letter case ignored; 0 for an unknown one.
    virtual int getKeyFromName(const std::string& name) = 0;

protected:
    ~InputDevice() = default;
};
