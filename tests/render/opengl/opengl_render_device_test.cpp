#include "gl_fixture.h"

#include "file_contents.h"

#include <SDL.h>

#include <list>
#include <string>
#include <vector>

// Creation, presentation, destruction, and several devices in one process.

using OpenGLRenderDevice = GLTest;

namespace {

constexpr const char* noContextLine =
    "OpenGLRenderDevice::OpenGLRenderDevice() -> could not create an OpenGL 3.2 context!";

} // namespace

TEST_F(OpenGLRenderDevice, contextIsACoreProfileOfAtLeast32)
{
    EXPECT_GE(getInteger(GL_MAJOR_VERSION) * 10 + getInteger(GL_MINOR_VERSION), 32);
    EXPECT_NE(getInteger(GL_CONTEXT_PROFILE_MASK) & GL_CONTEXT_CORE_PROFILE_BIT, 0);
    EXPECT_NE(SDL_GL_GetCurrentContext(), nullptr);
    EXPECT_EQ(SDL_GL_GetCurrentWindow(), window->getHandle());
}

TEST_F(OpenGLRenderDevice, startsWithItsInitialState)
{
    EXPECT_EQ(getInteger(GL_FRONT_FACE), GL_CCW);
    EXPECT_EQ(getInteger(GL_DEPTH_FUNC), GL_LESS);
    EXPECT_EQ(getInteger(GL_STENCIL_FUNC), GL_ALWAYS);
    EXPECT_EQ(getInteger(GL_STENCIL_REF), 0);
    EXPECT_EQ(getInteger(GL_STENCIL_VALUE_MASK), 255);
    EXPECT_EQ(getInteger(GL_STENCIL_FAIL), GL_KEEP);
    EXPECT_EQ(getInteger(GL_STENCIL_PASS_DEPTH_FAIL), GL_KEEP);
    EXPECT_EQ(getInteger(GL_STENCIL_PASS_DEPTH_PASS), GL_REPLACE);
    EXPECT_EQ(getInteger(GL_UNPACK_ALIGNMENT), 1);
    EXPECT_EQ(getInteger(GL_PACK_ALIGNMENT), 1);
    GLfloat clearDepth = -1, pointSize = -1;
    GLfloat clearColor[4] = {9, 9, 9, 9};
    glGetFloatv(GL_DEPTH_CLEAR_VALUE, &clearDepth);
    glGetFloatv(GL_POINT_SIZE, &pointSize);
    glGetFloatv(GL_COLOR_CLEAR_VALUE, clearColor);
    EXPECT_EQ(clearDepth, 1.0f);
    EXPECT_EQ(pointSize, 4.0f);
    EXPECT_EQ(clearColor[0], 0.0f);
    EXPECT_EQ(clearColor[1], 0.0f);
    EXPECT_EQ(clearColor[2], 0.0f);
    EXPECT_EQ(clearColor[3], 1.0f);
}

TEST_F(OpenGLRenderDevice, backFacesOfStencilAreSetAsTheFrontOnes)
{
    EXPECT_EQ(getInteger(GL_STENCIL_BACK_PASS_DEPTH_PASS), GL_REPLACE);
    EXPECT_EQ(getInteger(GL_STENCIL_BACK_VALUE_MASK), 255);
}

TEST_F(OpenGLRenderDevice, startsWithNothingBound)
{
    EXPECT_EQ(getInteger(GL_CURRENT_PROGRAM), 0);
    EXPECT_EQ(getInteger(GL_DRAW_FRAMEBUFFER_BINDING), 0);
    EXPECT_EQ(getInteger(GL_READ_FRAMEBUFFER_BINDING), 0);
    EXPECT_EQ(getInteger(GL_TEXTURE_BINDING_2D), 0);
    EXPECT_EQ(getInteger(GL_ACTIVE_TEXTURE), GL_TEXTURE0);
    EXPECT_EQ(getInteger(GL_VERTEX_ARRAY_BINDING), 0);
    EXPECT_EQ(getInteger(GL_ARRAY_BUFFER_BINDING), 0);
}

