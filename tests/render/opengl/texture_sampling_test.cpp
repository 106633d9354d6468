#include "gl_fixture.h"

// What a shader sees of a texture: orientation, filters, wrapping, units.

class OpenGLTextureSampling : public GLTest {
protected:
    /// The colour of a texture that is bound to `unit` at that place.
    Pixel sample(float s, float t, int unit = 0)
    {
        if (program == nullptr) {
            makeTarget();
            square = makeSquare();
            program = makeProgramWithFragment("#version 150\n"
                                              "uniform sampler2D image;\n"
                                              "uniform vec2 place;\n"
                                              "uniform float level;\n"
                                              "out vec4 outputColor;\n"
                                              "void main() { outputColor = textureGrad(image, place, vec2(level, 0.0), "
                                              "vec2(0.0, level)); }\n");
        }
        device->useProgram(program);
        device->setUniform("image", unit).setUniform("place", Vector2<float>(s, t)).setUniform("level", footprint);
        square->drawTriangleFan();
        return pixelAt(8, 8);
    }

    Texture* makeFourColors(bool mipmaps = false)
    {
        makeTargetFirst();
        Texture* texture = makeTexture(2, 2, mipmaps);
        const Pixel pixels[] = {red, green, blue, white};
        texture->update(pixels);
        return texture;
    }

    /// The program and the target must exist before a texture is bound: making a target binds textures too.
    void makeTargetFirst() { sample(0, 0); }

    float footprint = 0.0f; // of a pixel in the texture, whose whole side is 1

private:
    Program* program = nullptr;
    VertexBuffer* square = nullptr;
};

TEST_F(OpenGLTextureSampling, firstRowThatIsSentIsAtZero)
{
    device->bindTexture(0, makeFourColors());
    EXPECT_EQ(sample(0.25f, 0.25f), red);
    EXPECT_EQ(sample(0.75f, 0.25f), green);
    EXPECT_EQ(sample(0.25f, 0.75f), blue);
    EXPECT_EQ(sample(0.75f, 0.75f), white);
}

TEST_F(OpenGLTextureSampling, bottomOfARenderedTargetIsAtZero)
{
    RenderTarget* target = makeTarget();
    device->setViewport(0, size / 2, size, size / 2, size); // the lower half
    drawSquare(colorOf(red));
    makeTargetFirst();
    device->bindTexture(0, target->getTexture(0));
    EXPECT_EQ(sample(0.5f, 0.1f), red);
    EXPECT_EQ(sample(0.5f, 0.9f), black);
}

TEST_F(OpenGLTextureSampling, linearFilterMixesNeighbours)
{
    Texture* texture = makeFourColors();
    device->bindTexture(0, texture);
    EXPECT_EQ(sample(0.49f, 0.25f), red) << "nearest at first";
    texture->setFilter(TextureFilter::Linear);
    EXPECT_PRED2([](Pixel a, Pixel b) { return isNear(a, b, 2); }, sample(0.5f, 0.25f), (Pixel{128, 128, 0, 255}));
    texture->setFilter(TextureFilter::Nearest);
    EXPECT_EQ(sample(0.49f, 0.25f), red);
}

TEST_F(OpenGLTextureSampling, clampRepeatsTheEdgeAndRepeatStartsAgain)
{
    Texture* texture = makeFourColors();
    device->bindTexture(0, texture);
    EXPECT_EQ(sample(1.25f, 0.25f), green) << "clamped at first";
    EXPECT_EQ(sample(0.25f, 1.25f), blue);
    texture->setClamp(false, true);
    EXPECT_EQ(sample(1.25f, 0.25f), red);
    EXPECT_EQ(sample(0.25f, 1.25f), blue);
    texture->setClamp(true, false);
    EXPECT_EQ(sample(1.25f, 0.25f), green);
    EXPECT_EQ(sample(0.25f, 1.25f), red);
    texture->setClamp(false, false);
    EXPECT_EQ(sample(1.25f, 1.25f), red);
    texture->setClamp(true, true);
    EXPECT_EQ(sample(1.25f, 1.25f), white);
}

TEST_F(OpenGLTextureSampling, mipmapsAreUsedWhereATextureIsSmallOnScreen)
{
    footprint = 1.0f;
    device->bindTexture(0, makeFourColors(true));
    EXPECT_PRED2([](Pixel a, Pixel b) { return isNear(a, b, 2); }, sample(0.25f, 0.25f), (Pixel{128, 128, 128, 255}));
    device->bindTexture(0, makeFourColors(false));
    EXPECT_EQ(sample(0.25f, 0.25f), red) << "without mipmaps there is only the first level";
}

TEST_F(OpenGLTextureSampling, oneWithMipmapsIsBlackUntilItIsUpdated)
{
    makeTargetFirst();
    Texture* texture = makeTexture(2, 2, true);
    device->bindTexture(0, texture);
    EXPECT_EQ(sample(0.25f, 0.25f), black);
    texture->update(std::vector<Pixel>(4, red).data());
    EXPECT_EQ(sample(0.25f, 0.25f), red);
}

TEST_F(OpenGLTextureSampling, eachOfTheEightUnitsHoldsItsTexture)
{
    makeTargetFirst();
    std::vector<Pixel> colors;
    std::vector<Texture*> textures;
    for (unsigned char i = 0; i < 8; ++i) {
        colors.push_back({static_cast<unsigned char>(i * 30), 200, 100, 255});
        textures.push_back(makeColorTexture(colors.back()));
    }
    for (int unit = 0; unit < 8; ++unit) device->bindTexture(unit, textures[static_cast<std::size_t>(unit)]);
    for (int unit = 0; unit < 8; ++unit)
        EXPECT_EQ(sample(0.5f, 0.5f, unit), colors[static_cast<std::size_t>(unit)]) << unit;
}

TEST_F(OpenGLTextureSampling, unitOutOfRangeIsIgnored)
{
    makeTargetFirst();
    device->bindTexture(0, makeColorTexture(red));
    Texture* other = makeColorTexture(green);
    device->bindTexture(0, makeColorTexture(blue));
    for (const int unit : {-1, 8, 1000}) device->bindTexture(unit, other);
    EXPECT_EQ(getInteger(GL_ACTIVE_TEXTURE), GL_TEXTURE0);
    EXPECT_EQ(sample(0.5f, 0.5f), blue);
}

TEST_F(OpenGLTextureSampling, nullTextureIsIgnored)
{
    makeTargetFirst();
    device->bindTexture(0, makeColorTexture(red));
    device->bindTexture(0, nullptr);
    device->bindTexture(5, nullptr);
    EXPECT_EQ(getInteger(GL_ACTIVE_TEXTURE), GL_TEXTURE0);
    EXPECT_EQ(sample(0.5f, 0.5f), red);
}
