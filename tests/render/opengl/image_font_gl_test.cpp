#include "drawing_fixture.h"
#include "file_contents.h"
#include "font_pictures.h"
#include "resource_archive.h"

#include <xum/files/resource_manager.h>
#include <xum/render/image_font.h>

// What letters look like on the screen.

class ImageFontPixels : public DrawingTest {
protected:
    ImageFont* load(const Image& picture, const Cells& cells, bool trim = false)
    {
        EXPECT_TRUE(picture.writeToFile("font.bmp"));
        ImageFont* font =
            loadImageFont(device, "font.bmp", cells.width, cells.height, cells.columns, cells.first, trim);
        EXPECT_NE(font, nullptr);
        atEnd([this, font] { destroyImageFont(device, font); });
        return font;
    }

    /// Makes a program current that draws texels as they are.
    void useCopyProgram()
    {
        if (copyProgram == nullptr) copyProgram = makePixelProgram("outputColor = texture(image, coordinate);");
        usePixelProgram(copyProgram);
    }

    /// Makes a program current that draws texels in the vertex colours.
    void useColorProgram()
    {
        if (colorProgram == nullptr)
            colorProgram = makePixelProgram("outputColor = texture(image, coordinate) * passedColor;");
        usePixelProgram(colorProgram);
    }

    Program* copyProgram = nullptr;
    Program* colorProgram = nullptr;
};

namespace {

/// Which of `count` texels is shown by each of `pixels` pixels, when the first and the last edge of the pixels lie in
/// the middle of the first and the last texel.
int texelOf(int pixel, int pixels, int count)
{
    const int numerator = pixels + (2 * pixel + 1) * (count - 1);
    EXPECT_NE(numerator % (2 * pixels), 0) << "between two texels: choose another size";
    return numerator / (2 * pixels);
}

} // namespace

TEST_F(ImageFontPixels, eachPixelOnTheScreenIsOneOfThePicture)
{
    const Image picture = makeSpeckles(48, 24);
    for (const Cells& cells : {Cells{6, 5, 8, 33}, Cells{6, 6, 8, 33}, Cells{5, 7, 9, 33}, Cells{5, 8, 9, 33}})
        for (const Vector2<int>& place : {Vector2<int>(0, 0), Vector2<int>(7, 4), Vector2<int>(12, 11)}) {
            SCOPED_TRACE(::testing::Message() << cells.height << " high at " << place.x << ", " << place.y);
            makeCanvas(96, 20);
            ImageFont* font = load(picture, cells);
            useCopyProgram();
            font->draw(device, place.x, place.y, "!\"( +12", false, false);
            Image expected = makeImage(96, 20, black);
            pasteText(expected, place.x, place.y, picture, cells, "!\"( +12");
            EXPECT_TRUE(isDrawn(expected));
        }
}

TEST_F(ImageFontPixels, textMayReachBeyondTheScreen)
{
    const Image picture = makeSpeckles(48, 24);
    const Cells cells = {6, 7, 8, 33};
    makeCanvas(32, 16);
    ImageFont* font = load(picture, cells);
    useCopyProgram();
    font->draw(device, -3, -2, "!\"()*+", false, false);
    font->draw(device, 27, 12, "!", false, false);
    Image expected = makeImage(32, 16, black);
    pasteText(expected, -3, -2, picture, cells, "!\"()*+");
    pasteText(expected, 27, 12, picture, cells, "!");
    EXPECT_TRUE(isDrawn(expected));
}

TEST_F(ImageFontPixels, trimmedCharactersShowTheirVisibleColumnsAlone)
{
    // Cell by cell: first visible column, last one.
    constexpr int columns[][2] = {{0, 6}, {2, 5}, {3, 3}, {0, 0}, {6, 6}, {1, 6}};
    Image picture = makeSpeckles(21, 10);
    for (int cell = 0; cell < 6; ++cell)
        for (int y = 0; y < 5; ++y)
            for (int x = 0; x < 7; ++x) {
                const bool isVisible = x == columns[cell][0] || (x == columns[cell][1] && y == 2);
                if (!isVisible) picture.getPixels()[(cell / 3 * 5 + y) * 21 + cell % 3 * 7 + x].alpha = 0;
            }
    makeCanvas(64, 8);
    ImageFont* font = load(picture, {7, 5, 3, 'A'}, true);
    useCopyProgram();
    font->draw(device, 1, 2, "ABCDEF", false, false);
    Image expected = makeImage(64, 8, black);
    int x = 1;
    for (int cell = 0; cell < 6; ++cell) {
        const int width = columns[cell][1] - columns[cell][0] + 1;
        EXPECT_EQ(font->getCharacterWidth('A' + cell), width);
        paste(expected, x, 2, picture, cell % 3 * 7 + columns[cell][0], cell / 3 * 5, width, 5);
        x += width + 4;
    }
    EXPECT_TRUE(isDrawn(expected));
}

