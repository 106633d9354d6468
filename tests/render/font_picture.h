#pragma once

#include "picture.h"
#include "print_vectors.h"
#include "recording_render_device.h"

#include <xum/render/image_font.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

using Calls = std::vector<std::string>;
using Points = std::vector<Vector3<float>>;
using Coordinates = std::vector<Vector2<float>>;
using Colors = std::vector<Vector4<float>>;

struct DestroyImageFont {
    RenderDevice* device;
    void operator()(ImageFont* font) const { destroyImageFont(device, font); }
};

using OwnedImageFont = std::unique_ptr<ImageFont, DestroyImageFont>;

/// How a picture is divided; as it stands, six rows of cells in a picture of 128 x 32.
struct FontGrid {
    int cellWidth = 8;
    int cellHeight = 5;
    int columns = 16;
    int firstCharacter = 32;
    bool trim = false;
};

inline OwnedImageFont loadFont(RenderDevice* device, const std::string& fileName, const FontGrid& grid)
{
    return {
        loadImageFont(device, fileName, grid.cellWidth, grid.cellHeight, grid.columns, grid.firstCharacter, grid.trim),
        {device}};
}

/// Each pixel has the alpha `alphaAt(x, y)`. Those without any have a colour nevertheless, which nobody must see.
template <class Function>
OwnedImage makeFontPicture(int width, int height, Function alphaAt)
{
    return makeImage(
        width, height,
        [&](int x, int y) {
            const auto byte = [](int value) { return static_cast<unsigned char>(value); };
            return Pixel{byte(10 + x), byte(200 - y), byte(x * y), byte(alphaAt(x, y))};
        },
        true);
}

/// What a font shows of its texture for a character, and how wide.
struct Glyph {
    int width;
    float left;
    float top;
    float right;
    float bottom;

    friend bool operator==(const Glyph& a, const Glyph& b)
    {
        return a.width == b.width && a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
    }

    friend void PrintTo(const Glyph& glyph, std::ostream* stream)
    {
        *stream << glyph.width << " wide, " << glyph.left << " to " << glyph.right << ", " << glyph.top << " to "
                << glyph.bottom;
    }
};

/// Of a character that is printed.
inline Glyph glyphOf(const ImageFont& font, int character)
{
    Points positions;
    Coordinates coordinates;
    font.generateCharacter(positions, coordinates, 0, 0, 1, 1, 1, character);
    if (coordinates.size() != 6) return {-1, 0, 0, 0, 0};
    return {font.getCharacterWidth(character), coordinates[0].x, coordinates[0].y, coordinates[2].x, coordinates[2].y};
}

/// The glyph of a rectangle of pixels, half a pixel inside its edges.
inline Glyph glyphAt(int x, int y, int width, int height, int pictureWidth, int pictureHeight)
{
    const auto place = [](int pixel, float shift, int size) {
        return (static_cast<float>(pixel) + shift) / static_cast<float>(size);
    };
    return {width, place(x, 0.5f, pictureWidth), place(y, 0.5f, pictureHeight), place(x + width, -0.5f, pictureWidth),
            place(y + height, -0.5f, pictureHeight)};
}
