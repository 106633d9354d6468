#include "gl_fixture.h"

#include "file_contents.h"
#include "message_boxes.h"

#include <algorithm>

// Attachments, completeness and colour writes. Binding stands in target_binding_test.cpp, copying in blit_test.cpp.

using OpenGLRenderTarget = GLTest;

namespace {

GLint getAttachment(GLenum attachment, GLenum parameter)
{
    GLint value = -1;
    glGetFramebufferAttachmentParameteriv(GL_FRAMEBUFFER, attachment, parameter, &value);
    return value;
}

GLuint attachedName(GLenum attachment)
{
    if (getAttachment(attachment, GL_FRAMEBUFFER_ATTACHMENT_OBJECT_TYPE) == GL_NONE) return 0;
    return static_cast<GLuint>(getAttachment(attachment, GL_FRAMEBUFFER_ATTACHMENT_OBJECT_NAME));
}

GLenum status()
{
    return glCheckFramebufferStatus(GL_FRAMEBUFFER);
}

std::vector<GLint> drawBuffers()
{
    std::vector<GLint> buffers;
    for (GLenum i = 0; i < 5; ++i) buffers.push_back(getInteger(GL_DRAW_BUFFER0 + i));
    return buffers;
}

std::string fragmentSourceWithOutputs(int count)
{
    std::string declarations = "#version 150\n", assignments;
    for (int i = 0; i < count; ++i) {
        const std::string name = "output" + std::to_string(i);
        declarations += "out vec4 " + name + ";\n";
        assignments += name + " = vec4(" + std::to_string(i + 1) + ".0 / 5.0, 0.0, 0.0, 1.0); ";
    }
    return declarations + "void main() { " + assignments + "}\n";
}

std::list<std::string> outputNames(int count)
{
    std::list<std::string> names;
    for (int i = 0; i < count; ++i) names.push_back("output" + std::to_string(i));
    return names;
}

} // namespace

TEST_F(OpenGLRenderTarget, formatsBecomeColorAttachmentsAndADepthTexture)
{
    const TextureFormat rgb32f{TextureFormat::Float, 3};
    RenderTarget* target = makeTarget({rgba8, depth32, rgb32f});
    ASSERT_NE(target->getTexture(0), nullptr);
    ASSERT_NE(target->getTexture(1), nullptr);
    ASSERT_NE(target->getDepthTexture(), nullptr);
    EXPECT_EQ(target->getTexture(2), nullptr);
    EXPECT_EQ(target->getTexture(0)->getFormat(), rgba8);
    EXPECT_EQ(target->getTexture(1)->getFormat(), rgb32f);
    EXPECT_EQ(target->getDepthTexture()->getFormat(), depth32);

    EXPECT_EQ(status(), GLenum{GL_FRAMEBUFFER_COMPLETE});
    EXPECT_EQ(attachedName(GL_COLOR_ATTACHMENT0), target->getTexture(0)->getHandle());
    EXPECT_EQ(attachedName(GL_COLOR_ATTACHMENT1), target->getTexture(1)->getHandle());
    EXPECT_EQ(attachedName(GL_COLOR_ATTACHMENT2), 0u);
    EXPECT_EQ(attachedName(GL_DEPTH_ATTACHMENT), target->getDepthTexture()->getHandle());
    EXPECT_EQ(attachedName(GL_STENCIL_ATTACHMENT), 0u);
    EXPECT_EQ(drawBuffers(),
              (std::vector<GLint>{GL_COLOR_ATTACHMENT0, GL_COLOR_ATTACHMENT1, GL_NONE, GL_NONE, GL_NONE}));

    device->bindTexture(0, target->getTexture(0));
    EXPECT_EQ(getTextureLevelParameter(GL_TEXTURE_INTERNAL_FORMAT), GL_RGBA8);
    device->bindTexture(0, target->getTexture(1));
    EXPECT_EQ(getTextureLevelParameter(GL_TEXTURE_INTERNAL_FORMAT), GL_RGB32F);
    device->bindTexture(0, target->getDepthTexture());
    EXPECT_EQ(getTextureLevelParameter(GL_TEXTURE_INTERNAL_FORMAT), GL_DEPTH_COMPONENT32F);
    EXPECT_TRUE(shownMessageBoxes().empty());
}

