#pragma once

#include <xum/devices/input_device.h>

struct _SDL_Joystick;

class InputDeviceImplementation final : public InputDevice {
public:
    /// Starts text input and opens every joystick there is, each with a log line; one that does not open is skipped.
    InputDeviceImplementation();
    ~InputDeviceImplementation();

    InputDeviceImplementation(const InputDeviceImplementation&) = delete;
    InputDeviceImplementation& operator=(const InputDeviceImplementation&) = delete;

    void setRelativeMouseMode(bool enabled) override;
    void setJoystickDeadZone(int deadZone) override;
    Vector2<int> getMousePosition() override;
    Vector2<int> getMouseMovement() override;
    bool wasPressed(int key) override;
    bool wasReleased(int key) override;
    bool isDown(int key) override;
    bool anyKeyPressed() override;
    void startRecording() override;
    void getEvents(std::vector<InputEvent>& out) override;
    void clearText() override;
    void getText(std::vector<unsigned int>& out) override;
    std::string getKeyName(int key) override;
    int getKeyFromName(const std::string& name) override;

private:
    std::vector<_SDL_Joystick*> joysticks; // in the order opened
};
