#pragma once

#include "gl_fixture.h"

#include <memory>
#include <string>

/// A test that draws into a canvas, a target of any size, and looks at the whole picture.
class DrawingTest : public GLTest {
protected:
    /// Makes a canvas, bound, covered by the viewport and cleared to opaque black.
    void makeCanvas(int width, int height, const std::list<TextureFormat>& formats = {rgba8});

    /// Gives all of it one colour. The plain program is left current.
    void fillCanvas(const Pixel& color);

    /// The canvas, upright.
    std::unique_ptr<Image> drawnPicture();

    /// A program for positions in pixels of the canvas, from its top left and with y downwards, whose texture is on
    /// unit 0. It hands `coordinate` and `color` to the fragment shader, which has a sampler `image`, `tint` and
    /// `outputColor`: "outputColor = texture(image, coordinate);" for example.
    Program* makePixelProgram(const std::string& fragmentStatements);

    /// Makes a pixel program current and tells it the size of the canvas.
    void usePixelProgram(Program* program);

    /// Whether the canvas, and no pixel besides, looks like this.
    ::testing::AssertionResult isDrawn(const Image& expected);

    /// Compares with tests/golden/NAME.bmp, exactly with the renderer that drew it.
    ::testing::AssertionResult isGolden(const std::string& name);

    RenderTarget* canvas = nullptr;
};

/// All of one colour.
Image makeImage(int width, int height, const Pixel& color);

/// Copies a rectangle; what lies outside `to` is left out.
void paste(Image& to, int toX, int toY, const Image& from, int x, int y, int width, int height);
