#pragma once

#include "game_data.h"

#include <xum/lisp/scripting_device.h>

using OwnedScripts = Owned<Engine, ScriptingDevice, &Engine::destroyScriptingDevice>;

/// The directory of scripts, among the data.
constexpr char scriptDirectory[] = "lisp/";

/// A device with the engine's base scripts, which it finds among the data. Null when memory runs out. Throws Failure,
/// naming the file, when one of them is missing: the engine would only show a box that names none.
OwnedScripts startScripts(Engine& engine, GameData& data);
