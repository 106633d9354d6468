#include <xum/render/image_header.h>

#include "picture_bytes.h"

#include <SDL.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string_view>

namespace {

bool isBelievable(const Bytes& bytes)
{
    SDL_RWops* source = SDL_RWFromConstMem(bytes.data(), static_cast<int>(bytes.size()));
    const bool result = isImageHeaderBelievable(source);
    SDL_RWclose(source);
    return result;
}

/// The same header at the start of a file of `size` bytes.
bool isBelievableInFileOf(Bytes bytes, std::size_t size)
{
    bytes.resize(size);
    return isBelievable(bytes);
}

} // namespace

TEST(ImageHeader, allowsTwoToThe28Pixels)
{
    EXPECT_FALSE(isTooLargeToDecode(1 << 14, 1 << 14));
    EXPECT_TRUE(isTooLargeToDecode((1 << 14) + 1, 1 << 14));
    EXPECT_TRUE(isTooLargeToDecode(1 << 14, (1 << 14) + 1));
    EXPECT_FALSE(isTooLargeToDecode(1, 1 << 28));
    EXPECT_TRUE(isTooLargeToDecode(1, (1 << 28) + 1));
    EXPECT_FALSE(isTooLargeToDecode(1 << 28, 1));
    EXPECT_TRUE(isTooLargeToDecode((1 << 28) + 1, 1));
}

TEST(ImageHeader, countsPixelsWithoutOverflow)
{
    const std::int64_t largest = std::numeric_limits<std::int64_t>::max();
    EXPECT_TRUE(isTooLargeToDecode(largest, largest));
    EXPECT_TRUE(isTooLargeToDecode(std::int64_t{1} << 32, std::int64_t{1} << 32));
    EXPECT_FALSE(isTooLargeToDecode(0, largest));
    EXPECT_FALSE(isTooLargeToDecode(largest, 0));
}

TEST(ImageHeader, leavesUnknownFormatsToTheDecoder)
{
    EXPECT_TRUE(isBelievable({0xFF}));
    EXPECT_TRUE(isBelievable(Bytes(100, 'x')));
    EXPECT_TRUE(isBelievable({'R', 'I', 'F', 'F', '9', 'a', 255, 255, 255, 255}));
}

TEST(ImageHeader, leavesASourceWithoutALengthToTheDecoder)
{
    const Bytes png = pngOfSize(60000, 60000);
    SDL_RWops* source = SDL_RWFromConstMem(png.data(), static_cast<int>(png.size()));
    source->size = [](SDL_RWops*) { return Sint64{-1}; };
    EXPECT_TRUE(isImageHeaderBelievable(source));
    SDL_RWclose(source);
}

TEST(ImageHeader, ofPngMustFitTheFileAtTheBestCompression)
{
    // 1032 rows of 1000 RGBA pixels: 4000 bytes when each byte of the file stands for 1032.
    EXPECT_TRUE(isBelievableInFileOf(pngOfSize(1000, 1032), 4000));
    EXPECT_FALSE(isBelievableInFileOf(pngOfSize(1000, 1032), 3999));
}

TEST(ImageHeader, ofPngCountsTheBitsOfEachColorType)
{
    struct {
        int bitDepth, colorType;
        std::size_t smallestFile;
    } const cases[] = {{8, 0, 1000}, {1, 0, 125},  {16, 0, 2000}, {8, 2, 3000}, {16, 2, 6000}, {8, 3, 1000},
                       {4, 3, 500},  {8, 4, 2000}, {16, 4, 4000}, {8, 6, 4000}, {16, 6, 8000}};
    for (const auto& [bitDepth, colorType, smallestFile] : cases) {
        const Bytes png = pngOfSize(1000, 1032, bitDepth, colorType);
        EXPECT_TRUE(isBelievableInFileOf(png, smallestFile)) << bitDepth << ", " << colorType;
        EXPECT_FALSE(isBelievableInFileOf(png, smallestFile - 1)) << bitDepth << ", " << colorType;
    }
}

TEST(ImageHeader, ofPngWithAnUnknownColorTypeIsLeftToTheDecoder)
{
    for (const int colorType : {1, 5, 7, 255}) EXPECT_TRUE(isBelievable(pngOfSize(10000, 10000, 8, colorType)));
}

TEST(ImageHeader, ofPngMayNotPromiseTooManyPixels)
{
    EXPECT_FALSE(isBelievable(pngOfSize(60000, 60000)));
    EXPECT_FALSE(isBelievable(pngOfSize(0xFFFFFFFFu, 0xFFFFFFFFu)));
    EXPECT_FALSE(isBelievable(pngOfSize(60000, 60000, 8, 255)));
    EXPECT_FALSE(isBelievableInFileOf(pngOfSize((1 << 14) + 1, 1 << 14, 1, 0), 1 << 20));
    EXPECT_TRUE(isBelievableInFileOf(pngOfSize(1 << 14, 1 << 14, 1, 0), 1 << 20));
}

