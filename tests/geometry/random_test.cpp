#include <xum/geometry/random.h>

#include <gtest/gtest.h>

TEST(RandomByte, drawsTheTableInOrderAndStartsAgainAfter256)
{
    EXPECT_EQ(randomByte(), 0x7c);
    EXPECT_EQ(randomByte(), 0x07);
    for (int i = 2; i < 256; ++i) randomByte();
    EXPECT_EQ(randomByte(), 0x7c);
}
