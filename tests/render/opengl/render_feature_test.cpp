#include "gl_fixture.h"

// The seven switches, and clear, which obeys them.

using OpenGLRenderFeature = GLTest;
using OpenGLClear = GLTest;

TEST_F(OpenGLRenderFeature, colorWriteOffKeepsDrawsFromChangingColors)
{
    makeTarget();
    device->disable(RenderFeature::ColorWrite);
    drawSquare(colorOf(white));
    EXPECT_EQ(countPixels(black), size * size);
    device->enable(RenderFeature::ColorWrite);
    drawSquare({0.2f, 0.4f, 0.6f, 0.8f});
    EXPECT_EQ(pixelAt(3, 3), (Pixel{51, 102, 153, 204})) << "all four channels are written again";
}

TEST_F(OpenGLRenderFeature, depthWriteOffStillTests)
{
    makeTarget({rgba8, depth32});
    device->enable(RenderFeature::DepthTest);
    device->disable(RenderFeature::DepthWrite);
    drawSquare(colorOf(red), 0.5f);
    EXPECT_EQ(pixelAt(8, 8), red);
    EXPECT_EQ(depthAt(8, 8), 1.0f);
    device->enable(RenderFeature::DepthWrite);
    drawSquare(colorOf(green), 0.5f);
    EXPECT_EQ(depthAt(8, 8), 0.75f);
    device->disable(RenderFeature::DepthWrite);
    drawSquare(colorOf(blue), 0.8f);
    EXPECT_EQ(pixelAt(8, 8), green);
}

TEST_F(OpenGLRenderFeature, depthTestOffDrawsEverythingAndLeavesTheDepth)
{
    makeTarget({rgba8, depth32});
    device->enable(RenderFeature::DepthTest);
    drawSquare(colorOf(red), 0.0f);
    drawSquare(colorOf(green), 0.5f);
    EXPECT_EQ(pixelAt(8, 8), red);
    device->disable(RenderFeature::DepthTest);
    drawSquare(colorOf(green), 0.5f);
    EXPECT_EQ(pixelAt(8, 8), green);
    EXPECT_EQ(depthAt(8, 8), 0.5f) << "0 in -1 to 1: written by the first square alone";
}

TEST_F(OpenGLRenderFeature, stencilWriteOffKeepsTheStencil)
{
    makeTarget({rgba8, depthStencil});
    device->enable(RenderFeature::StencilTest);
    device->setStencilFunction(CompareFunction::Always, 255, 255);
    device->disable(RenderFeature::StencilWrite);
    drawSquare(colorOf(red));
    EXPECT_EQ(stencilAt(8, 8), 0);
    device->enable(RenderFeature::StencilWrite);
    drawSquare(colorOf(red));
    EXPECT_EQ(stencilAt(8, 8), 255) << "all eight bits are written again";
}

TEST_F(OpenGLRenderFeature, stencilTestOffIgnoresAndKeepsTheStencil)
{
    makeTarget({rgba8, depthStencil});
    device->setStencilFunction(CompareFunction::Never, 9, 255);
    drawSquare(colorOf(red));
    EXPECT_EQ(pixelAt(8, 8), red);
    EXPECT_EQ(stencilAt(8, 8), 0);
    device->enable(RenderFeature::StencilTest);
    drawSquare(colorOf(green));
    EXPECT_EQ(pixelAt(8, 8), red);
    device->disable(RenderFeature::StencilTest);
    drawSquare(colorOf(blue));
    EXPECT_EQ(pixelAt(8, 8), blue);
}

TEST_F(OpenGLRenderFeature, scissorTestCutsOnlyWhileEnabled)
{
    makeTarget();
    device->setScissor(0, 0, 1, 1, size);
    device->enable(RenderFeature::ScissorTest);
    drawSquare(colorOf(red));
    EXPECT_EQ(countPixels(red), 1);
    EXPECT_EQ(pixelAt(0, 0), red);
    device->disable(RenderFeature::ScissorTest);
    drawSquare(colorOf(red));
    EXPECT_EQ(countPixels(red), size * size);
}

TEST_F(OpenGLRenderFeature, clipPlaneCutsWhereTheClipDistanceIsNegative)
{
    makeTarget();
    VertexBuffer* square = makeSquare();
    device->useProgram(
        makeProgram("#version 150\nin vec3 position;\n"
                    "void main() { gl_Position = vec4(position, 1.0); gl_ClipDistance[0] = position.x; }\n",
                    "#version 150\nout vec4 outputColor;\nvoid main() { outputColor = vec4(1.0, 0.0, 0.0, 1.0); }\n"));
    EXPECT_EQ(glIsEnabled(GL_CLIP_DISTANCE0), GL_FALSE);
    device->enable(RenderFeature::ClipPlane);
    EXPECT_EQ(glIsEnabled(GL_CLIP_DISTANCE0), GL_TRUE);
    square->drawTriangleFan();
    EXPECT_EQ(litPixelsOfRow(0), "........########");
    EXPECT_EQ(litPixelsOfRow(15), "........########");

    // Mesa's software renderer cuts by a distance that is written even while the switch is off, so that state is asked.
    device->disable(RenderFeature::ClipPlane);
    EXPECT_EQ(glIsEnabled(GL_CLIP_DISTANCE0), GL_FALSE);
}

