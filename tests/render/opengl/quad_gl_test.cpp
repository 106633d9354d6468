#include "drawing_fixture.h"

#include <xum/render/quad.h>

// Which pixels rectangles light.

class QuadPixels : public DrawingTest {
protected:
    /// Draws the rectangle of pixels from (x, y), its upper left corner, in a program that leaves positions alone.
    void drawPixelRectangle(int x, int y, int width, int height)
    {
        const auto canvasWidth = static_cast<float>(canvas->getTexture(0)->getWidth());
        const auto canvasHeight = static_cast<float>(canvas->getTexture(0)->getHeight());
        const float unitX = 2.0f / canvasWidth;
        const float unitY = 2.0f / canvasHeight;
        drawQuad(device, static_cast<float>(x) * unitX - 1.0f, 1.0f - static_cast<float>(y + height) * unitY,
                 static_cast<float>(width) * unitX, static_cast<float>(height) * unitY);
    }

    /// From now on pixels get brighter by each draw.
    void addLight()
    {
        usePlainProgram({0.2f, 0.4f, 0.6f, 1});
        device->setBlendMode(BlendMode::Additive);
    }

    static constexpr Pixel once{51, 102, 153, 255};
    static constexpr Pixel twice{102, 204, 255, 255};
};

namespace {

/// A picture of which every pixel has another colour.
Image makeRamp(int width, int height)
{
    Image image = makeImage(width, height, black);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            image.getPixels()[y * width + x] = {static_cast<unsigned char>(10 * x), static_cast<unsigned char>(20 * y),
                                                90, 255};
    return image;
}

Image invertedColors(const Image& image)
{
    Image result(image);
    for (int i = 0; i < image.getWidth() * image.getHeight(); ++i) {
        Pixel& pixel = result.getPixels()[i];
        pixel = {static_cast<unsigned char>(255 - pixel.red), static_cast<unsigned char>(255 - pixel.green),
                 static_cast<unsigned char>(255 - pixel.blue), 255};
    }
    return result;
}

} // namespace

TEST_F(QuadPixels, quadCoversExactlyItsPixels)
{
    makeCanvas(20, 15);
    usePlainProgram(colorOf(red));
    for (const Vector4<int>& r : {Vector4<int>(3, 2, 5, 4), Vector4<int>(0, 0, 1, 1), Vector4<int>(19, 14, 1, 1),
                                  Vector4<int>(0, 7, 20, 1), Vector4<int>(11, 0, 1, 15), Vector4<int>(0, 0, 20, 15)}) {
        SCOPED_TRACE(::testing::Message() << r.x << ", " << r.y << ", " << r.z << " x " << r.w);
        device->clear(true, false, false);
        drawPixelRectangle(r.x, r.y, r.z, r.w);
        Image expected = makeImage(20, 15, black);
        paste(expected, r.x, r.y, makeImage(r.z, r.w, red), 0, 0, r.z, r.w);
        EXPECT_TRUE(isDrawn(expected));
    }
}

TEST_F(QuadPixels, quadBeyondTheScreenIsCutOff)
{
    makeCanvas(10, 10);
    usePlainProgram(colorOf(red));
    drawPixelRectangle(-4, 7, 9, 20);
    Image expected = makeImage(10, 10, black);
    paste(expected, 0, 7, makeImage(5, 3, red), 0, 0, 5, 3);
    EXPECT_TRUE(isDrawn(expected));
}

TEST_F(QuadPixels, quadOfNoSizeLightsNothing)
{
    makeCanvas(10, 10);
    usePlainProgram(colorOf(red));
    drawPixelRectangle(2, 2, 0, 5);
    drawPixelRectangle(2, 2, 5, 0);
    EXPECT_TRUE(isDrawn(makeImage(10, 10, black)));
}

TEST_F(QuadPixels, quadsSideBySideLeaveNoGapAndShareNoPixel)
{
    makeCanvas(12, 12);
    addLight();
    for (const int y : {0, 5})
        for (const int x : {0, 7}) drawPixelRectangle(x, y, x == 0 ? 7 : 5, y == 0 ? 5 : 7);
    EXPECT_TRUE(isDrawn(makeImage(12, 12, once)));
    drawPixelRectangle(2, 3, 4, 5);
    Image expected = makeImage(12, 12, once);
    paste(expected, 2, 3, makeImage(4, 5, twice), 0, 0, 4, 5);
    EXPECT_TRUE(isDrawn(expected));
}

TEST_F(QuadPixels, frontOfAQuadIsSeenWhereYGoesUp)
{
    makeCanvas(8, 8);
    usePlainProgram(colorOf(red));
    device->setCullMode(CullMode::Front);
    drawQuad(device, -1, -1, 2, 2);
    EXPECT_TRUE(isDrawn(makeImage(8, 8, black)));
    device->setCullMode(CullMode::Back);
    drawQuad(device, -1, -1, 2, 2);
    EXPECT_TRUE(isDrawn(makeImage(8, 8, red)));
}

TEST_F(QuadPixels, backOfAQuadIsSeenWhereYGoesDown)
{
    makeCanvas(8, 8);
    usePixelProgram(makePixelProgram("outputColor = vec4(1.0, 0.0, 0.0, 1.0);"));
    device->setCullMode(CullMode::Back);
    drawQuad(device, 1, 2, 4, 3);
    EXPECT_TRUE(isDrawn(makeImage(8, 8, black)));
    device->setCullMode(CullMode::Front);
    drawQuad(device, 1, 2, 4, 3);
    Image expected = makeImage(8, 8, black);
    paste(expected, 1, 2, makeImage(4, 3, red), 0, 0, 4, 3);
    EXPECT_TRUE(isDrawn(expected));
}

