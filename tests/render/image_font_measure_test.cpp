#include "letter_font.h"

#include <climits>

// What a font measures, and the vertices of one character.

namespace {

class ImageFontMeasure : public LetterFont {};
class ImageFontCharacter : public LetterFont {};

} // namespace

TEST_F(ImageFontMeasure, measuresNothingAsZero)
{
    EXPECT_EQ(font->measure("", 1, 0), 0);
    EXPECT_EQ(font->measure("", 100, 100), 0);
    EXPECT_EQ(font->measure("", notANumber, INT_MIN), 0);
}

TEST_F(ImageFontMeasure, measuresOneCharacterAsItsWidth)
{
    EXPECT_EQ(font->measure("A", 1, 0), widthOfA);
    EXPECT_EQ(font->measure("B", 1, 0), widthOfB);
    EXPECT_EQ(font->measure(" ", 1, 0), widthOfSpace);
    EXPECT_EQ(font->measure("z", 1, 0), widthOfOthers);
}

TEST_F(ImageFontMeasure, measuresAGapBetweenCharacters)
{
    EXPECT_EQ(font->measure("AB", 1, 0), widthOfA + gap + widthOfB);
    EXPECT_EQ(font->measure("A B", 1, 0), widthOfA + gap + widthOfSpace + gap + widthOfB);
    EXPECT_EQ(font->measure(std::string(1000, 'A'), 1, 0), 1000 * (widthOfA + gap) - gap);
}

TEST_F(ImageFontMeasure, measuresTheSpacingOnBothSidesOfEachCharacter)
{
    EXPECT_EQ(font->measure("A", 1, 1), widthOfA + 2);
    EXPECT_EQ(font->measure("AB", 1, 1), widthOfA + widthOfB + 8);
    EXPECT_EQ(font->measure("AB", 1, 10), widthOfA + gap + widthOfB + 40);
    EXPECT_EQ(font->measure("AB", 1, -2), widthOfA + gap + widthOfB - 8);
    EXPECT_EQ(font->measure("A", 1, -10), widthOfA - 20);
}

TEST_F(ImageFontMeasure, multipliesTheWholeMeasureByTheScaleAndCutsItOff)
{
    EXPECT_EQ(font->measure("AB", 2, 0), 30);
    EXPECT_EQ(font->measure("AB", 1.5f, 0), 22) << "22.5";
    EXPECT_EQ(font->measure("AB", 0.5f, 1), 9) << "9.5";
    EXPECT_EQ(font->measure("A", 0.249f, 0), 0);
    EXPECT_EQ(font->measure("AB", 0, 0), 0);
}

TEST_F(ImageFontMeasure, measuresANegativeScaleAsANegativeWidthCutOffTowardsZero)
{
    EXPECT_EQ(font->measure("AB", -1, 0), -15);
    EXPECT_EQ(font->measure("AB", -1.5f, 0), -22);
    EXPECT_EQ(font->measure("A", 1.5f, -3), -3) << "(4 - 6) * 1.5";
    EXPECT_EQ(font->measure("A", 0.75f, -3), -1) << "-1.5";
}

TEST_F(ImageFontMeasure, measuresBytesAbove127AsCharactersWithoutAWidth)
{
    EXPECT_EQ(font->measure("\xe9", 1, 0), 0);
    EXPECT_EQ(font->measure("\x80", 1, 3), 6);
    EXPECT_EQ(font->measure("A\xff", 1, 0), widthOfA + gap);
    EXPECT_EQ(font->measure("A\xff", 1, 1), widthOfA + gap + 4);
    for (int c = 128; c < 256; ++c) EXPECT_EQ(font->measure({'A', static_cast<char>(c), 'B'}, 1, 0), 4 + 4 + 4 + 7);
}

TEST_F(ImageFontMeasure, measuresControlCharactersAndZeroBytesAsCharactersWithoutAWidth)
{
    EXPECT_EQ(font->measure(std::string("A\0B", 3), 1, 0), widthOfA + gap + gap + widthOfB);
    EXPECT_EQ(font->measure("\n", 1, 0), 0);
}

