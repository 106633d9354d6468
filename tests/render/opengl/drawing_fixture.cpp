#include "drawing_fixture.h"

#include "golden_picture.h"

#include <algorithm>
#include <sstream>

void DrawingTest::makeCanvas(int width, int height, const std::list<TextureFormat>& formats)
{
    RenderTarget* target = device->createRenderTarget(width, height, formats);
    atEnd([this, target] { device->destroyRenderTarget(target); });
    canvas = target;
    device->setViewport(0, 0, width, height, height);
    device->clear(true, true, true);
}

void DrawingTest::fillCanvas(const Pixel& color)
{
    drawSquare(colorOf(color));
}

std::unique_ptr<Image> DrawingTest::drawnPicture()
{
    return imageOf(canvas->getTexture(0), true);
}

Program* DrawingTest::makePixelProgram(const std::string& fragmentStatements)
{
    return makeProgram(R"(#version 150
in vec3 position;
in vec2 textureCoordinate;
in vec4 color;
uniform vec2 canvasSize;
out vec2 coordinate;
out vec4 passedColor;
void main()
{
    coordinate = textureCoordinate;
    passedColor = color;
    gl_Position = vec4(position.x * 2.0 / canvasSize.x - 1.0, 1.0 - position.y * 2.0 / canvasSize.y, 0.0, 1.0);
}
)",
                       "#version 150\n"
                       "in vec2 coordinate;\n"
                       "in vec4 passedColor;\n"
                       "uniform sampler2D image;\n"
                       "uniform vec4 tint;\n"
                       "out vec4 outputColor;\n"
                       "void main() { " +
                           fragmentStatements + " }\n");
}

void DrawingTest::usePixelProgram(Program* program)
{
    Texture* texture = canvas->getTexture(0);
    device->useProgram(program);
    device->setUniform("image", 0).setUniform("tint", Vector4<float>(1, 1, 1, 1));
    device->setUniform("canvasSize", Vector2<float>(static_cast<float>(texture->getWidth()),
                                                    static_cast<float>(texture->getHeight())));
}

::testing::AssertionResult DrawingTest::isDrawn(const Image& expected)
{
    const std::unique_ptr<Image> actual = drawnPicture();
    int wrong = 0;
    std::ostringstream first;
    for (int y = 0; y < actual->getHeight(); ++y)
        for (int x = 0; x < actual->getWidth(); ++x) {
            if (actual->getPixel(x, y) == expected.getPixel(x, y) || ++wrong != 1) continue;
            first << '(' << x << ", " << y << "), is " << ::testing::PrintToString(actual->getPixel(x, y))
                  << " instead of " << ::testing::PrintToString(expected.getPixel(x, y));
        }
    if (wrong == 0) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << wrong << " pixels are wrong; the first, " << first.str();
}

::testing::AssertionResult DrawingTest::isGolden(const std::string& name)
{
    const auto text = [](GLenum what) { return std::string(reinterpret_cast<const char*>(glGetString(what))); };
    return matchesGoldenPicture(name, *drawnPicture(),
                                toleranceForRenderer(text(GL_RENDERER) + ", " + text(GL_VERSION)));
}

Image makeImage(int width, int height, const Pixel& color)
{
    Image image(width, height, 0, nullptr, nullptr, false);
    std::fill_n(image.getPixels(), width * height, color);
    return image;
}

void paste(Image& to, int toX, int toY, const Image& from, int x, int y, int width, int height)
{
    for (int row = std::max(0, -toY); row < height && toY + row < to.getHeight(); ++row)
        for (int column = std::max(0, -toX); column < width && toX + column < to.getWidth(); ++column)
            to.getPixels()[(toY + row) * to.getWidth() + toX + column] = from.getPixel(x + column, y + row);
}
