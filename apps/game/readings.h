#pragma once

#include "level.h"
#include "visibility.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// What the display in the upper left corner tells.
struct Readings {
    float frameMilliseconds = 0;
    Vector3<float> position;
    std::optional<Level::Position> leaf; ///< none: outside of the level
    std::size_t draws = 0;
    std::size_t drawn = 0; ///< things and faces
    std::size_t culled = 0;
    std::size_t hidden = 0;
    std::optional<std::int64_t> scriptBytesPerMinute;
};

/// Line by line, in ASCII.
std::vector<std::string> describe(const Readings& readings);

/// What the part of the world is called where a point lies.
const char* nameOfPlace(const Scene& scene, const Vector3<float>& point);
