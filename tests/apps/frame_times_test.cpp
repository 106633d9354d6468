#include "frame_times.h"

#include <gtest/gtest.h>

TEST(FrameTimes, averageIsZeroBeforeTheFirstFrame)
{
    EXPECT_EQ(FrameTimes().getAverage(), 0);
}

TEST(FrameTimes, averageIsThatOfAllFramesAtFirst)
{
    FrameTimes times;
    times.add(10);
    EXPECT_EQ(times.getAverage(), 10);
    times.add(20);
    times.add(60);
    EXPECT_EQ(times.getAverage(), 30);
}

TEST(FrameTimes, onlyTheLastThirtyTwoFramesCount)
{
    FrameTimes times;
    for (int i = 0; i < 100; ++i) times.add(1000);
    for (int i = 0; i < 31; ++i) times.add(8);
    EXPECT_EQ(times.getAverage(), 39); // (1000 + 31 * 8) / 32
    times.add(8);
    EXPECT_EQ(times.getAverage(), 8);
}
