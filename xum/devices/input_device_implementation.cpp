#include <xum/devices/input_device_implementation.h>

#include <xum/devices/input_state.h>
#include <xum/engine/log.h>

#include <SDL.h>

#include <algorithm>

InputDeviceImplementation::InputDeviceImplementation()
{
    SDL_StartTextInput();
    const int count = SDL_NumJoysticks();
    joysticks.reserve(static_cast<std::size_t>(std::max(count, 0))); // first: a device that fails logs nothing
    getLog() << "Input: found " << count << " joysticks/gamepads." << std::endl;
    for (int i = 0; i < count; ++i) {
        SDL_Joystick* joystick = SDL_JoystickOpen(i);
        if (joystick == nullptr) continue;
        joysticks.push_back(joystick);
        getLog() << "Input: joystick/gamepad " << i << " initialized successfully." << std::endl;
    }
}

// The numbers here count the opened joysticks, not SDL's.
InputDeviceImplementation::~InputDeviceImplementation()
{
    for (std::size_t i = 0; i < joysticks.size(); ++i) {
        getLog() << "Input: closing joystick/gamepad " << i << "." << std::endl;
        SDL_JoystickClose(joysticks[i]);
    }
}

void InputDeviceImplementation::setRelativeMouseMode(bool enabled)
{
    if (enabled) {
        SDL_ShowCursor(SDL_DISABLE);
        SDL_SetRelativeMouseMode(SDL_TRUE);
        SDL_GetRelativeMouseState(nullptr, nullptr); // discards the motion so far
    } else {
        SDL_SetRelativeMouseMode(SDL_FALSE);
        SDL_ShowCursor(SDL_ENABLE);
    }
}

void InputDeviceImplementation::setJoystickDeadZone(int deadZone)
{
    setDeadZone(deadZone);
}

Vector2<int> InputDeviceImplementation::getMousePosition()
{
    Vector2<int> position;
    SDL_GetMouseState(&position.x, &position.y);
    return position;
}

Vector2<int> InputDeviceImplementation::getMouseMovement()
{
    Vector2<int> movement;
    SDL_GetRelativeMouseState(&movement.x, &movement.y);
    return movement;
}

bool InputDeviceImplementation::wasPressed(int key)
{
    return wasKeyPressed(key);
}

bool InputDeviceImplementation::wasReleased(int key)
{
    return wasKeyReleased(key);
}

bool InputDeviceImplementation::isDown(int key)
{
    return isKeyDown(key);
}

bool InputDeviceImplementation::anyKeyPressed()
{
    return wasAnyKeyPressed();
}

void InputDeviceImplementation::startRecording()
{
    startRecordingInput();
}

void InputDeviceImplementation::getEvents(std::vector<InputEvent>& out)
{
    takeRecordedInput(out);
}

void InputDeviceImplementation::clearText()
{
    clearTypedText();
}

void InputDeviceImplementation::getText(std::vector<unsigned int>& out)
{
    takeTypedText(out);
}

std::string InputDeviceImplementation::getKeyName(int key)
{
    return SDL_GetKeyName(key);
}

int InputDeviceImplementation::getKeyFromName(const std::string& name)
{
    return SDL_GetKeyFromName(name.c_str());
}
