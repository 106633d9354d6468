#pragma once

#include <cmath>

/// Angles in degrees go to radians in double precision and are rounded to float; so are the functions of them.

inline double toRadians(float degrees)
{
    return static_cast<double>(static_cast<float>(static_cast<double>(degrees) * 3.14159265358979323846 / 180.0));
}

inline float sineOf(float degrees)
{
    return static_cast<float>(std::sin(toRadians(degrees)));
}

inline float cosineOf(float degrees)
{
    return static_cast<float>(std::cos(toRadians(degrees)));
}

/// Of half the angle.
inline float tangentOfHalf(float degrees)
{
    return static_cast<float>(std::tan(toRadians(degrees / 2.0f)));
}
