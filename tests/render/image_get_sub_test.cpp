#include <xum/render/image.h>

#include "picture.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

constexpr int largestInt = std::numeric_limits<int>::max();
constexpr int smallestInt = std::numeric_limits<int>::min();

/// Compares a rectangle of the picture with what getPixel says of each place, outside included.
void expectSub(int x, int y, int width, int height)
{
    SCOPED_TRACE(testing::Message() << x << ", " << y << ", " << width << " x " << height);
    const OwnedImage image = makePicture();
    const OwnedImage sub(image->getSub(x, y, width, height));
    ASSERT_NE(sub, nullptr);
    ASSERT_EQ(sub->getWidth(), width);
    ASSERT_EQ(sub->getHeight(), height);
    bool isTranslucent = false;
    for (int row = 0; row < height; ++row)
        for (int column = 0; column < width; ++column) {
            EXPECT_EQ(sub->getPixel(column, row), image->getPixel(x + column, y + row)) << column << ", " << row;
            isTranslucent = isTranslucent || image->getPixel(x + column, y + row).alpha < 255;
        }
    EXPECT_EQ(sub->hasAlpha(), isTranslucent);
}

void expectAllBlack(int x, int y, int width, int height)
{
    const OwnedImage sub(makePicture()->getSub(x, y, width, height));
    ASSERT_NE(sub, nullptr);
    EXPECT_EQ(pixelsOf(*sub), std::vector<Pixel>(static_cast<std::size_t>(width * height)));
    EXPECT_FALSE(sub->hasAlpha());
}

} // namespace

TEST(ImageGetSub, copiesTheRectangleRowByRow)
{
    const OwnedImage sub(makePicture()->getSub(1, 1, 3, 2));
    EXPECT_EQ(pixelsOf(*sub), (std::vector<Pixel>{picture::translucentColor(1, 1), picture::translucentColor(2, 1),
                                                  picture::translucentColor(3, 1), picture::translucentColor(1, 2),
                                                  picture::translucentColor(2, 2), picture::translucentColor(3, 2)}));
}

TEST(ImageGetSub, holdsWhatLiesAtEachPlace)
{
    expectSub(0, 0, picture::width, picture::height);
    expectSub(1, 1, 3, 1);
    expectSub(4, 2, 1, 1);
}

TEST(ImageGetSub, isOpaqueBlackBeyondEachEdge)
{
    expectSub(-2, 0, 4, 2);
    expectSub(3, 0, 4, 2);
    expectSub(0, -1, 3, 3);
    expectSub(0, 1, 3, 4);
    expectSub(-1, -1, picture::width + 2, picture::height + 2);
}

TEST(ImageGetSub, maySpanMoreRowsOrColumnsThanTheImage)
{
    expectSub(1, -3, 2, 12);
    expectSub(-3, 1, 12, 1);
}

TEST(ImageGetSub, outsideIsAllBlack)
{
    expectAllBlack(picture::width, 0, 2, 2);
    expectAllBlack(-2, 0, 2, 2);
    expectAllBlack(0, picture::height, 2, 2);
    expectAllBlack(0, -2, 2, 2);
}

TEST(ImageGetSub, farOutsideIsAllBlack)
{
    expectAllBlack(largestInt, largestInt, 2, 2);
    expectAllBlack(smallestInt, smallestInt, 2, 2);
    expectAllBlack(largestInt, 0, 2, 2);
    expectAllBlack(0, smallestInt, 2, 2);
}

TEST(ImageGetSub, countsTheAlphaFlagAnewFromTheCopiedPixels)
{
    const OwnedImage image = makePicture();
    ASSERT_TRUE(image->hasAlpha());
    EXPECT_FALSE(OwnedImage(image->getSub(0, 0, picture::width, 1))->hasAlpha());
    EXPECT_TRUE(OwnedImage(image->getSub(2, 1, 1, 1))->hasAlpha());
    EXPECT_TRUE(OwnedImage(image->getSub(0, 0, picture::width, picture::height))->hasAlpha());

    const OwnedImage unflagged = makeImage(picture::width, picture::height, picture::translucentColor, false);
    EXPECT_TRUE(OwnedImage(unflagged->getSub(2, 1, 1, 1))->hasAlpha());
}

TEST(ImageGetSub, ofANegativeSizeHasNoPixels)
{
    const OwnedImage image = makePicture();
    const auto expectSize = [&](int width, int height, int expectedWidth, int expectedHeight) {
        const OwnedImage sub(image->getSub(1, 1, width, height));
        ASSERT_NE(sub, nullptr);
        EXPECT_EQ(sub->getWidth(), expectedWidth);
        EXPECT_EQ(sub->getHeight(), expectedHeight);
        EXPECT_FALSE(sub->hasAlpha());
    };
    expectSize(-1, 2, 0, 2);
    expectSize(2, -1, 2, 0);
    expectSize(smallestInt, smallestInt, 0, 0);
    expectSize(0, 0, 0, 0);
}

TEST(ImageGetSub, ofAnEmptyImageIsAllBlack)
{
    const Image empty(0, 0, 0, nullptr, nullptr, true);
    const OwnedImage sub(empty.getSub(0, 0, 2, 2));
    EXPECT_EQ(pixelsOf(*sub), std::vector<Pixel>(4));
    EXPECT_FALSE(sub->hasAlpha());
}

TEST(ImageGetSub, ofMorePixelsThanCanBeCountedIsEmpty)
{
    const OwnedImage sub(makePicture()->getSub(0, 0, largestInt, largestInt));
    ASSERT_NE(sub, nullptr);
    EXPECT_EQ(sub->getWidth(), 0);
    EXPECT_EQ(sub->getHeight(), 0);
}

#if !defined(__SANITIZE_ADDRESS__) // which ends the process for such a request

TEST(ImageGetSub, ofMorePixelsThanThereIsMemoryIsNull)
{
    EXPECT_EQ(makePicture()->getSub(0, 0, 1 << 30, 1 << 29), nullptr);
}

#endif
