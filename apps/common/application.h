#pragma once

#include "owned.h"

#include <xum/geometry/vector.h>

struct ShutDown {
    void operator()(Engine* engine) const { shutdownEngine(engine); }
};

/// The running engine with the devices that the game needs; all of it goes down in reverse order. What was loaded
/// through them must be gone by then.
class Application {
public:
    /// Throws Failure when there is no engine, no window or no OpenGL. An editor tells the engine that it is one.
    Application(const char* title, const Vector2<int>& size, bool isEditor = false);

    Engine& getEngine() { return *engine; }
    Window& getWindow() { return *window; }
    InputDevice& getInput() { return *input; }
    RenderDevice& getRenderDevice() { return *renderDevice; }

    /// Null on a machine without sound.
    AudioDevice* getAudioDevice() { return audioDevice.get(); }

private:
    std::unique_ptr<Engine, ShutDown> engine;
    OwnedWindow window;
    OwnedInputDevice input;
    OwnedRenderDevice renderDevice;
    OwnedAudioDevice audioDevice;
};
