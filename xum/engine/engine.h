#pragma once

/// @file
/// The engine object, its window events, and how a host starts and ends it.

#include <xum/engine/export.h>

#include <string>

class AudioDevice;
class Cache;
class Console;
class InputDevice;
class NetworkDevice;
class RenderDevice;
class ResourceManager;
class ScriptingDevice;
class SystemDevice;
class Window;

/// What EngineEvent::getType returns.
namespace EngineEventType {
/// What has become of a window.
enum Type : unsigned {
    WindowRestored = 0,  ///< it has its usual size again, after it was minimised or maximised
    WindowMinimized = 1, ///< it is out of sight: a host may stop drawing
    WindowClosed = 2,    ///< the user asks to close a window
};
}

/// A window event of the current frame. Slot order is ABI.
class XUM_API EngineEvent {
public:
    /// One of EngineEventType.
    virtual unsigned getType() = 0;

    /// The event that arrived next in the same frame; null for the last. Valid until the next Engine::update.
    virtual EngineEvent* getNext() = 0;

protected:
    ~EngineEvent() = default;
};

/// The engine: it pumps the operating system's events, keeps the clock, and makes and unmakes devices. It keeps no
/// device: the host owns what a create operation returns and hands it back to the matching destroy operation before
/// shutdownEngine. A good order is cache, scripting device, render device, audio device, resource manager, input
/// device, window. Every destroy operation accepts null; every create operation returns null when memory runs out.
///
/// Everything runs on the thread that created the window. Host and library exchange standard C++ types, so both must be
/// built with the same C++ library and compiler family. Slot order is ABI.
class XUM_API Engine {
public:
    /// "xum-engine 0.1 (build 0001)".
    virtual std::string getVersion() = 0;

    /// The first window event of the current frame, linked to the others in order of arrival; null when there are none.
    /// Valid until the next update.
    virtual EngineEvent* getEvents() = 0;

    /// The engine clock in milliseconds: the time between the first and the latest successful update.
    virtual uint64 getTime() = 0;

    /// Opens a window centred on the screen, width x height in screen units. fullscreen (at the desktop's resolution)
    /// wins over resizable. Never null for want of a display: a window that could not be opened has a null handle.
    virtual Window* createWindow(const std::string& title, int width, int height, bool resizable, bool fullscreen) = 0;
    /// Destroy its render devices first.
    virtual void destroyWindow(Window* window) = 0;

    /// A system device has no state: one does for all of the host.
    /// @{
    virtual SystemDevice* createSystemDevice() = 0;
    virtual void destroySystemDevice(SystemDevice* device) = 0;
    /// @}

    /// Opens all joysticks, starts text input and sets the mouse mode (see InputDevice::setRelativeMouseMode).
    virtual InputDevice* createInputDevice(bool relativeMouse) = 0;
    /// Closes the joysticks. What keys are down stays known.
    virtual void destroyInputDevice(InputDevice* device) = 0;

    /// "OpenGL" makes a device with a context of its own on the window; null, with a log line, when the window has no
    /// handle or no OpenGL context can be made. "Software" makes an inert device and needs no window. Any other name
    /// ("Direct3D" included, and letter case matters) is a fatal error: "Invalid render device (NAME)!".
    virtual RenderDevice* createRenderDevice(Window* window, const char* name) = 0;
    /// Destroy all that it made first.
    virtual void destroyRenderDevice(RenderDevice* device) = 0;

    /// Opens the mixer: 44100 hertz, 16 bits, stereo, 64 channels. Null, without a message, when that fails: there is
    /// no sound card, for example.
    virtual AudioDevice* createAudioDevice() = 0;

    /// Closes the mixer, also when the device is null. Of two devices the second one destroyed closes it.
    virtual void destroyAudioDevice(AudioDevice* device) = 0;

    /// The place for networking: the device makes nothing yet.
    /// @{
    virtual NetworkDevice* createNetworkDevice() = 0;
    virtual void destroyNetworkDevice(NetworkDevice* device) = 0;
    /// @}

    /// Loads the base scripts, see ScriptingDevice::loadBaseScripts.
    virtual ScriptingDevice* createScriptingDevice() = 0;

    /// All definitions of its scripts are lost, also functions of the host's.
    virtual void destroyScriptingDevice(ScriptingDevice* device) = 0;

    /// The place for a console: it is closed at first.
    /// @{
    virtual Console* createConsole() = 0;
    virtual void destroyConsole(Console* console) = 0;
    /// @}

    /// Has no archives at first; without any it loads plain files.
    virtual ResourceManager* createResourceManager() = 0;

    /// Closes its archives. Destroy the caches over it first.
    virtual void destroyResourceManager(ResourceManager* resources) = 0;

    /// The cache reads through the resource manager, which must outlive it and may be the host's own.
    virtual Cache* createCache(ResourceManager* resources) = 0;
    /// Releases all that it loaded: the devices that it loaded through must still be there.
    virtual void destroyCache(Cache* cache) = 0;

    /// The frame pump, called once a frame from the thread that created the window: forgets the last frame's events and
    /// key changes, translates all waiting system events into key states and EngineEvents, and advances the clock.
    /// False when the user asked to quit: the events behind the quit stay queued and the clock stands still.
    virtual bool update() = 0;

protected:
    ~Engine() = default;
};

// Found by name by hosts that load the library at run time, hence without C++ name mangling.
extern "C" {

/// Starts the platform libraries and returns the engine; null when one of them does not start. A later failure than
/// SDL's own is logged: "Could not initialize SDL_Net!" and so on. Only one engine is meant to exist at a time.
/// `editor` is written to the log and decides whether initGameEngine makes a resizable window.
XUM_API Engine* initEngine(bool editor);

/// Frees the engine and shuts the platform libraries down, these also for null. Destroy all devices first.
XUM_API void shutdownEngine(Engine* engine);
}
