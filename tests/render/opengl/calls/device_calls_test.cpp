#include "gl_fixture.h"

#include "file_contents.h"
#include "gl_call_recorder.h"

#include <SDL.h>

// Creation, presentation, clearing and target bindings.

using GLCall::describe;
using GLCall::recordedDuring;

using Calls = std::vector<std::string>;
using OpenGLDeviceCalls = GLTest;
using OpenGLTargetCalls = GLTest;

TEST_F(OpenGLDeviceCalls, creationAsksFor32CoreBeforeTheContextAndForVerticalSyncAtTheEnd)
{
    RenderDevice* other = nullptr;
    const Calls calls = recordedDuring([&] { other = engine->createRenderDevice(window, "OpenGL"); });
    EXPECT_EQ(calls,
              (Calls{
                  describe("SDL_GL_SetAttribute", int{SDL_GL_CONTEXT_MAJOR_VERSION}, 3),
                  describe("SDL_GL_SetAttribute", int{SDL_GL_CONTEXT_MINOR_VERSION}, 2),
                  describe("SDL_GL_SetAttribute", int{SDL_GL_CONTEXT_PROFILE_MASK}, int{SDL_GL_CONTEXT_PROFILE_CORE}),
                  describe("SDL_GL_CreateContext", GLCall::pointer),
                  describe("SDL_GL_SetSwapInterval", 1),
              }));
    EXPECT_EQ(recordedDuring([&] { engine->destroyRenderDevice(other); }),
              (Calls{describe("SDL_GL_DeleteContext", GLCall::pointer)}));
    device->makeCurrent(window);
}

TEST_F(OpenGLDeviceCalls, withoutAContextThereIsNoDevice)
{
    GLCall::refuseContexts(true);
    RenderDevice* other = engine->createRenderDevice(window, "OpenGL");
    GLCall::refuseContexts(false);
    EXPECT_EQ(other, nullptr);
    EXPECT_EQ(logLines().back(), "OpenGLRenderDevice::OpenGLRenderDevice() -> could not create an OpenGL 3.2 context!");
}

TEST_F(OpenGLDeviceCalls, swapPresentsTheWindow)
{
    EXPECT_EQ(recordedDuring([&] { device->swap(window); }), (Calls{describe("SDL_GL_SwapWindow", GLCall::pointer)}));
    EXPECT_EQ(recordedDuring([&] { device->swap(nullptr); }), Calls());
}

TEST_F(OpenGLDeviceCalls, makeCurrentHandsTheContextToTheWindow)
{
    EXPECT_EQ(recordedDuring([&] { device->makeCurrent(window); }),
              (Calls{describe("SDL_GL_MakeCurrent", GLCall::pointer, GLCall::pointer)}));
    EXPECT_EQ(recordedDuring([&] { device->makeCurrent(nullptr); }), Calls());
}

TEST_F(OpenGLDeviceCalls, clearIsOneCallWithTheChosenBuffers)
{
    makeTarget({rgba8, depthStencil});
    for (int choice = 1; choice < 8; ++choice) {
        const bool color = (choice & 1) != 0, depth = (choice & 2) != 0, stencil = (choice & 4) != 0;
        const int mask = (color ? GL_COLOR_BUFFER_BIT : 0) | (depth ? GL_DEPTH_BUFFER_BIT : 0) |
                         (stencil ? GL_STENCIL_BUFFER_BIT : 0);
        EXPECT_EQ(recordedDuring([&] { device->clear(color, depth, stencil); }), (Calls{describe("glClear", mask)}));
    }
}

TEST_F(OpenGLDeviceCalls, clearOfNothingIsNoCall)
{
    EXPECT_EQ(recordedDuring([&] { device->clear(false, false, false); }), Calls());
}

namespace {

Calls bind(RenderDevice* device, RenderTarget* target, TargetBinding binding)
{
    return recordedDuring([=] { device->bindRenderTarget(target, binding); });
}

} // namespace

TEST_F(OpenGLTargetCalls, redundantBindsIssueNothing)
{
    EXPECT_EQ(bind(device, nullptr, TargetBinding::Both), Calls()) << "the window is bound at first";
    EXPECT_EQ(bind(device, nullptr, TargetBinding::Draw), Calls());
    EXPECT_EQ(bind(device, nullptr, TargetBinding::Read), Calls());

    RenderTarget* target = makeTarget();
    const GLint name = getInteger(GL_DRAW_FRAMEBUFFER_BINDING);
    EXPECT_EQ(bind(device, target, TargetBinding::Both), Calls()) << "a new target is bound";
    EXPECT_EQ(bind(device, target, TargetBinding::Draw), Calls());
    EXPECT_EQ(bind(device, target, TargetBinding::Read), Calls());

    EXPECT_EQ(bind(device, nullptr, TargetBinding::Both), (Calls{describe("glBindFramebuffer", GL_FRAMEBUFFER, 0)}));
    EXPECT_EQ(bind(device, target, TargetBinding::Both), (Calls{describe("glBindFramebuffer", GL_FRAMEBUFFER, name)}));
    EXPECT_EQ(bind(device, target, TargetBinding::Both), Calls());
}

