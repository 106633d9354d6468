#include "font_bake.h"

#include "font_glyphs.h"
#include "png_file.h"
#include "printable_text.h"
#include "report.h"

#include <SDL.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <memory>

namespace {

// What ImageFont holds, what it draws, and what it puts between two characters.
constexpr int lastCharacter = 127;
constexpr int firstPrinted = 33;
constexpr int lastDrawn = 126; // 127 is a control character
constexpr int spaceIsNarrowerThanCell = 5;
constexpr int characterGap = 4;

constexpr int largestSide = 16384; // of a texture on usual hardware

struct FreeSurface {
    void operator()(SDL_Surface* surface) const { SDL_FreeSurface(surface); }
};

using Surface = std::unique_ptr<SDL_Surface, FreeSurface>;

/// How the picture is divided, and where the pen stands on the baseline of a cell.
struct Grid {
    int cellWidth;
    int cellHeight;
    int columns;
    int rows;
    int penX;
    int baseline;
};

/// As narrow as can be, since that narrows the space, too; but a space moves the pen at least as far as in the font.
Grid layOut(const FontBake& order, const GlyphSet& set)
{
    const Glyph& one = set.glyphs.front();
    int left = one.left;
    int right = one.right();
    int top = one.top;
    int bottom = one.bottom();
    for (const Glyph& glyph : set.glyphs) {
        left = std::min(left, glyph.left);
        right = std::max(right, glyph.right());
        top = std::min(top, glyph.top);
        bottom = std::max(bottom, glyph.bottom());
    }
    const int cells = lastCharacter - order.firstCharacter + 1;
    Grid grid = {};
    grid.cellWidth =
        std::max(right - left + 2 * order.padding, set.spaceAdvance + spaceIsNarrowerThanCell - characterGap);
    grid.cellHeight = bottom - top + 2 * order.padding;
    grid.columns = order.columns;
    grid.rows = (cells + order.columns - 1) / order.columns;
    grid.penX = order.padding - left;
    grid.baseline = order.padding - top;
    return grid;
}

void paint(SDL_Surface& picture, const Glyph& glyph, int penX, int baseline)
{
    auto* const pixels = static_cast<unsigned char*>(picture.pixels);
    auto coverage = glyph.coverage.begin();
    for (int y = 0; y < glyph.height; ++y)
        for (int x = 0; x < glyph.width; ++x) {
            const std::ptrdiff_t row = baseline + glyph.top + y;
            const std::ptrdiff_t column = penX + glyph.left + x;
            pixels[row * picture.pitch + column * 4 + 3] = *coverage++;
        }
}

/// White everywhere, with the characters in its alpha: so the edges do not darken when it is filtered.
Surface drawPicture(const FontBake& order, const GlyphSet& set, const Grid& grid)
{
    const int width = grid.columns * grid.cellWidth;
    const int height = grid.rows * grid.cellHeight;
    if (width > largestSide || height > largestSide)
        throw FontProblem("makes a picture of " + std::to_string(width) + " x " + std::to_string(height) +
                          " pixels, which is more than a texture can have (" + std::to_string(largestSide) + ")");
    Surface picture(SDL_CreateRGBSurfaceWithFormat(0, width, height, 32, SDL_PIXELFORMAT_RGBA32));
    if (!picture) throw FontProblem(std::string("cannot be drawn: ") + SDL_GetError());
    SDL_FillRect(picture.get(), nullptr, SDL_MapRGBA(picture->format, 255, 255, 255, 0));
    for (const Glyph& glyph : set.glyphs) {
        const int cell = glyph.code - order.firstCharacter;
        paint(*picture, glyph, cell % grid.columns * grid.cellWidth + grid.penX,
              cell / grid.columns * grid.cellHeight + grid.baseline);
    }
    return picture;
}

/// "33 to 47, 60": runs of codes that follow each other.
std::string listOf(const std::vector<int>& codes)
{
    std::string text;
    for (std::size_t first = 0; first < codes.size();) {
        std::size_t last = first;
        while (last + 1 < codes.size() && codes[last + 1] == codes[last] + 1) ++last;
        text += (text.empty() ? "" : ", ") + std::to_string(codes[first]);
        if (last != first) text += " to " + std::to_string(codes[last]);
        first = last + 1;
    }
    return text;
}

/// As C++ reads it.
std::string quoted(const std::string& text)
{
    std::string literal;
    for (const char c : text) {
        if (c == '"' || c == '\\') literal += '\\';
        literal += c;
    }
    return '"' + printable(literal) + '"';
}

bool endsInPng(const std::string& name)
{
    constexpr char extension[] = ".png";
    constexpr std::size_t length = sizeof extension - 1;
    return name.size() > length && SDL_strcasecmp(name.c_str() + name.size() - length, extension) == 0;
}

void printGrid(const FontBake& order, const Grid& grid)
{
    std::printf("%s: codes %d to %d in cells of %d x %d pixels, %d in a row, baseline at %d\n",
                printable(order.picture).c_str(), order.firstCharacter, lastCharacter, grid.cellWidth, grid.cellHeight,
                grid.columns, grid.baseline);
    std::printf("loadImageFont(device, %s, %d, %d, %d, %d, true);\n", quoted(order.picture).c_str(), grid.cellWidth,
                grid.cellHeight, grid.columns, order.firstCharacter);
}

bool bake(const FontBake& order)
{
    const GlyphSet set =
        drawGlyphs(order.font, order.size, order.isMono, std::max(order.firstCharacter, firstPrinted), lastDrawn);
    if (set.glyphs.empty()) throw FontProblem("has no visible character among the wanted ones");
    if (!set.missingCodes.empty())
        report(printable(order.font) +
               ": note: codes without a character, whose cells stay empty: " + listOf(set.missingCodes));
    const Grid grid = layOut(order, set);
    const Surface picture = drawPicture(order, set, grid);
    if (const std::string problem = writePNGFile(order.picture, *picture); !problem.empty()) {
        report(printable(order.picture) + ": " + problem);
        return false;
    }
    printGrid(order, grid);
    return true;
}

} // namespace

bool bakeFont(const FontBake& order)
{
    if (!endsInPng(order.picture)) {
        report(printable(order.picture) + ": does not end in .png");
        return false;
    }
    try {
        return bake(order);
    } catch (const FontProblem& problem) {
        report(printable(order.font) + ": " + printable(problem.what()));
        return false;
    }
}
