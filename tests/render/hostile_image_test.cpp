#include <xum/render/image.h>

#include <xum/engine/message_box.h>

#include "file_contents.h"
#include "picture.h"
#include "picture_bytes.h"

#include <SDL.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

// Pictures may come from anywhere. None may crash the program, and a small one may not cost much memory.

namespace {

/// Watches what SDL allocates, pictures among it, as long as the object lives, and denies it what is absurd.
class AllocationWatch {
public:
    AllocationWatch()
    {
        SDL_GetMemoryFunctions(&allocate, &allocateZeroed, &reallocate, &release);
        largest = 0;
        SDL_SetMemoryFunctions(
            [](size_t size) { return isAllowed(size) ? allocate(size) : nullptr; },
            [](size_t count, size_t size) { return isAllowed(count * size) ? allocateZeroed(count, size) : nullptr; },
            [](void* memory, size_t size) { return isAllowed(size) ? reallocate(memory, size) : nullptr; }, release);
    }
    ~AllocationWatch() { SDL_SetMemoryFunctions(allocate, allocateZeroed, reallocate, release); }

    /// The most bytes that were asked for at once.
    static std::size_t getLargest() { return largest; }

private:
    static bool isAllowed(std::size_t size)
    {
        largest = std::max(largest, size);
        return size <= std::size_t{512} << 20;
    }

    static inline SDL_malloc_func allocate;
    static inline SDL_calloc_func allocateZeroed;
    static inline SDL_realloc_func reallocate;
    static inline SDL_free_func release;
    static inline std::size_t largest;
};

Bytes bytesOfFile(const std::string& name)
{
    const std::string contents = fileContents(testFile(name));
    return {contents.begin(), contents.end()};
}

void expectRefusedCheaply(const Bytes& bytes)
{
    AllocationWatch watch;
    EXPECT_EQ(OwnedImage(loadImageFromMemory(bytes)), nullptr);
    EXPECT_LT(watch.getLargest(), std::size_t{1} << 20);

    writeFileContents("hostile", std::string(bytes.begin(), bytes.end()));
    EXPECT_EQ(OwnedImage(loadImage("hostile")), nullptr);
    EXPECT_LT(watch.getLargest(), std::size_t{1} << 20);
}

/// A JPEG with `inserted` behind its first marker.
Bytes jpegWith(const Bytes& inserted)
{
    Bytes jpeg = bytesOfFile("baseline.jpg");
    jpeg.insert(jpeg.begin() + 2, inserted.begin(), inserted.end());
    return jpeg;
}

const char* const trueColorFiles[] = {
    "rgb.png",         "rgb_16_bit.png",      "rgb_color_key.png", "rgba.png",          "rgba_16_bit.png",
    "rgba_opaque.png", "rgba_interlaced.png", "grey_alpha.png",    "palette_alpha.png", "bgr.bmp",
    "bgra.bmp",        "baseline.jpg",        "progressive.jpg",   "grey.jpg",
};

const char* const fewColorFiles[] = {"grey.png", "grey_1_bit.png", "grey_16_bit.png", "palette.png", "palette.bmp"};

bool endsWith(const std::string& name, const std::string& end)
{
    return name.size() >= end.size() && name.compare(name.size() - end.size(), end.size(), end) == 0;
}

bool isJpeg(const std::string& name)
{
    return endsWith(name, ".jpg");
}

/// Thrown instead of ending the process where a picture has too few colours.
struct Refusal {};

/// Loads a picture; what would end the process is a Refusal. error() shows a message box before it exits, and an
/// exception leaves from there without harm: all on the way is released.
void loadWhatever(const Bytes& bytes)
{
    messageBoxFunction = [](std::uint32_t, const char*, const char*) -> int { throw Refusal(); };
    try {
        const OwnedImage image(loadImageFromMemory(bytes));
        if (image) {
            EXPECT_GE(image->getWidth(), 0);
            EXPECT_GE(image->getHeight(), 0);
            for (const Pixel& pixel : pixelsOf(*image)) ASSERT_TRUE(pixel.alpha == 255 || image->hasAlpha());
        }
    } catch (const Refusal&) {
    }
}

/// Makes the check sums of a PNG right again: otherwise the decoder would not look at what was changed.
void repairCheckSums(Bytes& png)
{
    for (std::size_t start = 8; start + 12 <= png.size();) {
        const std::size_t size =
            static_cast<std::size_t>(png[start] << 24 | png[start + 1] << 16 | png[start + 2] << 8 | png[start + 3]);
        if (size > png.size() - start - 12) return;
        const std::uint32_t sum = crc32(png.data() + start + 4, size + 4);
        for (std::size_t i = 0; i < 4; ++i)
            png[start + 8 + size + i] = static_cast<unsigned char>(sum >> (24 - 8 * i) & 255);
        start += size + 12;
    }
}

Bytes mutated(Bytes bytes, std::minstd_rand& random)
{
    const std::size_t changes = 1 + random() % 4;
    for (std::size_t i = 0; i < changes; ++i) {
        unsigned char& byte = bytes[random() % bytes.size()];
        const unsigned char extremes[] = {0, 1, 0x7f, 0x80, 0xfe, 0xff};
        byte = random() % 2 == 0 ? extremes[random() % 6] : static_cast<unsigned char>(random() >> 8 & 255);
    }
    return bytes;
}

} // namespace

