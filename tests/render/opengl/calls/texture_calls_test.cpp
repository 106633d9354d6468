#include "gl_fixture.h"

#include "gl_call_recorder.h"

using GLCall::describe;
using GLCall::recordedDuring;

using Calls = std::vector<std::string>;
using OpenGLTextureCalls = GLTest;

namespace {

std::string activate(int unit)
{
    return describe("glActiveTexture", GL_TEXTURE0 + unit);
}

std::string bind(Texture* texture)
{
    return describe("glBindTexture", GL_TEXTURE_2D, texture->getHandle());
}

} // namespace

TEST_F(OpenGLTextureCalls, bindingWhatAUnitHoldsIssuesNothing)
{
    Texture* a = makeTexture(1, 1);
    Texture* b = makeTexture(1, 1);
    EXPECT_EQ(recordedDuring([&] { device->bindTexture(0, b); }), Calls()) << "a new texture is bound to unit 0";
    EXPECT_EQ(recordedDuring([&] { device->bindTexture(0, a); }), (Calls{bind(a)}));
    EXPECT_EQ(recordedDuring([&] { device->bindTexture(0, a); }), Calls());
    EXPECT_EQ(recordedDuring([&] { device->bindTexture(4, a); }), (Calls{activate(4), bind(a)}));
    EXPECT_EQ(recordedDuring([&] { device->bindTexture(4, a); }), Calls());
    EXPECT_EQ(recordedDuring([&] { device->bindTexture(0, a); }), (Calls{activate(0)})) << "but it becomes active";
    EXPECT_EQ(recordedDuring([&] { device->bindTexture(4, b); }), (Calls{activate(4), bind(b)}));
}

TEST_F(OpenGLTextureCalls, unitOutOfRangeAndNullIssueNothing)
{
    Texture* texture = makeTexture(1, 1);
    EXPECT_EQ(recordedDuring([&] {
                  device->bindTexture(-1, texture);
                  device->bindTexture(8, texture);
                  device->bindTexture(3, nullptr);
              }),
              Calls());
}

TEST_F(OpenGLTextureCalls, destroyingAnyTextureForgetsAllEightUnits)
{
    Texture* kept = makeTexture(1, 1);
    Texture* destroyed = device->createTexture(1, 1, false);
    for (int unit = 0; unit < 8; ++unit) device->bindTexture(unit, kept);
    device->destroyTexture(destroyed); // bound nowhere
    for (int unit = 0; unit < 8; ++unit) {
        const Calls calls = recordedDuring([&] { device->bindTexture(unit, kept); }, "glBindTexture");
        EXPECT_EQ(calls, (Calls{bind(kept)})) << unit;
    }
}

TEST_F(OpenGLTextureCalls, destroyingATargetForgetsAllEightUnits)
{
    Texture* kept = makeTexture(1, 1);
    RenderTarget* target = device->createRenderTarget(1, 1, {depth32});
    for (int unit = 0; unit < 8; ++unit) device->bindTexture(unit, kept);
    device->destroyRenderTarget(target);
    for (int unit = 0; unit < 8; ++unit) {
        const Calls calls = recordedDuring([&] { device->bindTexture(unit, kept); }, "glBindTexture");
        EXPECT_EQ(calls, (Calls{bind(kept)})) << unit;
    }
}

TEST_F(OpenGLTextureCalls, destroyingNullForgetsNothing)
{
    Texture* texture = makeTexture(1, 1);
    device->destroyTexture(nullptr);
    EXPECT_EQ(recordedDuring([&] { device->bindTexture(0, texture); }), Calls());
}

TEST_F(OpenGLTextureCalls, creationAllocatesWithoutDataAndBuildsNoMipmaps)
{
    for (const bool mipmaps : {false, true}) {
        Texture* texture = nullptr;
        const Calls calls = recordedDuring([&] { texture = makeTexture(5, 3, mipmaps); });
        EXPECT_EQ(calls, (Calls{bind(texture), describe("glTexImage2D", GL_TEXTURE_2D, 0, GL_RGBA8, 5, 3, 0, GL_RGBA,
                                                        GL_UNSIGNED_BYTE, GLCall::null)}));
    }
}

TEST_F(OpenGLTextureCalls, creationMakesUnitZeroActive)
{
    device->bindTexture(6, makeTexture(1, 1));
    Texture* texture = nullptr;
    const Calls calls = recordedDuring([&] { texture = makeTexture(1, 1); });
    ASSERT_EQ(calls.size(), 3u);
    EXPECT_EQ(calls[0], activate(0));
    EXPECT_EQ(calls[1], bind(texture));
}

TEST_F(OpenGLTextureCalls, updateSendsRgbaBytesAndBuildsMipmapsWhereThereAreAny)
{
    const std::vector<Pixel> pixels(6);
    for (const bool mipmaps : {false, true}) {
        Texture* texture = makeTexture(3, 2, mipmaps);
        Calls expected = {
            describe("glTexImage2D", GL_TEXTURE_2D, 0, GL_RGBA8, 3, 2, 0, GL_RGBA, GL_UNSIGNED_BYTE, GLCall::pointer)};
        if (mipmaps) expected.push_back(describe("glGenerateMipmap", GL_TEXTURE_2D));
        EXPECT_EQ(recordedDuring([&] { texture->update(pixels.data()); }), expected);
    }
}

TEST_F(OpenGLTextureCalls, operationsOfTheBoundTextureBindNothing)
{
    Texture* texture = makeTexture(1, 1);
    EXPECT_EQ(recordedDuring([&] {
                  texture->setFilter(TextureFilter::Linear);
                  texture->setFilter(static_cast<TextureFilter::Type>(9));
                  texture->setClamp(true, false);
                  delete texture->toImage(true);
              }),
              Calls());
}

TEST_F(OpenGLTextureCalls, everyFormatIsAllocatedByItsTable)
{
    const GLenum colorTypes[] = {GL_UNSIGNED_BYTE, GL_HALF_FLOAT, GL_FLOAT};
    const GLenum pixelFormats[] = {GL_RED, GL_RG, GL_RGB, GL_RGBA};
    const GLint internalFormats[][4] = {{GL_R8, GL_RG8, GL_RGB8, GL_RGBA8},
                                        {GL_R16F, GL_RG16F, GL_RGB16F, GL_RGBA16F},
                                        {GL_R32F, GL_RG32F, GL_RGB32F, GL_RGBA32F}};
    const auto allocation = [&](const TextureFormat& format) {
        return recordedDuring([&] { makeTarget({format}); }, "glTexImage2D");
    };
    for (int type = 0; type < 3; ++type)
        for (int channels = 1; channels <= 4; ++channels)
            EXPECT_EQ(allocation({type, channels}),
                      (Calls{describe("glTexImage2D", GL_TEXTURE_2D, 0, internalFormats[type][channels - 1], size, size,
                                      0, pixelFormats[channels - 1], colorTypes[type], GLCall::null)}));
    EXPECT_EQ(allocation(depth32), (Calls{describe("glTexImage2D", GL_TEXTURE_2D, 0, GL_DEPTH_COMPONENT32F, size, size,
                                                   0, GL_DEPTH_COMPONENT, GL_FLOAT, GLCall::null)}));
    EXPECT_EQ(allocation(depthStencil),
              (Calls{describe("glTexImage2D", GL_TEXTURE_2D, 0, GL_DEPTH24_STENCIL8, size, size, 0, GL_DEPTH_STENCIL,
                              GL_UNSIGNED_INT_24_8, GLCall::null)}));
}