// The corners of a quad are the middles of a character's outermost texels, whatever its scale: these are half as wide
// as the others, and the others a little wider.
TEST_F(ImageFontPixels, scaledTextShowsTheTexelsBetweenTheMiddlesOfTheOutermost)
{
    const Image picture = makeSpeckles(48, 24);
    const Cells cells = {6, 8, 8, 33};
    for (const int scale : {2, 3}) {
        makeCanvas(80, 32);
        ImageFont* font = load(picture, cells);
        useCopyProgram();
        font->drawScaled(device, 3, 2, "!+", static_cast<float>(scale), false, false);
        Image expected = makeImage(80, 32, black);
        int left = 3;
        for (const int cell : {0, 10}) {
            for (int y = 0; y < cells.height * scale; ++y)
                for (int x = 0; x < cells.width * scale; ++x)
                    paste(expected, left + x, 2 + y, picture,
                          cell % 8 * cells.width + texelOf(x, cells.width * scale, cells.width),
                          cell / 8 * cells.height + texelOf(y, cells.height * scale, cells.height), 1, 1);
            left += (cells.width + 4) * scale;
        }
        EXPECT_TRUE(isDrawn(expected)) << scale;
    }
}

TEST_F(ImageFontPixels, centredTextHasItsMiddleAtThePlace)
{
    const Image picture = makeLetters();
    for (const char* text : {"A", "FACADE"}) // 6 and 56 wide
        for (const bool centerX : {false, true})
            for (const bool centerY : {false, true}) {
                SCOPED_TRACE(::testing::Message() << text << centerX << centerY);
                makeCanvas(100, 24);
                ImageFont* font = load(picture, letterCells);
                useCopyProgram();
                font->draw(device, 40, 11, text, centerX, centerY);
                const int width = text[1] == '\0' ? 6 : 56;
                Image expected = makeImage(100, 24, black);
                pasteText(expected, centerX ? 40 - width / 2 : 40, centerY ? 11 - 4 : 11, picture, letterCells, text);
                EXPECT_TRUE(isDrawn(expected));
            }
}

TEST_F(ImageFontPixels, scaledTextIsCentredByItsScaledSize)
{
    makeCanvas(64, 48);
    ImageFont* font = load(makeImage(18, 7, white), {6, 7, 3, 'A'});
    useCopyProgram();
    font->drawScaled(device, 32, 24, "AB", 2.0f, true, true); // 32 x 14
    Image expected = makeImage(64, 48, black);
    paste(expected, 16, 17, makeImage(12, 14, white), 0, 0, 12, 14);
    paste(expected, 36, 17, makeImage(12, 14, white), 0, 0, 12, 14);
    EXPECT_TRUE(isDrawn(expected));
}

TEST_F(ImageFontPixels, bytesAboveAsciiAreLeftOutWithAGap)
{
    const Image picture = makeLetters();
    makeCanvas(64, 16);
    ImageFont* font = load(picture, letterCells);
    useCopyProgram();
    font->draw(device, 2, 3,
               "A\x80\xff"
               "F\xe4",
               false, false);
    Image expected = makeImage(64, 16, black);
    pasteText(expected, 2, 3, picture, letterCells, "A");
    pasteText(expected, 2 + 6 + 4 + 4 + 4, 3, picture, letterCells, "F");
    EXPECT_TRUE(isDrawn(expected));
}

TEST_F(ImageFontPixels, allBytesInOneTextDrawThoseOfAscii)
{
    std::string text;
    for (int i = 0; i < 256; ++i) text += static_cast<char>(i);
    makeCanvas(1600, 8);
    ImageFont* font = load(makeImage(36, 8 * 16, white), {6, 8, 6, 33});
    useCopyProgram();
    font->draw(device, 0, 0, text, false, false);
    Image expected = makeImage(1600, 8, black);
    for (int i = 0; i < 95; ++i) // after 32 control characters without a width and the space
        paste(expected, 32 * 4 + 1 + 4 + i * 10, 0, makeImage(6, 8, white), 0, 0, 6, 8);
    EXPECT_TRUE(isDrawn(expected));
}

