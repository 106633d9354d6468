#pragma once

#include <xum/geometry/vector.h>

#include <optional>
#include <string>

struct EditorOptions {
    std::string mapFile;       ///< empty: a new map
    std::string dataDirectory; ///< ends with '/'
    std::string settingsFile;  ///< empty: the user's own
    std::string gameProgram;   ///< empty: beside the editor
    std::string playFile;      ///< a session to play; empty: none
    std::string recordFile;    ///< where to write a session; empty: nowhere
    std::string pictureFile;   ///< of the last frame of a session; empty: none
    std::optional<Vector2<int>> size;
};

/// Nullopt when the program is to end with that status: after --help, or with a message about the arguments.
std::optional<EditorOptions> readOptions(int argumentCount, const char* const* arguments, int& outStatus);
