#include "compare_pictures.h"

#include <xum/render/image.h>

#include <gtest/gtest.h>

namespace {

void writeGrey(const char* fileName, int width, int height, Pixel corner)
{
    Image image(width, height, 0, nullptr, nullptr, false);
    image.getPixels()[0] = corner;
    ASSERT_TRUE(image.writeToFile(fileName));
}

} // namespace

TEST(ComparePictures, equalPicturesHaveNoDifference)
{
    writeGrey("a.bmp", 4, 2, {10, 20, 30, 255});
    const PictureDifference difference = comparePictures("a.bmp", "a.bmp", "difference.bmp");
    EXPECT_TRUE(difference.areComparable);
    EXPECT_EQ(difference.maximum, 0);
    EXPECT_EQ(difference.mean, 0.0);
}

TEST(ComparePictures, maximumAndMeanCountAllChannels)
{
    writeGrey("a.bmp", 4, 2, {10, 20, 30, 255});
    writeGrey("b.bmp", 4, 2, {7, 20, 39, 255});
    const PictureDifference difference = comparePictures("a.bmp", "b.bmp", "difference.bmp");
    EXPECT_EQ(difference.maximum, 9);
    EXPECT_DOUBLE_EQ(difference.mean, 12.0 / (4 * 8));
}

TEST(ComparePictures, differenceInAlphaCountsAndIsGrey)
{
    writeGrey("a.bmp", 4, 2, {10, 20, 30, 255});
    writeGrey("b.bmp", 4, 2, {10, 20, 30, 250});
    const PictureDifference difference = comparePictures("a.bmp", "b.bmp", "difference.bmp");
    EXPECT_EQ(difference.maximum, 5);
    EXPECT_EQ(difference.picture->getPixel(0, 0), (Pixel{40, 40, 40, 255}));
}

TEST(ComparePictures, differencePictureIsEightTimesAsStrong)
{
    writeGrey("a.bmp", 4, 2, {10, 20, 30, 255});
    writeGrey("b.bmp", 4, 2, {7, 20, 90, 255});
    comparePictures("a.bmp", "b.bmp", "difference.bmp");
    const std::unique_ptr<Image> image(loadImage("difference.bmp"));
    ASSERT_TRUE(image);
    EXPECT_EQ(image->getPixel(0, 0), (Pixel{24, 0, 255, 255}));
    EXPECT_EQ(image->getPixel(1, 0), (Pixel{0, 0, 0, 255}));
}

TEST(ComparePictures, picturesOfDifferentSizesAndMissingOnesCannotBeCompared)
{
    writeGrey("a.bmp", 4, 2, {});
    writeGrey("b.bmp", 2, 4, {});
    EXPECT_FALSE(comparePictures("a.bmp", "b.bmp", "difference.bmp").areComparable);
    EXPECT_FALSE(comparePictures("a.bmp", "none.bmp", "difference.bmp").areComparable);
}
