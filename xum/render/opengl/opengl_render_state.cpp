#include <xum/render/opengl/opengl_render_device.h>

#include <xum/render/opengl/opengl_mappings.h>
#include <xum/render/opengl/opengl_program.h>
#include <xum/render/opengl/opengl_render_target.h>

#include <GL/glew.h>

#include <cstdint>

// The state setters of the OpenGL device, its bindings and its uniforms.

namespace {

/// The engine counts rows from the top, OpenGL from the bottom. 64 bits: the arguments are anyone's.
GLint fromTop(int y, int height, int screenHeight)
{
    return static_cast<GLint>(std::int64_t{screenHeight} - y - height);
}

void setSwitch(GLenum capability, bool on)
{
    if (on)
        glEnable(capability);
    else
        glDisable(capability);
}

void setFeature(RenderFeature feature, bool on)
{
    const GLboolean mask = on ? GL_TRUE : GL_FALSE;
    switch (feature) {
    case RenderFeature::ColorWrite: glColorMask(mask, mask, mask, mask); break;
    case RenderFeature::DepthWrite: glDepthMask(mask); break;
    case RenderFeature::DepthTest: setSwitch(GL_DEPTH_TEST, on); break;
    case RenderFeature::StencilWrite: glStencilMask(on ? 255u : 0u); break;
    case RenderFeature::StencilTest: setSwitch(GL_STENCIL_TEST, on); break;
    case RenderFeature::ScissorTest: setSwitch(GL_SCISSOR_TEST, on); break;
    case RenderFeature::ClipPlane: setSwitch(GL_CLIP_DISTANCE0, on); break;
    default: break;
    }
}

} // namespace

void OpenGLRenderDevice::setViewport(int x, int y, int width, int height, int screenHeight)
{
    glViewport(x, fromTop(y, height, screenHeight), width, height);
}

void OpenGLRenderDevice::setScissor(int x, int y, int width, int height, int screenHeight)
{
    glScissor(x, fromTop(y, height, screenHeight), width, height);
}

void OpenGLRenderDevice::clear(bool color, bool depth, bool stencil)
{
    const GLbitfield mask = (color ? GL_COLOR_BUFFER_BIT : 0u) | (depth ? GL_DEPTH_BUFFER_BIT : 0u) |
                            (stencil ? GL_STENCIL_BUFFER_BIT : 0u);
    if (mask != 0) glClear(mask);
}

void OpenGLRenderDevice::enable(RenderFeature feature)
{
    setFeature(feature, true);
}

void OpenGLRenderDevice::disable(RenderFeature feature)
{
    setFeature(feature, false);
}

void OpenGLRenderDevice::bindRenderTarget(RenderTarget* target, TargetBinding binding)
{
    const auto framebufferTarget = targetBindingToGL(binding);
    if (!framebufferTarget) return;
    const bool setsDraw = binding != TargetBinding::Read;
    const bool setsRead = binding != TargetBinding::Draw;
    if ((!setsDraw || drawTarget == target) && (!setsRead || readTarget == target)) return;

    OpenGLRenderTarget* bound = static_cast<OpenGLRenderTarget*>(target);
    glBindFramebuffer(*framebufferTarget, bound != nullptr ? bound->getName() : 0);
    if (setsDraw) drawTarget = bound;
    if (setsRead) readTarget = bound;
}

void OpenGLRenderDevice::useProgram(Program* program)
{
    if (program == nullptr || (currentProgram == program && !isOtherProgramInUse)) return;
    currentProgram = static_cast<OpenGL::Program*>(program);
    glUseProgram(currentProgram->getName());
    isOtherProgramInUse = false;
}

void OpenGLRenderDevice::bindTexture(int unit, Texture* texture)
{
    if (unit < 0 || unit >= OpenGL::TextureUnits::count || texture == nullptr) return;
    textureUnits.bind(unit, texture);
}

void OpenGLRenderDevice::setDepthFunction(DepthFunction function)
{
    if (const auto glFunction = depthFunctionToGL(function)) glDepthFunc(*glFunction);
}

void OpenGLRenderDevice::setCullMode(CullMode mode)
{
    switch (mode) {
    case CullMode::None: glDisable(GL_CULL_FACE); break;
    case CullMode::Back:
        glCullFace(GL_BACK);
        glEnable(GL_CULL_FACE);
        break;
    case CullMode::Front:
        glCullFace(GL_FRONT);
        glEnable(GL_CULL_FACE);
        break;
    default: break;
    }
}

void OpenGLRenderDevice::setBlendMode(BlendMode mode)
{
    switch (mode) {
    case BlendMode::None: glDisable(GL_BLEND); break;
    case BlendMode::Alpha:
        glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
        glEnable(GL_BLEND);
        break;
    case BlendMode::Additive:
        glBlendFunc(GL_SRC_ALPHA, GL_ONE);
        glEnable(GL_BLEND);
        break;
    default: break;
    }
}

void OpenGLRenderDevice::setStencilFunction(CompareFunction function, unsigned char reference, unsigned char mask)
{
    glStencilFunc(compareFunctionToGL(function), reference, mask);
}

void OpenGLRenderDevice::setStencilOperation(StencilOperation stencilFail, StencilOperation depthFail,
                                             StencilOperation depthPass)
{
    glStencilOp(stencilOperationToGL(stencilFail), stencilOperationToGL(depthFail), stencilOperationToGL(depthPass));
}

int OpenGLRenderDevice::findUniform(const std::string& name)
{
    if (isOtherProgramInUse) useProgram(currentProgram);
    return glGetUniformLocation(currentProgram->getName(), name.c_str());
}

RenderDevice& OpenGLRenderDevice::setUniform(const std::string& name, const Matrix4<float>& value)
{
    if (currentProgram != nullptr) glUniformMatrix4fv(findUniform(name), 1, GL_FALSE, value.elements);
    return *this;
}

RenderDevice& OpenGLRenderDevice::setUniform(const std::string& name, const Matrix3<float>& value)
{
    if (currentProgram != nullptr) glUniformMatrix3fv(findUniform(name), 1, GL_FALSE, value.elements);
    return *this;
}

RenderDevice& OpenGLRenderDevice::setUniform(const std::string& name, const Vector4<float>& value)
{
    if (currentProgram != nullptr) glUniform4f(findUniform(name), value.x, value.y, value.z, value.w);
    return *this;
}

RenderDevice& OpenGLRenderDevice::setUniform(const std::string& name, const Vector3<float>& value)
{
    if (currentProgram != nullptr) glUniform3f(findUniform(name), value.x, value.y, value.z);
    return *this;
}

RenderDevice& OpenGLRenderDevice::setUniform(const std::string& name, const Vector2<float>& value)
{
    if (currentProgram != nullptr) glUniform2f(findUniform(name), value.x, value.y);
    return *this;
}

RenderDevice& OpenGLRenderDevice::setUniform(const std::string& name, float value)
{
    if (currentProgram != nullptr) glUniform1f(findUniform(name), value);
    return *this;
}

RenderDevice& OpenGLRenderDevice::setUniform(const std::string& name, int value)
{
    if (currentProgram != nullptr) glUniform1i(findUniform(name), value);
    return *this;
}
