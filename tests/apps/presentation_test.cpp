#include "presentation_fixture.h"

#include <algorithm>

namespace {

constexpr Vector2<int> size = {320, 240};

constexpr Layers nothing = {false, false, false};

} // namespace

TEST_F(PresentationTest, withoutLayersThePictureIsTheScene)
{
    presentation.getLayers() = nothing;
    const auto scenePicture = takePicture(application.getRenderDevice(), size, [&](RenderTarget* target) {
        renderer.draw(target, size, frame.camera, frame.style);
    });
    const std::vector<Pixel> pixels = draw(presentation, size);
    EXPECT_TRUE(pixels == pixelsOf(*scenePicture, size));
    EXPECT_TRUE(std::any_of(pixels.begin(), pixels.end(), [](const Pixel& pixel) { return pixel.blue > 100; }));
}

TEST_F(PresentationTest, eachLayerChangesThePicture)
{
    presentation.getLayers() = nothing;
    const std::vector<Pixel> plain = draw(presentation, size);
    for (const Layers& layers : {Layers{true, false, false}, Layers{false, true, false}, Layers{false, false, true}}) {
        presentation.getLayers() = layers;
        EXPECT_FALSE(draw(presentation, size) == plain);
    }
}

TEST_F(PresentationTest, drawsTheSameEachTimeWithAnyLayers)
{
    for (int number = 0; number < 16; ++number) {
        presentation.getLayers() = {(number & 1) != 0, (number & 2) != 0, (number & 4) != 0};
        renderer.setOcclusionView((number & 8) != 0);
        const std::vector<Pixel> first = draw(presentation, size);
        EXPECT_TRUE(draw(presentation, size) == first) << number;
        frame.style = DrawStyle::Edges;
        draw(presentation, size);
        frame.style = DrawStyle::Solids;
        EXPECT_TRUE(draw(presentation, size) == first) << number;
    }
}

TEST_F(PresentationTest, textCoversOnlyTheUpperLeftAndTheBottom)
{
    presentation.getLayers() = nothing;
    const std::vector<Pixel> plain = draw(presentation, size);
    presentation.getLayers().text = true;
    const std::vector<Pixel> written = draw(presentation, size);
    int upperLeft = 0;
    int bottom = 0;
    for (int y = 0; y < size.y; ++y) {
        for (int x = 0; x < size.x; ++x) {
            const auto i = static_cast<std::size_t>(y * size.x + x);
            if (written[i] == plain[i]) continue;
            if (y < 110)
                ++upperLeft;
            else
                ++bottom;
            EXPECT_TRUE(y < 110 || y >= size.y - 60) << x << " " << y;
        }
    }
    EXPECT_GT(upperLeft, 500);
    EXPECT_GT(bottom, 500);
}

TEST_F(PresentationTest, textLeavesNoTraceInTheAlphaOfAPicture)
{
    presentation.getLayers() = {true, true, true};
    for (const bool hasEffects : {true, false}) {
        presentation.getLayers().effects = hasEffects;
        for (const Pixel& pixel : draw(presentation, size)) ASSERT_EQ(pixel.alpha, 255);
    }
}

TEST_F(PresentationTest, brightnessFadesTheEffectsToBlackButNotTheText)
{
    presentation.getLayers() = {true, true, false};
    frame.brightness = 0;
    for (const Pixel& pixel : draw(presentation, size)) ASSERT_EQ(pixel, (Pixel{0, 0, 0, 255}));
    presentation.getLayers().text = true;
    const std::vector<Pixel> written = draw(presentation, size);
    EXPECT_TRUE(std::any_of(written.begin(), written.end(), [](const Pixel& pixel) { return pixel.red > 200; }));
}

TEST_F(PresentationTest, sizeMayChangeFromFrameToFrame)
{
    const std::vector<Pixel> first = draw(presentation, size);
    for (const Vector2<int>& other : {Vector2<int>(1, 1), Vector2<int>(7, 300), Vector2<int>(500, 20)})
        EXPECT_EQ(draw(presentation, other).size(), static_cast<std::size_t>(other.x * other.y));
    EXPECT_TRUE(draw(presentation, size) == first);
}

TEST_F(PresentationTest, nothingIsDrawnWithoutAPixel)
{
    presentation.draw(nullptr, {0, 0}, frame);
    presentation.draw(nullptr, {0, 10}, frame);
    EXPECT_EQ(presentation.countDraws(), 0u);
}

TEST_F(PresentationTest, occlusionViewLeavesTheOtherLayersTheWholePicture)
{
    presentation.getLayers() = {true, true, true};
    const std::vector<Pixel> plain = draw(presentation, size);
    renderer.setOcclusionView(true);
    const std::vector<Pixel> viewed = draw(presentation, size);
    int changed = 0;
    for (int y = 0; y < size.y; ++y) {
        for (int x = 0; x < size.x; ++x) {
            const auto i = static_cast<std::size_t>(y * size.x + x);
            if (viewed[i] == plain[i]) continue;
            ++changed;
            const bool isInCorner = x < size.x / 3 && y >= size.y - size.y / 3;
            const bool isDrawCount = x < 200 && y >= 67 && y < 88; // one more
            EXPECT_TRUE(isInCorner || isDrawCount) << x << " " << y;
        }
    }
    EXPECT_GT(changed, size.x * size.y / 20);
}
