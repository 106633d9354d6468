#include "engine_fixtures.h"
#include "recorded_calls.h"

#include <cstdint>

namespace {

/// An engine that reads the time it is told.
class EngineClock : public EngineFixture {
protected:
    void SetUp() override
    {
        EngineFixture::SetUp();
        libraryAnswers().isClockDriven = true;
    }

    void TearDown() override
    {
        libraryAnswers() = {};
        EngineFixture::TearDown();
    }

    /// The engine clock after a frame at the given tick count.
    uint64 timeAfterFrameAt(std::uint32_t ticks)
    {
        libraryAnswers().ticks = ticks;
        EXPECT_TRUE(engine->update());
        return engine->getTime();
    }
};

} // namespace

TEST_F(EngineClock, isZeroBeforeAndAfterTheFirstFrame)
{
    libraryAnswers().ticks = 5000;
    EXPECT_EQ(engine->getTime(), 0u);
    EXPECT_EQ(timeAfterFrameAt(5000), 0u);
}

TEST_F(EngineClock, addsTheTimeBetweenFrames)
{
    EXPECT_EQ(timeAfterFrameAt(5000), 0u);
    EXPECT_EQ(timeAfterFrameAt(5016), 16u);
    EXPECT_EQ(timeAfterFrameAt(5016), 16u);
    EXPECT_EQ(timeAfterFrameAt(6000), 1000u);
}

TEST_F(EngineClock, standsStillBetweenFrames)
{
    timeAfterFrameAt(0);
    EXPECT_EQ(timeAfterFrameAt(10), 10u);
    libraryAnswers().ticks = 20;
    EXPECT_EQ(engine->getTime(), 10u);
}

TEST_F(EngineClock, startsAtTickZeroToo)
{
    EXPECT_EQ(timeAfterFrameAt(0), 0u);
    EXPECT_EQ(timeAfterFrameAt(7), 7u);
}

TEST_F(EngineClock, runsOnWhenTheTickCounterWraps)
{
    EXPECT_EQ(timeAfterFrameAt(0xFFFFFFF0u), 0u);
    EXPECT_EQ(timeAfterFrameAt(0x00000010u), 32u);
    EXPECT_EQ(timeAfterFrameAt(0x00000020u), 48u);
}

TEST_F(EngineClock, countsBeyondThirtyTwoBits)
{
    timeAfterFrameAt(0);
    uint64 expected = 0;
    for (std::uint32_t i = 1; i <= 10; ++i) {
        expected += 0x7FFFFFFFu;
        EXPECT_EQ(timeAfterFrameAt(i * 0x7FFFFFFFu), expected);
    }
    EXPECT_GT(expected, uint64{0xFFFFFFFFu} * 4);
}

TEST_F(EngineClock, frameAfterTheHighestTickCountsAsAFirstOne)
{
    EXPECT_EQ(timeAfterFrameAt(0xFFFFFFF0u), 0u);
    EXPECT_EQ(timeAfterFrameAt(0xFFFFFFFFu), 15u);
    EXPECT_EQ(timeAfterFrameAt(20), 15u) << "only stored";
    EXPECT_EQ(timeAfterFrameAt(30), 25u);
}

TEST_F(EngineClock, standsStillInAFrameThatQuitsAndCatchesUpInTheNext)
{
    timeAfterFrameAt(100);
    EXPECT_EQ(timeAfterFrameAt(110), 10u);
    libraryAnswers().ticks = 150;
    pushEvent(SDL_QUIT);
    EXPECT_FALSE(engine->update());
    EXPECT_EQ(engine->getTime(), 10u);
    EXPECT_EQ(timeAfterFrameAt(160), 60u) << "the tick of the quit was not stored";
}

TEST_F(EngineClock, quitInTheVeryFirstFrameLeavesTheNextOneTheFirst)
{
    libraryAnswers().ticks = 100;
    pushEvent(SDL_QUIT);
    EXPECT_FALSE(engine->update());
    EXPECT_EQ(timeAfterFrameAt(200), 0u);
    EXPECT_EQ(timeAfterFrameAt(210), 10u);
}
