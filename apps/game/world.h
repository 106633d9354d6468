#pragma once

#include "game_data.h"
#include "scene.h"

/// Puts what the data hold into the scene: the land around the courtyard, the gatehouse, and the meshes. Throws
/// Failure, naming the file, when one is missing or broken.
void addWorld(Scene& scene, Engine& engine, GameData& data);