TEST_F(OpenGLRenderDevice, viewportIsTheWindowAtFirst)
{
    GLint viewport[4] = {};
    glGetIntegerv(GL_VIEWPORT, viewport);
    EXPECT_EQ(viewport[2], window->getSize().x);
    EXPECT_EQ(viewport[3], window->getSize().y);
}

TEST_F(OpenGLRenderDevice, destroyOperationsAcceptNull)
{
    device->destroyRenderTarget(nullptr);
    device->destroyShader(nullptr);
    device->destroyProgram(nullptr);
    device->destroyTexture(nullptr);
    device->destroyVertexBuffer(nullptr);
}

TEST_F(OpenGLRenderDevice, swapKeepsStateAndDrawingGoesOn)
{
    for (int frame = 0; frame < 3; ++frame) {
        device->setViewport(0, 0, 64, 48, 48);
        device->clear(true, true, true);
        drawSquare(colorOf(frame == 1 ? red : green));
        EXPECT_EQ(countPixels(frame == 1 ? red : green), size * size);
        device->swap(window);
    }
}

TEST_F(OpenGLRenderDevice, nullWindowIsIgnored)
{
    const SDL_GLContext context = SDL_GL_GetCurrentContext();
    device->makeCurrent(nullptr);
    device->swap(nullptr);
    EXPECT_EQ(SDL_GL_GetCurrentContext(), context);
    makeTarget();
    drawSquare(colorOf(red));
    EXPECT_EQ(countPixels(red), size * size);
}

TEST_F(OpenGLRenderDevice, makeCurrentOfTheCurrentOneChangesNothing)
{
    makeTarget();
    usePlainProgram(colorOf(red));
    VertexBuffer* square = makeSquare();
    device->makeCurrent(window);
    square->drawTriangleFan();
    EXPECT_EQ(countPixels(red), size * size);
}

TEST_F(OpenGLRenderDevice, severalOneAfterTheOther)
{
    for (int i = 0; i < 4; ++i) {
        makeTarget();
        VertexBuffer* indexed = makeSquare();
        indexed->setIndices({0, 1, 2, 0, 2, 3});
        usePlainProgram(colorOf(red));
        device->bindTexture(0, makeColorTexture(green));
        indexed->drawTriangles();
        EXPECT_EQ(countPixels(red), size * size) << "device " << i;
        renewDevice(); // OpenGL gives out the same names again
    }
}

namespace {

/// A device with all that it needs to draw a square.
class Drawing {
public:
    Drawing(Engine* engine, Window* window, const char* color)
        : engine(engine), window(window), device(engine->createRenderDevice(window, "OpenGL"))
    {
        target = device->createRenderTarget(16, 16, {rgba8});
        device->setViewport(0, 0, 16, 16, 16);
        square = device->createVertexBuffer(false);
        square->setAttribute(0, std::vector<Vector3<float>>{{-1, -1, 0}, {1, -1, 0}, {1, 1, 0}, {-1, 1, 0}});
        Shader* vertex = compile(ShaderType::Vertex, plainVertexSource);
        Shader* fragment = compile(ShaderType::Fragment, std::string("#version 150\nout vec4 outputColor;\n"
                                                                     "void main() { outputColor = ") +
                                                             color + "; }\n");
        program = device->createProgram({vertex, fragment}, {"position"}, {"outputColor"});
        device->destroyShader(vertex);
        device->destroyShader(fragment);
        device->useProgram(program);
    }

    ~Drawing()
    {
        device->makeCurrent(window);
        device->destroyProgram(program);
        device->destroyVertexBuffer(square);
        device->destroyRenderTarget(target);
        engine->destroyRenderDevice(device);
    }

    Drawing(const Drawing&) = delete;
    Drawing& operator=(const Drawing&) = delete;

    /// What a cleared and drawn target shows. The device must be current.
    Pixel draw()
    {
        device->clear(true, false, false);
        square->drawTriangleFan();
        Pixel pixel{1, 2, 3, 4};
        glReadPixels(8, 8, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, &pixel);
        return pixel;
    }

    Pixel makeCurrentAndDraw()
    {
        device->makeCurrent(window);
        return draw();
    }