TEST_F(OpenGLRenderTarget, depthStencilIsAttachedAsBoth)
{
    RenderTarget* target = makeTarget({rgba8, depthStencil});
    EXPECT_EQ(attachedName(GL_DEPTH_ATTACHMENT), target->getDepthTexture()->getHandle());
    EXPECT_EQ(attachedName(GL_STENCIL_ATTACHMENT), target->getDepthTexture()->getHandle());
    EXPECT_EQ(status(), GLenum{GL_FRAMEBUFFER_COMPLETE});
}

TEST_F(OpenGLRenderTarget, fourColorAttachmentsAreDrawnAtOnce)
{
    RenderTarget* target = makeTarget({rgba8, rgba8, rgba8, rgba8});
    VertexBuffer* square = makeSquare();
    device->useProgram(makeProgramWithFragment(fragmentSourceWithOutputs(4), outputNames(4)));
    square->drawTriangleFan();
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(imageOf(target->getTexture(i), true)->getPixel(5, 5),
                  (Pixel{static_cast<unsigned char>(51 * (i + 1)), 0, 0, 255}));
}

TEST_F(OpenGLRenderTarget, fifthColorIsLeftOutWithALogLine)
{
    const std::size_t linesBefore = logLines().size();
    RenderTarget* target =
        makeTarget({rgba8, rgba8, rgba8, rgba8, {TextureFormat::Float, 1}, depth32, {TextureFormat::Float, 2}});
    for (int i = 0; i < 4; ++i) EXPECT_EQ(target->getTexture(i)->getFormat(), rgba8);
    EXPECT_EQ(target->getTexture(4), nullptr);
    ASSERT_NE(target->getDepthTexture(), nullptr) << "what follows it is taken";
    EXPECT_EQ(attachedName(GL_COLOR_ATTACHMENT4), 0u);
    EXPECT_EQ(drawBuffers(), (std::vector<GLint>{GL_COLOR_ATTACHMENT0, GL_COLOR_ATTACHMENT1, GL_COLOR_ATTACHMENT2,
                                                 GL_COLOR_ATTACHMENT3, GL_NONE}));
    EXPECT_EQ(status(), GLenum{GL_FRAMEBUFFER_COMPLETE});
    EXPECT_TRUE(shownMessageBoxes().empty());
    EXPECT_EQ(logLines().size(), linesBefore + 2) << "one for each that is left out";
    drawSquare(colorOf(red));
    EXPECT_EQ(pixelAt(0, 0), red);
}

TEST_F(OpenGLRenderTarget, laterDepthFormatTakesThePlaceOfAnEarlierOne)
{
    RenderTarget* target = makeTarget({depth32, rgba8, depthStencil});
    EXPECT_EQ(target->getDepthTexture()->getFormat(), depthStencil);
    EXPECT_EQ(attachedName(GL_DEPTH_ATTACHMENT), target->getDepthTexture()->getHandle());
    EXPECT_EQ(attachedName(GL_STENCIL_ATTACHMENT), target->getDepthTexture()->getHandle());
    EXPECT_EQ(status(), GLenum{GL_FRAMEBUFFER_COMPLETE});

    target = makeTarget({depthStencil, rgba8, depth32});
    EXPECT_EQ(target->getDepthTexture()->getFormat(), depth32);
    EXPECT_EQ(attachedName(GL_DEPTH_ATTACHMENT), target->getDepthTexture()->getHandle());
    EXPECT_EQ(attachedName(GL_STENCIL_ATTACHMENT), 0u) << "nothing of the first is left";
    EXPECT_EQ(status(), GLenum{GL_FRAMEBUFFER_COMPLETE});
    EXPECT_TRUE(shownMessageBoxes().empty());
}

