#include "box_font.h"
#include "own_directory.h"
#include "program.h"

#include <font_glyphs.h>

#include <xum/render/image.h>
#include <xum/render/image_font.h>

#include <SDL.h>
#include <SDL_ttf.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>

namespace fs = std::filesystem;

namespace {

/// What loadImageFont has to be told, and where the baseline is.
struct Grid {
    int cellWidth;
    int cellHeight;
    int columns;
    int firstCharacter;
    int baseline;
};

struct DestroyFont {
    void operator()(ImageFont* font) const { destroyImageFont(nullptr, font); }
};

using LoadedFont = std::unique_ptr<ImageFont, DestroyFont>;

/// Of one cell, as rows of coverage.
using Cell = std::vector<std::string>;

const std::string demoFont = XUM_DEMO_FONTS "/hud.ttf";

/// One character of each kind: right of the pen, below the baseline, left of the pen, above what the font says it is.
BoxFont boxFont(int spaceAdvance = 6)
{
    return BoxFont({{' ', 0, 0, 0, 0, spaceAdvance},
                    {'A', 1, 0, 5, 10, 7},
                    {'g', 0, -3, 4, 6, 5},
                    {'j', -2, -3, 1, 8, 2},
                    {'~', 0, 9, 3, 14, 4}});
}

const std::string boxFontNote =
    "a.ttf: note: codes without a character, whose cells stay empty: 33 to 64, 66 to 102, 104 to 105, 107 to 125\n";

class FontCommand : public ::testing::Test {
protected:
    void SetUp() override
    {
        enterOwnDirectory();
        writeFileContents("a.ttf", boxFont().make());
    }

    static std::string textOf(const std::string& picture, const Grid& grid)
    {
        return picture + ": codes " + std::to_string(grid.firstCharacter) + " to 127 in cells of " +
               std::to_string(grid.cellWidth) + " x " + std::to_string(grid.cellHeight) + " pixels, " +
               std::to_string(grid.columns) + " in a row, baseline at " + std::to_string(grid.baseline) +
               "\nloadImageFont(device, \"" + picture + "\", " + std::to_string(grid.cellWidth) + ", " +
               std::to_string(grid.cellHeight) + ", " + std::to_string(grid.columns) + ", " +
               std::to_string(grid.firstCharacter) + ", true);\n";
    }

    /// Bakes a.png and expects that the program tells of this grid.
    void bake(const std::string& arguments, const Grid& expected)
    {
        const ProgramRun run = runXum("font bake " + arguments);
        ASSERT_EQ(run.status, 0) << run.errors;
        EXPECT_EQ(run.output, textOf("a.png", expected));
        grid = expected;
        load();
    }

    /// Bakes a.png of the demo's font, with whatever grid the program tells of.
    void bakeDemoFont(const std::string& arguments)
    {
        const ProgramRun run = runXum("font bake " + demoFont + " " + arguments);
        ASSERT_EQ(run.status, 0) << run.errors;
        EXPECT_EQ(run.errors, "");
        const std::string format = "a.png: codes %d to 127 in cells of %d x %d pixels, %d in a row, baseline at %d\n";
        ASSERT_EQ(std::sscanf(run.output.c_str(), format.c_str(), &grid.firstCharacter, &grid.cellWidth,
                              &grid.cellHeight, &grid.columns, &grid.baseline),
                  5);
        EXPECT_EQ(run.output, textOf("a.png", grid));
        load();
    }

    void load()
    {
        picture.reset(loadImage("a.png"));
        ASSERT_NE(picture, nullptr);
    }

    LoadedFont loadFont() const
    {
        return LoadedFont(
            loadImageFont(nullptr, "a.png", grid.cellWidth, grid.cellHeight, grid.columns, grid.firstCharacter, true));
    }

    Cell cellOf(int code) const
    {
        const int index = code - grid.firstCharacter;
        const int left = index % grid.columns * grid.cellWidth;
        const int top = index / grid.columns * grid.cellHeight;
        Cell cell(static_cast<std::size_t>(grid.cellHeight));
        for (int y = 0; y < grid.cellHeight; ++y)
            for (int x = 0; x < grid.cellWidth; ++x)
                cell[static_cast<std::size_t>(y)] += static_cast<char>(picture->getPixel(left + x, top + y).alpha);
        return cell;
    }

