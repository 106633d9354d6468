#pragma once

#include <array>
#include <cstddef>

/// How long frames take: the average of the last ones, since single ones jump about too much to be read.
class FrameTimes {
public:
    void add(float milliseconds)
    {
        times[next % times.size()] = milliseconds;
        ++next;
    }

    /// 0 before the first.
    float getAverage() const
    {
        const std::size_t count = next < times.size() ? next : times.size();
        float sum = 0;
        for (std::size_t i = 0; i < count; ++i) sum += times[i];
        return count > 0 ? sum / static_cast<float>(count) : 0;
    }

private:
    std::array<float, 32> times = {};
    std::size_t next = 0;
};