TEST_F(OpenGLRenderTarget, depthAloneDrawsAndReadsNoColor)
{
    for (const TextureFormat& format : {depth32, depthStencil}) {
        RenderTarget* target = makeTarget({format});
        EXPECT_EQ(target->getTexture(0), nullptr);
        ASSERT_NE(target->getDepthTexture(), nullptr);
        EXPECT_EQ(status(), GLenum{GL_FRAMEBUFFER_COMPLETE});
        EXPECT_EQ(drawBuffers(), std::vector<GLint>(5, GL_NONE));
        EXPECT_EQ(getInteger(GL_READ_BUFFER), GL_NONE);
        device->enable(RenderFeature::DepthTest);
        drawSquare(colorOf(red), 0.5f);
        EXPECT_NEAR(depthAt(8, 8), 0.75f, 1e-6f);
    }
    EXPECT_TRUE(shownMessageBoxes().empty());
}

TEST_F(OpenGLRenderTarget, depthTextureIsSampledAsRed)
{
    RenderTarget* shadow = makeTarget({depth32});
    device->enable(RenderFeature::DepthTest);
    drawSquare(colorOf(red), -0.6f);
    makeTarget();
    VertexBuffer* square = makeSquare();
    device->useProgram(makeProgramWithFragment("#version 150\nuniform sampler2D image;\nout vec4 outputColor;\n"
                                               "void main() { outputColor = texture(image, vec2(0.5)); }\n"));
    device->bindTexture(0, shadow->getDepthTexture());
    square->drawTriangleFan();
    EXPECT_PRED2([](Pixel a, Pixel b) { return isNear(a, b); }, pixelAt(8, 8), (Pixel{51, 0, 0, 255}));
}

TEST_F(OpenGLRenderTarget, incompleteOneIsWarnedOfAndReturned)
{
    RenderTarget* target = makeTarget({});
    EXPECT_EQ(glGetError(), GLenum{GL_INVALID_FRAMEBUFFER_OPERATION}) << "it cannot be cleared";
    ASSERT_NE(target, nullptr);
    EXPECT_EQ(target->getTexture(0), nullptr);
    EXPECT_EQ(target->getDepthTexture(), nullptr);
    ASSERT_EQ(shownMessageBoxes().size(), 1u);
    EXPECT_EQ(shownMessageBoxes()[0].title, "Warning");
    EXPECT_EQ(shownMessageBoxes()[0].text, "FBO not complete!");
}

TEST_F(OpenGLRenderTarget, withoutPixelsIsIncomplete)
{
    RenderTarget* target = device->createRenderTarget(0, 0, {rgba8});
    ASSERT_NE(target, nullptr);
    ASSERT_EQ(shownMessageBoxes().size(), 1u);
    EXPECT_EQ(shownMessageBoxes()[0].text, "FBO not complete!");
    device->destroyRenderTarget(target);
}

TEST_F(OpenGLRenderTarget, texturesHaveItsSize)
{
    RenderTarget* target = device->createRenderTarget(7, 3, {rgba8, depth32});
    EXPECT_EQ(target->getTexture(0)->getWidth(), 7);
    EXPECT_EQ(target->getTexture(0)->getHeight(), 3);
    EXPECT_EQ(target->getDepthTexture()->getWidth(), 7);
    EXPECT_EQ(target->getDepthTexture()->getHeight(), 3);
    device->destroyRenderTarget(target);
}

TEST_F(OpenGLRenderTarget, textureOutOfRangeIsNull)
{
    RenderTarget* target = makeTarget({rgba8});
    for (const int attachment : {-1, 1, 3, 4, 5, 1000000}) EXPECT_EQ(target->getTexture(attachment), nullptr);
    EXPECT_EQ(target->getDepthTexture(), nullptr);
}

TEST_F(OpenGLRenderTarget, textureIsTheSameEachTime)
{
    RenderTarget* target = makeTarget({rgba8, depth32});
    EXPECT_EQ(target->getTexture(0), target->getTexture(0));
    EXPECT_EQ(target->getDepthTexture(), target->getDepthTexture());
}

