#include <xum/render/image.h>

#include "file_contents.h"
#include "message_boxes.h"
#include "picture.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>

namespace {

std::string littleEndian(std::uint32_t value, int size = 4)
{
    std::string bytes;
    for (int i = 0; i < size; ++i) bytes += static_cast<char>(value >> 8 * i & 255);
    return bytes;
}

/// The bytes of a bottom-up BMP with masks and without a colour profile.
std::string expectedBmp(const Image& image)
{
    const auto width = static_cast<std::uint32_t>(image.getWidth());
    const auto height = static_cast<std::uint32_t>(image.getHeight());
    const std::uint32_t headerSize = 122;
    std::string bmp = "BM" + littleEndian(headerSize + 4 * width * height) + littleEndian(0) + littleEndian(headerSize);
    bmp += littleEndian(108) + littleEndian(width) + littleEndian(height) + littleEndian(1, 2) + littleEndian(32, 2);
    bmp += littleEndian(3) + littleEndian(4 * width * height); // 3: the masks below say where the channels lie
    bmp += littleEndian(0) + littleEndian(0) + littleEndian(0) + littleEndian(0); // resolution and palette
    bmp += littleEndian(0x00ff0000) + littleEndian(0x0000ff00) + littleEndian(0x000000ff) + littleEndian(0xff000000);
    bmp += " niW" + std::string(36 + 12, '\0'); // the system's colours: end points and gamma are not used
    for (int y = image.getHeight() - 1; y >= 0; --y)
        for (int x = 0; x < image.getWidth(); ++x) {
            const Pixel pixel = image.getPixel(x, y);
            for (const unsigned char byte : {pixel.blue, pixel.green, pixel.red, pixel.alpha})
                bmp += static_cast<char>(byte);
        }
    return bmp;
}

void expectWritten(const std::string& fileName)
{
    const OwnedImage image = makePicture();
    EXPECT_TRUE(image->writeToFile(fileName));
    EXPECT_EQ(fileContents(fileName), expectedBmp(*image));
    std::filesystem::remove(fileName);
}

void expectWarning(const std::string& fileName)
{
    const std::size_t boxesBefore = shownMessageBoxes().size();
    EXPECT_FALSE(makePicture()->writeToFile(fileName));
    ASSERT_EQ(shownMessageBoxes().size(), boxesBefore + 1) << fileName;
    EXPECT_EQ(shownMessageBoxes().back().title, "Warning");
    EXPECT_EQ(shownMessageBoxes().back().text, "Image::writeToFile() -> Only 'BMP' supported for now!");
    ASSERT_FALSE(logLines().empty());
    EXPECT_EQ(logLines().back(), "WARNING: Image::writeToFile() -> Only 'BMP' supported for now!");
    EXPECT_FALSE(!fileName.empty() && std::filesystem::exists(fileName));
}

void expectSilentFailure(const std::string& fileName)
{
    const std::size_t boxesBefore = shownMessageBoxes().size();
    const std::vector<std::string> linesBefore = logLines();
    EXPECT_FALSE(makePicture()->writeToFile(fileName));
    EXPECT_EQ(shownMessageBoxes().size(), boxesBefore);
    EXPECT_EQ(logLines(), linesBefore);
}

} // namespace

TEST(ImageWriteToFile, writesBottomUpBgraBehindAHeaderOf122Bytes)
{
    const OwnedImage image = makePicture();
    ASSERT_TRUE(image->writeToFile("picture.bmp"));
    const std::string bytes = fileContents("picture.bmp");
    EXPECT_EQ(bytes.size(), 122u + 4 * picture::width * picture::height);
    EXPECT_EQ(bytes, expectedBmp(*image));
}

TEST(ImageWriteToFile, writesWhatLoadsAsTheSamePixels)
{
    const OwnedImage image = makeImage(
        7, 4,
        [](int x, int y) {
            const auto byte = [](int value) { return static_cast<unsigned char>(value); };
            return Pixel{byte(x * 36), byte(y * 80), byte(x * y), byte(x * 42)};
        },
        true);
    ASSERT_TRUE(image->writeToFile("again.bmp"));
    const OwnedImage loaded(loadImage("again.bmp"));
    ASSERT_NE(loaded, nullptr);
    EXPECT_EQ(loaded->getWidth(), 7);
    EXPECT_EQ(loaded->getHeight(), 4);
    EXPECT_EQ(pixelsOf(*loaded), pixelsOf(*image));
    EXPECT_TRUE(loaded->hasAlpha());
}

TEST(ImageWriteToFile, keepsPixelsThatAreAllTransparent)
{
    const OwnedImage image = makeImage(3, 2, [](int x, int) { return Pixel{static_cast<unsigned char>(x), 7, 9, 0}; });
    ASSERT_TRUE(image->writeToFile("transparent.bmp"));
    const OwnedImage loaded(loadImage("transparent.bmp"));
    ASSERT_NE(loaded, nullptr);
    EXPECT_EQ(pixelsOf(*loaded), pixelsOf(*image));
    EXPECT_TRUE(loaded->hasAlpha());
}

TEST(ImageWriteToFile, leavesTheImageAsItWas)
{
    const OwnedImage image = makePicture();
    ASSERT_TRUE(image->writeToFile("picture.bmp"));
    EXPECT_EQ(pixelsOf(*image), pixelsOf(*makePicture()));
}

TEST(ImageWriteToFile, replacesAnOlderFile)
{
    writeFileContents("old.bmp", std::string(5000, 'x'));
    expectWritten("old.bmp");
}

TEST(ImageWriteToFile, acceptsBmpAnywhereInTheName)
{
    expectWritten("a.bmp");
    expectWritten(".bmp");
    expectWritten("a.bmp.png");
    expectWritten("a.bmpx");
    expectWritten("a.bmp.bmp");
    std::filesystem::create_directory("directory.bmp");
    expectWritten("directory.bmp/file");
    expectWritten("directory.bmp/file.png");
}

TEST(ImageWriteToFile, warnsOfANameWithoutBmp)
{
    expectWarning("a.png");
    expectWarning("abmp");
    expectWarning("a.bm");
    expectWarning("");
}

TEST(ImageWriteToFile, knowsBmpInLowerCaseOnly)
{
    expectWarning("A.BMP");
    expectWarning("a.Bmp");
}

TEST(ImageWriteToFile, failsSilentlyWhereNoFileCanBeMade)
{
    expectSilentFailure("missing/a.bmp");
    std::filesystem::create_directory("occupied.bmp");
    expectSilentFailure("occupied.bmp");
}

TEST(ImageWriteToFile, succeedsWhateverErrorCameBefore)
{
    EXPECT_FALSE(makePicture()->writeToFile("missing/a.bmp"));
    expectWritten("a.bmp");
}

#ifndef _WIN32

TEST(ImageWriteToFile, failsSilentlyWhenTheDiskIsFull)
{
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no such device here";
    std::filesystem::create_symlink("/dev/full", "full.bmp");
    expectSilentFailure("full.bmp");
}

#endif

TEST(ImageWrite, refusesANameWithANul)
{
    const Image image(1, 1, 0, nullptr, nullptr, false);
    EXPECT_FALSE(image.writeToFile(std::string("cut\0.bmp", 8)));
    EXPECT_FALSE(std::filesystem::exists("cut"));
    EXPECT_TRUE(image.writeToFile("whole.bmp"));
    EXPECT_EQ(loadImage(std::string("whole.bmp\0", 10)), nullptr);
}
