#include <progress_line.h>

#include <gtest/gtest.h>

#include <thread>

namespace {

constexpr std::chrono::milliseconds noDelay(0);

} // namespace

TEST(ProgressLine, shorterTextCoversALongerOne)
{
    ::testing::internal::CaptureStderr();
    {
        ProgressLine line(true, noDelay);
        line.show("surface", 0.5);
        line.show("surface", 0.75); // too soon after the first
        std::this_thread::sleep_for(std::chrono::milliseconds(110));
        line.show("tree", 0);
    }
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "\rsurface: 50 %\rtree: 0 %    \r             \r");
}

TEST(ProgressLine, nobodyIsShownAnything)
{
    ::testing::internal::CaptureStderr();
    ProgressLine(false, noDelay).show("tree", 0.5);
    ProgressLine(true, std::chrono::hours(1)).show("tree", 0.5);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}
