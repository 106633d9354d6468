#include <xum/engine/game_engine_implementation.h>

#include <xum/engine/engine.h>

#include <new>

GameEngineImplementation::GameEngineImplementation(Engine* engine, Window* window, SystemDevice* systemDevice,
                                                   InputDevice* inputDevice)
    : engine(engine), window(window), systemDevice(systemDevice), inputDevice(inputDevice)
{}

Engine* GameEngineImplementation::getEngine()
{
    return engine;
}

Window* GameEngineImplementation::getWindow()
{
    return window;
}

SystemDevice* GameEngineImplementation::getSystemDevice()
{
    return systemDevice;
}

InputDevice* GameEngineImplementation::getInputDevice()
{
    return inputDevice;
}

bool GameEngineImplementation::update()
{
    return engine->update();
}

GameEngine* initGameEngine(bool editor)
{
    Engine* engine = initEngine(editor);
    if (engine == nullptr) return nullptr;
    Window* window = engine->createWindow("Game", 1024, 768, editor, false);
    SystemDevice* systemDevice = engine->createSystemDevice();
    InputDevice* inputDevice = engine->createInputDevice(false);
    return new (std::nothrow) GameEngineImplementation(engine, window, systemDevice, inputDevice);
}

void shutdownGameEngine(GameEngine* game)
{
    if (game == nullptr) return;
    shutdownEngine(game->getEngine());
    delete static_cast<GameEngineImplementation*>(game);
}