TEST_F(OpenGLRenderFeature, unknownFeatureIsIgnored)
{
    const auto state = [] {
        std::vector<GLint> values;
        GLint mask[4] = {};
        glGetIntegerv(GL_COLOR_WRITEMASK, mask);
        values.assign(mask, mask + 4);
        for (const GLenum parameter :
             std::initializer_list<GLenum>{GL_DEPTH_WRITEMASK, GL_DEPTH_TEST, GL_STENCIL_WRITEMASK, GL_STENCIL_TEST,
                                           GL_SCISSOR_TEST, GL_CLIP_DISTANCE0, GL_BLEND, GL_CULL_FACE})
            values.push_back(getInteger(parameter));
        return values;
    };
    const std::vector<GLint> before = state();
    for (const int value : {7, 100, -1}) {
        device->enable(static_cast<RenderFeature>(value));
        EXPECT_EQ(state(), before) << value;
        device->disable(static_cast<RenderFeature>(value));
        EXPECT_EQ(state(), before) << value;
    }
}

TEST_F(OpenGLClear, clearsExactlyTheChosenBuffers)
{
    makeTarget({rgba8, depthStencil});
    for (int choice = 0; choice < 8; ++choice) {
        const bool color = (choice & 1) != 0, depth = (choice & 2) != 0, stencil = (choice & 4) != 0;
        SCOPED_TRACE(choice);
        device->clear(true, true, true);
        device->enable(RenderFeature::DepthTest);
        device->enable(RenderFeature::StencilTest);
        device->setStencilFunction(CompareFunction::Always, 9, 255);
        drawSquare(colorOf(red));
        ASSERT_EQ(pixelAt(8, 8), red);
        ASSERT_NEAR(depthAt(8, 8), 0.5f, 1e-6f);
        ASSERT_EQ(stencilAt(8, 8), 9);

        device->clear(color, depth, stencil);
        EXPECT_EQ(countPixels(color ? black : red), size * size);
        EXPECT_NEAR(depthAt(8, 8), depth ? 1.0f : 0.5f, 1e-6f);
        EXPECT_EQ(stencilAt(8, 8), stencil ? 0 : 9);
    }
}

TEST_F(OpenGLClear, colorBecomesOpaqueBlack)
{
    makeTarget();
    drawSquare({1, 1, 1, 0});
    device->clear(true, false, false);
    EXPECT_EQ(countPixels(Pixel{0, 0, 0, 255}), size * size);
}

TEST_F(OpenGLClear, obeysTheWriteSwitches)
{
    makeTarget({rgba8, depthStencil});
    device->enable(RenderFeature::DepthTest);
    device->enable(RenderFeature::StencilTest);
    device->setStencilFunction(CompareFunction::Always, 9, 255);
    drawSquare(colorOf(red));

    for (const RenderFeature feature :
         {RenderFeature::ColorWrite, RenderFeature::DepthWrite, RenderFeature::StencilWrite})
        device->disable(feature);
    device->clear(true, true, true);
    EXPECT_EQ(pixelAt(8, 8), red);
    EXPECT_NEAR(depthAt(8, 8), 0.5f, 1e-6f);
    EXPECT_EQ(stencilAt(8, 8), 9);

    device->enable(RenderFeature::ColorWrite);
    device->clear(true, true, true);
    EXPECT_EQ(pixelAt(8, 8), black);
    EXPECT_NEAR(depthAt(8, 8), 0.5f, 1e-6f);
    device->enable(RenderFeature::DepthWrite);
    device->clear(true, true, true);
    EXPECT_EQ(depthAt(8, 8), 1.0f);
    EXPECT_EQ(stencilAt(8, 8), 9);
    device->enable(RenderFeature::StencilWrite);
    device->clear(true, true, true);
    EXPECT_EQ(stencilAt(8, 8), 0);
}

TEST_F(OpenGLClear, obeysTheScissor)
{
    makeTarget();
    drawSquare(colorOf(red));
    device->setScissor(0, 0, 3, 2, size);
    device->enable(RenderFeature::ScissorTest);
    device->clear(true, false, false);
    EXPECT_EQ(countPixels(black), 6);
    EXPECT_EQ(pixelAt(2, 1), black);
    EXPECT_EQ(pixelAt(3, 2), red);
}

TEST_F(OpenGLClear, ignoresTheViewport)
{
    makeTarget();
    drawSquare(colorOf(red));
    device->setViewport(0, 0, 2, 2, size);
    device->clear(true, false, false);
    EXPECT_EQ(countPixels(black), size * size);
}

TEST_F(OpenGLClear, clearsTheBoundDrawTargetOnly)
{
    RenderTarget* first = makeTarget();
    drawSquare(colorOf(red));
    makeTarget();
    drawSquare(colorOf(red));
    device->clear(true, false, false);
    EXPECT_EQ(countPixels(black), size * size);
    device->bindRenderTarget(first, TargetBinding::Read);
    EXPECT_EQ(countPixels(red), size * size);
}
