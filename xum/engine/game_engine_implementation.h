#pragma once

#include <xum/engine/game_engine.h>

class GameEngineImplementation final : public GameEngine {
public:
    GameEngineImplementation(Engine* engine, Window* window, SystemDevice* systemDevice, InputDevice* inputDevice);

    Engine* getEngine() override;
    Window* getWindow() override;
    SystemDevice* getSystemDevice() override;
    InputDevice* getInputDevice() override;
    bool update() override;

private:
    Engine* engine;
    Window* window;
    SystemDevice* systemDevice;
    InputDevice* inputDevice;
};
