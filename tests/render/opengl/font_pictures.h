#pragma once

#include <xum/render/image.h>

#include <string>

/// How a font's picture is divided.
struct Cells {
    int width;
    int height;
    int columns;
    int first;
};

/// Every pixel has another colour, and none of them is the canvas's black.
Image makeSpeckles(int width, int height);

/// Six letters from A on, white, in two rows of cells of 6 x 8. E and F are narrower.
Image makeLetters();

constexpr Cells letterCells{6, 8, 3, 'A'};

/// Copies the cells of untrimmed characters to where they belong on a canvas.
void pasteText(Image& canvas, int x, int y, const Image& picture, const Cells& cells, const std::string& text);
