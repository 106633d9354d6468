#include "allocation_counter.h"
#include "engine_fixtures.h"
#include "file_contents.h"
#include "font_picture.h"
#include "message_boxes.h"
#include "own_directory.h"
#include "resource_archive.h"

#include <xum/files/resource_manager.h>

#include <climits>
#include <cstring>
#include <filesystem>
#include <functional>

// How a font is made from a picture.

namespace {

constexpr int width = 128;
constexpr int height = 32;
constexpr int lastCode = 127;

int opaque(int, int)
{
    return 255;
}

class ImageFonts : public EngineFixture {
protected:
    template <class Function>
    OwnedImageFont loadPicture(int pictureWidth, int pictureHeight, Function alphaAt, const FontGrid& grid)
    {
        EXPECT_TRUE(makeFontPicture(pictureWidth, pictureHeight, alphaAt)->writeToFile("font.bmp"));
        OwnedImageFont font = loadFont(&device, "font.bmp", grid);
        EXPECT_NE(font, nullptr);
        return font;
    }

    OwnedImageFont loadOpaque(const FontGrid& grid) { return loadPicture(width, height, opaque, grid); }

    RecordingRenderDevice device;
};

/// Of a font over cells of 8 x 5 pixels in the picture of 128 x 32, all of them whole.
void expectCells(const ImageFont& font, int columns, int firstCharacter)
{
    for (int c = 33; c <= lastCode; ++c) {
        const int cell = c - firstCharacter;
        if (cell < 0) {
            EXPECT_EQ(glyphOf(font, c), (Glyph{0, 0, 0, 0, 0})) << c;
            continue;
        }
        const Glyph expected = glyphAt(cell % columns * 8, cell / columns * 5, 8, 5, width, height);
        EXPECT_EQ(glyphOf(font, c), expected) << c;
    }
}

} // namespace

TEST_F(ImageFonts, haveTheSecondCodeInTheSecondCellAndTheSeventeenthInTheSecondRow)
{
    const OwnedImageFont font = loadOpaque({});
    EXPECT_EQ(glyphOf(*font, 33), (Glyph{8, 8.5f / 128, 0.5f / 32, 15.5f / 128, 4.5f / 32}));
    EXPECT_EQ(glyphOf(*font, 48), (Glyph{8, 0.5f / 128, 5.5f / 32, 7.5f / 128, 9.5f / 32}));
    expectCells(*font, 16, 32);
}

TEST_F(ImageFonts, haveAnyNumberOfColumns)
{
    expectCells(*loadOpaque({8, 5, 7, 32, false}), 7, 32);
    expectCells(*loadOpaque({8, 5, 1, 32, false}), 1, 32);
    expectCells(*loadOpaque({8, 5, INT_MAX, 32, false}), INT_MAX, 32);
}

TEST_F(ImageFonts, startWithAnyCharacter)
{
    for (const int first : {0, 1, 33, 65, 127, 128, 1000, INT_MAX}) {
        SCOPED_TRACE(first);
        expectCells(*loadOpaque({8, 5, 16, first, false}), 16, first);
    }
}

TEST_F(ImageFonts, skipTheCellsOfNegativeCodes)
{
    expectCells(*loadOpaque({8, 5, 16, -3, false}), 16, -3);
    const OwnedImageFont font = loadOpaque({8, 5, 16, INT_MIN, false});
    for (int c = 0; c <= lastCode; ++c) EXPECT_EQ(font->getCharacterWidth(c), c == ' ' ? 3 : 8) << c;
}

TEST_F(ImageFonts, haveWidthsOfTheCodesThatTheyHold)
{
    const OwnedImageFont font = loadOpaque({8, 5, 16, 10, false});
    for (int c = -300; c < 300; ++c) {
        const int expected = c == ' ' ? 3 : c >= 10 && c <= lastCode ? 8 : 0;
        EXPECT_EQ(font->getCharacterWidth(c), expected) << c;
    }
    EXPECT_EQ(font->getCharacterWidth(INT_MIN), 0);
    EXPECT_EQ(font->getCharacterWidth(INT_MAX), 0);
}

TEST_F(ImageFonts, haveOnlyASpaceWhenTheyStartBehindTheLastCharacter)
{
    const OwnedImageFont font = loadOpaque({8, 5, 16, 128, false});
    for (int c = 0; c <= lastCode; ++c) EXPECT_EQ(font->getCharacterWidth(c), c == ' ' ? 3 : 0) << c;
}

