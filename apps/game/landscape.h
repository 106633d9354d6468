#pragma once

#include "game_data.h"

#include <xum/geometry/terrain.h>

#include <memory>

class ScriptingDevice;

/// The land around the courtyard, 240 units wide and deep. Its shape is the affair of the script lisp/landscape.lisp:
/// the function (ground-height x y) gives the height of a point. Throws Failure, naming the script, when it is missing
/// or wrong.
std::unique_ptr<Terrain> makeLandscape(Engine& engine, GameData& data);
