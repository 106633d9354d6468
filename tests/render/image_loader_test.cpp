#include <xum/render/image.h>

#include "file_contents.h"
#include "message_boxes.h"
#include "own_directory.h"
#include "picture.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace {

std::vector<unsigned char> bytesOf(const std::string& contents)
{
    return {contents.begin(), contents.end()};
}

/// Loads a stored picture in both ways.
void forBothLoaders(const std::string& name, const std::function<void(const Image*)>& check)
{
    SCOPED_TRACE(name);
    check(OwnedImage(loadImage(testFile(name))).get());
    check(OwnedImage(loadImageFromMemory(bytesOf(fileContents(testFile(name))))).get());
}

void expectPicture(const std::string& name, const std::function<Pixel(int, int)>& pixelAt, bool hasAlpha)
{
    const OwnedImage expected = makeImage(picture::width, picture::height, pixelAt);
    forBothLoaders(name, [&](const Image* image) {
        ASSERT_NE(image, nullptr);
        EXPECT_EQ(image->getWidth(), picture::width);
        EXPECT_EQ(image->getHeight(), picture::height);
        EXPECT_EQ(pixelsOf(*image), pixelsOf(*expected));
        EXPECT_EQ(image->hasAlpha(), hasAlpha);
    });
}

/// JPEG loses a little, decoders a little more or less.
void expectNearlyFlat(const std::string& name, const Pixel& color)
{
    forBothLoaders(name, [&](const Image* image) {
        ASSERT_NE(image, nullptr);
        EXPECT_EQ(image->getWidth(), picture::width);
        EXPECT_EQ(image->getHeight(), picture::height);
        EXPECT_FALSE(image->hasAlpha());
        for (const Pixel& pixel : pixelsOf(*image)) {
            EXPECT_NEAR(pixel.red, color.red, 3);
            EXPECT_NEAR(pixel.green, color.green, 3);
            EXPECT_NEAR(pixel.blue, color.blue, 3);
            EXPECT_EQ(pixel.alpha, 255);
        }
    });
}

void expectRefusedDepth(const std::string& name)
{
    const auto load = [&] { OwnedImage(loadImage(testFile(name))); };
    const auto loadFromMemory = [&] { OwnedImage(loadImageFromMemory(bytesOf(fileContents(testFile(name))))); };
    const char* box = "\\[\\[Error\\|Only 24 and 32 bit images are supported!\\]\\]";
    EXPECT_EXIT(load(), testing::ExitedWithCode(fatalExitCode), box) << name;
    EXPECT_EQ(logLines().back(), "ERROR: Only 24 and 32 bit images are supported!");
    EXPECT_EXIT(loadFromMemory(), testing::ExitedWithCode(fatalExitCode), box) << name;
}

void expectSilentNull(const std::function<Image*()>& load)
{
    const std::size_t boxesBefore = shownMessageBoxes().size();
    const std::vector<std::string> linesBefore = logLines();
    EXPECT_EQ(OwnedImage(load()), nullptr);
    EXPECT_EQ(shownMessageBoxes().size(), boxesBefore);
    EXPECT_EQ(logLines(), linesBefore);
}

} // namespace

TEST(ImageLoader, readsRgbPngAsOpaque)
{
    expectPicture("rgb.png", picture::color, false);
    expectPicture("rgb_16_bit.png", picture::color, false);
}

TEST(ImageLoader, ignoresTheColorKeyOfAPng)
{
    expectPicture("rgb_color_key.png", picture::color, false);
}

TEST(ImageLoader, findsTheOneTranslucentPixelOfAPng)
{
    expectPicture("rgba.png", picture::translucentColor, true);
    expectPicture("rgba_16_bit.png", picture::translucentColor, true);
    expectPicture("rgba_interlaced.png", picture::translucentColor, true);
}

TEST(ImageLoader, countsAPngWithOpaqueAlphaAsOpaque)
{
    expectPicture("rgba_opaque.png", picture::color, false);
}

TEST(ImageLoader, readsGreyPngWithAlpha)
{
    const auto grey = [](int x, int y) {
        const Pixel pixel = picture::translucentColor(x, y);
        return Pixel{pixel.red, pixel.red, pixel.red, pixel.alpha};
    };
    expectPicture("grey_alpha.png", grey, true);
}

TEST(ImageLoader, readsPalettePngWithAlpha)
{
    expectPicture("palette_alpha.png", picture::translucentColor, true);
}

TEST(ImageLoader, readsBmpOf24And32Bits)
{
    expectPicture("bgr.bmp", picture::color, false);
    expectPicture("bgra.bmp", picture::translucentColor, true);
}

TEST(ImageLoader, readsJpeg)
{
    expectNearlyFlat("baseline.jpg", picture::color(3, 1));
    expectNearlyFlat("progressive.jpg", picture::color(3, 1));
}

TEST(ImageLoader, readsGreyJpegAsColors)
{
    expectNearlyFlat("grey.jpg", {130, 130, 130, 255});
}

TEST(ImageLoader, endsTheProgramForAGreyPng)
{
    expectRefusedDepth("grey.png");
    expectRefusedDepth("grey_1_bit.png");
    expectRefusedDepth("grey_16_bit.png");
}

TEST(ImageLoader, endsTheProgramForAPaletteBmp)
{
    expectRefusedDepth("palette.bmp");
}

TEST(ImageLoader, endsTheProgramForAPalettePng)
{
    expectRefusedDepth("palette.png");
}

#ifdef _WIN32
TEST(ImageLoader, takesNamesInTheCodePage)
{
    std::filesystem::copy_file(testFile("rgb.png"), std::filesystem::path(L"gr\u00F6\u00DF.png"));
    EXPECT_NE(OwnedImage(loadImage("gr\xF6\xDF.png")).get(), nullptr);
}
#endif

TEST(ImageLoader, refusesMissingFilesSilently)
{
    expectSilentNull([] { return loadImage("missing.png"); });
    expectSilentNull([] { return loadImage("missing/missing.png"); });
    expectSilentNull([] { return loadImage(""); });
}

TEST(ImageLoader, refusesADirectorySilently)
{
    std::filesystem::create_directory("directory.png");
    expectSilentNull([] { return loadImage("directory.png"); });
    expectSilentNull([] { return loadImage("."); });
}

TEST(ImageLoader, refusesEmptyDataSilently)
{
    writeFileContents("empty.png", "");
    expectSilentNull([] { return loadImage("empty.png"); });
    expectSilentNull([] { return loadImageFromMemory({}); });
}

TEST(ImageLoader, refusesWhatIsNoPictureSilently)
{
    const std::string text = "This is no picture, whatever its name says.\n";
    writeFileContents("text.png", text);
    expectSilentNull([] { return loadImage("text.png"); });
    expectSilentNull([&] { return loadImageFromMemory(bytesOf(text)); });
    expectSilentNull([] { return loadImageFromMemory(std::vector<unsigned char>(1000)); });
}

TEST(ImageLoader, goesByTheContentsNotByTheName)
{
    std::filesystem::copy_file(testFile("rgba.png"), "really_png.bmp");
    const OwnedImage image(loadImage("really_png.bmp"));
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(pixelsOf(*image), pixelsOf(*makePicture()));
}

TEST(ImageLoader, leavesTheFileFree)
{
    std::filesystem::copy_file(testFile("rgba.png"), "removable.png");
    EXPECT_NE(OwnedImage(loadImage("removable.png")), nullptr);
    EXPECT_TRUE(std::filesystem::remove("removable.png"));
}
