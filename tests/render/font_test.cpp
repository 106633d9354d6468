#include <xum/render/font.h>

#include "allocation_counter.h"
#include "engine_fixtures.h"
#include "file_contents.h"
#include "golden_picture.h"
#include "message_boxes.h"
#include "picture.h"
#include "recording_render_device.h"

#include <SDL_ttf.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

// Text in a TrueType font, compared with what SDL_ttf makes of it by itself.

namespace {

struct DestroyFont {
    void operator()(Font* font) const { destroyFont(font); }
};

using OwnedFont = std::unique_ptr<Font, DestroyFont>;

struct Destroy {
    void operator()(SDL_Surface* surface) const { SDL_FreeSurface(surface); }
    void operator()(TTF_Font* font) const { TTF_CloseFont(font); }
};

using Surface = std::unique_ptr<SDL_Surface, Destroy>;
using Handle = std::unique_ptr<TTF_Font, Destroy>;

constexpr const char* fontFile = XUM_TEST_FONT;

/// The largest piece that SDL was asked for.
std::atomic<std::size_t> largestPiece = 0;
SDL_malloc_func plainMalloc;
SDL_calloc_func plainCalloc;
SDL_realloc_func plainRealloc;
SDL_free_func plainFree;

void noticePiece(std::size_t size)
{
    if (size > largestPiece) largestPiece = size;
}

void* SDLCALL noticingMalloc(std::size_t size)
{
    noticePiece(size);
    return plainMalloc(size);
}

void* SDLCALL noticingCalloc(std::size_t count, std::size_t size)
{
    noticePiece(count * size);
    return plainCalloc(count, size);
}

void* SDLCALL noticingRealloc(void* memory, std::size_t size)
{
    noticePiece(size);
    return plainRealloc(memory, size);
}

} // namespace

class Fonts : public EngineFixture {
protected:
    void SetUp() override
    {
        EngineFixture::SetUp();
        shownMessageBoxes().clear();
        font = load(16);
        reference.reset(TTF_OpenFont(fontFile, 16));
        ASSERT_TRUE(font && reference);
    }

    void TearDown() override
    {
        font.reset(); // before SDL_ttf is shut down
        reference.reset();
        EngineFixture::TearDown();
    }

    static OwnedFont load(int pointSize, const std::string& fileName = fontFile)
    {
        return OwnedFont(loadFont(fileName, pointSize));
    }

    /// What was rendered; the texture is handed back. Empty when there was none.
    Image renderedImage(const std::string& text, Font* with = nullptr)
    {
        Texture* texture = (with != nullptr ? with : font.get())->render(&device, text);
        if (texture == nullptr) return {0, 0, 0, nullptr, nullptr, false};
        const std::unique_ptr<Image> image(texture->toImage(false));
        device.destroyTexture(texture);
        return *image;
    }

    /// As that file, which is no font.
    void expectRefusal(const std::string& fileName, int pointSize = 16)
    {
        SCOPED_TRACE(fileName);
        shownMessageBoxes().clear();
        ::testing::internal::CaptureStdout();
        const OwnedFont refused = load(pointSize, fileName);
        const std::string output = ::testing::internal::GetCapturedStdout();
        EXPECT_FALSE(refused);
        EXPECT_EQ(output, std::string("TTF_OpenFont: ") + SDL_GetError() + "\n");
        EXPECT_EQ(std::count(output.begin(), output.end(), '\n'), 1);
        EXPECT_GT(output.size(), std::strlen("TTF_OpenFont: \n")) << "no reason is given";
        ASSERT_EQ(shownMessageBoxes().size(), 1U);
        EXPECT_EQ(shownMessageBoxes()[0].title, "Warning");
        EXPECT_EQ(shownMessageBoxes()[0].text, "Could not load font (" + fileName + ")!");
        EXPECT_EQ(logLines().back(), "WARNING: Could not load font (" + fileName + ")!");
    }

    RecordingRenderDevice device;
    OwnedFont font;
    Handle reference; // of the same size
};