    /// '.' for nothing, '#' for full coverage, '+' for what is between.
    std::string drawingOf(int code) const
    {
        std::string drawing;
        for (const std::string& row : cellOf(code)) {
            for (const char coverage : row) drawing += coverage == 0 ? '.' : coverage == '\xFF' ? '#' : '+';
            drawing += '\n';
        }
        return drawing;
    }

    Grid grid = {};
    std::unique_ptr<Image> picture;
};

std::string repeated(const std::string& text, int count)
{
    std::string all;
    for (int i = 0; i < count; ++i) all += text;
    return all;
}

void expectFailure(const std::string& arguments, const std::string& errors)
{
    const ProgramRun run = runXum("font bake " + arguments);
    EXPECT_EQ(run.status, 1) << arguments;
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.errors, errors) << arguments;
}

/// What SDL_ttf draws, with the line of the ascent on top.
Cell renderedBySDL(TTF_Font* font, int code, bool isMono)
{
    constexpr SDL_Color white = {255, 255, 255, 255};
    const auto character = static_cast<Uint32>(code);
    const std::unique_ptr<SDL_Surface, decltype(&SDL_FreeSurface)> surface(
        isMono ? TTF_RenderGlyph32_Solid(font, character, white) : TTF_RenderGlyph32_Blended(font, character, white),
        SDL_FreeSurface);
    if (!surface) return {};
    Cell cell(static_cast<std::size_t>(surface->h));
    for (int y = 0; y < surface->h; ++y)
        for (int x = 0; x < surface->w; ++x) {
            const auto* const row = static_cast<const unsigned char*>(surface->pixels) + y * surface->pitch;
            const int coverage =
                isMono ? 255 * row[x] : static_cast<int>(reinterpret_cast<const Uint32*>(row)[x] >> 24);
            cell[static_cast<std::size_t>(y)] += static_cast<char>(coverage);
        }
    return cell;
}

/// The same picture in a cell, from that row and column on. Only its empty edges may lie outside.
Cell placedIn(const Cell& drawn, int left, int top, int width, int height)
{
    Cell cell(static_cast<std::size_t>(height), std::string(static_cast<std::size_t>(width), '\0'));
    for (int y = 0; y < static_cast<int>(drawn.size()); ++y)
        for (int x = 0; x < static_cast<int>(drawn[static_cast<std::size_t>(y)].size()); ++x) {
            const char coverage = drawn[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)];
            if (coverage == 0) continue;
            cell.at(static_cast<std::size_t>(y + top)).at(static_cast<std::size_t>(x + left)) = coverage;
        }
    return cell;
}

} // namespace

// ---- the picture --------------------------------------------------------------------------------------------------

TEST_F(FontCommand, eachCharacterStandsOnTheBaselineOfItsCell)
{
    // The widest reach is from -2 to 5, from 14 above the baseline to 3 below it; a pixel of padding lies around it.
    bake("a.ttf 16 a.png", {9, 19, 16, 32, 15});
    EXPECT_EQ(picture->getWidth(), 16 * 9);
    EXPECT_EQ(picture->getHeight(), 6 * 19);
    const std::string empty = ".........\n";
    EXPECT_EQ(drawingOf('A'), repeated(empty, 5) + repeated("....####.\n", 10) + repeated(empty, 4));
    EXPECT_EQ(drawingOf('g'), repeated(empty, 9) + repeated("...####..\n", 9) + repeated(empty, 1));
    EXPECT_EQ(drawingOf('j'), repeated(empty, 7) + repeated(".###.....\n", 11) + repeated(empty, 1));
    EXPECT_EQ(drawingOf('~'), repeated(empty, 1) + repeated("...###...\n", 5) + repeated(empty, 13));
    for (const int code : {32, 66, 127}) EXPECT_EQ(drawingOf(code), repeated(empty, 19)) << code;
}

TEST_F(FontCommand, pictureIsWhiteRGBAWithTheCoverageInItsAlpha)
{
    bake("a.ttf 8 a.png", {6, 11, 16, 32, 8});
    int partly = 0;
    for (int i = 0; i < picture->getWidth() * picture->getHeight(); ++i) {
        const Pixel& pixel = picture->getPixels()[i];
        ASSERT_EQ(pixel.red & pixel.green & pixel.blue, 255);
        if (pixel.alpha != 0 && pixel.alpha != 255) ++partly;
    }
    EXPECT_GT(partly, 0) << "at half the size edges lie between pixels";
    EXPECT_EQ(fileContents("a.png").substr(0, 4), "\x89PNG");
    EXPECT_EQ(fileContents("a.png").substr(24, 2), "\x08\x06") << "8 bits, with colours and alpha";
}

