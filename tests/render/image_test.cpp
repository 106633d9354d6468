#include <xum/render/image.h>

#include "picture.h"

#include <SDL.h>
#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <new>

namespace {

constexpr int largestInt = std::numeric_limits<int>::max();

struct FreeFormat {
    void operator()(SDL_PixelFormat* format) const { SDL_FreeFormat(format); }
};

std::unique_ptr<SDL_PixelFormat, FreeFormat> makeFormat(Uint32 format)
{
    return std::unique_ptr<SDL_PixelFormat, FreeFormat>(SDL_AllocFormat(format));
}

const unsigned char fourPixels[] = {1, 2, 3, 255, 4, 5, 6, 255, 7, 8, 9, 255, 10, 11, 12, 255};
const unsigned char oneTranslucent[] = {1, 2, 3, 255, 4, 5, 6, 254, 7, 8, 9, 255, 10, 11, 12, 255};

void expectEmpty(const Image& image)
{
    EXPECT_EQ(image.getWidth(), 0);
    EXPECT_EQ(image.getHeight(), 0);
    EXPECT_EQ(image.getPixel(0, 0), Pixel());
}

} // namespace

TEST(Pixel, isOpaqueBlackByDefault)
{
    EXPECT_EQ(Pixel(), (Pixel{0, 0, 0, 255}));
}

TEST(Pixel, liesInMemoryAsRedGreenBlueAlpha)
{
    const Pixel pixel{1, 2, 3, 4};
    EXPECT_EQ(std::memcmp(&pixel, "\1\2\3\4", sizeof pixel), 0);
}

TEST(Pixel, isEqualOnlyInAllChannels)
{
    const Pixel pixel{1, 2, 3, 4};
    EXPECT_TRUE(pixel == (Pixel{1, 2, 3, 4}));
    EXPECT_FALSE(pixel != (Pixel{1, 2, 3, 4}));
    for (const Pixel& other : {Pixel{9, 2, 3, 4}, Pixel{1, 9, 3, 4}, Pixel{1, 2, 9, 4}, Pixel{1, 2, 3, 9}}) {
        EXPECT_FALSE(pixel == other);
        EXPECT_TRUE(pixel != other);
    }
}

TEST(Image, hasItsDestructorAsTheOnlyVirtualOperation)
{
    static_assert(std::has_virtual_destructor_v<Image>);
}

TEST(Image, copiesRgbaPixelsWithoutLookingAtThePitch)
{
    for (const int pitch : {0, 8, 1000, -7}) {
        const Image image(2, 2, pitch, nullptr, fourPixels, false);
        EXPECT_EQ(image.getWidth(), 2);
        EXPECT_EQ(image.getHeight(), 2);
        EXPECT_EQ(std::memcmp(image.getPixels(), fourPixels, sizeof fourPixels), 0);
    }
}

TEST(Image, keepsItsRowsFromTheTopWithoutPadding)
{
    const OwnedImage image = makeImage(3, 2, [](int x, int y) {
        return Pixel{static_cast<unsigned char>(x), static_cast<unsigned char>(y), 0, 255};
    });
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 3; ++x) {
            EXPECT_EQ(&image->getPixel(x, y), image->getPixels() + y * 3 + x);
            EXPECT_EQ(image->getPixel(x, y).red, x);
            EXPECT_EQ(image->getPixel(x, y).green, y);
        }
}

TEST(Image, withoutAFormatKeepsTheAlphaFlagAsGiven)
{
    EXPECT_TRUE(Image(2, 2, 0, nullptr, fourPixels, true).hasAlpha());
    EXPECT_FALSE(Image(2, 2, 0, nullptr, fourPixels, false).hasAlpha());
    EXPECT_TRUE(Image(2, 2, 0, nullptr, oneTranslucent, true).hasAlpha());
    EXPECT_FALSE(Image(2, 2, 0, nullptr, oneTranslucent, false).hasAlpha());
}

TEST(Image, withAFormatRaisesTheAlphaFlagForATranslucentPixel)
{
    const auto format = makeFormat(SDL_PIXELFORMAT_RGBA32);
    EXPECT_TRUE(Image(2, 2, 8, format.get(), oneTranslucent, false).hasAlpha());
    EXPECT_TRUE(Image(2, 2, 8, format.get(), oneTranslucent, true).hasAlpha());
    EXPECT_FALSE(Image(2, 2, 8, format.get(), fourPixels, false).hasAlpha());
    EXPECT_TRUE(Image(2, 2, 8, format.get(), fourPixels, true).hasAlpha());
}

TEST(Image, withAFormatConvertsTheChannels)
{
    const auto format = makeFormat(SDL_PIXELFORMAT_BGRA32);
    const Image image(2, 2, 8, format.get(), oneTranslucent, false);
    EXPECT_EQ(pixelsOf(image), (std::vector<Pixel>{{3, 2, 1, 255}, {6, 5, 4, 254}, {9, 8, 7, 255}, {12, 11, 10, 255}}));
}

TEST(Image, withAFormatStartsEachRowAPitchBehindTheLast)
{
    const auto format = makeFormat(SDL_PIXELFORMAT_RGB24);
    const unsigned char rows[] = {1, 2, 3, 4, 5, 6, 99, 99, 7, 8, 9, 10, 11, 12};
    const Image image(2, 2, 8, format.get(), rows, false);
    EXPECT_EQ(pixelsOf(image), (std::vector<Pixel>{{1, 2, 3, 255}, {4, 5, 6, 255}, {7, 8, 9, 255}, {10, 11, 12, 255}}));
    EXPECT_FALSE(image.hasAlpha());
}

