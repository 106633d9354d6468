#include "gl_fixture.h"

// RenderTarget::blit copies from the read target to the draw target.

class OpenGLBlit : public GLTest {
protected:
    /// Binds a source and a destination, both with colour, depth and stencil. The source is red at depth 0.5 with
    /// stencil 9, the destination cleared.
    void prepare()
    {
        destination = makeTarget({rgba8, depthStencil});
        source = makeTarget({rgba8, depthStencil});
        device->enable(RenderFeature::DepthTest);
        device->enable(RenderFeature::StencilTest);
        device->setStencilFunction(CompareFunction::Always, 9, 255);
        drawSquare(colorOf(red));
        device->disable(RenderFeature::DepthTest);
        device->disable(RenderFeature::StencilTest);
        device->bindRenderTarget(destination, TargetBinding::Draw);
    }

    void copyAll(RenderTarget* target, bool color, bool depth, bool stencil)
    {
        target->blit(0, 0, size, size, 0, 0, size, size, color, depth, stencil);
    }

    void readDestination() { device->bindRenderTarget(destination, TargetBinding::Read); }

    RenderTarget* source = nullptr;
    RenderTarget* destination = nullptr;
};

TEST_F(OpenGLBlit, copiesExactlyTheChosenBuffers)
{
    prepare();
    for (int choice = 0; choice < 8; ++choice) {
        const bool color = (choice & 1) != 0, depth = (choice & 2) != 0, stencil = (choice & 4) != 0;
        SCOPED_TRACE(choice);
        device->bindRenderTarget(destination, TargetBinding::Draw);
        device->clear(true, true, true);
        device->bindRenderTarget(source, TargetBinding::Read);
        copyAll(source, color, depth, stencil);
        readDestination();
        EXPECT_EQ(countPixels(red), color ? size * size : 0);
        EXPECT_NEAR(depthAt(8, 8), depth ? 0.5f : 1.0f, 1e-6f);
        EXPECT_EQ(stencilAt(8, 8), stencil ? 9 : 0);
    }
}

TEST_F(OpenGLBlit, usesTheBoundTargetsWhicheverItIsCalledOn)
{
    prepare();
    copyAll(destination, true, false, false);
    readDestination();
    EXPECT_EQ(countPixels(red), size * size);
}

TEST_F(OpenGLBlit, rectanglesCountFromTheBottomLeft)
{
    prepare();
    source->blit(0, 0, 3, 2, 4, 1, 7, 3, true, false, false);
    readDestination();
    EXPECT_EQ(countPixels(red), 6);
    EXPECT_EQ(pixelAt(4, size - 1 - 1), red);
    EXPECT_EQ(pixelAt(6, size - 1 - 2), red);
    EXPECT_EQ(pixelAt(3, size - 1 - 1), black);
    EXPECT_EQ(pixelAt(7, size - 1 - 2), black);
}

TEST_F(OpenGLBlit, enlargesWithTheNearestPixel)
{
    destination = makeTarget();
    source = makeTarget();
    device->setViewport(0, 0, 1, size, size); // the column at the left
    drawSquare(colorOf(red));
    device->setViewport(1, 0, 1, size, size);
    drawSquare(colorOf(green));
    device->bindRenderTarget(destination, TargetBinding::Draw);
    source->blit(0, 0, 2, 2, 0, 0, size, size, true, false, false);
    readDestination();
    EXPECT_EQ(countPixels(red), size * size / 2) << "no mixture";
    EXPECT_EQ(countPixels(green), size * size / 2);
    EXPECT_EQ(pixelAt(7, 8), red);
    EXPECT_EQ(pixelAt(8, 8), green);
}

TEST_F(OpenGLBlit, swappedCornersMirror)
{
    destination = makeTarget();
    source = makeTarget();
    device->setViewport(0, 0, 4, 4, size); // top left
    drawSquare(colorOf(red));
    device->bindRenderTarget(destination, TargetBinding::Draw);
    source->blit(0, 0, size, size, size, size, 0, 0, true, false, false);
    readDestination();
    EXPECT_EQ(pixelAt(15, 15), red);
    EXPECT_EQ(pixelAt(0, 0), black);
}

TEST_F(OpenGLBlit, obeysTheScissor)
{
    prepare();
    device->setScissor(0, 0, 5, 3, size);
    device->enable(RenderFeature::ScissorTest);
    copyAll(source, true, false, false);
    device->disable(RenderFeature::ScissorTest);
    readDestination();
    EXPECT_EQ(countPixels(red), 15);
}

TEST_F(OpenGLBlit, copiesToTheWindow)
{
    source = makeTarget();
    drawSquare(colorOf(blue));
    device->bindRenderTarget(nullptr, TargetBinding::Draw);
    device->clear(true, false, false);
    source->blit(0, 0, size, size, 0, 0, size, size, true, false, false);
    device->bindRenderTarget(nullptr, TargetBinding::Read);
    EXPECT_EQ(countPixels(blue), size * size);
}

TEST_F(OpenGLBlit, depthOfDifferentFormatsIsRefusedByOpenGL)
{
    destination = makeTarget({rgba8, depthStencil});
    source = makeTarget({rgba8, depth32});
    device->bindRenderTarget(destination, TargetBinding::Draw);
    copyAll(source, false, true, false);
    EXPECT_EQ(glGetError(), GLenum{GL_INVALID_OPERATION});
}