TEST_F(FontCommand, charactersAreThoseOfSDL)
{
    ASSERT_EQ(TTF_Init(), 0);
    for (const bool isMono : {false, true})
        for (const int size : {7, 16, 41}) {
            bakeDemoFont(std::to_string(size) + " a.png" + (isMono ? " --mono" : ""));
            const std::unique_ptr<TTF_Font, decltype(&TTF_CloseFont)> font(TTF_OpenFont(demoFont.c_str(), size),
                                                                           TTF_CloseFont);
            ASSERT_NE(font, nullptr);
            if (isMono) TTF_SetFontHinting(font.get(), TTF_HINTING_MONO);
            int leftmost = 0;
            for (int code = 33; code < 127; ++code) {
                int left = 0;
                TTF_GlyphMetrics32(font.get(), static_cast<Uint32>(code), &left, nullptr, nullptr, nullptr, nullptr);
                leftmost = std::min(leftmost, left);
            }
            // Of SDL's pictures the one of the leftmost character starts at the column behind the padding.
            for (int code = 33; code < 127; ++code) {
                int left = 0;
                TTF_GlyphMetrics32(font.get(), static_cast<Uint32>(code), &left, nullptr, nullptr, nullptr, nullptr);
                const Cell drawn = renderedBySDL(font.get(), code, isMono);
                const int column = 1 - leftmost + std::min(left, 0);
                const int row = grid.baseline - TTF_FontAscent(font.get());
                EXPECT_EQ(cellOf(code), placedIn(drawn, column, row, grid.cellWidth, grid.cellHeight))
                    << code << " at " << size;
            }
        }
    TTF_Quit();
}

TEST_F(FontCommand, noCharacterTouchesTheEdgeOfItsCell)
{
    bakeDemoFont("16 a.png");
    for (int code = 32; code < 128; ++code) {
        const Cell cell = cellOf(code);
        const std::string emptyRow(static_cast<std::size_t>(grid.cellWidth), '\0');
        EXPECT_EQ(cell.front(), emptyRow) << code;
        EXPECT_EQ(cell.back(), emptyRow) << code;
        for (const std::string& row : cell) EXPECT_EQ(row.front() + row.back(), 0) << code;
    }
}

TEST_F(FontCommand, sameFontMakesTheSamePicture)
{
    EXPECT_EQ(runXum("font bake " + demoFont + " 16 a.png").status, 0);
    EXPECT_EQ(runXum("font bake " + demoFont + " 16 b.PNG").status, 0);
    EXPECT_GT(fileContents("a.png").size(), 1000u);
    EXPECT_EQ(fileContents("a.png"), fileContents("b.PNG"));
}

// ---- the font that is loaded --------------------------------------------------------------------------------------

TEST_F(FontCommand, loadedFontMeasuresTheVisibleWidths)
{
    bake("a.ttf 16 a.png", {9, 19, 16, 32, 15});
    const LoadedFont font = loadFont();
    ASSERT_NE(font, nullptr);
    EXPECT_EQ(font->getHeight(), 20);
    EXPECT_EQ(font->getCharacterWidth('A'), 4);
    EXPECT_EQ(font->getCharacterWidth('j'), 3);
    EXPECT_EQ(font->getCharacterWidth(' '), 4);
    EXPECT_EQ(font->measure("Aj A", 1, 0), 4 + 4 + 3 + 4 + 4 + 4 + 4);
}

TEST_F(FontCommand, spaceMovesThePenAsFarAsInTheFontAtLeast)
{
    writeFileContents("a.ttf", boxFont(40).make());
    bake("a.ttf 16 a.png", {41, 19, 16, 32, 15});
    const LoadedFont font = loadFont();
    ASSERT_NE(font, nullptr);
    EXPECT_EQ(font->getCharacterWidth(' ') + font->getCharacterSpace(), 40);
    EXPECT_EQ(drawingOf('j').substr(7 * 42, 42), ".###" + std::string(37, '.') + "\n");
}

TEST_F(FontCommand, demoFontIsAsItsMakerSaid)
{
    const std::unique_ptr<Image> image(loadImage(XUM_DEMO_FONTS "/hud.png"));
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->getWidth(), 16 * 12);
    EXPECT_EQ(image->getHeight(), 6 * 19);
    const LoadedFont font(loadImageFont(nullptr, XUM_DEMO_FONTS "/hud.png", 12, 19, 16, 32, true));
    ASSERT_NE(font, nullptr);
    for (int code = 33; code < 127; ++code) EXPECT_GE(font->getCharacterWidth(code), 2) << static_cast<char>(code);
    EXPECT_EQ(font->getCharacterWidth('H'), 8);
}

