#pragma once

#include "game_data.h"

/// A program of the data directory. Throws Failure, naming the file, when it or one of its shaders is missing or
/// broken; the cache would end the program for it, or draw nothing.
Program* loadProgram(RenderDevice& device, GameData& data, const std::string& name);