TEST_F(ImageFontPixels, colouredTextIsTheTextureTimesTheColour)
{
    const Image picture = makeLetters();
    makeCanvas(40, 12);
    ImageFont* font = load(picture, letterCells);
    useColorProgram();
    font->drawColored(device, 2, 1, "BE", colorOf({255, 128, 0, 255}), false, false);
    Image expected = makeImage(40, 12, black);
    pasteText(expected, 2, 1, picture, letterCells, "BE");
    for (int i = 0; i < 40 * 12; ++i) {
        Pixel& pixel = expected.getPixels()[i];
        if (pixel.red == 255) pixel = {255, 128, 0, pixel.alpha};
    }
    EXPECT_TRUE(isDrawn(expected));
}

TEST_F(ImageFontPixels, plainTextAfterColouredTextKeepsNothingOfIt)
{
    const Image picture = makeLetters();
    makeCanvas(64, 12);
    ImageFont* font = load(picture, letterCells);
    useColorProgram();
    font->drawColored(device, 0, 20, "A", colorOf(red), false, false);
    useCopyProgram();
    font->draw(device, 2, 1, "ABCDEF", false, false);
    Image expected = makeImage(64, 12, black);
    pasteText(expected, 2, 1, picture, letterCells, "ABCDEF");
    EXPECT_TRUE(isDrawn(expected));
}

TEST_F(ImageFontPixels, outlinedTextHasBlackAroundEachOfItsPixelsAndNowhereElse)
{
    const Image picture = makeLetters();
    constexpr Pixel sky{40, 80, 160, 255};
    constexpr Pixel gold{255, 200, 40, 255};
    makeCanvas(64, 14);
    ImageFont* font = load(picture, letterCells, true);
    fillCanvas(sky);
    useColorProgram();
    device->setBlendMode(BlendMode::Alpha);
    font->drawOutlined(device, 3, 2, "FACE", colorOf(gold), false, false);

    Image letters = makeImage(64, 14, black);
    int x = 3;
    for (const char c : std::string("FACE")) {
        const int cell = c - 'A';
        paste(letters, x, 2, picture, cell % 3 * 6, cell / 3 * 8, font->getCharacterWidth(c), 8);
        x += font->getCharacterWidth(c) + 4;
    }
    const auto isInk = [&](int column, int row) { return letters.getPixel(column, row) == white; };
    Image expected = makeImage(64, 14, sky);
    for (int row = 0; row < 14; ++row)
        for (int column = 0; column < 64; ++column) {
            bool isBesideInk = false;
            for (const int dy : {-1, 0, 1})
                for (const int dx : {-1, 0, 1}) isBesideInk = isBesideInk || isInk(column + dx, row + dy);
            if (isBesideInk) expected.getPixels()[row * 64 + column] = isInk(column, row) ? gold : black;
        }
    EXPECT_TRUE(isDrawn(expected));
}

TEST_F(ImageFontPixels, outlineOfTransparentTextIsAsTransparent)
{
    makeCanvas(16, 16);
    ImageFont* font = load(makeImage(6, 6, white), {6, 6, 1, 'A'});
    fillCanvas(white);
    useColorProgram();
    font->drawOutlined(device, 4, 4, "A", {0.2f, 0.4f, 0.6f, 0.8f}, false, false);
    EXPECT_EQ(drawnPicture()->getPixel(3, 3), (Pixel{0, 0, 0, 204}));
    EXPECT_EQ(drawnPicture()->getPixel(10, 10), (Pixel{0, 0, 0, 204}));
    EXPECT_EQ(drawnPicture()->getPixel(4, 4), (Pixel{51, 102, 153, 204}));
    EXPECT_EQ(drawnPicture()->getPixel(2, 4), white);
    EXPECT_EQ(drawnPicture()->getPixel(11, 4), white);
}

TEST_F(ImageFontPixels, drawsTheGoldenPictureOfAllKindsOfText)
{
    makeCanvas(96, 96);
    ImageFont* font = load(makeLetters(), letterCells, true);
    fillCanvas({60, 70, 90, 255});
    useCopyProgram();
    device->setBlendMode(BlendMode::Alpha);
    font->draw(device, 4, 3, "FACADE", false, false);
    font->drawScaled(device, 4, 14, "FACADE", 1.5f, false, false);
    font->setFilter(device, TextureFilter::Linear);
    font->drawScaled(device, 48, 38, "DEAF", 2.0f, true, true);
    font->setFilter(device, TextureFilter::Nearest);
    useColorProgram();
    font->drawColored(device, 76, 55, "ABC", {0.9f, 0.3f, 0.2f, 1}, true, false);
    font->drawColored(device, 4, 55, "DEF", {0.2f, 0.9f, 0.3f, 0.5f}, false, false);
    font->drawOutlined(device, 48, 72, "BEADED", {1, 0.8f, 0.2f, 1}, true, true);
    font->drawOutlined(device, 48, 86, "FADED", {1, 0.8f, 0.2f, 0.4f}, true, true);
    EXPECT_TRUE(isGolden("image_font"));
}

