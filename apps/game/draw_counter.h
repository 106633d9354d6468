#pragma once

#include <cstddef>

/// How many draws a frame takes: whoever hands triangles or lines to the device counts them here.
class DrawCounter {
public:
    void reset() { draws = 0; }
    void add(std::size_t more = 1) { draws += more; }
    std::size_t get() const { return draws; }

private:
    std::size_t draws = 0;
};