TEST_F(ImageFontMeasure, measuresWithinWhatANumberHolds)
{
    EXPECT_EQ(font->measure("A", 1, INT_MAX), INT_MAX);
    EXPECT_EQ(font->measure("A", 1, INT_MIN), INT_MIN);
    EXPECT_EQ(font->measure("AB", -1, INT_MAX), INT_MIN);
    EXPECT_EQ(font->measure("AB", -1, INT_MIN), INT_MAX);
    EXPECT_EQ(font->measure("A", 0, INT_MAX), 0);
    EXPECT_EQ(font->measure("A", 1e30f, 0), INT_MAX);
    EXPECT_EQ(font->measure("A", -1e30f, 0), INT_MIN);
    EXPECT_EQ(font->measure("A", 1, (1 << 30) - 66), INT_MAX - 127) << "2^31 - 128, the largest float below 2^31";
}

TEST_F(ImageFontMeasure, measuresScalesThatAreNoNumbers)
{
    EXPECT_EQ(font->measure("A", notANumber, 0), 0);
    EXPECT_EQ(font->measure("A", infinity, 0), INT_MAX);
    EXPECT_EQ(font->measure("A", -infinity, 0), INT_MIN);
    EXPECT_EQ(font->measure("\x80", infinity, 0), 0) << "nothing times infinity";
}

TEST_F(ImageFontCharacter, generatesTheSixVerticesOfACharacter)
{
    Points positions;
    Coordinates coordinates;
    font->generateCharacter(positions, coordinates, 10, 20, 1.5f, 3.5f, 2.25f, 'A');
    // x + w = 10 + 4 * 1.5; a = 3.5 on the left, b = 2.25 on the right.
    EXPECT_EQ(
        positions,
        (Points{{10, 16.5f, 0}, {10, 23.5f, 0}, {16, 22.25f, 0}, {16, 22.25f, 0}, {16, 17.75f, 0}, {10, 16.5f, 0}}));
    const float left = 10.5f / 128;
    const float top = 10.5f / 32;
    const float right = 13.5f / 128;
    const float bottom = 14.5f / 32;
    EXPECT_EQ(coordinates,
              (Coordinates{{left, top}, {left, bottom}, {right, bottom}, {right, bottom}, {right, top}, {left, top}}));
}

TEST_F(ImageFontCharacter, appendsACharacterToWhatIsThere)
{
    Points positions = {{1, 2, 3}};
    Coordinates coordinates = {{4, 5}, {6, 7}};
    font->generateCharacter(positions, coordinates, 0, 2, 1, 2, 2, 'A');
    font->generateCharacter(positions, coordinates, 9, 2, 1, 2, 2, 'B');
    EXPECT_EQ(positions, joined(Points{{1, 2, 3}}, joined(rectangle(0, 0, 4, 4), rectangle(9, 0, 16, 4))));
    EXPECT_EQ(coordinates,
              joined(Coordinates{{4, 5}, {6, 7}}, joined(coordinatesOf(glyphOfA), coordinatesOf(glyphOfB))));
}

TEST_F(ImageFontCharacter, generatesCodes33To127Alone)
{
    for (int c = -300; c < 300; ++c) {
        Points positions;
        Coordinates coordinates;
        font->generateCharacter(positions, coordinates, 0, 0, 1, 1, 1, c);
        const std::size_t expected = c >= 33 && c <= 127 ? 6 : 0;
        EXPECT_EQ(positions.size(), expected) << c;
        EXPECT_EQ(coordinates.size(), expected) << c;
    }
    Points positions;
    Coordinates coordinates;
    for (const int c : {INT_MIN, INT_MAX}) font->generateCharacter(positions, coordinates, 0, 0, 1, 1, 1, c);
    EXPECT_TRUE(positions.empty() && coordinates.empty());
}

TEST_F(ImageFontCharacter, generatesACharacterMirroredForANegativeScale)
{
    Points positions;
    Coordinates coordinates;
    font->generateCharacter(positions, coordinates, 10, 0, -1, 1, 1, 'A');
    EXPECT_EQ(positions, rectangle(10, -1, 6, 1));
    EXPECT_EQ(coordinates, coordinatesOf(glyphOfA));
}
