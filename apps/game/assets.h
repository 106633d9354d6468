#pragma once

#include "game_data.h"
#include "scene.h"

#include <array>

class Program;
class Texture;

/// The programs and textures, which the data's cache owns.
class Assets {
public:
    /// Throws Failure, naming the file, when one is missing or broken.
    Assets(RenderDevice& device, GameData& data);

    Program* getSolidProgram() const { return solidProgram; }
    Program* getSkyProgram() const { return skyProgram; }
    Program* getFlatProgram() const { return flatProgram; }
    Program* getPictureProgram() const { return pictureProgram; }
    Program* getFilmProgram() const { return filmProgram; }
    Program* getHaloProgram() const { return haloProgram; }
    Program* getTextProgram() const { return textProgram; }
    Program* getCaptionProgram() const { return captionProgram; }
    Texture* getTexture(TextureName name) const { return textures[static_cast<std::size_t>(name)]; }

private:
    Program* solidProgram;
    Program* skyProgram;
    Program* flatProgram;
    Program* pictureProgram;
    Program* filmProgram;
    Program* textProgram;
    Program* captionProgram;
    Program* haloProgram;
    std::array<Texture*, textureCount> textures = {};
};
