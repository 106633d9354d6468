#include <xum/render/pixel_conversion.h>

#include <xum/render/image.h>

#include "picture.h"

#include <SDL.h>
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

namespace {

// Not among them: ARGB2101010, for whose channels of ten bits SDL_GetRGBA reads outside its own tables.
const Uint32 allFormats[] = {
    SDL_PIXELFORMAT_INDEX1LSB, SDL_PIXELFORMAT_INDEX1MSB, SDL_PIXELFORMAT_INDEX4LSB, SDL_PIXELFORMAT_INDEX4MSB,
    SDL_PIXELFORMAT_INDEX8,    SDL_PIXELFORMAT_RGB332,    SDL_PIXELFORMAT_XRGB4444,  SDL_PIXELFORMAT_XBGR4444,
    SDL_PIXELFORMAT_XRGB1555,  SDL_PIXELFORMAT_XBGR1555,  SDL_PIXELFORMAT_ARGB4444,  SDL_PIXELFORMAT_RGBA4444,
    SDL_PIXELFORMAT_ABGR4444,  SDL_PIXELFORMAT_BGRA4444,  SDL_PIXELFORMAT_ARGB1555,  SDL_PIXELFORMAT_RGBA5551,
    SDL_PIXELFORMAT_ABGR1555,  SDL_PIXELFORMAT_BGRA5551,  SDL_PIXELFORMAT_RGB565,    SDL_PIXELFORMAT_BGR565,
    SDL_PIXELFORMAT_RGB24,     SDL_PIXELFORMAT_BGR24,     SDL_PIXELFORMAT_XRGB8888,  SDL_PIXELFORMAT_RGBX8888,
    SDL_PIXELFORMAT_XBGR8888,  SDL_PIXELFORMAT_BGRX8888,  SDL_PIXELFORMAT_ARGB8888,  SDL_PIXELFORMAT_RGBA8888,
    SDL_PIXELFORMAT_ABGR8888,  SDL_PIXELFORMAT_BGRA8888,
};

struct FreeFormat {
    void operator()(SDL_PixelFormat* format) const { SDL_FreeFormat(format); }
};
using Format = std::unique_ptr<SDL_PixelFormat, FreeFormat>;

struct FreePalette {
    void operator()(SDL_Palette* palette) const { SDL_FreePalette(palette); }
};

struct FreeSurface {
    void operator()(SDL_Surface* surface) const { SDL_FreeSurface(surface); }
};
using Surface = std::unique_ptr<SDL_Surface, FreeSurface>;

using Random = std::minstd_rand;

unsigned char anyByte(Random& random)
{
    return static_cast<unsigned char>(random() >> 8 & 255);
}

std::vector<unsigned char> anyBytes(Random& random, std::size_t count)
{
    std::vector<unsigned char> bytes(count);
    for (unsigned char& byte : bytes) byte = anyByte(random);
    return bytes;
}

/// A format as SDL makes it; where it has a palette, one of random colours of which some are translucent.
Format makeFormat(Uint32 name, Random& random)
{
    Format format(SDL_AllocFormat(name));
    if (!SDL_ISPIXELFORMAT_INDEXED(name)) return format;
    std::vector<SDL_Color> colors(std::size_t{1} << format->BitsPerPixel);
    for (SDL_Color& color : colors) color = {anyByte(random), anyByte(random), anyByte(random), anyByte(random)};
    const int count = static_cast<int>(colors.size());
    const std::unique_ptr<SDL_Palette, FreePalette> palette(SDL_AllocPalette(count));
    SDL_SetPaletteColors(palette.get(), colors.data(), 0, count);
    SDL_SetPixelFormatPalette(format.get(), palette.get());
    return format;
}

/// What SDL says of the pixel at `bytes`.
Pixel expectedPixel(const unsigned char* bytes, const SDL_PixelFormat& format)
{
    Uint32 value = 0; // the machine's byte order: little
    std::memcpy(&value, bytes, format.BytesPerPixel);
    Pixel pixel;
    SDL_GetRGBA(value, &format, &pixel.red, &pixel.green, &pixel.blue, &pixel.alpha);
    return pixel;
}

void expectConverted(const SDL_PixelFormat& format, int width, int height, int padding, Random& random)
{
    SCOPED_TRACE(testing::Message() << SDL_GetPixelFormatName(format.format) << ", " << width << " x " << height);
    const int pitch = width * format.BytesPerPixel + padding;
    const auto size = [](int count) { return static_cast<std::size_t>(count); };
    // The data ends with the last pixel, so that a sanitizer sees any byte read beyond it.
    const std::vector<unsigned char> data = anyBytes(random, size(pitch * height - padding));
    std::vector<Pixel> expected;
    bool isTranslucent = false;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            expected.push_back(expectedPixel(data.data() + size(y * pitch + x * format.BytesPerPixel), format));
            isTranslucent = isTranslucent || expected.back().alpha < 255;
        }
    std::vector<Pixel> converted(expected.size(), Pixel{1, 2, 3, 4});
    EXPECT_EQ(convertPixels(converted.data(), width, height, pitch, format, data.data()), isTranslucent);
    EXPECT_EQ(converted, expected);
}

