#pragma once

#include "owned.h"
#include "scene.h"

#include <array>
#include <string>

/// The programs and textures of the data directory.
class Assets {
public:
    /// Throws Failure, naming the file, when one is missing or broken.
    Assets(RenderDevice& device, const std::string& dataDirectory);

    Program* getSolidProgram() const { return solidProgram.get(); }
    Program* getSkyProgram() const { return skyProgram.get(); }
    Program* getFlatProgram() const { return flatProgram.get(); }
    Texture* getTexture(TextureName name) const { return textures[static_cast<std::size_t>(name)].get(); }

private:
    OwnedProgram solidProgram;
    OwnedProgram skyProgram;
    OwnedProgram flatProgram;
    std::array<OwnedTexture, textureCount> textures;
};
