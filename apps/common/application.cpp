#include "application.h"

#include "environment.h"
#include "failure.h"

#include <xum/devices/input_device.h>
#include <xum/engine/window.h>

namespace {

// A computer without any sound is no reason not to play: the second try does without.
Engine* startEngine(bool isEditor)
{
    if (Engine* engine = initEngine(isEditor)) return engine;
    setEnvironmentVariable("SDL_AUDIODRIVER", "dummy");
    if (Engine* engine = initEngine(isEditor)) return engine;
    throw Failure(ExitStatus::NoGraphics, "the engine does not start: no usable video driver");
}

} // namespace

Application::Application(const char* title, const Vector2<int>& size, bool isEditor)
    : engine(startEngine(isEditor)), window(engine->createWindow(title, size.x, size.y, true, false), {engine.get()}),
      input(engine->createInputDevice(false), {engine.get()}), renderDevice(nullptr, {engine.get()}),
      audioDevice(engine->createAudioDevice(), {engine.get()})
{
    if (!window || !input) throw Failure(ExitStatus::NoGraphics, "not enough memory for a window");
    if (window->getHandle() == nullptr) throw Failure(ExitStatus::NoGraphics, "no window with OpenGL can be opened");
    renderDevice.reset(engine->createRenderDevice(window.get(), "OpenGL"));
    if (!renderDevice) throw Failure(ExitStatus::NoGraphics, "the window has no OpenGL 3.2");
}
