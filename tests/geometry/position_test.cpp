#include <xum/geometry/position.h>

#include "flush_counter.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <limits>
#include <ostream>

namespace {

std::string printed(const Position& position)
{
    std::ostringstream stream;
    stream << position;
    return stream.str();
}

} // namespace

TEST(Position, liesInMemoryAsThreeSigned32BitValues)
{
    const Position position(1, -2, 3);
    const std::int32_t expected[] = {1, -2, 3};
    static_assert(sizeof position == sizeof expected);
    EXPECT_EQ(std::memcmp(&position, expected, sizeof expected), 0);
}

TEST(Position, isZeroByDefault)
{
    EXPECT_EQ(Position(), Position(0, 0, 0));
}

TEST(Position, isEqualOnlyInAllComponents)
{
    const Position position(1, 2, 3);
    EXPECT_TRUE(position == Position(1, 2, 3));
    EXPECT_FALSE(position != Position(1, 2, 3));
    for (const Position& other : {Position(9, 2, 3), Position(1, 9, 3), Position(1, 2, 9)}) {
        EXPECT_FALSE(position == other);
        EXPECT_TRUE(position != other);
    }
}

TEST(Position, printsItsComponentsInDecimal)
{
    EXPECT_EQ(printed(Position()), "Position(0, 0, 0)\n");
    EXPECT_EQ(printed(Position(1, 20, 300)), "Position(1, 20, 300)\n");
    EXPECT_EQ(printed(Position(-1, std::numeric_limits<std::int32_t>::max(), std::numeric_limits<std::int32_t>::min())),
              "Position(-1, 2147483647, -2147483648)\n");
}

TEST(Position, printsInDecimalWhateverTheStreamIsSetTo)
{
    std::ostringstream stream;
    stream << std::hex << std::showpos << Position(255, 16, -1);
    EXPECT_EQ(stream.str(), "Position(255, 16, -1)\n");
}

TEST(Position, flushesOnceBehindTheNewline)
{
    FlushCounter buffer;
    std::ostream stream(&buffer);
    stream << Position(1, 2, 3);
    EXPECT_EQ(buffer.flushCount, 1);
    EXPECT_EQ(buffer.textAtFlush, "Position(1, 2, 3)\n");
}

TEST(Position, returnsTheStreamItPrintedTo)
{
    std::ostringstream stream;
    EXPECT_EQ(&(stream << Position(1, 2, 3)), &stream);
    stream << Position(4, 5, 6) << "end";
    EXPECT_EQ(stream.str(), "Position(1, 2, 3)\nPosition(4, 5, 6)\nend");
}