// ---- options ------------------------------------------------------------------------------------------------------

TEST_F(FontCommand, columnsAndFirstCodeDivideThePicture)
{
    bake("--columns 10 --first 100 a.ttf 16 a.png", {8, 19, 10, 100, 15}); // without the A, the box of 4 is widest
    EXPECT_EQ(picture->getWidth(), 10 * 8);
    EXPECT_EQ(picture->getHeight(), 3 * 19);
    EXPECT_EQ(drawingOf('g').substr(9 * 9, 9), "...####.\n");
    EXPECT_EQ(drawingOf('j').substr(7 * 9, 9), ".###....\n");
    EXPECT_EQ(drawingOf('~').substr(1 * 9, 9), "...###..\n");
    const LoadedFont font = loadFont();
    ASSERT_NE(font, nullptr);
    EXPECT_EQ(font->getCharacterWidth('g'), 4);
    EXPECT_EQ(font->getCharacterWidth('A'), 0);
}

TEST_F(FontCommand, codesBelowTheSpaceHaveEmptyCells)
{
    bake("--first 0 --columns 128 a.ttf 16 a.png", {9, 19, 128, 0, 15});
    EXPECT_EQ(picture->getWidth(), 128 * 9);
    EXPECT_EQ(picture->getHeight(), 19);
    for (int code = 0; code <= 32; ++code) EXPECT_EQ(drawingOf(code), repeated(".........\n", 19));
    EXPECT_EQ(drawingOf('A').substr(5 * 10, 10), "....####.\n");
}

TEST_F(FontCommand, paddingIsAroundTheLargestCharacter)
{
    bake("--padding 3 a.ttf 16 a.png", {13, 23, 16, 32, 17});
    EXPECT_EQ(drawingOf('j').substr(9 * 14, 14), "...###.......\n");
    bake("--padding 0 a.ttf 16 a.png", {7, 17, 16, 32, 14});
    EXPECT_EQ(drawingOf('j').substr(6 * 8, 8), "###....\n");
    EXPECT_EQ(drawingOf('A').substr(4 * 8, 8), "...####\n");
}

TEST_F(FontCommand, monoHasOnlyWholePixels)
{
    bakeDemoFont("16 a.png");
    EXPECT_NE(drawingOf('S').find('+'), std::string::npos);
    bakeDemoFont("16 a.png --mono");
    for (int code = 33; code < 127; ++code) {
        EXPECT_EQ(drawingOf(code).find('+'), std::string::npos) << code;
        EXPECT_NE(drawingOf(code).find('#'), std::string::npos) << code;
    }
}

// ---- messages -----------------------------------------------------------------------------------------------------

TEST_F(FontCommand, charactersThatTheFontLacksAreNoted)
{
    ProgramRun run = runXum("font bake a.ttf 16 a.png");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.errors, boxFontNote);
    run = runXum("font bake --first 105 a.ttf 16 a.png");
    EXPECT_EQ(run.errors, "a.ttf: note: codes without a character, whose cells stay empty: 105, 107 to 125\n");
}

TEST_F(FontCommand, fontWithoutAVisibleCharacterIsRefused)
{
    writeFileContents("b.ttf", BoxFont({{' ', 0, 0, 0, 0, 6}, {'A', 0, 0, 0, 0, 6}}).make());
    expectFailure("b.ttf 16 b.png", "b.ttf: has no visible character among the wanted ones\n");
    EXPECT_FALSE(fs::exists("b.png"));
}

TEST_F(FontCommand, whatIsNoFontIsReportedAndLeavesTheOldPicture)
{
    writeFileContents("old.png", "old");
    writeFileContents("empty.ttf", "");
    writeFileContents("text.ttf", "no font at all");
    fs::create_directory("d.ttf");
    expectFailure("nosuch.ttf 16 old.png", "nosuch.ttf: cannot be opened: No such file or directory\n");
    expectFailure("d.ttf 16 old.png", "d.ttf: is no file\n");
    for (const std::string name : {"empty.ttf", "text.ttf"}) {
        const ProgramRun run = runXum("font bake " + name + " 16 old.png");
        EXPECT_EQ(run.status, 1);
        const std::string start = name + ": is no font that can be read: ";
        EXPECT_EQ(run.errors.substr(0, start.size()), start);
        EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1);
    }
    EXPECT_EQ(fileContents("old.png"), "old");
}