TEST_F(ImageFonts, areOnePixelHigherThanTheirCells)
{
    EXPECT_EQ(loadOpaque({8, 5, 16, 32, false})->getHeight(), 6);
    EXPECT_EQ(loadOpaque({8, 16, 16, 32, false})->getHeight(), 17);
}

TEST_F(ImageFonts, haveFourPixelsBetweenCharacters)
{
    EXPECT_EQ(loadOpaque({8, 5, 16, 32, false})->getCharacterSpace(), 4);
}

TEST_F(ImageFonts, areTrimmedToTheColumnsWithAnyAlpha)
{
    // In the cell of '!', at 8: one faint pixel in the first row and one in the last.
    const auto alphaAt = [](int x, int y) { return (x == 8 + 2 && y == 0) || (x == 8 + 5 && y == 4) ? 1 : 0; };
    const OwnedImageFont font = loadPicture(width, height, alphaAt, {8, 5, 16, 32, true});
    EXPECT_EQ(font->getCharacterWidth('!'), 4);
    EXPECT_EQ(glyphOf(*font, '!'), (Glyph{4, 10.5f / 128, 0.5f / 32, 13.5f / 128, 4.5f / 32}));
}

TEST_F(ImageFonts, areNotTrimmedUnlessAskedTo)
{
    const auto alphaAt = [](int x, int) { return x >= 8 + 2 && x <= 8 + 5 ? 255 : 0; };
    const OwnedImageFont font = loadPicture(width, height, alphaAt, {8, 5, 16, 32, false});
    expectCells(*font, 16, 32);
}

TEST_F(ImageFonts, areTrimmedWithinTheCellAlone)
{
    // All around the cell of '!' is opaque, and in it one pixel.
    const auto alphaAt = [](int x, int y) { return x < 8 || x > 15 || y > 4 || (x == 11 && y == 2) ? 255 : 0; };
    const OwnedImageFont font = loadPicture(width, height, alphaAt, {8, 5, 16, 32, true});
    EXPECT_EQ(glyphOf(*font, '!'), glyphAt(11, 0, 1, 5, width, height));
    EXPECT_EQ(glyphOf(*font, '"'), glyphAt(16, 0, 8, 5, width, height));
    EXPECT_EQ(glyphOf(*font, '1'), glyphAt(8, 5, 8, 5, width, height)) << "below it";
}

TEST_F(ImageFonts, keepAllOfACellWhoseOuterColumnsAreVisible)
{
    const auto alphaAt = [](int x, int) { return x % 8 == 0 || x % 8 == 7 ? 255 : 0; };
    const OwnedImageFont font = loadPicture(width, height, alphaAt, {8, 5, 16, 32, true});
    expectCells(*font, 16, 32);
}

TEST_F(ImageFonts, trimAnEmptyCellToTheColumnBeforeIt)
{
    const auto alphaAt = [](int x, int y) { return x == 0 && y == 0 ? 255 : 0; };
    const OwnedImageFont font = loadPicture(width, height, alphaAt, {8, 5, 16, 32, true});
    EXPECT_EQ(glyphOf(*font, '!'), (Glyph{1, 7.5f / 128, 0.5f / 32, 7.5f / 128, 4.5f / 32}));
    EXPECT_EQ(glyphOf(*font, '0'), (Glyph{1, -0.5f / 128, 5.5f / 32, -0.5f / 128, 9.5f / 32})) << "outside the picture";
}

TEST_F(ImageFonts, takePixelsOutsideThePictureForInvisible)
{
    // One and a half cells wide, one and a fifth high.
    const OwnedImageFont font = loadPicture(12, 6, opaque, {8, 5, 3, 33, true});
    EXPECT_EQ(glyphOf(*font, 33), glyphAt(0, 0, 8, 5, 12, 6));
    EXPECT_EQ(glyphOf(*font, 34), glyphAt(8, 0, 4, 5, 12, 6)) << "its right half is outside";
    EXPECT_EQ(glyphOf(*font, 35), glyphAt(15, 0, 1, 5, 12, 6)) << "it begins to the right of the picture";
    EXPECT_EQ(glyphOf(*font, 36), glyphAt(0, 5, 8, 5, 12, 6)) << "four of its rows are outside";
    EXPECT_EQ(glyphOf(*font, 39), glyphAt(-1, 10, 1, 5, 12, 6)) << "it begins below the picture";
}

