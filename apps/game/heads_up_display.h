#pragma once

#include "captions.h"
#include "game_data.h"
#include "game_texts.h"
#include "readings.h"

#include <xum/render/image_font.h>

#include <memory>

class Assets;

/// Text over the picture: readings in the upper left corner, and at the bottom the name of the place and the keys.
class HeadsUpDisplay {
public:
    /// Throws Failure, naming the file, when a font is missing or broken. Keeps the reference to the device.
    HeadsUpDisplay(RenderDevice& device, const Assets& assets, GameData& data);

    /// On the bound target of that size.
    void draw(const Vector2<int>& screenSize, const Readings& readings, const std::string& place, DrawCounter& draws);

    /// What a game says.
    void drawGame(const Vector2<int>& screenSize, const GameTexts& texts, DrawCounter& draws);

private:
    struct DestroyImageFont {
        RenderDevice* device;
        void operator()(ImageFont* font) const { destroyImageFont(device, font); }
    };

    void drawReadings(const Vector2<int>& screenSize, const Readings& readings, DrawCounter& draws);

    RenderDevice& device;
    Program* textProgram;
    std::unique_ptr<ImageFont, DestroyImageFont> font;
    Captions placeNames;
    Captions keyHelp;
    Captions titles;
};