TEST_F(Fonts, measureWhatSdlTtfMeasures)
{
    for (const char* text : {"A", "Hello, world!", "AVAVAV", "fi ffi", "   ", "\xe4\xf6\xfc\xdf", "\x01\n\x7f"}) {
        int width = 0;
        int height = 0;
        ASSERT_EQ(TTF_SizeText(reference.get(), text, &width, &height), 0);
        EXPECT_GT(width, 0);
        EXPECT_EQ(font->measure(text).x, width) << text;
        EXPECT_EQ(font->measure(text).y, height) << text;
    }
}

TEST_F(Fonts, measureNoTextAsNoWidthAndTheHeightOfALine)
{
    EXPECT_EQ(font->measure(""), Vector2<int>(0, 19));
    EXPECT_EQ(font->measure("Ag").y, 19);
}

// With SDL_ttf's own copy of it on the stack no usual stack would be large enough.
TEST_F(Fonts, measureTextOfMillionsOfBytes)
{
    EXPECT_EQ(font->measure(std::string(5000000, '\xff')).y, 19);
}

TEST_F(Fonts, renderTheSizeThatTheyMeasure)
{
    for (const char* text : {"i", "Hello, world!", "jQ|", " ", "\xc4\xe9"}) {
        const Image image = renderedImage(text);
        EXPECT_EQ(Vector2<int>(image.getWidth(), image.getHeight()), font->measure(text)) << text;
    }
}

TEST_F(Fonts, makeOneTextureWithoutMipmapsAndUpdateItOnce)
{
    Texture* texture = font->render(&device, "Ag");
    const Vector2<int> size = font->measure("Ag");
    EXPECT_EQ(device.calls,
              (std::vector<std::string>{"createTexture " + std::to_string(size.x) + " " + std::to_string(size.y) + " 0",
                                        "texture 1 update"}));
    device.destroyTexture(texture);
}

TEST_F(Fonts, textIsWhiteEverywhere)
{
    for (const Pixel& pixel : pixelsOf(renderedImage("White, not pre-multiplied.")))
        ASSERT_EQ((Pixel{pixel.red, pixel.green, pixel.blue, 255}), (Pixel{255, 255, 255, 255}));
}

TEST_F(Fonts, alphaIsWhatSdlTtfCoversWhateverThePaddingOfItsRows)
{
    int padded = 0;
    std::string text;
    for (const char c : std::string("Whatever the width is.")) {
        text += c;
        const Surface surface(TTF_RenderText_Blended(reference.get(), text.c_str(), {255, 255, 255, 255}));
        ASSERT_TRUE(surface);
        if (surface->pitch != 4 * surface->w) ++padded;
        const Image image = renderedImage(text);
        ASSERT_EQ(image.getWidth(), surface->w);
        ASSERT_EQ(image.getHeight(), surface->h);
        for (int y = 0; y < surface->h; ++y) {
            const auto* row = static_cast<const unsigned char*>(surface->pixels) + y * surface->pitch;
            for (int x = 0; x < surface->w; ++x) {
                Uint32 value = 0;
                std::memcpy(&value, row + 4 * x, 4);
                Pixel expected;
                SDL_GetRGBA(value, surface->format, &expected.red, &expected.green, &expected.blue, &expected.alpha);
                ASSERT_EQ(image.getPixel(x, y), expected) << text << ": " << x << ", " << y;
            }
        }
    }
    EXPECT_GT(padded, 0) << "no row was padded: nothing was shown";
}

TEST_F(Fonts, coverageReachesFromNothingToAll)
{
    const std::vector<Pixel> pixels = pixelsOf(renderedImage("O"));
    const auto has = [&](auto condition) { return std::any_of(pixels.begin(), pixels.end(), condition); };
    EXPECT_TRUE(has([](const Pixel& pixel) { return pixel.alpha == 0; }));
    EXPECT_TRUE(has([](const Pixel& pixel) { return pixel.alpha > 64 && pixel.alpha < 192; }));
    EXPECT_TRUE(has([](const Pixel& pixel) { return pixel.alpha > 240; }));
}

TEST_F(Fonts, drawsTheGoldenPictureOfALine)
{
    EXPECT_TRUE(matchesGoldenPicture("font", renderedImage("Xum \xc4rger, 4\xbd \xa9 (jg)")));
}

