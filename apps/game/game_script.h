#pragma once

#include "base_scripts.h"
#include "stage.h"

#include <xum/engine/export.h>

#include <cstdint>
#include <string>
#include <utility>

/// The rules, in lisp/game.lisp: the script decides, the stage does.
class GameScript {
public:
    /// Throws Failure, naming the script, when it is missing or wrong. Keeps references to the engine, the data and the
    /// stage.
    GameScript(Engine& engine, GameData& data, Stage& stage);

    /// A new game. False when the rules are wrong.
    bool begin() { return run("(begin-hunt)"); }

    /// Once a frame while a game runs. False when the rules are wrong; what comes after the error is done all the same.
    bool tick(std::uint32_t milliseconds);

    bool isPlaying();

    /// Whether the rules have called (reload-rules) since the last call. They cannot be replaced while they run, so
    /// it is for the caller to do it.
    bool takeReloadWish() { return std::exchange(wantsReload, false); }

    /// Loads the rules anew; the state of the game stays. False when they are wrong: then the old ones stay.
    bool reload();

    /// The first error of the last begin, tick or reload, in the script's words; empty without any.
    const std::string& getProblem() const { return problem; }

    /// How many bytes of the script memory, which never come back, have been used since the start.
    std::int64_t countBytes();

private:
    static void keepLine(const char* line, void* user);
    void registerFunctions(ScriptingDevice* device, Stage& actingStage);
    bool tryRules();
    bool run(const char* text);

    Engine& engine;
    Stage& stage;
    std::uint32_t frameMilliseconds = 0;
    bool wantsReload = false;
    std::string firstError; ///< of what is being evaluated
    std::string problem;
    std::string lastLine; ///< that went to the log
    std::int64_t bytes = 0;
    OwnedScripts scripts;
};