TEST_F(OpenGLRenderTarget, creationKeepsViewportAndClearsNothing)
{
    device->setViewport(1, 2, 3, 4, 48);
    RenderTarget* target = device->createRenderTarget(size, size, {rgba8});
    GLint viewport[4] = {};
    glGetIntegerv(GL_VIEWPORT, viewport);
    EXPECT_EQ(viewport[0], 1);
    EXPECT_EQ(viewport[1], 42);
    EXPECT_EQ(viewport[2], 3);
    EXPECT_EQ(viewport[3], 4);
    device->destroyRenderTarget(target);
}

TEST_F(OpenGLRenderTarget, destructionDeletesItsNames)
{
    RenderTarget* target = device->createRenderTarget(size, size, {rgba8, rgba8, depth32});
    const GLuint framebuffer = static_cast<GLuint>(getInteger(GL_DRAW_FRAMEBUFFER_BINDING));
    const GLuint textures[] = {target->getTexture(0)->getHandle(), target->getTexture(1)->getHandle(),
                               target->getDepthTexture()->getHandle()};
    device->destroyRenderTarget(target);
    EXPECT_EQ(glIsFramebuffer(framebuffer), GL_FALSE);
    for (const GLuint texture : textures) EXPECT_EQ(glIsTexture(texture), GL_FALSE);
}

TEST_F(OpenGLRenderTarget, colorWriteIsSwitchedForOneAttachment)
{
    RenderTarget* target = makeTarget({rgba8, rgba8, rgba8, rgba8});
    VertexBuffer* square = makeSquare();
    device->useProgram(makeProgramWithFragment(fragmentSourceWithOutputs(4), outputNames(4)));
    const auto lit = [&] {
        std::string result;
        for (int i = 0; i < 4; ++i) result += imageOf(target->getTexture(i), true)->getPixel(5, 5).red > 0 ? '#' : '.';
        return result;
    };
    square->drawTriangleFan();
    EXPECT_EQ(lit(), "####");
    target->setColorWrite(1, false);
    target->setColorWrite(3, false);
    device->clear(true, false, false);
    EXPECT_EQ(lit(), ".#.#");
    target->setColorWrite(1, true);
    device->clear(true, false, false);
    EXPECT_EQ(lit(), "...#");
    device->enable(RenderFeature::ColorWrite);
    device->clear(true, false, false);
    EXPECT_EQ(lit(), "....") << "the feature sets all of them";

    target->setColorWrite(0, false);
    square->drawTriangleFan();
    EXPECT_EQ(lit(), ".###");
    device->disable(RenderFeature::ColorWrite);
    target->setColorWrite(2, true);
    device->clear(true, false, false);
    EXPECT_EQ(lit(), ".#.#");
}

TEST_F(OpenGLRenderTarget, colorWriteSwitchesAllFourChannels)
{
    RenderTarget* target = makeTarget();
    for (const bool enabled : {false, true}) {
        target->setColorWrite(0, enabled);
        GLboolean mask[4] = {9, 9, 9, 9};
        glGetBooleani_v(GL_COLOR_WRITEMASK, 0, mask);
        for (const GLboolean channel : mask) EXPECT_EQ(channel, enabled ? GL_TRUE : GL_FALSE);
    }
}

TEST_F(OpenGLRenderTarget, colorWriteBelongsToTheAttachmentNumberNotToTheTarget)
{
    RenderTarget* first = makeTarget();
    makeTarget();
    first->setColorWrite(0, false);
    drawSquare(colorOf(red));
    EXPECT_EQ(countPixels(red), 0) << "the second target is bound";
    first->setColorWrite(0, true);
    drawSquare(colorOf(red));
    EXPECT_EQ(countPixels(red), size * size);
}

TEST_F(OpenGLRenderTarget, colorWriteOutOfRangeIsIgnored)
{
    RenderTarget* target = makeTarget();
    for (const int attachment : {-1, 4, 1000000}) target->setColorWrite(attachment, false);
    drawSquare(colorOf(red));
    EXPECT_EQ(countPixels(red), size * size);
}
