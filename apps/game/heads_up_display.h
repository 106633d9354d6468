#pragma once

#include "captions.h"
#include "game_data.h"
#include "game_texts.h"
#include "readings.h"

#include <xum/render/image_font.h>

#include <memory>
#include <string>
#include <vector>

class Assets;

/// Text over the picture: readings in the upper left corner, and at the bottom the name of the place and the keys.
class HeadsUpDisplay {
public:
    /// Throws Failure, naming the file, when a font is missing or broken. Keeps the reference to the device.
    HeadsUpDisplay(RenderDevice& device, const Assets& assets, GameData& data);

    /// On the bound target of that size.
    void draw(const Vector2<int>& screenSize, const Readings& readings, const std::string& place, DrawCounter& draws);

    /// The same in a game: with its keys, and below its score.
    void drawOverGame(const Vector2<int>& screenSize, const Readings& readings, const std::string& place,
                      const GameTexts& texts, DrawCounter& draws);

    /// What a game says: the clock and the score in the upper right corner, all else in the middle.
    void drawGame(const Vector2<int>& screenSize, const GameTexts& texts, DrawCounter& draws);

private:
    struct DestroyImageFont {
        RenderDevice* device;
        void operator()(ImageFont* font) const { destroyImageFont(device, font); }
    };

    void drawLayer(const Vector2<int>& screenSize, const Readings& readings, const std::string& place,
                   const std::string& keys, int top, DrawCounter& draws);
    void drawReadings(const Vector2<int>& screenSize, const Readings& readings, int top, DrawCounter& draws);
    std::vector<std::string> listScore(const GameTexts& texts, int width) const;
    std::vector<std::string> breakLine(std::string text, int width) const;
    void beginText(const Vector2<int>& screenSize);
    void drawScore(const Vector2<int>& screenSize, const GameTexts& texts, DrawCounter& draws);

    RenderDevice& device;
    Program* textProgram;
    std::unique_ptr<ImageFont, DestroyImageFont> font;
    Captions placeNames;
    Captions keyHelp;
    Captions titles;
    Captions helpLines;
};
