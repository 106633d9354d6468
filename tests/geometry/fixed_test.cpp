#include <xum/geometry/fixed.h>

#include "flush_counter.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <ostream>

namespace {

std::string printed(const Fixed& value)
{
    std::ostringstream stream;
    stream << value;
    return stream.str();
}

} // namespace

TEST(Fixed, isOneSigned32BitValue)
{
    static_assert(sizeof(Fixed) == 4);
    static_assert(std::is_same_v<decltype(Fixed::raw), std::int32_t>);
    EXPECT_EQ(Fixed().raw, 0);
    EXPECT_EQ(Fixed(-7).raw, -7);
}

TEST(Fixed, comparesTheRawValues)
{
    EXPECT_TRUE(Fixed(3) == Fixed(3));
    EXPECT_FALSE(Fixed(3) != Fixed(3));
    EXPECT_TRUE(Fixed(3) != Fixed(-3));
    EXPECT_FALSE(Fixed(3) == Fixed(-3));
}

TEST(Fixed, printsTheRawValueInDecimal)
{
    EXPECT_EQ(printed(Fixed()), "Fixed(0)\n");
    EXPECT_EQ(printed(Fixed(65536)), "Fixed(65536)\n");
    EXPECT_EQ(printed(Fixed(-12)), "Fixed(-12)\n");
    EXPECT_EQ(printed(Fixed(std::numeric_limits<std::int32_t>::max())), "Fixed(2147483647)\n");
    EXPECT_EQ(printed(Fixed(std::numeric_limits<std::int32_t>::min())), "Fixed(-2147483648)\n");
}

TEST(Fixed, printsInDecimalWhateverTheStreamIsSetTo)
{
    std::ostringstream stream;
    stream << std::hex << std::showpos << Fixed(255);
    EXPECT_EQ(stream.str(), "Fixed(255)\n");
}

TEST(Fixed, flushesOnceBehindTheNewline)
{
    FlushCounter buffer;
    std::ostream stream(&buffer);
    stream << Fixed(5);
    EXPECT_EQ(buffer.flushCount, 1);
    EXPECT_EQ(buffer.textAtFlush, "Fixed(5)\n");
}

TEST(Fixed, returnsTheStreamItPrintedTo)
{
    std::ostringstream stream;
    EXPECT_EQ(&(stream << Fixed(1)), &stream);
    stream << Fixed(2) << "end";
    EXPECT_EQ(stream.str(), "Fixed(1)\nFixed(2)\nend");
}
