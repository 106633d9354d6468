#include "title.h"

#include <gtest/gtest.h>

TEST(FrameRateTitle, countsFramesOfHalfASecond)
{
    FrameRateTitle title("game");
    for (int frame = 1; frame < 25; ++frame) EXPECT_FALSE(title.countFrame(static_cast<uint64>(frame) * 20)) << frame;
    EXPECT_TRUE(title.countFrame(500));
    EXPECT_EQ(title.getTitle(), "game - 50 frames per second");
}

TEST(FrameRateTitle, startsAnewAfterEachCount)
{
    FrameRateTitle title("game");
    title.countFrame(500);
    EXPECT_EQ(title.getTitle(), "game - 2 frames per second");
    EXPECT_FALSE(title.countFrame(999));
    EXPECT_FALSE(title.countFrame(999));
    EXPECT_TRUE(title.countFrame(1000));
    EXPECT_EQ(title.getTitle(), "game - 6 frames per second");
}

TEST(FrameRateTitle, roundsOverALongPause)
{
    FrameRateTitle title("game");
    EXPECT_TRUE(title.countFrame(3000));
    EXPECT_EQ(title.getTitle(), "game - 0 frames per second");
}
