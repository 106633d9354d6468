#include "heads_up_display.h"

#include "assets.h"
#include "failure.h"

#include <xum/render/image.h>

namespace {

const char* const fontDirectory = "fonts/";
const char* const bitmapFont = "hud.png";
const char* const trueTypeFont = "hud.ttf";

// How the picture of the bitmap font is divided.
constexpr int cellWidth = 12;
constexpr int cellHeight = 19;
constexpr int columns = 16;
constexpr int firstCharacter = 32;

constexpr int placeNameSize = 26; // points
constexpr int keyHelpSize = 11;
constexpr int titleSize = 54;
const char* const keyNames = "L lamp   B boxes   F film   H text   G walk   P picture   Esc quit";

constexpr int textUnit = 0;
constexpr int margin = 8; // pixels
constexpr Vector4<float> readingColor = {1.0f, 0.96f, 0.85f, 1.0f};
constexpr Vector3<float> placeColor = {1.0f, 0.85f, 0.5f};
constexpr Vector3<float> keyColor = {0.92f, 0.92f, 0.92f};

ImageFont* loadBitmapFont(RenderDevice& device, GameData& data)
{
    const std::string fileName = data.getFileName(fontDirectory, bitmapFont);
    if (!std::unique_ptr<Image>(loadImageFromMemory(data.read(fileName))))
        throw Failure(ExitStatus::BrokenData, "cannot decode the picture " + fileName);
    ImageFont* font = loadImageFontFromMemory(&device, &data.getResources(), fileName, cellWidth, cellHeight, columns,
                                              firstCharacter, true);
    if (font == nullptr) throw Failure(ExitStatus::NoGraphics, "not enough memory for the font " + fileName);
    return font;
}

std::string provideTrueTypeFont(GameData& data)
{
    return data.provideFile(data.getFileName(fontDirectory, trueTypeFont));
}

} // namespace

HeadsUpDisplay::HeadsUpDisplay(RenderDevice& device, const Assets& assets, GameData& data)
    : device(device), textProgram(assets.getTextProgram()), font(loadBitmapFont(device, data), {&device}),
      placeNames(device, assets.getCaptionProgram(), provideTrueTypeFont(data), placeNameSize),
      keyHelp(device, assets.getCaptionProgram(), provideTrueTypeFont(data), keyHelpSize),
      titles(device, assets.getCaptionProgram(), provideTrueTypeFont(data), titleSize)
{
    if (!placeNames.hasFont() || !keyHelp.hasFont())
        throw Failure(ExitStatus::BrokenData, "cannot read the font " + data.getFileName(fontDirectory, trueTypeFont));
}

void HeadsUpDisplay::draw(const Vector2<int>& screenSize, const Readings& readings, const std::string& place,
                          DrawCounter& draws)
{
    device.disable(RenderFeature::DepthTest);
    device.setBlendMode(BlendMode::Alpha);
    drawReadings(screenSize, readings, draws);
    const int height = keyHelp.draw(keyNames, screenSize, margin, keyColor, draws);
    placeNames.draw(place, screenSize, margin + height, placeColor, draws);
    device.setBlendMode(BlendMode::None);
    device.enable(RenderFeature::DepthTest);
}

void HeadsUpDisplay::drawGame(const Vector2<int>& screenSize, const GameTexts& texts, DrawCounter& draws)
{
    const auto find = [&](const char* slot) -> const std::string& {
        static const std::string none;
        const auto found = texts.find(slot);
        return found == texts.end() ? none : found->second;
    };
    device.disable(RenderFeature::DepthTest);
    device.setBlendMode(BlendMode::Alpha);
    titles.draw(find("title"), screenSize, screenSize.y * 3 / 5, placeColor, draws);
    placeNames.draw(find("end"), screenSize, screenSize.y / 2, placeColor, draws);
    placeNames.draw(find("message"), screenSize, screenSize.y / 4, placeColor, draws);
    placeNames.draw(find("hint"), screenSize, screenSize.y * 2 / 5, keyColor, draws);

    // These change all the time: the bitmap font keeps no texture of each.
    device.useProgram(textProgram);
    device.setUniform("surface", textUnit)
        .setUniform("screenSize", Vector2<float>(static_cast<float>(screenSize.x), static_cast<float>(screenSize.y)));
    int top = margin;
    for (const char* slot : {"clock", "score"}) {
        const std::string& text = find(slot);
        if (text.empty()) continue;
        font->drawOutlined(&device, screenSize.x - margin - font->measure(text, 1, 0), top, text, readingColor, false,
                           false);
        draws.add();
        top += font->getHeight();
    }
    device.setBlendMode(BlendMode::None);
    device.enable(RenderFeature::DepthTest);
}

void HeadsUpDisplay::drawReadings(const Vector2<int>& screenSize, const Readings& readings, DrawCounter& draws)
{
    device.useProgram(textProgram);
    device.setUniform("surface", textUnit)
        .setUniform("screenSize", Vector2<float>(static_cast<float>(screenSize.x), static_cast<float>(screenSize.y)));
    int top = margin;
    for (const std::string& line : describe(readings)) {
        font->drawOutlined(&device, margin, top, line, readingColor, false, false);
        draws.add();
        top += font->getHeight();
    }
}