    void replacePositions()
    {
        square->setAttributeFrom(0, std::list<Vector3<float>>{{-1, -1, 0}, {1, -1, 0}, {1, 1, 0}, {-1, 1, 0}});
    }

private:
    Shader* compile(ShaderType type, const std::string& source)
    {
        return device->createShader(type, "drawing", std::vector<char>(source.begin(), source.end()));
    }

    Engine* engine;
    Window* window;
    RenderDevice* device;
    RenderTarget* target;
    VertexBuffer* square;
    Program* program;
};

constexpr const char* redText = "vec4(1.0, 0.0, 0.0, 1.0)";
constexpr const char* greenText = "vec4(0.0, 1.0, 0.0, 1.0)";

class SeveralDevices : public GLTest {
protected:
    /// Two devices, each with its resources, take turns. OpenGL's names are the same in both.
    void drawInTurns(Window* firstWindow, Window* secondWindow)
    {
        {
            Drawing first(engine, firstWindow, redText);
            EXPECT_EQ(first.draw(), red);
            Drawing second(engine, secondWindow, greenText);
            EXPECT_EQ(second.draw(), green);
            for (int turn = 0; turn < 3; ++turn) {
                EXPECT_EQ(first.makeCurrentAndDraw(), red);
                first.replacePositions();
                EXPECT_EQ(second.makeCurrentAndDraw(), green);
                second.replacePositions();
                EXPECT_EQ(second.draw(), green);
            }
            {
                Drawing third(engine, secondWindow, greenText);
                EXPECT_EQ(third.draw(), green);
            }
            EXPECT_EQ(first.makeCurrentAndDraw(), red) << "another one was destroyed";
            EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR});
        }
        device->makeCurrent(window);
    }
};

} // namespace

TEST_F(SeveralDevices, takeTurnsOnTwoWindows)
{
    Window* second = engine->createWindow("Second", 32, 32, false, false);
    drawInTurns(window, second);
    engine->destroyWindow(second);
}

TEST_F(SeveralDevices, takeTurnsOnOneWindow)
{
    drawInTurns(window, window);
}

TEST_F(SeveralDevices, destroyingOneThatIsNotCurrentDoesNotDisturbTheCurrentOne)
{
    RenderDevice* other = engine->createRenderDevice(window, "OpenGL");
    ASSERT_NE(other, nullptr);
    device->makeCurrent(window);
    makeTarget();
    usePlainProgram(colorOf(red));
    VertexBuffer* square = makeSquare();
    engine->destroyRenderDevice(other);
    square->drawTriangleFan();
    square->setAttribute(VertexAttribute::TextureCoordinate, std::vector<Vector2<float>>(4));
    EXPECT_EQ(countPixels(red), size * size);
}

TEST(OpenGLRenderDeviceCreation, isNullWithALogLineWithoutAWindow)
{
    Engine* engine = initEngine(false);
    ASSERT_NE(engine, nullptr);
    EXPECT_EQ(engine->createRenderDevice(nullptr, "OpenGL"), nullptr);
    EXPECT_EQ(logLines().back(), noContextLine);
    shutdownEngine(engine);
}

TEST(OpenGLRenderDeviceCreation, isNullWithALogLineOnAWindowThatCouldNotBeOpened)
{
    const std::string usualDriver = SDL_getenv("SDL_VIDEODRIVER") != nullptr ? SDL_getenv("SDL_VIDEODRIVER") : "";
    SDL_setenv("SDL_VIDEODRIVER", "dummy", 1); // has no OpenGL
    Engine* engine = initEngine(false);
    SDL_setenv("SDL_VIDEODRIVER", usualDriver.c_str(), 1);
    ASSERT_NE(engine, nullptr);
    Window* window = engine->createWindow("Closed", 32, 32, false, false);
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(window->getHandle(), nullptr);
    EXPECT_EQ(engine->createRenderDevice(window, "OpenGL"), nullptr);
    EXPECT_EQ(logLines().back(), noContextLine);
    engine->destroyWindow(window);
    shutdownEngine(engine);
}
