#pragma once

#include <array>
#include <cstddef>
#include <string>

class InputDevice;

/// What a player does with keys that can be chosen.
enum class Action : int {
    Forwards,
    Backwards,
    Left,
    Right,
    Jump,
    Run,
    TurnLeft,
    TurnRight,
    LookUp,
    LookDown,
    Confirm, ///< begins a game, and goes on after one
    Back,    ///< out of a game, then out of the program
    Mute,
    Louder,
    Quieter,
    Fullscreen,
    CatchMouse,
    ReloadScripts,
};
constexpr std::size_t actionCount = 18;

/// A key for each action, and a button of a joystick for some.
class KeyBindings {
public:
    /// The usual keys.
    explicit KeyBindings(InputDevice& input);

    /// How an action is called in a settings file: "forwards", "turn-left" and so on.
    static const char* getName(Action action);

    /// By the system's name of a key, "Left Shift" for example. False for an unknown one: then the old one stays.
    bool bind(Action action, const std::string& keyName);

    std::string getKeyName(Action action) const;

    bool isDown(Action action) const;

    /// Once each time the key goes down, however long it is held. Ask once a frame.
    bool isPressed(Action action);

private:
    struct Binding {
        int key = 0;
        int button = -1; ///< of a joystick
        bool wasDown = false;
    };

    bool isDown(const Binding& binding) const;
    Binding& find(Action action) { return bindings[static_cast<std::size_t>(action)]; }
    const Binding& find(Action action) const { return bindings[static_cast<std::size_t>(action)]; }

    InputDevice& input;
    std::array<Binding, actionCount> bindings;
};
