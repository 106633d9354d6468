#include "key_bindings.h"

#include <xum/devices/input_device.h>

namespace {

struct Default {
    const char* name;
    const char* key;
    int button;
};

constexpr int none = -1;

// In the order of the actions.
const Default defaults[actionCount] = {
    {"forwards", "W", KeyCode::JoystickAxis1Negative},
    {"backwards", "S", KeyCode::JoystickAxis1Positive},
    {"left", "A", none},
    {"right", "D", none},
    {"jump", "Space", KeyCode::JoystickButton0},
    {"run", "Left Shift", KeyCode::JoystickButton2},
    {"turn-left", "Left", KeyCode::JoystickAxis0Negative},
    {"turn-right", "Right", KeyCode::JoystickAxis0Positive},
    {"look-up", "Up", none},
    {"look-down", "Down", none},
    {"confirm", "Return", KeyCode::JoystickButton3},
    {"back", "Escape", KeyCode::JoystickButton1},
    {"mute", "N", none},
    {"louder", "PageUp", none},
    {"quieter", "PageDown", none},
    {"full-screen", "F11", none},
    {"catch-mouse", "M", none},
    {"reload-scripts", "F5", none},
};

} // namespace

KeyBindings::KeyBindings(InputDevice& input) : input(input)
{
    for (std::size_t i = 0; i < actionCount; ++i) {
        bindings[i].key = input.getKeyFromName(defaults[i].key);
        bindings[i].button = defaults[i].button;
    }
}

const char* KeyBindings::getName(Action action)
{
    return defaults[static_cast<std::size_t>(action)].name;
}

bool KeyBindings::bind(Action action, const std::string& keyName)
{
    const int key = input.getKeyFromName(keyName);
    if (key == 0) return false;
    find(action).key = key;
    return true;
}

std::string KeyBindings::getKeyName(Action action) const
{
    return input.getKeyName(find(action).key);
}

bool KeyBindings::isDown(const Binding& binding) const
{
    return input.isDown(binding.key) || (binding.button != none && input.isDown(binding.button));
}

bool KeyBindings::isDown(Action action) const
{
    return isDown(find(action));
}

bool KeyBindings::isPressed(Action action)
{
    Binding& binding = find(action);
    const bool wasPressed =
        input.wasPressed(binding.key) || (binding.button != none && input.wasPressed(binding.button));
    const bool isNew = wasPressed && !binding.wasDown;
    binding.wasDown = isDown(binding);
    return isNew;
}
