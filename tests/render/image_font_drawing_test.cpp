#include "allocation_counter.h"
#include "letter_font.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <new>
#include <utility>

// The vertices that a font draws.

namespace {

const Vector4<float> violet = {0.5f, 0.25f, 1, 0.75f};

class ImageFontDrawing : public LetterFont {
protected:
    /// What is drawn through without colours.
    RecordingVertexBuffer& plain() { return device.buffers.front(); }

    /// And with them.
    RecordingVertexBuffer& colored() { return device.buffers.back(); }

    /// Of the last text that was drawn without colours.
    float firstLeft() { return plain().threes.at(0).front().x; }
    float firstTop() { return plain().threes.at(0).front().y; }
};

Points moved(Points points, float x, float y)
{
    for (Vector3<float>& point : points) point += {x, y, 0};
    return points;
}

template <class Values>
Values part(const Values& values, std::size_t first, std::size_t count)
{
    return Values(values.begin() + static_cast<std::ptrdiff_t>(first),
                  values.begin() + static_cast<std::ptrdiff_t>(first + count));
}

} // namespace

// ---- draw -------------------------------------------------------------------

TEST_F(ImageFontDrawing, drawsARectangleForEachCharacter)
{
    font->draw(&device, 10, 20, "AB", false, false);
    EXPECT_EQ(plain().calls,
              (Calls{"setAttribute 0 Vector3 x 12", "setAttribute 1 Vector2 x 12", "drawTriangles 0 -1"}));
    EXPECT_EQ(plain().threes.at(0), joined(rectangle(10, 20, 14, 25), rectangle(18, 20, 25, 25)));
    EXPECT_EQ(plain().twos.at(1), joined(coordinatesOf(glyphOfA), coordinatesOf(glyphOfB)));
    EXPECT_EQ(colored().calls, Calls());
}

TEST_F(ImageFontDrawing, bindsItsTextureToUnit0BeforeItDraws)
{
    font->draw(&device, 0, 0, "A", false, false);
    EXPECT_EQ(device.calls, Calls{"bindTexture 0 texture 1"});
    EXPECT_EQ(plain().drawnTexture, font->getTexture());
    font->drawColored(&device, 0, 0, "A", violet, false, false);
    EXPECT_EQ(device.calls, (Calls{"bindTexture 0 texture 1", "bindTexture 0 texture 1"}));
    EXPECT_EQ(colored().drawnTexture, font->getTexture());
}

TEST_F(ImageFontDrawing, onlyMovesOverWhatIsNotPrinted)
{
    font->draw(&device, 0, 0, std::string(" A\0\x1f\x80\xff  B", 9), false, false);
    const float leftOfA = widthOfSpace + gap;
    const float leftOfB = leftOfA + widthOfA + gap + 4 * gap + 2 * (widthOfSpace + gap);
    EXPECT_EQ(plain().threes.at(0),
              joined(rectangle(leftOfA, 0, leftOfA + 4, 5), rectangle(leftOfB, 0, leftOfB + 7, 5)));
}

TEST_F(ImageFontDrawing, drawsCharactersOfEmptyCells)
{
    font->draw(&device, 0, 0, "!~\x7f", false, false);
    EXPECT_EQ(plain().threes.at(0),
              joined(rectangle(0, 0, 1, 5), joined(rectangle(5, 0, 6, 5), rectangle(10, 0, 11, 5))));
}

TEST_F(ImageFontDrawing, drawsNothingForATextWithoutPrintedCharacters)
{
    for (const std::string& text :
         {std::string(), std::string("  "), std::string("\n\x80\xff"), std::string(3, '\0')}) {
        font->draw(&device, 0, 0, text, true, true);
        font->drawScaled(&device, 0, 0, text, 2, true, true);
        font->drawColored(&device, 0, 0, text, violet, true, true);
        font->drawOutlined(&device, 0, 0, text, violet, true, true);
    }
    EXPECT_EQ(device.calls, Calls());
    EXPECT_EQ(plain().calls, Calls());
    EXPECT_EQ(colored().calls, Calls());
}

