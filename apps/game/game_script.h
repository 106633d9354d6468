#pragma once

#include "game_data.h"
#include "stage.h"

#include <xum/engine/export.h>

#include <string>

class ScriptingDevice;

/// The rules, in lisp/game.lisp: the script decides, the stage does.
class GameScript {
public:
    /// Throws Failure, naming the script, when it is missing or wrong. Keeps references to the engine, the data and the
    /// stage.
    GameScript(Engine& engine, GameData& data, Stage& stage);

    /// A new game.
    void begin() { run("(begin-hunt)"); }

    /// Once a frame while a game runs. Throws Failure, with the script's words, when the rules are wrong.
    void tick(std::uint32_t milliseconds);

    bool isPlaying();

    /// Loads the rules anew; the state of the game stays. False, with the first error, when they are wrong: then what
    /// was read before the error is in force.
    bool reload(std::string& outProblem);

    /// How many bytes of the script memory, which never come back, have been used since the start.
    std::int64_t countBytes();

private:
    using OwnedScripts = Owned<Engine, ScriptingDevice, &Engine::destroyScriptingDevice>;

    static void keepLine(const char* line, void* script);
    void registerFunctions();
    void run(const char* text);

    Stage& stage;
    std::uint32_t frameMilliseconds = 0;
    std::string firstError;
    std::int64_t bytes = 0;
    OwnedScripts scripts;
};