void expectConvertedInManySizes(const SDL_PixelFormat& format, Random& random)
{
    for (int width = 1; width <= 19; ++width) expectConverted(format, width, 3, width % 5, random);
    expectConverted(format, 67, 5, 0, random);
    expectConverted(format, 300, 2, 8, random);
    expectConverted(format, 1, 40, 3, random);
}

Surface makeSurface(Uint32 format)
{
    return Surface(SDL_CreateRGBSurfaceWithFormat(0, 4, 3, static_cast<int>(SDL_BITSPERPIXEL(format)), format));
}

void expectColorKeyIgnored(SDL_Surface& surface)
{
    Random random(4);
    auto* pixels = static_cast<unsigned char*>(surface.pixels);
    for (int i = 0; i < surface.pitch * surface.h; ++i) pixels[i] = anyByte(random);
    std::vector<Pixel> without(12), with(12);
    const bool before = convertPixels(without.data(), 4, 3, surface.pitch, *surface.format, pixels);
    Uint32 key = 0;
    std::memcpy(&key, pixels, surface.format->BytesPerPixel);
    ASSERT_EQ(SDL_SetColorKey(&surface, SDL_TRUE, key), 0);
    EXPECT_EQ(convertPixels(with.data(), 4, 3, surface.pitch, *surface.format, pixels), before);
    EXPECT_EQ(with, without);
}

/// A format that SDL has no name for. Channels of eight bits are expected.
SDL_PixelFormat handMadeFormat(Uint8 bytes, Uint8 red, Uint8 green, Uint8 blue)
{
    SDL_PixelFormat format = {};
    format.BitsPerPixel = static_cast<Uint8>(8 * bytes);
    format.BytesPerPixel = bytes;
    format.Rmask = Uint32{0xFF} << red;
    format.Gmask = Uint32{0xFF} << green;
    format.Bmask = Uint32{0xFF} << blue;
    format.Rshift = red;
    format.Gshift = green;
    format.Bshift = blue;
    format.Aloss = 8;
    return format;
}

} // namespace

TEST(PixelConversion, agreesWithSDLInEveryFormat)
{
    Random random(1);
    for (const Uint32 name : allFormats) {
        const Format format = makeFormat(name, random);
        ASSERT_NE(format, nullptr) << SDL_GetPixelFormatName(name);
        expectConvertedInManySizes(*format, random);
    }
}