TEST_F(ImageFontPixels, filterOfTheFontIsSetAndOfNoOtherTexture)
{
    makeCanvas(16, 16);
    ImageFont* font = load(makeLetters(), letterCells);
    Texture* first = makeTexture(2, 2);
    Texture* second = makeTexture(2, 2);
    const auto filterOf = [this](Texture* texture) {
        device->bindTexture(0, texture);
        EXPECT_EQ(getTextureParameter(GL_TEXTURE_MIN_FILTER), getTextureParameter(GL_TEXTURE_MAG_FILTER));
        return getTextureParameter(GL_TEXTURE_MAG_FILTER);
    };
    EXPECT_EQ(filterOf(font->getTexture()), GL_NEAREST);
    for (const TextureFilter::Type filter : {TextureFilter::Linear, TextureFilter::Nearest}) {
        // The font's texture is on unit 0, as the device remembers, but another unit is the active one.
        device->bindTexture(0, font->getTexture());
        device->bindTexture(3, first);
        font->setFilter(device, filter);
        device->bindTexture(0, second);
        device->bindTexture(3, first);
        EXPECT_EQ(filterOf(font->getTexture()), filter == TextureFilter::Linear ? GL_LINEAR : GL_NEAREST);
        // Another texture is on unit 0.
        device->bindTexture(0, second);
        font->setFilter(device, filter);
        EXPECT_EQ(filterOf(font->getTexture()), filter == TextureFilter::Linear ? GL_LINEAR : GL_NEAREST);
        EXPECT_EQ(filterOf(first), GL_NEAREST);
        EXPECT_EQ(filterOf(second), GL_NEAREST);
    }
}

TEST_F(ImageFontPixels, drawingBindsTheFontsTextureToUnit0WhateverWasThere)
{
    const Image picture = makeLetters();
    makeCanvas(32, 12);
    ImageFont* font = load(picture, letterCells);
    useCopyProgram();
    device->bindTexture(0, makeColorTexture(red));
    device->bindTexture(5, makeColorTexture(green));
    font->draw(device, 2, 1, "AB", false, false);
    Image expected = makeImage(32, 12, black);
    pasteText(expected, 2, 1, picture, letterCells, "AB");
    EXPECT_TRUE(isDrawn(expected));
}

TEST_F(ImageFontPixels, fontFromAnArchiveDrawsAsTheOneFromDisk)
{
    const Image picture = makeLetters();
    ASSERT_TRUE(picture.writeToFile("letters.bmp"));
    writeFileContents("fonts.xum", archive::pack({{"fonts/packed.bmp", fileContents("letters.bmp")}}));
    ResourceManager* resources = engine->createResourceManager();
    ASSERT_NE(resources->addResourceFile("fonts.xum"), nullptr);
    makeCanvas(64, 12);
    ImageFont* font = loadImageFontFromMemory(device, resources, "fonts/packed.bmp", 6, 8, 3, 'A', true);
    ASSERT_NE(font, nullptr);
    useCopyProgram();
    font->draw(device, 1, 2, "FACADE", false, false);
    const std::unique_ptr<Image> packed = drawnPicture();
    EXPECT_EQ(font->measure("FACADE", 1, 0), 4 + 5 + 5 + 5 + 5 + 4 + 5 * 4);
    destroyImageFont(device, font);
    engine->destroyResourceManager(resources);

    device->clear(true, false, false);
    load(picture, letterCells, true)->draw(device, 1, 2, "FACADE", false, false);
    EXPECT_TRUE(isDrawn(*packed));
    EXPECT_EQ(packed->getPixel(1, 2), white);
}

TEST_F(ImageFontPixels, textureGoesWithTheFont)
{
    makeCanvas(16, 16);
    ASSERT_TRUE(makeLetters().writeToFile("font.bmp"));
    ImageFont* font = loadImageFont(device, "font.bmp", 6, 8, 3, 'A', false);
    useColorProgram();
    font->draw(device, 0, 0, "A", false, false);
    font->drawOutlined(device, 0, 0, "A", colorOf(red), false, false);
    const GLuint name = font->getTexture()->getHandle();
    EXPECT_EQ(glIsTexture(name), GL_TRUE);
    destroyImageFont(device, font);
    EXPECT_EQ(glIsTexture(name), GL_FALSE);
}
