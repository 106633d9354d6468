#include <xum/engine/engine_implementation.h>

#include <xum/devices/audio_device_implementation.h>
#include <xum/devices/console_implementation.h>
#include <xum/devices/input_device_implementation.h>
#include <xum/devices/network_device_implementation.h>
#include <xum/engine/log.h>
#include <xum/engine/window_implementation.h>
#include <xum/files/cache_implementation.h>
#include <xum/files/resource_manager_implementation.h>
#include <xum/lisp/lisp_scripting_device.h>
#include <xum/render/opengl/opengl_render_device.h>
#include <xum/render/software_render_device.h>

#ifdef _WIN32
#    include <xum/engine/windows_system_device.h>
using PlatformSystemDevice = WindowsSystemDevice;
#else
#    include <xum/engine/posix_system_device.h>
using PlatformSystemDevice = PosixSystemDevice;
#endif

#include <SDL_mixer.h>

#include <new>
#include <string>
#include <utility>

// The one place that names concrete devices.

namespace {

/// Null when memory runs out, for the object itself or for what its constructor allocates.
template <class Device, class... Arguments>
Device* make(Arguments&&... arguments)
{
    try {
        return new Device(std::forward<Arguments>(arguments)...);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

} // namespace

Window* EngineImplementation::createWindow(const std::string& title, int width, int height, bool resizable,
                                           bool fullscreen)
{
    return make<WindowImplementation>(title, width, height, resizable, fullscreen);
}

void EngineImplementation::destroyWindow(Window* window)
{
    delete static_cast<WindowImplementation*>(window);
}

SystemDevice* EngineImplementation::createSystemDevice()
{
    return make<PlatformSystemDevice>();
}

void EngineImplementation::destroySystemDevice(SystemDevice* device)
{
    delete static_cast<PlatformSystemDevice*>(device);
}

InputDevice* EngineImplementation::createInputDevice(bool relativeMouse)
{
    InputDevice* device = make<InputDeviceImplementation>();
    if (device != nullptr) device->setRelativeMouseMode(relativeMouse);
    return device;
}

void EngineImplementation::destroyInputDevice(InputDevice* device)
{
    delete static_cast<InputDeviceImplementation*>(device);
}

RenderDevice* EngineImplementation::createRenderDevice(Window* window, const char* name)
{
    const std::string wanted = name != nullptr ? name : "";
    if (wanted == "Software") return make<SoftwareRenderDevice>();
    if (wanted == "OpenGL") return OpenGLRenderDevice::create(window);
    error("Invalid render device (" + wanted + ")!");
}

void EngineImplementation::destroyRenderDevice(RenderDevice* device)
{
    delete device;
}

AudioDevice* EngineImplementation::createAudioDevice()
{
    return AudioDeviceImplementation::create();
}

void EngineImplementation::destroyAudioDevice(AudioDevice* device)
{
    delete static_cast<AudioDeviceImplementation*>(device);
    Mix_CloseAudio();
    Mix_Quit();
}

NetworkDevice* EngineImplementation::createNetworkDevice()
{
    return make<NetworkDeviceImplementation>();
}

void EngineImplementation::destroyNetworkDevice(NetworkDevice* device)
{
    delete static_cast<NetworkDeviceImplementation*>(device);
}

ScriptingDevice* EngineImplementation::createScriptingDevice()
{
    return make<LispScriptingDevice>();
}

void EngineImplementation::destroyScriptingDevice(ScriptingDevice* device)
{
    delete static_cast<LispScriptingDevice*>(device);
}

Console* EngineImplementation::createConsole()
{
    return make<ConsoleImplementation>();
}

void EngineImplementation::destroyConsole(Console* console)
{
    delete static_cast<ConsoleImplementation*>(console);
}

ResourceManager* EngineImplementation::createResourceManager()
{
    return make<ResourceManagerImplementation>();
}

void EngineImplementation::destroyResourceManager(ResourceManager* resources)
{
    delete static_cast<ResourceManagerImplementation*>(resources);
}

Cache* EngineImplementation::createCache(ResourceManager* resources)
{
    return make<CacheImplementation>(resources);
}

void EngineImplementation::destroyCache(Cache* cache)
{
    delete static_cast<CacheImplementation*>(cache);
}
