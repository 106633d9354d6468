#pragma once

/// @file
/// The engine with the devices of every game, started by one call.

#include <xum/engine/export.h>

class Engine;
class InputDevice;
class SystemDevice;
class Window;

/// An engine with the devices that every game needs. Slot order is ABI.
class XUM_API GameEngine {
public:
    /// What initGameEngine made, the same at each call.
    /// @{
    virtual Engine* getEngine() = 0;
    virtual Window* getWindow() = 0;
    virtual SystemDevice* getSystemDevice() = 0;
    virtual InputDevice* getInputDevice() = 0;
    /// @}

    /// See Engine::update.
    virtual bool update() = 0;

protected:
    ~GameEngine() = default;
};

extern "C" {

/// initEngine with a 1024 x 768 window titled "Game" (resizable for an editor, fixed for a game), the system device and
/// the input device without relative mouse mode. Null when the engine does not start.
XUM_API GameEngine* initGameEngine(bool editor);

/// Shuts the engine down as shutdownEngine does and frees the wrapper; null is ignored. Kept on purpose: the window,
/// the system device and the input device are not destroyed, the process is expected to end next. A host that goes on
/// destroys them through getEngine() first.
XUM_API void shutdownGameEngine(GameEngine* game);
}