TEST_F(OpenGLTargetCalls, drawAndReadAreRememberedApart)
{
    RenderTarget* target = makeTarget();
    const GLint name = getInteger(GL_DRAW_FRAMEBUFFER_BINDING);
    EXPECT_EQ(bind(device, nullptr, TargetBinding::Draw),
              (Calls{describe("glBindFramebuffer", GL_DRAW_FRAMEBUFFER, 0)}));
    EXPECT_EQ(bind(device, nullptr, TargetBinding::Draw), Calls());
    EXPECT_EQ(bind(device, target, TargetBinding::Read), Calls());
    EXPECT_EQ(bind(device, nullptr, TargetBinding::Read),
              (Calls{describe("glBindFramebuffer", GL_READ_FRAMEBUFFER, 0)}));
    EXPECT_EQ(bind(device, nullptr, TargetBinding::Both), Calls()) << "both are bound, one after the other";

    EXPECT_EQ(bind(device, target, TargetBinding::Draw),
              (Calls{describe("glBindFramebuffer", GL_DRAW_FRAMEBUFFER, name)}));
    EXPECT_EQ(bind(device, target, TargetBinding::Both), (Calls{describe("glBindFramebuffer", GL_FRAMEBUFFER, name)}))
        << "the read binding differs";
    EXPECT_EQ(bind(device, target, TargetBinding::Both), Calls());
}

TEST_F(OpenGLTargetCalls, unknownBindingIssuesNothing)
{
    makeTarget();
    EXPECT_EQ(bind(device, nullptr, static_cast<TargetBinding>(3)), Calls());
    EXPECT_EQ(bind(device, nullptr, static_cast<TargetBinding>(-1)), Calls());
}

TEST_F(OpenGLTargetCalls, windowIsKnownToBeBoundAfterTheBoundTargetIsDestroyed)
{
    device->destroyRenderTarget(device->createRenderTarget(size, size, {rgba8}));
    EXPECT_EQ(bind(device, nullptr, TargetBinding::Both), Calls());

    RenderTarget* kept = makeTarget();
    RenderTarget* destroyed = device->createRenderTarget(size, size, {rgba8});
    device->bindRenderTarget(kept, TargetBinding::Draw);
    device->destroyRenderTarget(destroyed);
    EXPECT_EQ(bind(device, kept, TargetBinding::Draw), Calls()) << "it is still bound for drawing";
    EXPECT_EQ(bind(device, nullptr, TargetBinding::Read), Calls());
}

TEST_F(OpenGLTargetCalls, drawBuffersAreAsManyAsColorsButAtLeastOne)
{
    const auto drawBuffers = [&](const std::list<TextureFormat>& formats) {
        return recordedDuring([&] { makeTarget(formats); }, "glDrawBuffers");
    };
    EXPECT_EQ(drawBuffers({rgba8}), (Calls{describe("glDrawBuffers", 1, GLCall::pointer)}));
    EXPECT_EQ(drawBuffers({rgba8, depth32, rgba8, rgba8}), (Calls{describe("glDrawBuffers", 3, GLCall::pointer)}));
    EXPECT_EQ(drawBuffers({rgba8, rgba8, rgba8, rgba8, rgba8}), (Calls{describe("glDrawBuffers", 4, GLCall::pointer)}));
    EXPECT_EQ(drawBuffers({depth32}), (Calls{describe("glDrawBuffers", 1, GLCall::pointer)}));
}

TEST_F(OpenGLTargetCalls, colorWriteIsOneMaskOfOneAttachment)
{
    RenderTarget* target = makeTarget();
    EXPECT_EQ(recordedDuring([&] { target->setColorWrite(2, false); }),
              (Calls{describe("glColorMaski", 2, 0, 0, 0, 0)}));
    EXPECT_EQ(recordedDuring([&] { target->setColorWrite(2, true); }),
              (Calls{describe("glColorMaski", 2, 1, 1, 1, 1)}));
    EXPECT_EQ(recordedDuring([&] { target->setColorWrite(4, true); }), Calls());
}

TEST_F(OpenGLTargetCalls, blitHandsTheRectanglesOnAndFiltersNearest)
{
    RenderTarget* target = makeTarget({rgba8, depthStencil});
    makeTarget({rgba8, depthStencil});
    device->bindRenderTarget(target, TargetBinding::Read);
    EXPECT_EQ(recordedDuring([&] { target->blit(1, 2, 3, 4, 5, 6, 7, 8, true, true, true); }),
              (Calls{describe("glBlitFramebuffer", 1, 2, 3, 4, 5, 6, 7, 8,
                              GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT, GL_NEAREST)}));
    EXPECT_EQ(recordedDuring([&] { target->blit(1, 2, 3, 4, 5, 6, 7, 8, true, false, false); }),
              (Calls{describe("glBlitFramebuffer", 1, 2, 3, 4, 5, 6, 7, 8, GL_COLOR_BUFFER_BIT, GL_NEAREST)}));
}
