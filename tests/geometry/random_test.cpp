#include <xum/geometry/random.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <limits>
#include <vector>

namespace {

std::vector<int> table()
{
    std::vector<int> bytes;
    for (int i = 0; i < 256; ++i) bytes.push_back(randomByte(i));
    return bytes;
}

/// Moves the cursor so that the next draw is the table's entry `index`, whatever was drawn before. A whole round of
/// draws leaves the cursor where it was and tells where that is.
void moveCursorTo(unsigned index)
{
    const std::vector<int> bytes = table();
    std::vector<int> drawn;
    for (int i = 0; i < 256; ++i) drawn.push_back(randomByte());
    unsigned cursor = 0;
    const auto isAt = [&](unsigned start) {
        for (unsigned i = 0; i < 256; ++i)
            if (drawn[i] != bytes[(start + i) & 255]) return false;
        return true;
    };
    while (cursor < 256 && !isAt(cursor)) ++cursor;
    ASSERT_LT(cursor, 256u) << "the draws are no rotation of the table";
    for (; cursor != index; cursor = (cursor + 1) & 255) randomByte();
}

std::uint32_t crc32(const std::vector<int>& bytes)
{
    std::uint32_t remainder = 0xFFFFFFFFu;
    for (const int byte : bytes) {
        remainder ^= static_cast<std::uint32_t>(byte);
        for (int bit = 0; bit < 8; ++bit) remainder = remainder >> 1 ^ ((remainder & 1) != 0 ? 0xEDB88320u : 0u);
    }
    return ~remainder;
}

} // namespace

TEST(RandomTable, isTheAgreedOne)
{
    EXPECT_EQ(crc32(table()), 0x50d523eeu);
    int sum = 0;
    for (const int byte : table()) sum += byte;
    EXPECT_EQ(sum, 33421);
}

TEST(RandomTable, holdsBothEndsOfTheByteRange)
{
    EXPECT_EQ(randomByte(98), 0);
    EXPECT_EQ(randomByte(237), 0);
    EXPECT_EQ(randomByte(39), 255);
    EXPECT_EQ(randomByte(225), 255);
}

TEST(RandomByte, startsWithTheFirstEntryInEveryProcess)
{
    // A process of its own: other tests of this program draw too.
    EXPECT_EXIT(std::exit(randomByte() == 0x7c && randomByte() == 0x07 ? 0 : 1), testing::ExitedWithCode(0), "");
}

TEST(RandomByte, drawsTheTableInOrder)
{
    moveCursorTo(0);
    for (const int expected : {124, 7, 187, 151, 236, 113, 27, 153}) EXPECT_EQ(randomByte(), expected);
    moveCursorTo(0);
    for (const int expected : table()) EXPECT_EQ(randomByte(), expected);
}

TEST(RandomByte, startsAgainWithThe257thDraw)
{
    moveCursorTo(0);
    const int first = randomByte();
    for (int i = 1; i < 256; ++i) randomByte();
    EXPECT_EQ(first, 0x7c);
    EXPECT_EQ(randomByte(), 0x7c);
    EXPECT_EQ(randomByte(), 0x07);
}

TEST(RandomByte, withAnIndexTakesItsLowestEightBits)
{
    EXPECT_EQ(randomByte(0), 0x7c);
    EXPECT_EQ(randomByte(256), 0x7c);
    EXPECT_EQ(randomByte(257), 0x07);
    EXPECT_EQ(randomByte(-1), 0x5e);
    EXPECT_EQ(randomByte(-256), 0x7c);
    EXPECT_EQ(randomByte(std::numeric_limits<int>::min()), 0x7c);
    EXPECT_EQ(randomByte(std::numeric_limits<int>::max()), 0x5e);
}

TEST(RandomByte, withAnIndexDoesNotMoveTheCursor)
{
    moveCursorTo(5);
    EXPECT_EQ(randomByte(100), table()[100]);
    EXPECT_EQ(randomByte(), 113);
    EXPECT_EQ(randomByte(0), 0x7c);
    EXPECT_EQ(randomByte(), 27);
}

TEST(RandomFloat, isTheNextByteOver255)
{
    moveCursorTo(0);
    EXPECT_EQ(randomFloat(), 0.48627451f);
    EXPECT_EQ(randomFloat(), 0.027450981f);
    moveCursorTo(0);
    for (const int byte : table()) EXPECT_EQ(randomFloat(), static_cast<float>(byte / 255.0));
}

TEST(RandomFloat, reachesZeroAndOne)
{
    moveCursorTo(98);
    EXPECT_EQ(randomFloat(), 0.0f);
    moveCursorTo(39);
    EXPECT_EQ(randomFloat(), 1.0f);
}

TEST(RandomDirection, isTheNextByteSpreadOverMinusOneToOne)
{
    moveCursorTo(0);
    EXPECT_EQ(randomDirection(), -0.02745098f);
    EXPECT_EQ(randomDirection(), -0.94509804f);
    moveCursorTo(0);
    for (const int byte : table()) EXPECT_EQ(randomDirection(), static_cast<float>(byte / 255.0 * 2.0 - 1.0));
}

TEST(RandomDirection, reachesMinusOneAndOne)
{
    moveCursorTo(237);
    EXPECT_EQ(randomDirection(), -1.0f);
    moveCursorTo(225);
    EXPECT_EQ(randomDirection(), 1.0f);
}

TEST(RandomSource, hasOneCursorForAllForms)
{
    moveCursorTo(0);
    EXPECT_EQ(randomByte(), 124);
    EXPECT_EQ(randomFloat(), static_cast<float>(7 / 255.0));
    EXPECT_EQ(randomDirection(), static_cast<float>(187 / 255.0 * 2.0 - 1.0));
    EXPECT_EQ(randomByte(), 151);
}
