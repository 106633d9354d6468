#include "gl_fixture.h"

// Which framebuffer is bound for drawing and for reading.

class OpenGLTargetBinding : public GLTest {
protected:
    struct Bindings {
        GLint draw, read;
        friend bool operator==(const Bindings& a, const Bindings& b) { return a.draw == b.draw && a.read == b.read; }
        friend void PrintTo(const Bindings& bindings, std::ostream* stream)
        {
            *stream << "draw " << bindings.draw << ", read " << bindings.read;
        }
    };

    static Bindings bindings()
    {
        return {getInteger(GL_DRAW_FRAMEBUFFER_BINDING), getInteger(GL_READ_FRAMEBUFFER_BINDING)};
    }

    /// The framebuffer of a target that was made just now.
    static GLint newestName() { return bindings().draw; }
};

TEST_F(OpenGLTargetBinding, windowIsBoundAtFirst)
{
    EXPECT_EQ(bindings(), (Bindings{0, 0}));
}

TEST_F(OpenGLTargetBinding, newTargetIsBoundForDrawingAndReading)
{
    makeTarget();
    const Bindings first = bindings();
    EXPECT_NE(first.draw, 0);
    EXPECT_EQ(first.draw, first.read);
    makeTarget();
    EXPECT_NE(bindings().draw, first.draw);
    EXPECT_EQ(bindings().draw, bindings().read);
}

TEST_F(OpenGLTargetBinding, drawAndReadAreBoundApartOrTogether)
{
    RenderTarget* a = makeTarget();
    const GLint nameOfA = newestName();
    RenderTarget* b = makeTarget();
    const GLint nameOfB = newestName();

    device->bindRenderTarget(a, TargetBinding::Draw);
    EXPECT_EQ(bindings(), (Bindings{nameOfA, nameOfB}));
    device->bindRenderTarget(nullptr, TargetBinding::Read);
    EXPECT_EQ(bindings(), (Bindings{nameOfA, 0}));
    device->bindRenderTarget(b, TargetBinding::Both);
    EXPECT_EQ(bindings(), (Bindings{nameOfB, nameOfB}));
    device->bindRenderTarget(nullptr, TargetBinding::Draw);
    EXPECT_EQ(bindings(), (Bindings{0, nameOfB}));
    device->bindRenderTarget(a, TargetBinding::Read);
    EXPECT_EQ(bindings(), (Bindings{0, nameOfA}));
    device->bindRenderTarget(nullptr, TargetBinding::Both);
    EXPECT_EQ(bindings(), (Bindings{0, 0}));
}

TEST_F(OpenGLTargetBinding, bothAfterDrawBindsForReadingToo)
{
    RenderTarget* target = makeTarget();
    const GLint name = newestName();
    device->bindRenderTarget(nullptr, TargetBinding::Both);
    device->bindRenderTarget(target, TargetBinding::Draw);
    EXPECT_EQ(bindings(), (Bindings{name, 0}));
    device->bindRenderTarget(target, TargetBinding::Both);
    EXPECT_EQ(bindings(), (Bindings{name, name}));
}

TEST_F(OpenGLTargetBinding, unknownBindingIsIgnored)
{
    RenderTarget* target = makeTarget();
    const GLint name = newestName();
    for (const int binding : {3, -1}) device->bindRenderTarget(nullptr, static_cast<TargetBinding>(binding));
    EXPECT_EQ(bindings(), (Bindings{name, name}));
    device->bindRenderTarget(nullptr, TargetBinding::Both);
    for (const int binding : {3, -1}) device->bindRenderTarget(target, static_cast<TargetBinding>(binding));
    EXPECT_EQ(bindings(), (Bindings{0, 0}));
    device->bindRenderTarget(target, TargetBinding::Both);
    EXPECT_EQ(bindings(), (Bindings{name, name}));
}

TEST_F(OpenGLTargetBinding, destroyedTargetGivesWayToTheWindow)
{
    RenderTarget* target = device->createRenderTarget(size, size, {rgba8});
    device->destroyRenderTarget(target);
    EXPECT_EQ(bindings(), (Bindings{0, 0}));
}

TEST_F(OpenGLTargetBinding, destroyedTargetGivesWayOnlyWhereItWasBound)
{
    makeTarget();
    const GLint name = newestName();
    RenderTarget* other = device->createRenderTarget(size, size, {rgba8});
    device->bindRenderTarget(nullptr, TargetBinding::Read);
    device->destroyRenderTarget(other); // it was bound for drawing
    EXPECT_EQ(bindings(), (Bindings{0, 0}));

    RenderTarget* kept = makeTarget();
    other = device->createRenderTarget(size, size, {rgba8});
    device->bindRenderTarget(kept, TargetBinding::Draw);
    const GLint nameOfKept = bindings().draw;
    device->destroyRenderTarget(other); // it was bound for reading
    EXPECT_EQ(bindings(), (Bindings{nameOfKept, 0}));
    device->bindRenderTarget(kept, TargetBinding::Both);
    EXPECT_EQ(bindings(), (Bindings{nameOfKept, nameOfKept}));
    EXPECT_NE(nameOfKept, name);
}

TEST_F(OpenGLTargetBinding, targetAfterADestroyedOneIsBound)
{
    for (int i = 0; i < 5; ++i) {
        RenderTarget* target = device->createRenderTarget(size, size, {rgba8}); // often at the same address
        device->bindRenderTarget(nullptr, TargetBinding::Both);
        device->bindRenderTarget(target, TargetBinding::Both);
        EXPECT_NE(bindings(), (Bindings{0, 0}));
        device->destroyRenderTarget(target);
        EXPECT_EQ(bindings(), (Bindings{0, 0}));
    }
}

TEST_F(OpenGLTargetBinding, drawsGoToTheDrawTargetAlone)
{
    RenderTarget* a = makeTarget();
    RenderTarget* b = makeTarget();
    device->bindRenderTarget(a, TargetBinding::Draw);
    drawSquare(colorOf(red));
    EXPECT_EQ(countPixels(black), size * size) << "b is still read";
    device->bindRenderTarget(a, TargetBinding::Read);
    EXPECT_EQ(countPixels(red), size * size);
    device->bindRenderTarget(b, TargetBinding::Both);
    EXPECT_EQ(countPixels(black), size * size);
}

TEST_F(OpenGLTargetBinding, windowIsDrawnTo)
{
    makeTarget();
    device->bindRenderTarget(nullptr, TargetBinding::Both);
    device->setViewport(0, 0, 64, 48, 48);
    device->clear(true, true, true);
    drawSquare(colorOf(green));
    EXPECT_EQ(countPixels(green), size * size) << "its bottom left corner";
    device->clear(true, false, false);
    EXPECT_EQ(countPixels(black), size * size);
}
