#include "gl_fixture.h"
#include "own_directory.h"

#include <cmath>

// Every format as an attachment of a render target: its storage, and what a drawn value becomes in it.

using OpenGLTextureFormat = GLTest;

namespace {

struct ColorFormat {
    TextureFormat format;
    GLint internalFormat;
};

constexpr ColorFormat colorFormats[] = {
    {{TextureFormat::UnsignedByte, 1}, GL_R8},   {{TextureFormat::UnsignedByte, 2}, GL_RG8},
    {{TextureFormat::UnsignedByte, 3}, GL_RGB8}, {{TextureFormat::UnsignedByte, 4}, GL_RGBA8},
    {{TextureFormat::HalfFloat, 1}, GL_R16F},    {{TextureFormat::HalfFloat, 2}, GL_RG16F},
    {{TextureFormat::HalfFloat, 3}, GL_RGB16F},  {{TextureFormat::HalfFloat, 4}, GL_RGBA16F},
    {{TextureFormat::Float, 1}, GL_R32F},        {{TextureFormat::Float, 2}, GL_RG32F},
    {{TextureFormat::Float, 3}, GL_RGB32F},      {{TextureFormat::Float, 4}, GL_RGBA32F},
};

/// 1/3 as that format keeps it.
float storedThird(int type)
{
    switch (type) {
    case TextureFormat::UnsignedByte: return 85.0f / 255.0f;
    case TextureFormat::HalfFloat: return 1365.0f / 4096.0f; // eleven significant bits
    default: return 1.0f / 3.0f;
    }
}

float stored(int type, float value)
{
    return type == TextureFormat::UnsignedByte ? std::fmin(std::fmax(value, 0.0f), 1.0f) : value;
}

GLint attachmentBits(GLenum attachment, GLenum parameter)
{
    GLint bits = -1;
    glGetFramebufferAttachmentParameteriv(GL_FRAMEBUFFER, attachment, parameter, &bits);
    return bits;
}

constexpr const char* depthSource = "#version 150\nuniform float depth;\nvoid main() { gl_FragDepth = depth; }\n";

} // namespace

TEST_F(OpenGLTextureFormat, defaultIsRgbaBytes)
{
    EXPECT_EQ(TextureFormat(), rgba8);
    EXPECT_EQ(makeTexture(1, 1)->getFormat(), TextureFormat());
}

TEST_F(OpenGLTextureFormat, colorFormatsHaveTheirStorage)
{
    for (const ColorFormat& row : colorFormats) {
        SCOPED_TRACE(::testing::PrintToString(row.format));
        Texture* texture = makeTarget({row.format})->getTexture(0);
        ASSERT_NE(texture, nullptr);
        EXPECT_EQ(texture->getFormat(), row.format);
        EXPECT_EQ(texture->getWidth(), size);
        EXPECT_EQ(texture->getHeight(), size);
        device->bindTexture(0, texture);
        EXPECT_EQ(getTextureLevelParameter(GL_TEXTURE_INTERNAL_FORMAT), row.internalFormat);
        EXPECT_EQ(getTextureLevelParameter(GL_TEXTURE_WIDTH), size);
        EXPECT_EQ(getTextureLevelParameter(GL_TEXTURE_HEIGHT), size);
        EXPECT_EQ(glCheckFramebufferStatus(GL_FRAMEBUFFER), GLenum{GL_FRAMEBUFFER_COMPLETE});
    }
}

TEST_F(OpenGLTextureFormat, drawnColorsKeepTheirChannelsRangeAndPrecision)
{
    for (const ColorFormat& row : colorFormats) {
        SCOPED_TRACE(::testing::PrintToString(row.format));
        Texture* texture = makeTarget({row.format})->getTexture(0);
        drawSquare({1.0f / 3.0f, 1.5f, -2.0f, 0.0f});
        const std::vector<float> values = floatsOf(texture);
        const int channels = row.format.channels;
        const int type = row.format.type;
        EXPECT_NEAR(values[0], storedThird(type), 1e-7f);
        EXPECT_EQ(values[1], channels >= 2 ? stored(type, 1.5f) : 0.0f);
        EXPECT_EQ(values[2], channels >= 3 ? stored(type, -2.0f) : 0.0f);
        EXPECT_EQ(values[3], channels >= 4 ? 0.0f : 1.0f) << "without an alpha channel it reads as opaque";
    }
}