TEST_F(ImageFontDrawing, drawsAShorterTextAfterALongOne)
{
    font->draw(&device, 0, 0, std::string(100, 'B'), false, false);
    font->draw(&device, 0, 0, "A", false, false);
    EXPECT_EQ(plain().threes.at(0), rectangle(0, 0, 4, 5));
    EXPECT_EQ(plain().twos.at(1), coordinatesOf(glyphOfA));
}

TEST_F(ImageFontDrawing, drawsALongText)
{
    font->draw(&device, 0, 0, std::string(10000, 'A'), false, false);
    const Points& positions = plain().threes.at(0);
    ASSERT_EQ(positions.size(), 60000u);
    EXPECT_EQ(part(positions, 59994, 6), rectangle(9999 * 8, 0, 9999 * 8 + 4, 5));
}

// ---- scaled -----------------------------------------------------------------

TEST_F(ImageFontDrawing, scalesCharactersAndGaps)
{
    font->drawScaled(&device, 10, 20, "AB", 3, false, false);
    EXPECT_EQ(plain().calls,
              (Calls{"setAttribute 0 Vector3 x 12", "setAttribute 1 Vector2 x 12", "drawTriangles 0 -1"}));
    EXPECT_EQ(plain().threes.at(0), joined(rectangle(10, 20, 22, 35), rectangle(34, 20, 55, 35)));
    EXPECT_EQ(plain().twos.at(1), joined(coordinatesOf(glyphOfA), coordinatesOf(glyphOfB)));
}

TEST_F(ImageFontDrawing, startsEachScaledCharacterAtAWholePixel)
{
    font->drawScaled(&device, 10, 20, "AAA", 0.75f, false, false);
    EXPECT_EQ(part(plain().threes.at(0), 12, 6), rectangle(22, 20, 25, 23.75f)) << "16 * 0.75";
    font->drawScaled(&device, 10, 20, "BAA", 0.75f, false, false);
    EXPECT_EQ(part(plain().threes.at(0), 6, 6), rectangle(18, 20, 21, 23.75f)) << "11 * 0.75 = 8.25";
    EXPECT_EQ(part(plain().threes.at(0), 12, 6), rectangle(24, 20, 27, 23.75f)) << "19 * 0.75 = 14.25, not 8 + 6.25";
}

TEST_F(ImageFontDrawing, drawsTheSameAtScale1AsWithoutAScale)
{
    font->draw(&device, 7, -3, "A B!", true, true);
    const RecordingVertexBuffer unscaled = plain();
    font->drawScaled(&device, 7, -3, "A B!", 1, true, true);
    EXPECT_EQ(plain().threes.at(0), unscaled.threes.at(0));
    EXPECT_EQ(plain().twos.at(1), unscaled.twos.at(1));
}

TEST_F(ImageFontDrawing, mirrorsATextOfNegativeScale)
{
    font->drawScaled(&device, 100, 50, "AB", -2, false, false);
    EXPECT_EQ(plain().threes.at(0), joined(rectangle(100, 50, 92, 40), rectangle(84, 50, 70, 40)));
}

TEST_F(ImageFontDrawing, survivesScalesThatAreNoNumbers)
{
    font->drawScaled(&device, 1, 2, "AB", notANumber, true, true);
    ASSERT_EQ(plain().threes.at(0).size(), 12u);
    EXPECT_EQ(firstLeft(), 1);
    EXPECT_EQ(firstTop(), 2);
    EXPECT_TRUE(std::isnan(plain().threes.at(0)[2].x));
    for (const float scale : {infinity, -infinity, 1e38f}) font->drawScaled(&device, 1, 2, "AB", scale, true, true);
    EXPECT_EQ(plain().calls.size(), 4 * 3u);
}

// ---- centred ----------------------------------------------------------------