TEST_F(Fonts, bytesAbove127AreLatin1Letters)
{
    const Surface surface(TTF_RenderUTF8_Blended(reference.get(), "\u00e4\u00ff\u0080", {255, 255, 255, 255}));
    ASSERT_TRUE(surface);
    const Image image = renderedImage("\xe4\xff\x80");
    EXPECT_EQ(image.getWidth(), surface->w);
    EXPECT_NE(pixelsOf(image), pixelsOf(renderedImage("a\xff\x80")));
    EXPECT_NE(font->measure("\xc3\xa4"), font->measure("\xe4")) << "UTF-8 is two letters";
    for (int code = 128; code < 256; ++code) {
        int width = 0;
        TTF_SizeText(reference.get(), std::string(1, static_cast<char>(code)).c_str(), &width, nullptr);
        EXPECT_EQ(font->measure(std::string(1, static_cast<char>(code))).x, width) << code;
    }
}

TEST_F(Fonts, textEndsAtTheFirstNul)
{
    const std::string text("ab\0cd", 5);
    EXPECT_EQ(font->measure(text), font->measure("ab"));
    EXPECT_EQ(pixelsOf(renderedImage(text)), pixelsOf(renderedImage("ab")));
    EXPECT_EQ(pixelsOf(renderedImage(text + std::string(20000, 'W'))), pixelsOf(renderedImage("ab")));
    EXPECT_EQ(font->render(&device, std::string("\0ab", 3)), nullptr);
}

TEST_F(Fonts, eachRenderingIsATextureOfItsOwn)
{
    Texture* first = font->render(&device, "one");
    Texture* second = font->render(&device, "one");
    ASSERT_TRUE(first != nullptr && second != nullptr);
    EXPECT_NE(first, second);
    device.destroyTexture(first);
    EXPECT_EQ(second->getWidth(), font->measure("one").x);
    device.destroyTexture(second);
}

TEST_F(Fonts, textureOutlivesItsFont)
{
    Texture* texture = font->render(&device, "late");
    const Vector2<int> measured = font->measure("late");
    font.reset();
    EXPECT_EQ(Vector2<int>(texture->getWidth(), texture->getHeight()), measured);
    device.destroyTexture(texture);
}

TEST_F(Fonts, emptyTextRendersNothing)
{
    EXPECT_EQ(font->render(&device, ""), nullptr);
    EXPECT_TRUE(device.calls.empty());
}

TEST_F(Fonts, nothingIsRenderedWithoutADevice)
{
    EXPECT_EQ(font->render(nullptr, "text"), nullptr);
}

TEST_F(Fonts, inertDeviceMakesNoTexture)
{
    RenderDevice* inert = engine->createRenderDevice(nullptr, "Software");
    ASSERT_NE(inert, nullptr);
    EXPECT_EQ(font->render(inert, "text"), nullptr);
    engine->destroyRenderDevice(inert);
}

TEST_F(Fonts, textWiderThanAnyTextureIsRefusedBeforeItIsDrawn)
{
    SDL_GetMemoryFunctions(&plainMalloc, &plainCalloc, &plainRealloc, &plainFree);
    ASSERT_EQ(SDL_SetMemoryFunctions(noticingMalloc, noticingCalloc, noticingRealloc, plainFree), 0);
    takeLargestAllocation();
    // The last ones are so wide that 64ths of pixels cannot be counted in an int: SDL_ttf would measure anything.
    for (const std::size_t length : {10000UL, 1000000UL, 3000000UL, 10000000UL})
        for (const char c : {'i', 'M', '\xff'})
            EXPECT_EQ(font->render(&device, std::string(length, c)), nullptr) << length << c;
    ASSERT_EQ(SDL_SetMemoryFunctions(plainMalloc, plainCalloc, plainRealloc, plainFree), 0);
    EXPECT_LE(largestPiece, 1000000U) << "of SDL";
    EXPECT_LE(takeLargestAllocation(), 20000001U) << "a copy of the longest text may be made";
    EXPECT_TRUE(device.calls.empty());
}

TEST_F(Fonts, textNearlyAsWideAsATextureIsRendered)
{
    const std::string text(8000, 'i');
    const Vector2<int> measured = font->measure(text);
    ASSERT_GT(measured.x, 30000);
    ASSERT_LE(measured.x, 32768);
    EXPECT_EQ(renderedImage(text).getWidth(), measured.x);
}

TEST_F(Fonts, missingFileIsWarnedOf)
{
    expectRefusal("none.ttf");
    expectRefusal("nowhere/none.ttf");
    expectRefusal("");
}

