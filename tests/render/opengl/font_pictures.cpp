#include "font_pictures.h"

#include "drawing_fixture.h"

Image makeSpeckles(int width, int height)
{
    Image image = makeImage(width, height, black);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            image.getPixels()[y * width + x] = {static_cast<unsigned char>(2 * x), static_cast<unsigned char>(4 * y),
                                                static_cast<unsigned char>(100 + (x * 7 + y * 13) % 100), 255};
    return image;
}

Image makeLetters()
{
    const char* const rows[] = {
        ".###..####...###..", "#...#.#...#.#...#.", "#...#.#...#.#.....", "#####.####..#.....",
        "#...#.#...#.#.....", "#...#.#...#.#...#.", "#...#.####...###..", "..................",
        "####..####..####..", "#...#.#.....#.....", "#...#.#.....#.....", "#...#.###...###...",
        "#...#.#.....#.....", "#...#.#.....#.....", "####..####..#.....", "..................",
    };
    Image image = makeImage(18, 16, {255, 255, 255, 0});
    for (int y = 0; y < 16; ++y)
        for (int x = 0; x < 18; ++x)
            if (rows[y][x] == '#') image.getPixels()[y * 18 + x] = white;
    return image;
}

void pasteText(Image& canvas, int x, int y, const Image& picture, const Cells& cells, const std::string& text)
{
    for (const char c : text) {
        const int cell = c - cells.first;
        if (c > ' ')
            paste(canvas, x, y, picture, cell % cells.columns * cells.width, cell / cells.columns * cells.height,
                  cells.width, cells.height);
        x += (c == ' ' ? cells.width - 5 : cells.width) + 4;
    }
}
