#pragma once

#include "key_bindings.h"
#include "volume.h"

#include <xum/geometry/vector.h>

#include <string>

/// What a player chose, as the game keeps it from one time to the next.
struct GameSettings {
    static constexpr Vector2<int> smallestWindow = {160, 120};

    Vector2<int> windowSize = {1024, 768};
    bool isFullscreen = false;
    int volume = 100; ///< percent
    bool isMute = false;
    bool isFileBroken = false; ///< it has none of these, and must stay as it is
};

/// The file in the user's directory; empty when there is none.
std::string findGameSettingsFile();

/// Keys go to the bindings. What is missing or makes no sense keeps its default; each such thing is a line of the
/// problems, which name the file. A file that is no configuration at all is one problem and marked as broken: somebody
/// may want to mend it, so nothing should be written over it.
GameSettings readGameSettings(const std::string& fileName, KeyBindings& keys, std::string& outProblems);

/// The window's size and whether it covers the screen alone, which are needed before there is a device for input.
GameSettings readWindowSettings(const std::string& fileName);

/// An older file stays as it was when the new one cannot be written whole: then it is false, with what is wrong.
bool writeGameSettings(const GameSettings& settings, const KeyBindings& keys, const std::string& fileName,
                       std::string& outProblem);