TEST_F(Fonts, fileThatIsNoFontIsWarnedOf)
{
    writeFileContents("text.ttf", "not a font, but long enough to look for one in it: " + std::string(2000, 'x'));
    writeFileContents("empty.ttf", "");
    writeFileContents("short.ttf", fileContents(fontFile).substr(0, 1000));
    for (const char* name : {"text.ttf", "empty.ttf", "short.ttf"}) expectRefusal(name);
}

TEST_F(Fonts, directoryIsWarnedOf)
{
    expectRefusal(".");
}

TEST_F(Fonts, nameWithANulOpensNoOtherFile)
{
    ::testing::internal::CaptureStdout();
    const OwnedFont refused = load(16, std::string(fontFile) + '\0' + ".ttf");
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "TTF_OpenFont: a file name cannot hold a NUL\n");
    EXPECT_FALSE(refused);
    ASSERT_EQ(shownMessageBoxes().size(), 1U);
    EXPECT_EQ(shownMessageBoxes()[0].text, std::string("Could not load font (") + fontFile);
}

TEST_F(Fonts, fontThatOpensSaysNothing)
{
    ::testing::internal::CaptureStdout();
    const std::size_t lines = logLines().size();
    EXPECT_TRUE(load(12));
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(logLines().size(), lines);
    EXPECT_TRUE(shownMessageBoxes().empty());
}

TEST_F(Fonts, sizeIsInPoints)
{
    EXPECT_EQ(load(8)->measure("").y, 10);
    EXPECT_EQ(load(32)->measure("").y, 38);
    const int small = font->measure("Hello, world!").x;
    EXPECT_NEAR(load(32)->measure("Hello, world!").x, 2 * small, 8);
}

TEST_F(Fonts, sizesBelowOnePointAreOnePoint)
{
    for (const int size : {0, -1, -1000}) {
        const OwnedFont tiny = load(size);
        ASSERT_TRUE(tiny) << size;
        EXPECT_EQ(tiny->measure("Hello, world!"), load(1)->measure("Hello, world!")) << size;
        EXPECT_EQ(renderedImage("Hello", tiny.get()).getWidth(), tiny->measure("Hello").x);
    }
}

TEST_F(Fonts, sizeThatNoFontCanHaveIsWarnedOf)
{
    expectRefusal(fontFile, 100000);
}

TEST_F(Fonts, lettersLargerThanAnyTextureAreRefused)
{
    const OwnedFont large = load(32767);
    ASSERT_TRUE(large);
    EXPECT_GT(large->measure("i").y, 32768);
    EXPECT_EQ(large->render(&device, "i"), nullptr);
    EXPECT_EQ(large->render(&device, std::string(100000, 'W')), nullptr);
    EXPECT_TRUE(device.calls.empty());
}

TEST_F(Fonts, twoSizesOfOneFileAreIndependent)
{
    const OwnedFont large = load(40);
    const Vector2<int> before = font->measure("both");
    EXPECT_GT(large->measure("both").x, before.x);
    EXPECT_EQ(renderedImage("both").getWidth(), before.x);
    EXPECT_EQ(renderedImage("both", large.get()).getWidth(), large->measure("both").x);
}

TEST_F(Fonts, destroyingNoneDoesNothing)
{
    destroyFont(nullptr);
}

TEST_F(Fonts, loadingWithoutMemoryGivesNull)
{
    const std::string name = fontFile;
    for (int successes = 0; successes < 100; ++successes) {
        Font* loaded = nullptr;
        {
            const FailingAllocations failing(successes);
            loaded = loadFont(name, 16);
        }
        if (OwnedFont(loaded)) return;
    }
    FAIL() << "never enough memory";
}

TEST_F(Fonts, renderingWithoutMemoryGivesNullAndLosesNoTexture)
{
    const std::string text = "a text that no short string holds";
    for (int successes = 0; successes < 100; ++successes) {
        Texture* texture = nullptr;
        {
            const FailingAllocations failing(successes);
            texture = font->render(&device, text);
        }
        if (texture == nullptr) continue;
        EXPECT_GT(successes, 0);
        device.destroyTexture(texture);
        return;
    }
    FAIL() << "never enough memory";
}