TEST(HostileImage, refusesAPngThatPromisesTooMuch)
{
    expectRefusedCheaply(pngOfSize(60000, 60000));
    expectRefusedCheaply(pngOfSize(16000, 16000));
    expectRefusedCheaply(pngOfSize(1000000, 1000000));
    expectRefusedCheaply(pngOfSize(0x7FFFFFFF, 0x7FFFFFFF));
    expectRefusedCheaply(pngOfSize(60000, 60000, 1, 0));
    expectRefusedCheaply(pngOfSize(60000, 60000, 16, 6));
    expectRefusedCheaply(pngOfSize(0, 0));
}

TEST(HostileImage, refusesAPngThatHidesItsHeaderBehindAnotherChunk)
{
    for (const char* kind : {"teSt", "tEXt", "gAMA"}) {
        Bytes png;
        append(png, pngSignature);
        appendPngChunk(png, kind, {'k', 'e', 'y', 0});
        appendPngChunk(png, "IHDR", pngHeaderData(60000, 60000, 8, 6));
        appendPngChunk(png, "IDAT", {0x78, 0x9c, 0x63, 0x00, 0x00});
        appendPngChunk(png, "IEND", {});
        expectRefusedCheaply(png);
    }
}

TEST(HostileImage, refusesABmpThatPromisesTooMuch)
{
    ASSERT_EQ(bmpOfSize(30000, 30000).size(), 57u);
    expectRefusedCheaply(bmpOfSize(30000, 30000));
    expectRefusedCheaply(bmpOfSize(10000, 10000));
    expectRefusedCheaply(bmpOfSize(10000, 10000, 32, 3));
    expectRefusedCheaply(bmpOfSize(10000, static_cast<std::uint32_t>(-10000)));
    expectRefusedCheaply(bmpOfSize(1, 0x80000000u));
    expectRefusedCheaply(bmpOfSize(0x80000000u, 1));
    expectRefusedCheaply(bmpOfSize(30000, 30000, 8, 1));
    expectRefusedCheaply(bmpOfSize(10000, 10000, 32, 2));
    expectRefusedCheaply(oldBmpOfSize(65535, 65535));
}

TEST(HostileImage, refusesAJpegThatPromisesTooMuch)
{
    for (const int marker : {0xC0, 0xC1, 0xC2, 0xC9, 0xCA}) {
        SCOPED_TRACE(marker);
        expectRefusedCheaply(jpegOfSize(65500, 65500, marker));
    }
    expectRefusedCheaply(jpegOfSize(65535, 65535));
    expectRefusedCheaply(jpegOfSize(16000, 16000));
}

