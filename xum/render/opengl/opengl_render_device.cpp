#include <xum/render/opengl/opengl_render_device.h>

#include <xum/engine/log.h>
#include <xum/engine/window.h>
#include <xum/files/read_file.h>
#include <xum/render/opengl/opengl_bindings.h>
#include <xum/render/opengl/opengl_mappings.h>
#include <xum/render/opengl/opengl_program.h>
#include <xum/render/opengl/opengl_render_target.h>
#include <xum/render/opengl/opengl_shader.h>
#include <xum/render/opengl/opengl_texture.h>
#include <xum/render/opengl/opengl_vertex_buffer.h>

#include <GL/glew.h>
#include <SDL.h>

#include <memory>
#include <new>

// Construction, presentation and resources; the render state stands in opengl_render_state.cpp.

namespace {

SDL_GLContext createContext(SDL_Window* window)
{
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MAJOR_VERSION, 3);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MINOR_VERSION, 2);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_PROFILE_MASK, SDL_GL_CONTEXT_PROFILE_CORE);
    return SDL_GL_CreateContext(window);
}

// GLEW's result says nothing: without a GLX display it reports a failure although every entry point is there.
bool loadEntryPoints()
{
    glewInit();
    return glGenVertexArrays != nullptr && glGenFramebuffers != nullptr && glCreateShader != nullptr;
}

/// What a creator returns: null when memory runs out.
template <class Make>
auto orNull(Make make) -> decltype(make())
{
    try {
        return make();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

} // namespace

OpenGLRenderDevice* OpenGLRenderDevice::create(Window* window)
{
    SDL_Window* handle = window != nullptr ? window->getHandle() : nullptr;
    const SDL_GLContext context = handle != nullptr ? createContext(handle) : nullptr;
    if (context == nullptr || !loadEntryPoints()) {
        getLog() << "OpenGLRenderDevice::OpenGLRenderDevice() -> could not create an OpenGL 3.2 context!" << std::endl;
        if (context != nullptr) SDL_GL_DeleteContext(context);
        return nullptr;
    }
    OpenGLRenderDevice* device = new (std::nothrow) OpenGLRenderDevice(context);
    if (device == nullptr) SDL_GL_DeleteContext(context);
    return device;
}

OpenGLRenderDevice::OpenGLRenderDevice(Context context) : context(context)
{
    forgetBufferBindings();
    glFrontFace(GL_CCW);
    glDepthFunc(GL_LESS);
    glStencilFunc(GL_ALWAYS, 0, 255);
    glStencilOp(GL_KEEP, GL_KEEP, GL_REPLACE);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glClearDepth(1.0);
    glClearColor(0.0f, 0.0f, 0.0f, 1.0f);
    glPointSize(4.0f);
    SDL_GL_SetSwapInterval(1);
}

OpenGLRenderDevice::~OpenGLRenderDevice()
{
    forgetBufferBindings();
    SDL_GL_DeleteContext(context);
}

void OpenGLRenderDevice::makeCurrent(Window* window)
{
    if (window == nullptr) return;
    if (SDL_GL_GetCurrentContext() != context) forgetBufferBindings();
    SDL_GL_MakeCurrent(window->getHandle(), context);
}

void OpenGLRenderDevice::swap(Window* window)
{
    if (window != nullptr) SDL_GL_SwapWindow(window->getHandle());
}

// A target that does not come about takes its framebuffer with it, which leaves the window bound: what the caches name
// is bound again.
RenderTarget* OpenGLRenderDevice::createRenderTarget(int width, int height, const std::list<TextureFormat>& formats)
{
    try {
        auto target = std::make_unique<OpenGLRenderTarget>(textureUnits, width, height, formats);
        drawTarget = target.get();
        readTarget = target.get();
        return target.release();
    } catch (const std::bad_alloc&) {
        glBindFramebuffer(GL_DRAW_FRAMEBUFFER, drawTarget != nullptr ? drawTarget->getName() : 0);
        glBindFramebuffer(GL_READ_FRAMEBUFFER, readTarget != nullptr ? readTarget->getName() : 0);
        return nullptr;
    }
}

// Deleting a bound framebuffer binds the window in its place, which is what null in the cache says.
void OpenGLRenderDevice::destroyRenderTarget(RenderTarget* target)
{
    if (target == nullptr) return;
    if (drawTarget == target) drawTarget = nullptr;
    if (readTarget == target) readTarget = nullptr;
    delete static_cast<OpenGLRenderTarget*>(target);
}

Shader* OpenGLRenderDevice::loadShader(ShaderType type, const std::string& fileName)
{
    return orNull([&]() -> Shader* {
        std::unique_ptr<OpenGL::Shader> shader = OpenGL::makeShader(type);
        std::vector<char> source;
        if (shader && readFile(fileName, source)) {
            source.push_back('\0');
            shader->compile(fileName, source);
        }
        return shader.release();
    });
}

Shader* OpenGLRenderDevice::createShader(ShaderType type, const std::string& name, const std::vector<char>& source)
{
    return orNull([&]() -> Shader* {
        std::unique_ptr<OpenGL::Shader> shader = OpenGL::makeShader(type);
        if (shader) shader->compile(name, source);
        return shader.release();
    });
}

void OpenGLRenderDevice::destroyShader(Shader* shader)
{
    delete shader;
}

Program* OpenGLRenderDevice::createProgram(const std::list<Shader*>& shaders, const std::list<std::string>& attributes,
                                           const std::list<std::string>& outputs)
{
    return orNull([&]() -> Program* {
        isOtherProgramInUse = true;
        return new OpenGL::Program(shaders, attributes, outputs);
    });
}

// OpenGL keeps a deleted program in use until another one takes its place.
void OpenGLRenderDevice::destroyProgram(Program* program)
{
    if (program != nullptr && currentProgram == program) currentProgram = nullptr;
    delete program;
}

Texture* OpenGLRenderDevice::createTexture(int width, int height, bool mipmaps)
{
    return orNull([&]() -> Texture* {
        auto texture = std::make_unique<OpenGL::Texture>(textureUnits, width, height, TextureFormat(), mipmaps);
        return texture->hasStorage() ? texture.release() : nullptr;
    });
}

void OpenGLRenderDevice::destroyTexture(Texture* texture)
{
    delete texture; // makes all units forget what they hold
}

VertexBuffer* OpenGLRenderDevice::createVertexBuffer(bool dynamic)
{
    return orNull([&]() -> VertexBuffer* { return new OpenGLVertexBuffer(dynamic); });
}

void OpenGLRenderDevice::destroyVertexBuffer(VertexBuffer* buffer)
{
    delete static_cast<OpenGLVertexBuffer*>(buffer);
}