TEST(ImageHeader, ofPngMustBeTheFirstChunk)
{
    Bytes png;
    append(png, pngSignature);
    appendPngChunk(png, "teSt", {1, 2, 3});
    appendPngChunk(png, "IHDR", pngHeaderData(2, 2, 8, 6));
    appendPngChunk(png, "IEND", {});
    EXPECT_FALSE(isBelievable(png));
}

TEST(ImageHeader, ofPngNeedsTheFileToItsLastChunk)
{
    const Bytes png = pngOfSize(2, 2);
    EXPECT_TRUE(isBelievable(png));
    EXPECT_TRUE(isBelievableInFileOf(png, png.size() + 10));
    for (std::size_t size = 8; size < png.size(); ++size) EXPECT_FALSE(isBelievableInFileOf(png, size)) << size;
}

TEST(ImageHeader, ofPngFollowsChunksOfAnyLength)
{
    for (const std::uint32_t promised : {0u, 2u, 4u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        Bytes png;
        append(png, pngSignature);
        appendPngChunk(png, "IHDR", pngHeaderData(2, 2, 8, 6));
        const std::size_t start = png.size();
        appendPngChunk(png, "teSt", {1, 2, 3});
        appendPngChunk(png, "IEND", {});
        EXPECT_TRUE(isBelievable(png));
        for (std::size_t i = 0; i < 4; ++i) png[start + i] = static_cast<unsigned char>(promised >> (24 - 8 * i) & 255);
        EXPECT_FALSE(isBelievable(png)) << promised;
    }
}

TEST(ImageHeader, ofBmpMustFitTheFile)
{
    EXPECT_TRUE(isBelievableInFileOf(bmpOfSize(100, 10), 3000));
    EXPECT_FALSE(isBelievableInFileOf(bmpOfSize(100, 10), 2999));
    EXPECT_TRUE(isBelievableInFileOf(bmpOfSize(100, 10, 32), 4000));
    EXPECT_FALSE(isBelievableInFileOf(bmpOfSize(100, 10, 32, 3), 3999));
    EXPECT_FALSE(isBelievable(bmpOfSize(30000, 30000)));
    EXPECT_FALSE(isBelievable(bmpOfSize(10000, 10000)));
}

TEST(ImageHeader, ofBmpMayRunFromTopToBottom)
{
    const auto height = static_cast<std::uint32_t>(-10);
    EXPECT_TRUE(isBelievableInFileOf(bmpOfSize(100, height), 3000));
    EXPECT_FALSE(isBelievableInFileOf(bmpOfSize(100, height), 2999));
    EXPECT_FALSE(isBelievable(bmpOfSize(1, 0x80000000u)));
    EXPECT_FALSE(isBelievable(bmpOfSize(0x80000000u, 0x80000000u)));
}

TEST(ImageHeader, ofBmpMayHaveTheOldForm)
{
    EXPECT_TRUE(isBelievableInFileOf(oldBmpOfSize(100, 10), 3000));
    EXPECT_FALSE(isBelievableInFileOf(oldBmpOfSize(100, 10), 2999));
    EXPECT_FALSE(isBelievableInFileOf(oldBmpOfSize(65500, 65500), 1 << 20));
}

TEST(ImageHeader, ofRunLengthEncodedBmpIsBoundByItsPixelsOnly)
{
    EXPECT_TRUE(isBelievable(bmpOfSize(10000, 10000, 8, 1)));
    EXPECT_FALSE(isBelievable(bmpOfSize(30000, 30000, 8, 1)));
    EXPECT_TRUE(isBelievable(bmpOfSize(10000, 10000, 4, 2)));
    EXPECT_FALSE(isBelievable(bmpOfSize(30000, 30000, 4, 2)));
}

TEST(ImageHeader, ofBmpThatClaimsRunLengthsForOtherPixelsMustFitTheFile)
{
    for (const int bits : {1, 4, 16, 24, 32}) EXPECT_FALSE(isBelievable(bmpOfSize(10000, 10000, bits, 1))) << bits;
    for (const int bits : {1, 8, 16, 24, 32}) EXPECT_FALSE(isBelievable(bmpOfSize(10000, 10000, bits, 2))) << bits;
}

TEST(ImageHeader, ofJpegNeedsABitForEachBlock)
{
    for (const int marker : {0xC0, 0xC1, 0xC2}) {
        EXPECT_TRUE(isBelievableInFileOf(jpegOfSize(1024, 1024, marker), 2048));
        EXPECT_FALSE(isBelievableInFileOf(jpegOfSize(1024, 1024, marker), 2047));
    }
}

TEST(ImageHeader, ofJpegInArithmeticCodingMayBeShorter)
{
    for (const int marker : {0xC9, 0xCA}) {
        EXPECT_TRUE(isBelievable(jpegOfSize(16000, 16000, marker)));
        EXPECT_FALSE(isBelievable(jpegOfSize(65500, 65500, marker)));
    }
}

TEST(ImageHeader, ofJpegMayNotPromiseTooManyPixels)
{
    EXPECT_FALSE(isBelievable(jpegOfSize(65500, 65500)));
    EXPECT_FALSE(isBelievableInFileOf(jpegOfSize(16385, 16384), 1 << 20));
    EXPECT_TRUE(isBelievableInFileOf(jpegOfSize(16384, 16384), 1 << 20));
}

TEST(ImageHeader, ofJpegIsFoundBehindOtherSegments)
{
    Bytes jpeg = jpegStart();
    for (const int marker : {0xE0, 0xE1, 0xDB, 0xC4, 0xC8, 0xCC, 0xFE, 0xDD}) appendJpegSegment(jpeg, marker, 40);
    appendJpegFrame(jpeg, 65500, 65500);
    EXPECT_FALSE(isBelievable(jpeg));
}

TEST(ImageHeader, ofJpegIsFoundBehindPadding)
{
    Bytes jpeg = jpegStart();
    jpeg.resize(jpeg.size() + 100000, 0xFF);
    appendJpegFrame(jpeg, 65500, 65500);
    EXPECT_FALSE(isBelievable(jpeg));
}

TEST(ImageHeader, ofJpegIsFoundBehindThousandsOfEmptySegments)
{
    Bytes jpeg = jpegStart();
    for (int i = 0; i < 50000; ++i) appendJpegSegment(jpeg, 0xE0, 0);
    appendJpegFrame(jpeg, 65500, 65500);
    EXPECT_FALSE(isBelievable(jpeg));
}

TEST(ImageHeader, ofJpegIsFoundWhereverItFallsInTheReadBuffer)
{
    for (std::size_t size = 4070; size <= 4110; ++size) {
        Bytes jpeg = jpegStart();
        appendJpegSegment(jpeg, 0xE1, size);
        appendJpegFrame(jpeg, 65500, 65500);
        EXPECT_FALSE(isBelievable(jpeg)) << size;
    }
}

TEST(ImageHeader, ofJpegIsFoundBehindMarkersWithoutALength)
{
    for (const int marker : {0x00, 0x01, 0xD0, 0xD4, 0xD7}) {
        Bytes jpeg = jpegStart();
        appendMarker(jpeg, marker);
        appendJpegFrame(jpeg, 65500, 65500);
        jpeg.resize(70000);
        EXPECT_FALSE(isBelievable(jpeg)) << marker;
    }
}

TEST(ImageHeader, ofJpegIsFoundBehindStrayBytes)
{
    Bytes jpeg = jpegStart();
    appendMarker(jpeg, 0xE0);
    append(jpeg, std::string_view("\0\2stray", 7));
    appendJpegFrame(jpeg, 65500, 65500);
    EXPECT_FALSE(isBelievable(jpeg));
}

TEST(ImageHeader, ofJpegIsFoundBehindALengthTooShortToCountItself)
{
    for (const std::uint32_t length : {0u, 1u}) {
        Bytes jpeg = jpegStart();
        appendMarker(jpeg, 0xE5);
        appendBigEndian(jpeg, length, 2);
        appendJpegFrame(jpeg, 65500, 65500);
        EXPECT_FALSE(isBelievable(jpeg)) << length;
    }
}

TEST(ImageHeader, ofJpegThatNeverComesIsLeftToTheDecoder)
{
    Bytes jpeg = jpegStart();
    appendJpegSegment(jpeg, 0xE0, 14);
    EXPECT_TRUE(isBelievable(jpeg));
    jpeg.resize(jpeg.size() + 100, 'x');
    EXPECT_TRUE(isBelievable(jpeg));
    jpeg = jpegStart();
    appendMarker(jpeg, 0xE0);
    appendBigEndian(jpeg, 65535, 2);
    EXPECT_TRUE(isBelievable(jpeg));
}

TEST(ImageHeader, ofJpegDoesNotComeBehindAScanOrTheEnd)
{
    for (const int marker : {0xD9, 0xDA}) {
        Bytes jpeg = jpegStart();
        appendJpegSegment(jpeg, marker, 0);
        appendJpegFrame(jpeg, 65500, 65500);
        EXPECT_TRUE(isBelievable(jpeg)) << marker;
    }
}

TEST(ImageHeader, ofGifPcxAndPnmMayNotPromiseTooManyPixels)
{
    const auto header = [](std::string_view text) { return Bytes(text.begin(), text.end()); };
    EXPECT_TRUE(isBelievable(header({"GIF89a\x10\x00\x20\x00", 10})));
    EXPECT_FALSE(isBelievable(header({"GIF89a\x20\x4E\x20\x4E", 10})));
    EXPECT_TRUE(isBelievable(header({"\x0A\x05\x01\x08\0\0\0\0\x0F\0\x0F\0", 12})));
    EXPECT_FALSE(isBelievable(header({"\x0A\x05\x01\x08\0\0\0\0\x1F\x4E\x1F\x4E", 12})));
    EXPECT_TRUE(isBelievable(header("P6\n16 16\n255\n")));
    EXPECT_FALSE(isBelievable(header("P6\n20000 20000\n255\n")));
    EXPECT_FALSE(isBelievable(header("P5 99999999999999999999 99999999999999999999 255 ")));
}
