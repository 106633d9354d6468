#pragma once

#include "font_picture.h"

#include <limits>

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

/// The characters of a LetterFont.
constexpr int widthOfA = 4; // columns 2 to 5 of its cell
constexpr int widthOfB = 7; // columns 0 to 6
constexpr int widthOfSpace = 3;
constexpr int widthOfOthers = 1; // their cells are empty
constexpr int gap = 4;
constexpr int cellHeight = 5;

inline const Glyph glyphOfA = glyphAt(8 + 2, 10, widthOfA, cellHeight, 128, 32);
inline const Glyph glyphOfB = glyphAt(16, 10, widthOfB, cellHeight, 128, 32);

/// A test with a font of two visible letters, A and B, trimmed.
class LetterFont : public ::testing::Test {
protected:
    void SetUp() override
    {
        const auto alphaAt = [](int x, int y) {
            const bool isA = x >= 8 + 2 && x <= 8 + 5;
            const bool isB = x >= 16 && x <= 16 + 6;
            return y >= 10 && y < 15 && (isA || isB) ? 255 : 0;
        };
        makeFontPicture(128, 32, alphaAt)->writeToFile("letters.bmp");
        font = loadFont(&device, "letters.bmp", {8, cellHeight, 16, 32, true});
        ASSERT_NE(font, nullptr);
        device.calls.clear();
    }

    RecordingRenderDevice device;
    OwnedImageFont font{nullptr, {&device}};
};

/// Two triangles of a rectangle.
inline Points rectangle(float left, float top, float right, float bottom)
{
    return {{left, top, 0}, {left, bottom, 0}, {right, bottom, 0}, {right, bottom, 0}, {right, top, 0}, {left, top, 0}};
}

inline Coordinates coordinatesOf(const Glyph& g)
{
    return {{g.left, g.top},     {g.left, g.bottom}, {g.right, g.bottom},
            {g.right, g.bottom}, {g.right, g.top},   {g.left, g.top}};
}

template <class Values>
Values joined(Values a, const Values& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}