TEST_F(ImageFonts, countCellsOutsideThePictureAsWholeWhenTheyAreNotTrimmed)
{
    const OwnedImageFont font = loadPicture(12, 6, opaque, {8, 5, 3, 33, false});
    for (int c = 33; c <= lastCode; ++c)
        EXPECT_EQ(glyphOf(*font, c), glyphAt((c - 33) % 3 * 8, (c - 33) / 3 * 5, 8, 5, 12, 6)) << c;
}

TEST_F(ImageFonts, mayHaveCellsOfOnePixel)
{
    const OwnedImageFont font = loadPicture(16, 6, opaque, {1, 1, 16, 32, true});
    EXPECT_EQ(glyphOf(*font, 'A'), glyphAt(1, 2, 1, 1, 16, 6));
    EXPECT_EQ(font->getHeight(), 2);
}

TEST_F(ImageFonts, haveASpaceFivePixelsNarrowerThanACell)
{
    for (const bool trim : {false, true}) {
        for (const int first : {0, 32, 33, 127, 128}) {
            EXPECT_EQ(loadOpaque({8, 5, 16, first, trim})->getCharacterWidth(' '), 3) << first;
            EXPECT_EQ(loadOpaque({20, 5, 16, first, trim})->getCharacterWidth(' '), 15) << first;
        }
    }
}

TEST_F(ImageFonts, mayHaveASpaceOfNegativeWidth)
{
    EXPECT_EQ(loadOpaque({1, 1, 16, 32, false})->getCharacterWidth(' '), -4);
}

TEST_F(ImageFonts, sendThePictureToATextureWithoutMipmaps)
{
    const OwnedImage picture = makeFontPicture(width, height, [](int x, int y) { return x * 2 - y + 40; });
    const OwnedImageFont font =
        loadPicture(width, height, [](int x, int y) { return x * 2 - y + 40; }, {8, 5, 16, 32, true});
    ASSERT_EQ(device.textures.size(), 1u);
    const RecordingTexture& texture = device.textures.front();
    EXPECT_EQ(font->getTexture(), &texture);
    EXPECT_EQ(texture.width, width);
    EXPECT_EQ(texture.height, height);
    EXPECT_FALSE(texture.mipmaps);
    EXPECT_EQ(texture.filter, TextureFilter::Nearest);
    ASSERT_EQ(texture.pixels.size(), 4u * width * height);
    EXPECT_EQ(std::memcmp(texture.pixels.data(), picture->getPixels(), texture.pixels.size()), 0);
}

TEST_F(ImageFonts, haveTwoDynamicBuffersThatAreEmptyAtFirst)
{
    const OwnedImageFont font = loadOpaque({});
    ASSERT_EQ(device.buffers.size(), 2u);
    for (const RecordingVertexBuffer& buffer : device.buffers) {
        EXPECT_TRUE(buffer.dynamic);
        EXPECT_EQ(buffer.calls, Calls());
    }
    EXPECT_EQ(device.calls,
              (Calls{"createVertexBuffer 1", "createVertexBuffer 1", "createTexture 128 32 0", "texture 1 update"}));
}

TEST_F(ImageFonts, handEverythingBack)
{
    loadOpaque({}).reset();
    EXPECT_TRUE(device.textures.empty() && device.buffers.empty());
    EXPECT_EQ(device.formerTextures.size(), 1u);
    EXPECT_EQ(device.formerBuffers.size(), 2u);
}

TEST_F(ImageFonts, acceptNullWhenTheyAreDestroyed)
{
    destroyImageFont(&device, nullptr);
    destroyImageFont(nullptr, nullptr);
    EXPECT_EQ(device.calls, Calls());
}

TEST_F(ImageFonts, setTheFilterOfTheirTextureAfterBindingIt)
{
    const OwnedImageFont font = loadOpaque({});
    device.calls.clear();
    font->setFilter(&device, TextureFilter::Linear);
    EXPECT_EQ(device.calls, (Calls{"bindTexture 0 texture 1", "texture 1 setFilter 1"}));
    font->setFilter(nullptr, TextureFilter::Nearest);
    EXPECT_EQ(device.textures.front().filter, TextureFilter::Linear) << "nothing is done without a device";
}

