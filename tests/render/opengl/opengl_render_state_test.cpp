#include "gl_fixture.h"

#include <array>

// Viewport, scissor, depth function, culling and blending. The switches stand in render_feature_test.cpp, the stencil
// in stencil_test.cpp.

using OpenGLRenderState = GLTest;

namespace {

std::array<GLint, 4> getRectangle(GLenum parameter)
{
    std::array<GLint, 4> rectangle{};
    glGetIntegerv(parameter, rectangle.data());
    return rectangle;
}

using Rectangle = std::array<GLint, 4>;

} // namespace

TEST_F(OpenGLRenderState, viewportCountsFromTheTopOfTheGivenScreenHeight)
{
    device->setViewport(0, 0, 100, 50, 600);
    EXPECT_EQ(getRectangle(GL_VIEWPORT), (Rectangle{0, 550, 100, 50}));
    device->setViewport(7, 20, 30, 40, 100);
    EXPECT_EQ(getRectangle(GL_VIEWPORT), (Rectangle{7, 40, 30, 40}));
}

TEST_F(OpenGLRenderState, viewportMayReachBelowTheScreen)
{
    device->setViewport(-5, 90, 30, 40, 100);
    EXPECT_EQ(getRectangle(GL_VIEWPORT), (Rectangle{-5, -30, 30, 40}));
}

TEST_F(OpenGLRenderState, viewportAtTheTopLeftDrawsAtTheTopLeft)
{
    makeTarget();
    device->setViewport(0, 0, 4, 6, size);
    drawSquare(colorOf(red));
    EXPECT_EQ(countPixels(red), 24);
    EXPECT_EQ(pixelAt(0, 0), red);
    EXPECT_EQ(pixelAt(3, 5), red);
    EXPECT_EQ(pixelAt(4, 5), black);
    EXPECT_EQ(pixelAt(3, 6), black);
}

TEST_F(OpenGLRenderState, scissorCountsFromTheTopOfTheGivenScreenHeight)
{
    device->setScissor(2, 1, 4, 5, 16);
    EXPECT_EQ(getRectangle(GL_SCISSOR_BOX), (Rectangle{2, 10, 4, 5}));
    device->setScissor(0, 0, 100, 50, 600);
    EXPECT_EQ(getRectangle(GL_SCISSOR_BOX), (Rectangle{0, 550, 100, 50}));
}

TEST_F(OpenGLRenderState, scissorLimitsDrawingOnlyWhileEnabled)
{
    makeTarget();
    device->setScissor(2, 1, 4, 5, size);
    drawSquare(colorOf(blue));
    EXPECT_EQ(countPixels(blue), size * size);

    device->enable(RenderFeature::ScissorTest);
    drawSquare(colorOf(red));
    EXPECT_EQ(countPixels(red), 20);
    EXPECT_EQ(pixelAt(2, 1), red);
    EXPECT_EQ(pixelAt(5, 5), red);
    EXPECT_EQ(pixelAt(1, 1), blue);
    EXPECT_EQ(pixelAt(2, 0), blue);
    EXPECT_EQ(pixelAt(6, 5), blue);
    EXPECT_EQ(pixelAt(5, 6), blue);

    device->disable(RenderFeature::ScissorTest);
    drawSquare(colorOf(green));
    EXPECT_EQ(countPixels(green), size * size);
}

TEST_F(OpenGLRenderState, depthFunctionLessDrawsNearerPixelsOnly)
{
    makeTarget({rgba8, depth32});
    device->enable(RenderFeature::DepthTest);
    device->setDepthFunction(DepthFunction::Less);
    drawSquare(colorOf(red), 0.5f);
    EXPECT_EQ(pixelAt(8, 8), red);
    drawSquare(colorOf(green), 0.5f);
    EXPECT_EQ(pixelAt(8, 8), red) << "the same depth is not less";
    drawSquare(colorOf(green), 0.6f);
    EXPECT_EQ(pixelAt(8, 8), red);
    drawSquare(colorOf(blue), 0.4f);
    EXPECT_EQ(pixelAt(8, 8), blue);
}

TEST_F(OpenGLRenderState, depthFunctionEqualDrawsTheSameDepthOnly)
{
    makeTarget({rgba8, depth32});
    device->enable(RenderFeature::DepthTest);
    drawSquare(colorOf(red), 0.5f);
    device->setDepthFunction(DepthFunction::Equal);
    drawSquare(colorOf(green), 0.4f);
    EXPECT_EQ(pixelAt(8, 8), red);
    drawSquare(colorOf(green), 0.6f);
    EXPECT_EQ(pixelAt(8, 8), red);
    drawSquare(colorOf(blue), 0.5f);
    EXPECT_EQ(pixelAt(8, 8), blue);
    device->setDepthFunction(DepthFunction::Less);
    drawSquare(colorOf(white), 0.5f);
    EXPECT_EQ(pixelAt(8, 8), blue);
}

