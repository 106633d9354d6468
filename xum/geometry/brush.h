#pragma once

#include <xum/geometry/plane.h>

#include <cstdint>
#include <vector>

/// A convex solid, by the planes that bound it; in maps of `xum map compile` it lies behind them all.
struct Brush {
    std::vector<Plane<float>> planes; ///< in any order
    unsigned char kind;               ///< means what the maker of the map says
    /// The host's; copied with the brush, but not written to files.
    std::uint32_t words[2] = {0, 0};

    /// With words of 0.
    Brush(const std::vector<Plane<float>>& planes, unsigned char kind) : planes(planes), kind(kind) {}
};
