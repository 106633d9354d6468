#pragma once

#include "scene.h"

#include <memory>
#include <optional>

class ConfigSection;
class Terrain;

/// The land that a map brings along.
struct LevelLand {
    std::shared_ptr<const Terrain> terrain; ///< in world coordinates
    TextureName texture = TextureName::Grass;
    float repeats = 1; ///< of the texture over the whole land
};

/// From the section "terrain" of a map's second text. None when it makes no sense.
std::optional<LevelLand> readLand(const ConfigSection& section);