TEST_F(OpenGLRenderState, unknownDepthFunctionIsIgnored)
{
    device->setDepthFunction(DepthFunction::Equal);
    for (const int value : {2, 7, -1}) {
        device->setDepthFunction(static_cast<DepthFunction>(value));
        EXPECT_EQ(getInteger(GL_DEPTH_FUNC), GL_EQUAL) << value;
    }
}

TEST_F(OpenGLRenderState, cullModeDropsTheFacesItNames)
{
    makeTarget();
    VertexBuffer* counterClockwise = makeSquare();
    VertexBuffer* clockwise = makeBuffer();
    clockwise->setAttribute(0, std::vector<Vector3<float>>{{-1, -1, 0}, {-1, 1, 0}, {1, 1, 0}, {1, -1, 0}});

    const auto draws = [&](VertexBuffer* buffer, CullMode mode) {
        device->clear(true, false, false);
        usePlainProgram(colorOf(red));
        device->setCullMode(mode);
        buffer->drawTriangleFan();
        return countPixels(red) == size * size;
    };
    EXPECT_TRUE(draws(counterClockwise, CullMode::Back));
    EXPECT_FALSE(draws(clockwise, CullMode::Back));
    EXPECT_FALSE(draws(counterClockwise, CullMode::Front));
    EXPECT_TRUE(draws(clockwise, CullMode::Front));
    EXPECT_TRUE(draws(counterClockwise, CullMode::None));
    EXPECT_TRUE(draws(clockwise, CullMode::None));
}

TEST_F(OpenGLRenderState, nothingIsCulledAtFirst)
{
    EXPECT_EQ(glIsEnabled(GL_CULL_FACE), GL_FALSE);
}

TEST_F(OpenGLRenderState, unknownCullModeIsIgnored)
{
    device->setCullMode(CullMode::Front);
    for (const int value : {3, -1}) {
        device->setCullMode(static_cast<CullMode>(value));
        EXPECT_EQ(glIsEnabled(GL_CULL_FACE), GL_TRUE) << value;
        EXPECT_EQ(getInteger(GL_CULL_FACE_MODE), GL_FRONT) << value;
    }
    device->setCullMode(CullMode::None);
    device->setCullMode(static_cast<CullMode>(3));
    EXPECT_EQ(glIsEnabled(GL_CULL_FACE), GL_FALSE);
}

TEST_F(OpenGLRenderState, blendModesMixTheSourceWithWhatIsThere)
{
    makeTarget();
    const Vector4<float> translucentRed(1, 0, 0, 0.25f);
    const auto blend = [&](BlendMode mode) {
        device->setBlendMode(BlendMode::None);
        drawSquare(colorOf(blue));
        device->setBlendMode(mode);
        drawSquare(translucentRed);
        return pixelAt(8, 8);
    };
    EXPECT_PRED2([](Pixel a, Pixel b) { return isNear(a, b); }, blend(BlendMode::Alpha), (Pixel{64, 0, 191, 207}));
    EXPECT_PRED2([](Pixel a, Pixel b) { return isNear(a, b); }, blend(BlendMode::Additive), (Pixel{64, 0, 255, 255}));
    EXPECT_PRED2([](Pixel a, Pixel b) { return isNear(a, b); }, blend(BlendMode::None), (Pixel{255, 0, 0, 64}));
}

TEST_F(OpenGLRenderState, nothingIsBlendedAtFirst)
{
    EXPECT_EQ(glIsEnabled(GL_BLEND), GL_FALSE);
}

TEST_F(OpenGLRenderState, unknownBlendModeIsIgnored)
{
    device->setBlendMode(BlendMode::Additive);
    for (const int value : {3, -1}) {
        device->setBlendMode(static_cast<BlendMode>(value));
        EXPECT_EQ(glIsEnabled(GL_BLEND), GL_TRUE) << value;
        EXPECT_EQ(getInteger(GL_BLEND_SRC), GL_SRC_ALPHA) << value;
        EXPECT_EQ(getInteger(GL_BLEND_DST), GL_ONE) << value;
    }
    device->setBlendMode(BlendMode::None);
    device->setBlendMode(static_cast<BlendMode>(3));
    EXPECT_EQ(glIsEnabled(GL_BLEND), GL_FALSE);
}
