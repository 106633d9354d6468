#pragma once

#include "game_data.h"

#include <map>
#include <string>
#include <vector>

class SystemDevice;

/// The textures of the data directory by their names. One that is missing or broken shows as a chequered pattern.
class TextureShelf {
public:
    TextureShelf(RenderDevice& device, GameData& data, SystemDevice& files);

    Texture* get(const std::string& name);

    /// What the directory holds, in order.
    const std::vector<std::string>& getNames() const { return names; }

private:
    RenderDevice& device;
    GameData& data;
    OwnedTexture missing;
    std::map<std::string, Texture*> textures;
    std::vector<std::string> names;
};
