#pragma once

#include "game_data.h"
#include "scene.h"

#include <string>

/// Puts what the data hold into the scene: the land around the courtyard, the gatehouse, and the meshes. Throws
/// Failure, naming the file, when one is missing or broken.
void addWorld(Scene& scene, Engine& engine, GameData& data);

/// The same for a map of somebody's own instead: with its land, its rooms, its lamps and its urns.
void addOwnMap(Scene& scene, GameData& data, const std::string& fileName);