TEST_F(OpenGLTextureFormat, colorTexturesOfTargetsHaveNoMipmaps)
{
    device->bindTexture(0, makeTarget()->getTexture(0));
    EXPECT_EQ(getTextureParameter(GL_TEXTURE_MIN_FILTER), GL_NEAREST);
    EXPECT_EQ(getTextureParameter(GL_TEXTURE_MAG_FILTER), GL_NEAREST);
    EXPECT_EQ(getTextureParameter(GL_TEXTURE_WRAP_S), GL_CLAMP_TO_EDGE);
}

TEST_F(OpenGLTextureFormat, depthIsA32BitFloat)
{
    Texture* texture = makeTarget({rgba8, depth32})->getDepthTexture();
    ASSERT_NE(texture, nullptr);
    EXPECT_EQ(texture->getFormat(), depth32);
    device->bindTexture(0, texture);
    EXPECT_EQ(getTextureLevelParameter(GL_TEXTURE_INTERNAL_FORMAT), GL_DEPTH_COMPONENT32F);
    EXPECT_EQ(attachmentBits(GL_DEPTH_ATTACHMENT, GL_FRAMEBUFFER_ATTACHMENT_DEPTH_SIZE), 32);

    VertexBuffer* square = makeSquare();
    device->useProgram(makeProgramWithFragment(depthSource, {}));
    device->enable(RenderFeature::DepthTest);
    device->setUniform("depth", 1e-10f);
    square->drawTriangleFan();
    EXPECT_EQ(depthAt(8, 8), 1e-10f) << "far below the steps of 24 bits";
}

TEST_F(OpenGLTextureFormat, depthStencilHas24And8Bits)
{
    Texture* texture = makeTarget({rgba8, depthStencil})->getDepthTexture();
    ASSERT_NE(texture, nullptr);
    EXPECT_EQ(texture->getFormat(), depthStencil);
    device->bindTexture(0, texture);
    EXPECT_EQ(getTextureLevelParameter(GL_TEXTURE_INTERNAL_FORMAT), GL_DEPTH24_STENCIL8);
    EXPECT_EQ(attachmentBits(GL_DEPTH_ATTACHMENT, GL_FRAMEBUFFER_ATTACHMENT_DEPTH_SIZE), 24);
    EXPECT_EQ(attachmentBits(GL_STENCIL_ATTACHMENT, GL_FRAMEBUFFER_ATTACHMENT_STENCIL_SIZE), 8);

    VertexBuffer* square = makeSquare();
    device->useProgram(makeProgramWithFragment(depthSource, {}));
    device->enable(RenderFeature::DepthTest);
    device->setUniform("depth", 1e-10f);
    square->drawTriangleFan();
    EXPECT_EQ(depthAt(8, 8), 0.0f) << "below the steps of 24 bits";
}

TEST_F(OpenGLTextureFormat, channelsOfDepthFormatsAreIgnored)
{
    for (const int type : {TextureFormat::Depth, TextureFormat::DepthStencil})
        for (const int channels : {0, 1, 4, 5, -1}) {
            const TextureFormat format{type, channels};
            RenderTarget* target = makeTarget({rgba8, format});
            ASSERT_NE(target->getDepthTexture(), nullptr);
            EXPECT_EQ(target->getDepthTexture()->getFormat(), format);
            EXPECT_EQ(glCheckFramebufferStatus(GL_FRAMEBUFFER), GLenum{GL_FRAMEBUFFER_COMPLETE});
        }
}

TEST_F(OpenGLTextureFormat, unknownTypeIsFatal)
{
    for (const int type : {5, -1})
        EXPECT_EXIT(device->createRenderTarget(4, 4, {{type, 4}}), ::testing::ExitedWithCode(fatalExitCode),
                    "\\[\\[Error\\|Invalid texture format!\\]\\]");
}

TEST_F(OpenGLTextureFormat, wrongChannelCountOfAColorFormatIsFatal)
{
    for (const TextureFormat& format :
         {TextureFormat{TextureFormat::UnsignedByte, 0}, TextureFormat{TextureFormat::HalfFloat, 5},
          TextureFormat{TextureFormat::Float, -1}})
        EXPECT_EXIT(device->createRenderTarget(4, 4, {format}), ::testing::ExitedWithCode(fatalExitCode),
                    "\\[\\[Error\\|Invalid texture format!\\]\\]");
}