TEST(Image, ofASixteenBitFormatSpreadsTheChannelsOverTheByte)
{
    const auto format = makeFormat(SDL_PIXELFORMAT_ARGB1555);
    const Uint16 values[] = {0x8000 | 31 << 10, 31 << 5 | 1};
    const Image image(2, 1, 4, format.get(), reinterpret_cast<const unsigned char*>(values), false);
    EXPECT_EQ(pixelsOf(image), (std::vector<Pixel>{{255, 0, 0, 255}, {0, 255, 8, 0}}));
    EXPECT_TRUE(image.hasAlpha());
}

TEST(Image, ofNoDataIsOpaqueBlack)
{
    const auto format = makeFormat(SDL_PIXELFORMAT_RGBA32);
    for (const SDL_PixelFormat* given :
         {static_cast<const SDL_PixelFormat*>(nullptr), static_cast<const SDL_PixelFormat*>(format.get())}) {
        const Image image(2, 2, 8, given, nullptr, false);
        EXPECT_EQ(pixelsOf(image), std::vector<Pixel>(4));
        EXPECT_FALSE(image.hasAlpha());
        EXPECT_TRUE(Image(2, 2, 8, given, nullptr, true).hasAlpha());
    }
}

TEST(Image, mayHaveNoPixels)
{
    const auto format = makeFormat(SDL_PIXELFORMAT_RGB24);
    const Image image(0, 7, 0, format.get(), fourPixels, false);
    EXPECT_EQ(image.getWidth(), 0);
    EXPECT_EQ(image.getHeight(), 7);
    EXPECT_FALSE(image.hasAlpha());
    EXPECT_EQ(image.getPixel(0, 0), Pixel());
    expectEmpty(Image(0, 0, 0, nullptr, fourPixels, true));
}

TEST(Image, ofANegativeSizeIsEmpty)
{
    expectEmpty(Image(-1, 5, 0, nullptr, fourPixels, false));
    expectEmpty(Image(5, -1, 0, nullptr, fourPixels, false));
    expectEmpty(Image(-3, -3, 0, nullptr, fourPixels, false));
    expectEmpty(Image(std::numeric_limits<int>::min(), 1, 0, nullptr, nullptr, false));
}

TEST(Image, ofMorePixelsThanCanBeCountedIsEmpty)
{
    expectEmpty(Image(largestInt, largestInt, 0, nullptr, fourPixels, false));
}

#if !defined(__SANITIZE_ADDRESS__) // which ends the process for such a request

TEST(Image, ofMorePixelsThanThereIsMemoryThrows)
{
    EXPECT_THROW(Image(1 << 30, 1 << 29, 0, nullptr, fourPixels, false), std::bad_alloc);
}

#endif

TEST(Image, isCopiedWithPixelsOfItsOwn)
{
    const OwnedImage original = makePicture();
    Image copy(*original);
    EXPECT_EQ(copy.getWidth(), picture::width);
    EXPECT_EQ(copy.getHeight(), picture::height);
    EXPECT_TRUE(copy.hasAlpha());
    EXPECT_EQ(pixelsOf(copy), pixelsOf(*original));

    ASSERT_NE(copy.getPixels(), original->getPixels());
    copy.getPixels()[0] = Pixel{9, 9, 9, 9};
    EXPECT_EQ(original->getPixel(0, 0), picture::translucentColor(0, 0));
}

TEST(Image, givesItsPixelsToConstantCallersToo)
{
    const Image image(2, 2, 0, nullptr, fourPixels, false);
    static_assert(std::is_same_v<decltype(image.getPixels()), const Pixel*>);
    EXPECT_EQ(image.getPixels()[3], (Pixel{10, 11, 12, 255}));
}

TEST(Image, isOpaqueBlackOutside)
{
    const OwnedImage image = makeImage(2, 2, [](int, int) { return Pixel{1, 2, 3, 4}; });
    EXPECT_EQ(image->getPixel(1, 1), (Pixel{1, 2, 3, 4}));
    for (const int outside : {-1, 2, largestInt, std::numeric_limits<int>::min()}) {
        EXPECT_EQ(image->getPixel(outside, 0), Pixel());
        EXPECT_EQ(image->getPixel(0, outside), Pixel());
        EXPECT_EQ(image->getPixel(outside, outside), Pixel());
    }
}

TEST(ImageClone, hasTheSamePixelsInAnArrayOfItsOwn)
{
    const OwnedImage original = makePicture();
    const OwnedImage clone(original->clone());
    EXPECT_EQ(clone->getWidth(), picture::width);
    EXPECT_EQ(clone->getHeight(), picture::height);
    EXPECT_EQ(pixelsOf(*clone), pixelsOf(*original));
    EXPECT_NE(clone->getPixels(), original->getPixels());
}

TEST(ImageClone, copiesTheAlphaFlagEvenWhereThePixelsSayOtherwise)
{
    const Image opaqueButFlagged(2, 2, 0, nullptr, fourPixels, true);
    const Image translucentButUnflagged(2, 2, 0, nullptr, oneTranslucent, false);
    EXPECT_TRUE(OwnedImage(opaqueButFlagged.clone())->hasAlpha());
    EXPECT_FALSE(OwnedImage(translucentButUnflagged.clone())->hasAlpha());
}

TEST(ImageClone, ofAnEmptyImageIsEmpty)
{
    const Image empty(0, 0, 0, nullptr, nullptr, true);
    const OwnedImage clone(empty.clone());
    expectEmpty(*clone);
    EXPECT_TRUE(clone->hasAlpha());
}