TEST_F(FontCommand, fontThatEndsEarlyIsAProblemAtMost)
{
    const std::string whole = boxFont().make();
    for (std::size_t size = 0; size < whole.size(); ++size) {
        writeFileContents("b.ttf", whole.substr(0, size));
        try {
            EXPECT_LE(drawGlyphs("b.ttf", 16, false, 33, 126).glyphs.size(), 4u);
        } catch (const FontProblem& problem) {
            EXPECT_STRNE(problem.what(), "");
        }
    }
}

TEST_F(FontCommand, placeThatCannotBeWrittenIsReported)
{
    fs::create_directory("d.png");
    expectFailure("a.ttf 16 d.png", boxFontNote + "d.png: cannot be written: there is something else of that name\n");
    expectFailure("a.ttf 16 nosuch/a.png",
                  boxFontNote + "nosuch/a.png: cannot be written: No such file or directory\n");
#ifndef _WIN32
    writeFileContents("old.png", "old");
    const ProgramRun run =
        runProgram("sh", "-c \"trap '' XFSZ; ulimit -f 1; '" XUM_PROGRAM "' font bake " + demoFont + " 32 old.png\"");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.errors, "old.png: cannot be written: File too large\n");
    EXPECT_EQ(fileContents("old.png"), "old");
#endif
}

TEST_F(FontCommand, pictureMustBeNamedPNG)
{
    for (const std::string name : {"a.bmp", "a", "a.png.bmp", "apng", ".png"}) {
        expectFailure("a.ttf 16 " + name, name + ": does not end in .png\n");
        EXPECT_FALSE(fs::exists(name));
    }
}

TEST_F(FontCommand, pictureLargerThanATextureIsRefused)
{
    const auto problemOf = [](const std::string& size) {
        return boxFontNote + "a.ttf: makes a picture of " + size +
               " pixels, which is more than a texture can have (16384)\n";
    };
    expectFailure("--columns 128 a.ttf 512 a.png", problemOf("28928 x 546"));
    expectFailure("--columns 1 a.ttf 512 a.png", problemOf("226 x 52416"));
    EXPECT_FALSE(fs::exists("a.png"));
}

TEST_F(FontCommand, characterThatNobodyCouldDrawIsRefused)
{
    writeFileContents("b.ttf", BoxFont({{'A', 0, 0, 5, 5, 7}, {'B', 0, 0, 65, 5, 7}}).make());
    expectFailure("b.ttf 512 b.png", "b.ttf: cannot be drawn: the character of code 66: is too large\n");
    EXPECT_FALSE(fs::exists("b.png"));
}

TEST_F(FontCommand, nameIsPrintedAsCppReadsIt)
{
#ifndef _WIN32
    const ProgramRun run = runXum("font bake a.ttf 16 'a\"\\b.png'");
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_NE(run.output.find("loadImageFont(device, \"a\\\"\\\\b.png\", 9, 19, 16, 32, true);\n"), std::string::npos)
        << run.output;
#endif
}

TEST_F(FontCommand, wrongUsageIsToldFromFailure)
{
    for (const char* arguments :
         {"", "nosuch", "bake", "bake a.ttf", "bake a.ttf 16", "bake a.ttf 16 a.png b", "bake a.ttf 0 a.png",
          "bake a.ttf 513 a.png", "bake a.ttf -1 a.png", "bake a.ttf 1.5 a.png", "bake a.ttf x a.png",
          "bake --columns 0 a.ttf 16 a.png", "bake --columns 129 a.ttf 16 a.png", "bake --first -1 a.ttf 16 a.png",
          "bake --first 127 a.ttf 16 a.png", "bake --padding -1 a.ttf 16 a.png", "bake --padding 65 a.ttf 16 a.png"}) {
        const ProgramRun run = runXum("font " + std::string(arguments));
        EXPECT_EQ(run.status, 2) << arguments;
        EXPECT_EQ(run.output, "");
        EXPECT_NE(run.errors, "");
    }
    EXPECT_FALSE(fs::exists("a.png"));
    for (const char* arguments : {"--help", "bake --help"}) {
        const ProgramRun run = runXum("font " + std::string(arguments));
        EXPECT_EQ(run.status, 0) << arguments;
        EXPECT_NE(run.output.find("Exit status: 0"), std::string::npos);
    }
}
