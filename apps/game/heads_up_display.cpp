#include "heads_up_display.h"

#include "assets.h"
#include "failure.h"

#include <xum/render/image.h>

#include <algorithm>

namespace {

const char* const fontDirectory = "fonts/";
const char* const bitmapFont = "hud.png";
const char* const trueTypeFont = "hud.ttf";

// How the picture of the bitmap font is divided.
constexpr int cellWidth = 12;
constexpr int cellHeight = 19;
constexpr int columns = 16;
constexpr int firstCharacter = 32;

constexpr int placeNameSize = 26;   // points
constexpr int placeNameHeight = 34; // pixels
constexpr int helpHeight = 20;
constexpr int keyHelpSize = 11;
constexpr int titleSize = 54;
constexpr int helpSize = 15;
const char* const keyNames = "L lamp   B boxes   F film   H text   G walk   P picture   Esc quit";
const char* const gameKeyNames = "Tab edges   B boxes   F film   H text   P picture";

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

const std::string& find(const GameTexts& texts, const char* slot)
{
    static const std::string none;
    const auto found = texts.find(slot);
    return found == texts.end() ? none : found->second;
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
      titles(device, assets.getCaptionProgram(), provideTrueTypeFont(data), titleSize),
      helpLines(device, assets.getCaptionProgram(), provideTrueTypeFont(data), helpSize)
{
    if (!placeNames.hasFont() || !keyHelp.hasFont())
        throw Failure(ExitStatus::BrokenData, "cannot read the font " + data.getFileName(fontDirectory, trueTypeFont));
}

void HeadsUpDisplay::draw(const Vector2<int>& screenSize, const Readings& readings, const std::string& place,
                          DrawCounter& draws)
{
    drawLayer(screenSize, readings, place, keyNames, 0, draws);
}

void HeadsUpDisplay::drawOverGame(const Vector2<int>& screenSize, const Readings& readings, const std::string& place,
                                  const GameTexts& texts, DrawCounter& draws)
{
    const int scoreHeight = static_cast<int>(listScore(texts, screenSize.x - 2 * margin).size()) * font->getHeight();
    drawLayer(screenSize, readings, place, gameKeyNames, scoreHeight, draws);
}

void HeadsUpDisplay::drawLayer(const Vector2<int>& screenSize, const Readings& readings, const std::string& place,
                               const std::string& keys, int top, DrawCounter& draws)
{
    device.disable(RenderFeature::DepthTest);
    device.setBlendMode(BlendMode::Alpha);
    drawReadings(screenSize, readings, top, draws);
    const int height = keyHelp.draw(keys, screenSize, margin, keyColor, draws);
    placeNames.draw(place, screenSize, margin + height, placeColor, draws);
    device.setBlendMode(BlendMode::None);
    device.enable(RenderFeature::DepthTest);
}

void HeadsUpDisplay::drawGame(const Vector2<int>& screenSize, const GameTexts& texts, DrawCounter& draws)
{
    device.disable(RenderFeature::DepthTest);
    device.setBlendMode(BlendMode::Alpha);
    titles.draw(find(texts, "title"), screenSize, screenSize.y * 3 / 5, placeColor, draws);
    // In low windows lines stand as near to each other as they can.
    const int hintBottom = std::min(screenSize.y * 2 / 5, screenSize.y / 2 - placeNameHeight);
    placeNames.draw(find(texts, "end"), screenSize, screenSize.y / 2, placeColor, draws);
    placeNames.draw(find(texts, "hint"), screenSize, hintBottom, keyColor, draws);
    helpLines.draw(find(texts, "help"), screenSize, std::min(screenSize.y * 3 / 10, hintBottom - helpHeight), keyColor,
                   draws);
    placeNames.draw(find(texts, "message"), screenSize, screenSize.y / 4, placeColor, draws);
    helpLines.draw(find(texts, "notice"), screenSize, screenSize.y / 6, keyColor, draws);
    drawScore(screenSize, texts, draws);
    device.setBlendMode(BlendMode::None);
    device.enable(RenderFeature::DepthTest);
}

// They change all the time: the bitmap font keeps no texture of each.
void HeadsUpDisplay::drawScore(const Vector2<int>& screenSize, const GameTexts& texts, DrawCounter& draws)
{
    beginText(screenSize);
    int top = margin;
    for (const std::string& line : listScore(texts, screenSize.x - 2 * margin)) {
        const int left = screenSize.x - margin - font->measure(line, 1, 0);
        font->drawOutlined(&device, left, top, line, readingColor, false, false);
        draws.add();
        top += font->getHeight();
    }
}

std::vector<std::string> HeadsUpDisplay::listScore(const GameTexts& texts, int width) const
{
    std::vector<std::string> lines;
    for (const char* slot : {"clock", "score"})
        for (std::string& line : breakLine(find(texts, slot), width)) lines.push_back(std::move(line));
    return lines;
}

/// Parts of a line have two blanks in between: there it is broken when it is too wide.
std::vector<std::string> HeadsUpDisplay::breakLine(std::string text, int width) const
{
    const std::string between = "  ";
    std::vector<std::string> lines;
    while (!text.empty()) {
        std::size_t size = text.size();
        while (font->measure(text.substr(0, size), 1, 0) > width && size > 0) {
            const std::size_t end = text.rfind(between, size - 1);
            if (end == std::string::npos || end == 0) break;
            size = end;
        }
        lines.push_back(text.substr(0, size));
        text.erase(0, size);
        text.erase(0, std::min(text.find_first_not_of(' '), text.size()));
    }
    return lines;
}

void HeadsUpDisplay::beginText(const Vector2<int>& screenSize)
{
    device.useProgram(textProgram);
    device.setUniform("surface", textUnit)
        .setUniform("screenSize", Vector2<float>(static_cast<float>(screenSize.x), static_cast<float>(screenSize.y)));
}

void HeadsUpDisplay::drawReadings(const Vector2<int>& screenSize, const Readings& readings, int top, DrawCounter& draws)
{
    beginText(screenSize);
    top += margin;
    for (const std::string& line : describe(readings)) {
        font->drawOutlined(&device, margin, top, line, readingColor, false, false);
        draws.add();
        top += font->getHeight();
    }
}