TEST_F(ImageFonts, areNullForAMissingPicture)
{
    const std::size_t linesBefore = logLines().size();
    EXPECT_EQ(loadFont(&device, "missing.bmp", {}), nullptr);
    EXPECT_EQ(loadFont(&device, "", {}), nullptr);
    writeFileContents("text.bmp", "This is no picture.");
    EXPECT_EQ(loadFont(&device, "text.bmp", {}), nullptr);
    EXPECT_EQ(device.calls, Calls());
    EXPECT_TRUE(shownMessageBoxes().empty());
    EXPECT_EQ(logLines().size(), linesBefore);
}

TEST_F(ImageFonts, areNullForAPictureWithoutPixels)
{
    const std::string header("\0\0\2\0\0\0\0\0\0\0\0\0\0\0\4\0\40\0", 18); // an uncompressed TGA of 0 x 4
    writeFileContents("empty.tga", header);
    const std::unique_ptr<Image> empty(loadImage("empty.tga"));
    ASSERT_NE(empty, nullptr);
    ASSERT_EQ(empty->getWidth() * empty->getHeight(), 0);
    EXPECT_EQ(loadFont(&device, "empty.tga", {}), nullptr);
    EXPECT_EQ(device.calls, Calls());
}

TEST_F(ImageFonts, areNullForAGridThatIsNone)
{
    loadOpaque({}).reset();
    device.calls.clear();
    for (const int none : {0, -1, INT_MIN}) {
        EXPECT_EQ(loadFont(&device, "font.bmp", {8, 5, none, 32, true}), nullptr) << none;
        EXPECT_EQ(loadFont(&device, "font.bmp", {8, none, 16, 32, true}), nullptr) << none;
        EXPECT_EQ(loadFont(&device, "font.bmp", {none, 5, 16, 32, true}), nullptr) << none;
    }
    for (const int huge : {(1 << 24) + 1, INT_MAX}) {
        EXPECT_EQ(loadFont(&device, "font.bmp", {8, huge, 16, 32, true}), nullptr) << huge;
        EXPECT_EQ(loadFont(&device, "font.bmp", {huge, 5, 16, 32, true}), nullptr) << huge;
    }
    EXPECT_EQ(device.calls, Calls());
}

TEST_F(ImageFonts, mayHaveTheLargestCells)
{
    constexpr int largest = 1 << 24;
    const OwnedImageFont font = loadOpaque({largest, largest, 1, INT_MIN, true});
    EXPECT_EQ(font->getHeight(), largest + 1);
    EXPECT_EQ(font->getCharacterWidth('A'), 1) << "far outside the picture";
    EXPECT_EQ(font->getCharacterWidth(' '), largest - 5);
}

TEST_F(ImageFonts, withoutADeviceOnlyMeasure)
{
    loadOpaque({}).reset();
    const OwnedImageFont font = loadFont(nullptr, "font.bmp", {});
    ASSERT_NE(font, nullptr);
    EXPECT_EQ(font->getTexture(), nullptr);
    EXPECT_EQ(font->measure("AB", 1, 0), 8 + 4 + 8);
    font->draw(nullptr, 0, 0, "A", false, false);
    font->drawScaled(nullptr, 0, 0, "A", 2, false, false);
    font->drawColored(nullptr, 0, 0, "A", {1, 1, 1, 1}, false, false);
    font->drawOutlined(nullptr, 0, 0, "A", {1, 1, 1, 1}, false, false);
    font->setFilter(nullptr, TextureFilter::Linear);
}

TEST_F(ImageFonts, ofADeviceThatMakesNothingOnlyMeasure)
{
    device.makesResources = false;
    const OwnedImageFont font = loadOpaque({});
    EXPECT_EQ(font->getTexture(), nullptr);
    EXPECT_EQ(font->measure("AB", 1, 0), 8 + 4 + 8);
    device.calls.clear();
    font->draw(&device, 0, 0, "A", false, false);
    font->drawScaled(&device, 0, 0, "A", 2, false, false);
    font->drawColored(&device, 0, 0, "A", {1, 1, 1, 1}, false, false);
    font->drawOutlined(&device, 0, 0, "A", {1, 1, 1, 1}, false, false);
    font->setFilter(&device, TextureFilter::Linear);
    EXPECT_EQ(device.calls, Calls());
}