TEST_F(ImageFontDrawing, startsAtTheUpperLeftUnlessCentred)
{
    font->draw(&device, 100, 50, "AB", false, false);
    EXPECT_EQ(firstLeft(), 100);
    EXPECT_EQ(firstTop(), 50);
}

TEST_F(ImageFontDrawing, isCentredAroundXByHalfOfWhatItMeasures)
{
    font->draw(&device, 100, 50, "AB", true, false);
    EXPECT_EQ(firstLeft(), 100 - 7) << "15 wide";
    EXPECT_EQ(firstTop(), 50);
    font->drawScaled(&device, 100, 50, "AB", 1.5f, true, false);
    EXPECT_EQ(firstLeft(), 100 - 11) << "22.5 wide, measured as 22";
}

TEST_F(ImageFontDrawing, isCentredAroundYByHalfOfACell)
{
    font->draw(&device, 100, 50, "AB", false, true);
    EXPECT_EQ(firstLeft(), 100);
    EXPECT_EQ(firstTop(), 50 - 2) << "5 high: the edges stay between pixels";
    EXPECT_EQ(part(plain().threes.at(0), 0, 6), rectangle(100, 48, 104, 53));
    font->drawScaled(&device, 100, 50, "AB", 1.5f, false, true);
    EXPECT_EQ(firstTop(), 50 - 3) << "7.5 high";
}

TEST_F(ImageFontDrawing, isCentredBothWays)
{
    font->draw(&device, 100, 50, "AB", true, true);
    EXPECT_EQ(part(plain().threes.at(0), 0, 6), rectangle(93, 48, 97, 53));
}

TEST_F(ImageFontDrawing, isCentredAtTheEndsOfTheNumbers)
{
    font->draw(&device, INT_MIN, INT_MIN, "AB", true, true);
    EXPECT_EQ(firstLeft(), -2147483648.0f);
    EXPECT_EQ(firstTop(), -2147483648.0f);
    font->drawScaled(&device, INT_MAX, INT_MAX, "AB", -1e30f, true, true);
    EXPECT_EQ(firstLeft(), 2147483648.0f + 1073741824.0f);
}

// ---- coloured ---------------------------------------------------------------

TEST_F(ImageFontDrawing, hasAColorAtEachVertexInTheSecondBuffer)
{
    font->drawColored(&device, 10, 20, "A B", violet, false, false);
    EXPECT_EQ(colored().calls, (Calls{"setAttribute 0 Vector3 x 12", "setAttribute 1 Vector2 x 12",
                                      "setAttribute 3 Vector4 x 12", "drawTriangles 0 -1"}));
    EXPECT_EQ(colored().threes.at(0), joined(rectangle(10, 20, 14, 25), rectangle(25, 20, 32, 25)));
    EXPECT_EQ(colored().twos.at(1), joined(coordinatesOf(glyphOfA), coordinatesOf(glyphOfB)));
    EXPECT_EQ(colored().fours.at(3), Colors(12, violet));
    EXPECT_EQ(plain().calls, Calls());
}

TEST_F(ImageFontDrawing, isTheSameColoredAsPlain)
{
    for (const bool centerX : {false, true}) {
        for (const bool centerY : {false, true}) {
            font->draw(&device, 31, 17, "A B?", centerX, centerY);
            font->drawColored(&device, 31, 17, "A B?", violet, centerX, centerY);
            EXPECT_EQ(colored().threes.at(0), plain().threes.at(0));
            EXPECT_EQ(colored().twos.at(1), plain().twos.at(1));
        }
    }
}

TEST_F(ImageFontDrawing, leavesNoColorsOfALongTextToAShortOne)
{
    font->drawOutlined(&device, 0, 0, "BBBB", {1, 0, 0, 1}, false, false);
    font->drawColored(&device, 0, 0, "A", violet, false, false);
    EXPECT_EQ(colored().fours.at(3), Colors(6, violet));
    EXPECT_EQ(colored().threes.at(0).size(), 6u);
    EXPECT_EQ(colored().twos.at(1).size(), 6u);
}

