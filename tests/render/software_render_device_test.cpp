#include <xum/engine/engine.h>
#include <xum/engine/window.h>
#include <xum/render/render_device.h>

#include "file_contents.h"
#include "message_boxes.h"

#include <SDL.h>
#include <gtest/gtest.h>

#include <vector>

#ifndef _WIN32

namespace {

std::vector<SDL_Window*>& swappedWindows()
{
    static std::vector<SDL_Window*> windows;
    return windows;
}

} // namespace

// The dynamic linker prefers a program's own function to the one of a library.
extern "C" DECLSPEC void SDLCALL SDL_GL_SwapWindow(SDL_Window* window)
{
    swappedWindows().push_back(window);
}

#endif

namespace {

class SoftwareRenderDevice : public testing::Test {
protected:
    void SetUp() override
    {
        engine = initEngine(false);
        ASSERT_NE(engine, nullptr);
        device = engine->createRenderDevice(nullptr, "Software");
        ASSERT_NE(device, nullptr);
    }

    void TearDown() override
    {
        if (engine != nullptr) engine->destroyRenderDevice(device);
        shutdownEngine(engine);
    }

    Engine* engine = nullptr;
    RenderDevice* device = nullptr;
};

} // namespace

TEST_F(SoftwareRenderDevice, createsNothing)
{
    EXPECT_EQ(device->createRenderTarget(16, 16, {TextureFormat()}), nullptr);
    EXPECT_EQ(device->createTexture(16, 16, true), nullptr);
    EXPECT_EQ(device->createTexture(0, -1, false), nullptr);
    EXPECT_EQ(device->createVertexBuffer(false), nullptr);
    EXPECT_EQ(device->createVertexBuffer(true), nullptr);
    EXPECT_EQ(device->createProgram({}, {}, {}), nullptr);
    EXPECT_EQ(device->createProgram({nullptr}, {"position"}, {"color(0)", "mixed"}), nullptr);
    for (const ShaderType type :
         {ShaderType::Vertex, ShaderType::Geometry, ShaderType::Fragment, ShaderType::Compute, ShaderType(99)}) {
        EXPECT_EQ(device->loadShader(type, "missing.glsl"), nullptr);
        EXPECT_EQ(device->createShader(type, "name", {'n', 'o', 'n', 's', 'e', 'n', 's', 'e', '\0'}), nullptr);
    }
}

TEST_F(SoftwareRenderDevice, returnsItselfFromEveryUniform)
{
    EXPECT_EQ(&device->setUniform("matrix", Matrix4<float>()), device);
    EXPECT_EQ(&device->setUniform("rotation", Matrix3<float>()), device);
    EXPECT_EQ(&device->setUniform("color", Vector4<float>()), device);
    EXPECT_EQ(&device->setUniform("position", Vector3<float>()), device);
    EXPECT_EQ(&device->setUniform("size", Vector2<float>()), device);
    EXPECT_EQ(&device->setUniform("time", 1.0f), device);
    EXPECT_EQ(&device->setUniform("texture", 1), device);
    EXPECT_EQ(&device->setUniform("", 1).setUniform("chained", 2.0f), device);
}

TEST_F(SoftwareRenderDevice, acceptsNullEverywhere)
{
    device->makeCurrent(nullptr);
    device->destroyRenderTarget(nullptr);
    device->destroyShader(nullptr);
    device->destroyProgram(nullptr);
    device->destroyTexture(nullptr);
    device->destroyVertexBuffer(nullptr);
    for (const TargetBinding binding : {TargetBinding::Draw, TargetBinding::Read, TargetBinding::Both})
        device->bindRenderTarget(nullptr, binding);
    device->useProgram(nullptr);
    device->bindTexture(0, nullptr);
    device->bindTexture(-1, nullptr);
    device->bindTexture(8, nullptr);
    device->swap(nullptr);
}

TEST_F(SoftwareRenderDevice, acceptsEveryStateAndReportsNothing)
{
    const std::size_t boxesBefore = shownMessageBoxes().size();
    const std::vector<std::string> linesBefore = logLines();
    device->setViewport(0, 0, 100, 50, 600);
    device->setScissor(-1, -2, -3, -4, -5);
    device->clear(true, true, true);
    device->clear(false, false, false);
    for (int value = -1; value <= 9; ++value) {
        device->enable(RenderFeature(value));
        device->disable(RenderFeature(value));
        device->setDepthFunction(DepthFunction(value));
        device->setCullMode(CullMode(value));
        device->setBlendMode(BlendMode(value));
        device->setStencilFunction(CompareFunction(value), 1, 255);
        device->setStencilOperation(StencilOperation(value), StencilOperation(value), StencilOperation(value));
    }
    EXPECT_EQ(shownMessageBoxes().size(), boxesBefore);
    EXPECT_EQ(logLines(), linesBefore);
}

TEST_F(SoftwareRenderDevice, takesAWindowWithoutNeedingOne)
{
    Window* window = engine->createWindow("window", 32, 24, false, false);
    ASSERT_NE(window, nullptr);
    device->makeCurrent(window);
    device->swap(window);
    engine->destroyWindow(window);
}

#ifndef _WIN32

TEST_F(SoftwareRenderDevice, presentsTheWindowThatItIsGiven)
{
    Window* window = engine->createWindow("window", 32, 24, false, false);
    ASSERT_NE(window->getHandle(), nullptr) << SDL_GetError();
    swappedWindows().clear();
    device->swap(window);
    EXPECT_EQ(swappedWindows(), std::vector<SDL_Window*>{window->getHandle()});
    device->swap(nullptr);
    EXPECT_EQ(swappedWindows().size(), 1u);
    engine->destroyWindow(window);
}

#endif
