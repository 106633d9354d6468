#include "title.h"

bool FrameRateTitle::countFrame(uint64 milliseconds)
{
    constexpr uint64 period = 500;
    ++frameCount;
    const uint64 elapsed = milliseconds - countedSince;
    if (elapsed < period) return false;
    framesPerSecond = static_cast<unsigned int>((frameCount * uint64{1000} + elapsed / 2) / elapsed);
    countedSince = milliseconds;
    frameCount = 0;
    return true;
}

std::string FrameRateTitle::getTitle(const Visibility& visibility) const
{
    return name + " - " + std::to_string(framesPerSecond) + " frames per second - " + std::to_string(visibility.drawn) +
           " drawn, " + std::to_string(visibility.culled) + " culled, " + std::to_string(visibility.hidden) + " hidden";
}