TEST_F(QuadPixels, quadLiesInTheMiddleOfTheDepthRange)
{
    makeCanvas(16, 16, {rgba8, depth32});
    device->enable(RenderFeature::DepthTest);
    drawSquare(colorOf(green), 0.5f);
    usePlainProgram(colorOf(red));
    drawQuad(device, -1, -1, 2, 2);
    EXPECT_TRUE(isDrawn(makeImage(16, 16, red)));
    EXPECT_EQ(depthAt(8, 8), 0.5f);
    drawSquare(colorOf(green), -0.5f);
    usePlainProgram(colorOf(red));
    drawQuad(device, -1, -1, 2, 2);
    EXPECT_TRUE(isDrawn(makeImage(16, 16, green))) << "the caller's depth test stays on";
}

TEST_F(QuadPixels, fullscreenQuadLightsEachPixelOnce)
{
    for (const Vector2<int>& canvasSize : {Vector2<int>(64, 48), Vector2<int>(48, 64), Vector2<int>(13, 7),
                                           Vector2<int>(1, 1), Vector2<int>(2000, 3), Vector2<int>(3, 2000)}) {
        makeCanvas(canvasSize.x, canvasSize.y);
        addLight();
        drawFullscreenQuad(device);
        EXPECT_TRUE(isDrawn(makeImage(canvasSize.x, canvasSize.y, once))) << canvasSize.x << " x " << canvasSize.y;
    }
}

TEST_F(QuadPixels, fullscreenQuadFillsTheViewportAlone)
{
    makeCanvas(16, 12);
    addLight();
    device->setViewport(3, 2, 5, 7, 12);
    drawFullscreenQuad(device);
    Image expected = makeImage(16, 12, black);
    paste(expected, 3, 2, makeImage(5, 7, once), 0, 0, 5, 7);
    EXPECT_TRUE(isDrawn(expected));
}

TEST_F(QuadPixels, postProcessingPassInvertsWhatWasDrawnBefore)
{
    const Image picture = makeRamp(24, 10);
    Texture* texture = makeTexture(24, 10);
    texture->update(picture.getPixels());

    makeCanvas(24, 10);
    usePixelProgram(makePixelProgram("outputColor = texture(image, vec2(gl_FragCoord.x / 24.0, "
                                     "1.0 - gl_FragCoord.y / 10.0));"));
    device->bindTexture(0, texture);
    drawQuad(device, 0, 0, 24, 10);
    ASSERT_TRUE(isDrawn(picture));
    Texture* scene = canvas->getTexture(0);

    makeCanvas(24, 10);
    device->useProgram(makeProgram(R"(#version 150
in vec3 position;
out vec2 place;
void main()
{
    place = position.xy * 0.5 + 0.5;
    gl_Position = vec4(position, 1.0);
}
)",
                                   R"(#version 150
in vec2 place;
uniform sampler2D scene;
out vec4 outputColor;
void main() { outputColor = vec4(1.0 - texture(scene, place).rgb, 1.0); }
)"));
    device->setUniform("scene", 2);
    device->bindTexture(2, scene);
    drawFullscreenQuad(device);
    EXPECT_TRUE(isDrawn(invertedColors(picture)));
}

TEST_F(QuadPixels, createdQuadShowsThePictureUprightOrFlipped)
{
    const Image picture = makeRamp(6, 4);
    Texture* texture = makeTexture(6, 4);
    texture->update(picture.getPixels());
    // The quad lies in the plane y = 0.
    Program* program = makeProgram(R"(#version 150
in vec3 position;
in vec2 textureCoordinate;
in vec4 color;
out vec2 coordinate;
out vec4 passedColor;
void main()
{
    coordinate = textureCoordinate;
    passedColor = color;
    gl_Position = vec4(position.x / 8.0 - 1.0, 1.0 - position.z / 8.0, position.y, 1.0);
}
)",
                                   R"(#version 150
in vec2 coordinate;
in vec4 passedColor;
uniform sampler2D image;
out vec4 outputColor;
void main() { outputColor = texture(image, coordinate) * passedColor; }
)");
    for (const bool flipU : {false, true})
        for (const bool flipV : {false, true}) {
            makeCanvas(16, 16);
            std::vector<Vector3<float>> positions;
            std::vector<Vector2<float>> coordinates;
            std::vector<Vector4<float>> colors;
            createQuadVertexes(positions, coordinates, colors, {3, 5}, {6, 4}, {1, 1, 0, 1}, flipU, flipV);
            VertexBuffer* buffer = makeBuffer();
            buffer->setAttribute(VertexAttribute::Position, positions);
            buffer->setAttribute(VertexAttribute::TextureCoordinate, coordinates);
            buffer->setAttribute(VertexAttribute::Color, colors);
            device->bindTexture(0, texture);
            device->useProgram(program);
            buffer->drawTriangles();

            Image expected = makeImage(16, 16, black);
            for (int y = 0; y < 4; ++y)
                for (int x = 0; x < 6; ++x) {
                    Pixel pixel = picture.getPixel(flipU ? 5 - x : x, flipV ? 3 - y : y);
                    pixel.blue = 0;
                    expected.getPixels()[(5 + y) * 16 + 3 + x] = pixel;
                }
            EXPECT_TRUE(isDrawn(expected)) << flipU << flipV;
        }
}