TEST(PixelConversion, yieldsTransparentBlackForIndexesOutsideThePalette)
{
    Random random(2);
    const Format format = makeFormat(SDL_PIXELFORMAT_INDEX4LSB, random); // 16 colours, a byte each
    const unsigned char data[] = {15, 16, 255};
    Pixel converted[3];
    EXPECT_TRUE(convertPixels(converted, 3, 1, 3, *format, data));
    EXPECT_EQ(converted[0], expectedPixel(data, *format));
    EXPECT_EQ(converted[1], (Pixel{0, 0, 0, 0}));
    EXPECT_EQ(converted[2], (Pixel{0, 0, 0, 0}));
}

TEST(PixelConversion, agreesWithSDLWhereChannelsCrossBytes)
{
    Random random(3);
    for (const SDL_PixelFormat& format : {handMadeFormat(4, 20, 10, 2), handMadeFormat(4, 4, 12, 24),
                                          handMadeFormat(3, 12, 4, 16), handMadeFormat(3, 16, 0, 4)})
        expectConvertedInManySizes(format, random);
}

TEST(PixelConversion, agreesWithSDLWhereOnlyAlphaIsNarrow)
{
    Random random(5);
    SDL_PixelFormat format = handMadeFormat(4, 16, 8, 0);
    format.Amask = 0x0F000000u;
    format.Ashift = 24;
    format.Aloss = 4;
    expectConvertedInManySizes(format, random);
    format = handMadeFormat(3, 0, 8, 0); // red and blue share a byte, alpha has the third
    format.Amask = 0xFF0000u;
    format.Ashift = 16;
    format.Aloss = 0;
    expectConvertedInManySizes(format, random);
}

TEST(PixelConversion, ignoresColorKeys)
{
    for (const Uint32 name : {SDL_PIXELFORMAT_INDEX8, SDL_PIXELFORMAT_RGB565, SDL_PIXELFORMAT_RGB24,
                              SDL_PIXELFORMAT_BGR24, SDL_PIXELFORMAT_ARGB8888, SDL_PIXELFORMAT_ABGR8888}) {
        SCOPED_TRACE(SDL_GetPixelFormatName(name));
        const Surface surface = makeSurface(name);
        ASSERT_NE(surface, nullptr);
        expectColorKeyIgnored(*surface);
    }
}

TEST(PixelConversion, findsOneTranslucentPixelWhereverItIs)
{
    const Format format(SDL_AllocFormat(SDL_PIXELFORMAT_BGRA32));
    for (std::size_t place = 0; place < 37 * 3; ++place) {
        std::vector<unsigned char> data(37 * 3 * 4, 255);
        std::vector<Pixel> converted(37 * 3);
        EXPECT_FALSE(convertPixels(converted.data(), 37, 3, 37 * 4, *format, data.data()));
        data[place * 4 + 3] = 254;
        EXPECT_TRUE(convertPixels(converted.data(), 37, 3, 37 * 4, *format, data.data())) << place;
    }
}

TEST(PixelConversion, ofNothingIsOpaque)
{
    const Format format(SDL_AllocFormat(SDL_PIXELFORMAT_RGB24));
    const unsigned char data[] = {0};
    EXPECT_FALSE(convertPixels(nullptr, 0, 3, 0, *format, data));
    EXPECT_FALSE(convertPixels(nullptr, 3, 0, 0, *format, data));
}

TEST(TranslucentPixel, isFoundAtEveryPlace)
{
    for (std::size_t count : {1u, 2u, 15u, 16u, 17u, 33u}) {
        std::vector<Pixel> pixels(count, Pixel{0, 0, 0, 255});
        EXPECT_FALSE(hasTranslucentPixel(pixels.data(), count));
        for (std::size_t i = 0; i < count; ++i) {
            pixels[i].alpha = 254;
            EXPECT_TRUE(hasTranslucentPixel(pixels.data(), count)) << i << " of " << count;
            EXPECT_FALSE(hasTranslucentPixel(pixels.data(), i)) << i << " of " << count;
            pixels[i].alpha = 255;
        }
    }
    EXPECT_FALSE(hasTranslucentPixel(nullptr, 0));
}
