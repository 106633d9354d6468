#include "title.h"

#include <gtest/gtest.h>

TEST(FrameRateTitle, countsFramesOfHalfASecond)
{
    FrameRateTitle title("game");
    for (int frame = 1; frame < 25; ++frame) EXPECT_FALSE(title.countFrame(static_cast<uint64>(frame) * 20)) << frame;
    EXPECT_TRUE(title.countFrame(500));
    EXPECT_EQ(title.getTitle({}), "game - 50 frames per second - 0 drawn, 0 culled, 0 hidden");
}

TEST(FrameRateTitle, startsAnewAfterEachCount)
{
    FrameRateTitle title("game");
    title.countFrame(500);
    EXPECT_EQ(title.getTitle({}), "game - 2 frames per second - 0 drawn, 0 culled, 0 hidden");
    EXPECT_FALSE(title.countFrame(999));
    EXPECT_FALSE(title.countFrame(999));
    EXPECT_TRUE(title.countFrame(1000));
    EXPECT_EQ(title.getTitle({}), "game - 6 frames per second - 0 drawn, 0 culled, 0 hidden");
}

TEST(FrameRateTitle, roundsOverALongPause)
{
    FrameRateTitle title("game");
    EXPECT_TRUE(title.countFrame(3000));
    EXPECT_EQ(title.getTitle({}), "game - 0 frames per second - 0 drawn, 0 culled, 0 hidden");
}

TEST(FrameRateTitle, tellsHowMuchIsDrawn)
{
    Visibility visibility;
    visibility.drawn = 12;
    visibility.culled = 345;
    visibility.hidden = 6;
    EXPECT_EQ(FrameRateTitle("game").getTitle(visibility),
              "game - 0 frames per second - 12 drawn, 345 culled, 6 hidden");
}