TEST(HostileImage, refusesAJpegThatHidesItsSizeBehindManySegments)
{
    Bytes jpeg = jpegStart();
    for (int i = 0; i < 20000; ++i) appendJpegSegment(jpeg, 0xE0 + i % 16, 0);
    jpeg.resize(jpeg.size() + 100000, 0xFF);
    appendJpegFrame(jpeg, 65500, 65500);
    expectRefusedCheaply(jpeg);
}

TEST(HostileImage, refusesAJpegThatHidesItsSizeBehindMarkersWithoutALength)
{
    for (const int marker : {0x00, 0x01, 0xD0, 0xD7}) {
        SCOPED_TRACE(marker);
        Bytes jpeg = jpegStart();
        appendMarker(jpeg, marker);
        appendJpegFrame(jpeg, 65500, 65500);
        // What a reader finds that takes the frame for the marker's data: a proper end.
        jpeg.resize(4 + 0xFFC0);
        appendJpegSegment(jpeg, 0xDA, 0);
        appendMarker(jpeg, 0xD9);
        expectRefusedCheaply(jpeg);
    }
}

TEST(HostileImage, readsAJpegBehindThousandsOfEmptySegments)
{
    Bytes segments;
    for (int i = 0; i < 20000; ++i) appendJpegSegment(segments, 0xFE, 0);
    EXPECT_NE(OwnedImage(loadImageFromMemory(jpegWith(segments))), nullptr);
}

TEST(HostileImage, readsAJpegBehindPadding)
{
    EXPECT_NE(OwnedImage(loadImageFromMemory(jpegWith(Bytes(100000, 0xFF)))), nullptr);
}

TEST(HostileImage, isNullOrWholeForEveryShorterPrefix)
{
    for (const char* name : trueColorFiles) {
        const Bytes whole = bytesOfFile(name);
        ASSERT_FALSE(whole.empty()) << name;
        const OwnedImage expected(loadImageFromMemory(whole));
        ASSERT_NE(expected, nullptr) << name;
        for (std::size_t size = 0; size < whole.size(); ++size) {
            const Bytes prefix(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
            const OwnedImage image(loadImageFromMemory(prefix));
            if (!image) continue;
            EXPECT_TRUE(isJpeg(name)) << name << ", " << size; // its decoder makes do with what it got
            EXPECT_EQ(image->getWidth(), expected->getWidth()) << name << ", " << size;
            EXPECT_EQ(image->getHeight(), expected->getHeight()) << name << ", " << size;
        }
    }
}

TEST(HostileImage, isNullOrRefusedForEveryShorterPrefixOfFewColors)
{
    for (const char* name : fewColorFiles) {
        const Bytes whole = bytesOfFile(name);
        ASSERT_FALSE(whole.empty()) << name;
        for (std::size_t size = 0; size <= whole.size(); ++size)
            loadWhatever(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
    }
}

TEST(HostileImage, survivesChangedBytes)
{
    std::minstd_rand random(20);
    AllocationWatch watch;
    std::vector<std::string> names(std::begin(trueColorFiles), std::end(trueColorFiles));
    names.insert(names.end(), std::begin(fewColorFiles), std::end(fewColorFiles));
    for (const std::string& name : names) {
        const Bytes whole = bytesOfFile(name);
        const bool isPng = endsWith(name, ".png");
        for (int i = 0; i < 400; ++i) {
            Bytes bytes = mutated(whole, random);
            if (isPng && i % 8 != 0) repairCheckSums(bytes);
            SCOPED_TRACE(testing::Message() << name << ", change " << i);
            loadWhatever(bytes);
        }
    }
}

TEST(HostileImage, harnessNoticesPicturesOfFewColors)
{
    messageBoxFunction = [](std::uint32_t, const char*, const char*) -> int { throw Refusal(); };
    for (const char* name : fewColorFiles) EXPECT_THROW(loadImageFromMemory(bytesOfFile(name)), Refusal) << name;
}
