#include "drawing_fixture.h"

#include <xum/render/font.h>

// TrueType text as the texture that it is, and on the screen.

class FontPixels : public DrawingTest {
protected:
    Font* load(int pointSize)
    {
        Font* font = loadFont(XUM_TEST_FONT, pointSize);
        EXPECT_NE(font, nullptr);
        atEnd([font] { destroyFont(font); });
        return font;
    }

    /// The texture is destroyed at the end.
    Texture* render(Font* font, const std::string& text)
    {
        Texture* texture = font->render(device, text);
        EXPECT_NE(texture, nullptr);
        atEnd([this, texture] { device->destroyTexture(texture); });
        return texture;
    }

    /// One pixel for one texel, from the upper left corner (x, y), in the colour `tint` of the pixel program.
    void drawTexture(Texture* texture, int x, int y, const Vector4<float>& tint)
    {
        if (program == nullptr) program = makePixelProgram("outputColor = texture(image, coordinate) * tint;");
        usePixelProgram(program);
        device->setUniform("tint", tint);
        device->bindTexture(0, texture);
        const auto left = static_cast<float>(x);
        const auto top = static_cast<float>(y);
        const float right = left + static_cast<float>(texture->getWidth());
        const float bottom = top + static_cast<float>(texture->getHeight());
        VertexBuffer* buffer = makeBuffer();
        buffer->setAttribute(
            VertexAttribute::Position,
            std::vector<Vector3<float>>{{left, top, 0}, {left, bottom, 0}, {right, bottom, 0}, {right, top, 0}});
        buffer->setAttribute(VertexAttribute::TextureCoordinate,
                             std::vector<Vector2<float>>{{0, 0}, {0, 1}, {1, 1}, {1, 0}});
        buffer->drawTriangleFan();
    }

    Program* program = nullptr;
};

TEST_F(FontPixels, textureHasTheMeasuredSizeTheUsualFormatAndNoMipmaps)
{
    Font* font = load(16);
    Texture* texture = render(font, "Format");
    EXPECT_EQ(Vector2<int>(texture->getWidth(), texture->getHeight()), font->measure("Format"));
    EXPECT_EQ(texture->getFormat(), TextureFormat());
    device->bindTexture(0, texture);
    EXPECT_EQ(getTextureParameter(GL_TEXTURE_MIN_FILTER), GL_NEAREST);
    EXPECT_EQ(getTextureParameter(GL_TEXTURE_MAG_FILTER), GL_NEAREST);
}

TEST_F(FontPixels, textStandsUprightInItsTexture)
{
    // The lower half of an underscore is inked, the upper one of a quotation mark.
    Font* font = load(32);
    const auto inkedRows = [&](const char* text) {
        const std::unique_ptr<Image> image = imageOf(render(font, text), false);
        Vector2<int> halves;
        for (int y = 0; y < image->getHeight(); ++y)
            for (int x = 0; x < image->getWidth(); ++x)
                if (image->getPixel(x, y).alpha > 0) ++(y < image->getHeight() / 2 ? halves.x : halves.y);
        return halves;
    };
    EXPECT_EQ(inkedRows("_").x, 0);
    EXPECT_GT(inkedRows("_").y, 0);
    EXPECT_GT(inkedRows("\"").x, 0);
    EXPECT_EQ(inkedRows("\"").y, 0);
}

TEST_F(FontPixels, programColoursTheWhiteText)
{
    Font* font = load(20);
    Texture* texture = render(font, "Red text");
    const std::unique_ptr<Image> image = imageOf(texture, false);
    makeCanvas(texture->getWidth() + 6, texture->getHeight() + 4);
    device->setBlendMode(BlendMode::Alpha);
    drawTexture(texture, 3, 2, colorOf(red));
    const std::unique_ptr<Image> drawn = drawnPicture();
    int inked = 0;
    for (int y = 0; y < drawn->getHeight(); ++y)
        for (int x = 0; x < drawn->getWidth(); ++x) {
            const bool isInside = x >= 3 && y >= 2 && x - 3 < texture->getWidth() && y - 2 < texture->getHeight();
            const int coverage = isInside ? image->getPixel(x - 3, y - 2).alpha : 0;
            const Pixel& pixel = drawn->getPixel(x, y);
            EXPECT_NEAR(pixel.red, coverage, 1) << x << ", " << y;
            EXPECT_EQ(pixel.green, 0);
            EXPECT_EQ(pixel.blue, 0);
            if (coverage == 255) ++inked;
        }
    EXPECT_GT(inked, 50);
}

TEST_F(FontPixels, textThatIsTooLargeForTheDeviceIsRefused)
{
    // Small enough to be drawn, but not for a texture of this device.
    const int limit = getInteger(GL_MAX_TEXTURE_SIZE);
    Font* font = load(16);
    const std::string text(static_cast<std::size_t>(limit / 4 + 10), 'i');
    ASSERT_GT(font->measure(text).x, limit);
    EXPECT_EQ(font->render(device, text), nullptr);
    EXPECT_NE(render(font, text.substr(0, text.size() / 2)), nullptr);
}

TEST_F(FontPixels, drawsTheGoldenPictureOfColouredText)
{
    makeCanvas(128, 96);
    fillCanvas({40, 60, 90, 255});
    device->setBlendMode(BlendMode::Alpha);
    Font* large = load(24);
    Font* small = load(11);
    drawTexture(render(large, "Bridge"), 6, 4, {1, 0.3f, 0.2f, 1});
    drawTexture(render(large, "\xc9t\xe9"), 86, 4, {0.4f, 1, 0.4f, 1});
    drawTexture(render(small, "white as it is"), 6, 38, {1, 1, 1, 1});
    drawTexture(render(small, "half transparent"), 6, 54, {1, 0.9f, 0.2f, 0.5f});
    Texture* shadowed = render(small, "with a shadow");
    drawTexture(shadowed, 7, 71, {0, 0, 0, 0.7f});
    drawTexture(shadowed, 6, 70, {0.9f, 0.9f, 1, 1});
    EXPECT_TRUE(isGolden("font_colors"));
}
