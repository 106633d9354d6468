#include "heads_up_display.h"

#include "application.h"
#include "assets.h"
#include "picture.h"

#include <xum/render/image.h>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

constexpr Vector2<int> size = {600, 200};

bool isLit(const Pixel& pixel)
{
    return pixel.red > 40 || pixel.green > 40 || pixel.blue > 40;
}

/// On a black screen.
class Display : public ::testing::Test {
protected:
    std::unique_ptr<Image> show(const std::function<void()>& draw, const Vector2<int>& screenSize = size)
    {
        RenderDevice& device = application.getRenderDevice();
        return takePicture(device, screenSize, [&](RenderTarget* target) {
            device.bindRenderTarget(target, TargetBinding::Both);
            device.setViewport(0, 0, screenSize.x, screenSize.y, screenSize.y);
            device.clear(true, true, false);
            draw();
        });
    }

    std::unique_ptr<Image> show(const Readings& readings, const std::string& place)
    {
        return show([&] { display.draw(size, readings, place, draws); });
    }

    /// As a caption wants to be drawn: blended over what is there.
    std::unique_ptr<Image> showCaption(const std::string& text, int bottom, const Vector2<int>& screenSize = size)
    {
        return show(
            [&] {
                RenderDevice& device = application.getRenderDevice();
                device.setBlendMode(BlendMode::Alpha);
                captionHeight = captions.draw(text, screenSize, bottom, {1, 1, 1}, draws);
                device.setBlendMode(BlendMode::None);
            },
            screenSize);
    }

    Application application = Application("display", {64, 48});
    GameData data = GameData(application.getEngine(), {XUM_DATA_DIRECTORY "/", ""});
    Assets assets = Assets(application.getRenderDevice(), data);
    HeadsUpDisplay display = HeadsUpDisplay(application.getRenderDevice(), assets, data);
    Captions captions =
        Captions(application.getRenderDevice(), assets.getCaptionProgram(), XUM_DATA_DIRECTORY "/fonts/hud.ttf", 20);
    DrawCounter draws;
    int captionHeight = 0;
};

/// The smallest box around lit pixels within some rows: left, top, right, bottom, all inclusive.
struct Extent {
    int left = 100000;
    int top = 100000;
    int right = -1;
    int bottom = -1;
    int count = 0;
};

Extent findLit(const Image& picture, int firstRow, int endRow)
{
    Extent extent;
    for (int y = firstRow; y < endRow; ++y) {
        for (int x = 0; x < picture.getWidth(); ++x) {
            if (!isLit(picture.getPixel(x, y))) continue;
            extent.left = std::min(extent.left, x);
            extent.right = std::max(extent.right, x);
            extent.top = std::min(extent.top, y);
            extent.bottom = std::max(extent.bottom, y);
            ++extent.count;
        }
    }
    return extent;
}

} // namespace

TEST_F(Display, readingsStandInTheUpperLeftLineBelowLine)
{
    const auto picture = show(Readings(), "");
    for (int line = 0; line < 5; ++line) {
        const Extent extent = findLit(*picture, 8 + 20 * line, 28 + 20 * line);
        EXPECT_GT(extent.count, 50) << line;
        EXPECT_GE(extent.left, 8) << line;
        EXPECT_LE(extent.left, 10) << line;
    }
    EXPECT_EQ(findLit(*picture, 0, 8).count, 0);
    EXPECT_EQ(findLit(*picture, 108, 170).count, 0);
}

TEST_F(Display, aLongerReadingIsAWiderLine)
{
    Readings readings;
    readings.draws = 1;
    const int narrow = findLit(*show(readings, ""), 68, 88).right;
    readings.draws = 1000;
    const int wide = findLit(*show(readings, ""), 68, 88).right;
    EXPECT_GT(wide - narrow, 3 * 10); // three digits more, with the space between them
    EXPECT_LT(wide - narrow, 3 * 16);
}

TEST_F(Display, nameOfThePlaceIsCentredAtTheBottomAboveTheKeys)
{
    const auto without = show(Readings(), "");
    const auto with = show(Readings(), "Courtyard");
    const int top = 150;
    const Extent keys = findLit(*without, top, size.y);
    const Extent both = findLit(*with, top, size.y);
    EXPECT_GT(keys.count, 200);
    EXPECT_LT(both.top, keys.top);
    EXPECT_EQ(both.bottom, keys.bottom);
    const Extent name = findLit(*with, top, keys.top);
    EXPECT_NEAR(name.left + name.right, size.x, 6);
    EXPECT_NEAR(keys.left + keys.right, size.x, 6);
}

TEST_F(Display, captionHasItsColorAndStandsUprightOnItsLine)
{
    const auto picture = showCaption("L", 10);
    const Extent all = findLit(*picture, 0, size.y);
    EXPECT_GE(all.top, size.y - 10 - captionHeight);
    EXPECT_LT(all.bottom, size.y - 10);
    // An L is wide at its foot and narrow above.
    const Extent foot = findLit(*picture, all.bottom, all.bottom + 1);
    const Extent head = findLit(*picture, all.top, all.top + 1);
    EXPECT_GT(foot.right - foot.left, 2 * (head.right - head.left));
    EXPECT_EQ(head.left, foot.left);
    bool hasFullColor = false;
    for (int x = all.left; x <= all.right; ++x) {
        const Pixel pixel = picture->getPixel(x, all.top + 4);
        if (pixel == Pixel{255, 255, 255, 255}) hasFullColor = true;
    }
    EXPECT_TRUE(hasFullColor);
}

TEST_F(Display, captionWithoutTextIsNotDrawn)
{
    const auto picture = showCaption("", 0);
    EXPECT_EQ(findLit(*picture, 0, size.y).count, 0);
    EXPECT_EQ(captionHeight, 0);
    EXPECT_EQ(draws.get(), 0u);
}

TEST_F(Display, captionWiderThanTheScreenShrinksIntoIt)
{
    const Extent whole = findLit(*showCaption("a caption of many words", 0), 0, size.y);
    const int wholeHeight = captionHeight;
    const Extent small = findLit(*showCaption("a caption of many words", 0, {100, 60}), 0, 60);
    EXPECT_GT(whole.right - whole.left, 200);
    EXPECT_GE(small.left, 4);
    EXPECT_LE(small.left, 7);
    EXPECT_GE(small.right, 92);
    EXPECT_LE(small.right, 96);
    EXPECT_LT(captionHeight, wholeHeight / 2);
    EXPECT_GT(captionHeight, wholeHeight / 4);
    showCaption("a caption of many words", 0, {1, 1});
}

TEST_F(Display, captionsWithoutAFontDrawNothing)
{
    Captions none(application.getRenderDevice(), assets.getCaptionProgram(), "nowhere.ttf", 20);
    EXPECT_FALSE(none.hasFont());
    EXPECT_EQ(none.draw("text", size, 0, {1, 1, 1}, draws), 0);
    EXPECT_EQ(draws.get(), 0u);
}
