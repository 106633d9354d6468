#pragma once

#include <string>

/// What to bake, and how.
struct FontBake {
    std::string font;
    int size = 0; // in points, as loadFont counts them
    std::string picture;
    int columns = 16;
    int firstCharacter = 32;
    int padding = 1; // pixels around the largest character, on each side
    bool isMono = false;
};

/// Makes the picture of an ImageFont and prints how to load it. False when that failed, which has been reported; an
/// older file stays then.
bool bakeFont(const FontBake& order);