// ---- outlined ---------------------------------------------------------------

TEST_F(ImageFontDrawing, isOutlinedByEightBlackCopiesAround)
{
    font->drawOutlined(&device, 10, 20, "AB", violet, false, false);
    EXPECT_EQ(colored().calls, (Calls{"setAttribute 0 Vector3 x 108", "setAttribute 1 Vector2 x 108",
                                      "setAttribute 3 Vector4 x 108", "drawTriangles 0 -1"}));
    EXPECT_EQ(plain().calls, Calls());
    const Points text = joined(rectangle(10, 20, 14, 25), rectangle(18, 20, 25, 25));
    std::vector<std::pair<float, float>> shifts;
    for (std::size_t copy = 0; copy < 9; ++copy) {
        const Points positions = part(colored().threes.at(0), copy * 12, 12);
        const Vector3<float> shift = positions.front() - text.front();
        EXPECT_EQ(positions, moved(text, shift.x, shift.y)) << copy;
        EXPECT_EQ(part(colored().twos.at(1), copy * 12, 12), joined(coordinatesOf(glyphOfA), coordinatesOf(glyphOfB)));
        const Vector4<float> color = copy < 8 ? Vector4<float>(0, 0, 0, violet.w) : violet;
        EXPECT_EQ(part(colored().fours.at(3), copy * 12, 12), Colors(12, color)) << copy;
        shifts.emplace_back(shift.x, shift.y);
    }
    EXPECT_EQ(shifts.back(), std::make_pair(0.0f, 0.0f)) << "the text itself is drawn over its edge";
    std::sort(shifts.begin(), shifts.end());
    const std::vector<std::pair<float, float>> expected = {{-1, -1}, {-1, 0}, {-1, 1}, {0, -1}, {0, 0},
                                                           {0, 1},   {1, -1}, {1, 0},  {1, 1}};
    EXPECT_EQ(shifts, expected);
}

TEST_F(ImageFontDrawing, isCentredWithoutItsOutline)
{
    font->draw(&device, 100, 50, "AB", true, true);
    font->drawOutlined(&device, 100, 50, "AB", violet, true, true);
    EXPECT_EQ(part(colored().threes.at(0), 8 * 12, 12), plain().threes.at(0));
}

// ---- memory -----------------------------------------------------------------

TEST_F(ImageFontDrawing, needsNoMemoryForTextsThatAreNoLongerThanEarlierOnes)
{
    const std::string longText = "AB AB AB AB AB AB AB AB AB";
    const std::string shortText = "ABBA";
    const auto drawAll = [&](const std::string& text) {
        font->draw(&device, 10, 10, text, true, true);
        font->drawScaled(&device, 10, 10, text, 2, true, true);
        font->drawColored(&device, 10, 10, text, violet, true, true);
        font->drawOutlined(&device, 10, 10, text, violet, true, true);
        font->measure(text, 1, 0);
    };
    device.isRecording = false;
    drawAll(longText);
    const std::size_t before = allocationCount();
    drawAll(longText);
    drawAll(shortText);
    drawAll(longText);
    EXPECT_EQ(allocationCount(), before);
}

TEST_F(ImageFontDrawing, isIntactAfterMemoryRanOut)
{
    const std::string text(50, 'B');
    device.isRecording = false;
    // Each time it gets one piece further: what it got it keeps.
    for (const int successes : {0, 1, 1}) {
        bool hasFailed = false;
        {
            const FailingAllocations failing(successes);
            try {
                font->drawOutlined(&device, 0, 0, text, violet, false, false);
            } catch (const std::bad_alloc&) {
                hasFailed = true;
            }
        }
        EXPECT_TRUE(hasFailed);
    }
    device.isRecording = true;
    font->drawColored(&device, 0, 0, "A", violet, false, false);
    EXPECT_EQ(colored().threes.at(0), rectangle(0, 0, 4, 5));
    EXPECT_EQ(colored().fours.at(3), Colors(6, violet));
}