TEST_F(ImageFonts, areTheSameFromTheResourceManager)
{
    const auto alphaAt = [](int x, int y) { return (x + y) % 5 == 0 ? 255 : 0; };
    const OwnedImageFont fromDisk = loadPicture(width, height, alphaAt, {8, 5, 16, 32, true});
    writeFileContents("fonts.res", archive::pack({{"other", "?"}, {"fonts/small", fileContents("font.bmp")}}));
    ResourceManager* const resources = engine->createResourceManager();
    resources->addResourceFile("fonts.res");
    for (const char* name : {"fonts/small", "font.bmp"}) {
        SCOPED_TRACE(name);
        const OwnedImageFont font{loadImageFontFromMemory(&device, resources, name, 8, 5, 16, 32, true), {&device}};
        ASSERT_NE(font, nullptr);
        for (int c = 33; c <= lastCode; ++c) EXPECT_EQ(glyphOf(*font, c), glyphOf(*fromDisk, c)) << c;
        EXPECT_EQ(font->getCharacterWidth(' '), 3);
        EXPECT_EQ(font->getHeight(), 6);
        EXPECT_EQ(font->getTexture(), &device.textures.back());
        EXPECT_EQ(device.textures.back().pixels, device.textures.front().pixels);
    }
    engine->destroyResourceManager(resources);
}

TEST_F(ImageFonts, fromTheResourceManagerAreNullWithoutAPicture)
{
    loadOpaque({}).reset();
    device.calls.clear();
    ResourceManager* const resources = engine->createResourceManager();
    writeFileContents("text.bmp", "This is no picture.");
    EXPECT_EQ(loadImageFontFromMemory(&device, resources, "missing.bmp", 8, 5, 16, 32, true), nullptr);
    EXPECT_EQ(loadImageFontFromMemory(&device, resources, "text.bmp", 8, 5, 16, 32, true), nullptr);
    EXPECT_EQ(loadImageFontFromMemory(&device, resources, "font.bmp", 8, 5, 0, 32, true), nullptr);
    EXPECT_EQ(loadImageFontFromMemory(&device, nullptr, "font.bmp", 8, 5, 16, 32, true), nullptr);
    EXPECT_EQ(device.calls, Calls());
    engine->destroyResourceManager(resources);
}

TEST_F(ImageFonts, areNullAndHandEverythingBackWhenMemoryRunsOut)
{
    loadOpaque({}).reset();
    ResourceManager* const resources = engine->createResourceManager();
    const std::string name = "font.bmp";
    const std::function<ImageFont*()> loaders[] = {
        [&] { return loadImageFont(&device, name, 8, 5, 16, 32, true); },
        [&] { return loadImageFontFromMemory(&device, resources, name, 8, 5, 16, 32, true); },
    };
    for (const auto& load : loaders) {
        ImageFont* font = nullptr;
        int failures = 0;
        for (; font == nullptr; ++failures) {
            ASSERT_LT(failures, 1000);
            {
                const FailingAllocations failing(failures);
                font = load();
            }
            EXPECT_EQ(device.buffers.size(), font != nullptr ? 2u : 0u);
            EXPECT_EQ(device.textures.size(), font != nullptr ? 1u : 0u);
        }
        EXPECT_GT(failures, 4);
        destroyImageFont(&device, font);
    }
    engine->destroyResourceManager(resources);
}

TEST_F(ImageFonts, endTheProgramForAPictureOfFewerThan24Bits)
{
    const auto load = [&] { loadFont(&device, testFile("grey.png"), {}); };
    const auto loadFromMemory = [&] {
        std::filesystem::copy_file(testFile("grey.png"), "grey.png", std::filesystem::copy_options::overwrite_existing);
        ResourceManager* const resources = engine->createResourceManager();
        loadImageFontFromMemory(&device, resources, "grey.png", 8, 5, 16, 32, true);
    };
    const char* box = "\\[\\[Error\\|Only 24 and 32 bit images are supported!\\]\\]";
    EXPECT_EXIT(load(), testing::ExitedWithCode(fatalExitCode), box);
    EXPECT_EXIT(loadFromMemory(), testing::ExitedWithCode(fatalExitCode), box);
}
