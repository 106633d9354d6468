#include "volume.h"

#include <gtest/gtest.h>

TEST(Volume, isFullAtTheStart)
{
    EXPECT_EQ(Volume().get(), 1);
    EXPECT_EQ(Volume(25).get(), 0.25f);
}

TEST(Volume, staysBetweenNoneAndFull)
{
    Volume volume(95);
    volume.change(10);
    EXPECT_EQ(volume.get(), 1);
    volume.change(-10);
    EXPECT_EQ(volume.get(), 0.9f);
    volume.change(-200);
    EXPECT_EQ(volume.get(), 0);
}

TEST(Volume, comesBackAsItWasBeforeItWasMute)
{
    Volume volume(40);
    volume.switchMute();
    EXPECT_EQ(volume.get(), 0);
    volume.switchMute();
    EXPECT_EQ(volume.get(), 0.4f);
    EXPECT_EQ(Volume(40, true).get(), 0);
}

TEST(Volume, isHeardAgainWhenItIsChanged)
{
    Volume volume(40, true);
    volume.change(10);
    EXPECT_EQ(volume.get(), 0.5f);
}
