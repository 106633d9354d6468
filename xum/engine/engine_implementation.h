#pragma once

#include <xum/engine/engine.h>

#include <cstdint>
#include <vector>

class EngineEventImplementation final : public EngineEvent {
public:
    explicit EngineEventImplementation(EngineEventType::Type type) : type(type) {}

    unsigned getType() override { return type; }
    EngineEvent* getNext() override { return next; }
    void setNext(EngineEvent* event) { next = event; }

private:
    std::uint32_t type;
    EngineEvent* next = nullptr;
};

class EngineImplementation final : public Engine {
public:
    std::string getVersion() override;
    EngineEvent* getEvents() override;
    uint64 getTime() override;

    // The factory operations stand in device_factory.cpp.
    Window* createWindow(const std::string& title, int width, int height, bool resizable, bool fullscreen) override;
    void destroyWindow(Window* window) override;
    SystemDevice* createSystemDevice() override;
    void destroySystemDevice(SystemDevice* device) override;
    InputDevice* createInputDevice(bool relativeMouse) override;
    void destroyInputDevice(InputDevice* device) override;
    RenderDevice* createRenderDevice(Window* window, const char* name) override;
    void destroyRenderDevice(RenderDevice* device) override;
    AudioDevice* createAudioDevice() override;
    void destroyAudioDevice(AudioDevice* device) override;
    NetworkDevice* createNetworkDevice() override;
    void destroyNetworkDevice(NetworkDevice* device) override;
    ScriptingDevice* createScriptingDevice() override;
    void destroyScriptingDevice(ScriptingDevice* device) override;
    Console* createConsole() override;
    void destroyConsole(Console* console) override;
    ResourceManager* createResourceManager() override;
    void destroyResourceManager(ResourceManager* resources) override;
    Cache* createCache(ResourceManager* resources) override;
    void destroyCache(Cache* cache) override;

    bool update() override;

private:
    void advanceClock();

    static constexpr std::uint32_t noUpdateYet = 0xFFFFFFFFu;

    std::uint32_t previousTick = noUpdateYet;
    uint64 clock = 0;
    std::vector<EngineEventImplementation> events;
};
