#include <xum/render/software_render_device.h>

#include <xum/engine/window.h>

#include <SDL.h>

void SoftwareRenderDevice::makeCurrent(Window*) {}

RenderTarget* SoftwareRenderDevice::createRenderTarget(int, int, const std::list<TextureFormat>&)
{
    return nullptr;
}

void SoftwareRenderDevice::destroyRenderTarget(RenderTarget*) {}

Shader* SoftwareRenderDevice::loadShader(ShaderType, const std::string&)
{
    return nullptr;
}

Shader* SoftwareRenderDevice::createShader(ShaderType, const std::string&, const std::vector<char>&)
{
    return nullptr;
}

void SoftwareRenderDevice::destroyShader(Shader*) {}

Program* SoftwareRenderDevice::createProgram(const std::list<Shader*>&, const std::list<std::string>&,
                                             const std::list<std::string>&)
{
    return nullptr;
}

void SoftwareRenderDevice::destroyProgram(Program*) {}

Texture* SoftwareRenderDevice::createTexture(int, int, bool)
{
    return nullptr;
}

void SoftwareRenderDevice::destroyTexture(Texture*) {}

VertexBuffer* SoftwareRenderDevice::createVertexBuffer(bool)
{
    return nullptr;
}

void SoftwareRenderDevice::destroyVertexBuffer(VertexBuffer*) {}
void SoftwareRenderDevice::setViewport(int, int, int, int, int) {}
void SoftwareRenderDevice::setScissor(int, int, int, int, int) {}
void SoftwareRenderDevice::clear(bool, bool, bool) {}
void SoftwareRenderDevice::enable(RenderFeature) {}
void SoftwareRenderDevice::disable(RenderFeature) {}
void SoftwareRenderDevice::bindRenderTarget(RenderTarget*, TargetBinding) {}
void SoftwareRenderDevice::useProgram(Program*) {}
void SoftwareRenderDevice::bindTexture(int, Texture*) {}
void SoftwareRenderDevice::setDepthFunction(DepthFunction) {}
void SoftwareRenderDevice::setCullMode(CullMode) {}
void SoftwareRenderDevice::setBlendMode(BlendMode) {}
void SoftwareRenderDevice::setStencilFunction(CompareFunction, unsigned char, unsigned char) {}
void SoftwareRenderDevice::setStencilOperation(StencilOperation, StencilOperation, StencilOperation) {}

RenderDevice& SoftwareRenderDevice::setUniform(const std::string&, const Matrix4<float>&)
{
    return *this;
}

RenderDevice& SoftwareRenderDevice::setUniform(const std::string&, const Matrix3<float>&)
{
    return *this;
}

RenderDevice& SoftwareRenderDevice::setUniform(const std::string&, const Vector4<float>&)
{
    return *this;
}

RenderDevice& SoftwareRenderDevice::setUniform(const std::string&, const Vector3<float>&)
{
    return *this;
}

RenderDevice& SoftwareRenderDevice::setUniform(const std::string&, const Vector2<float>&)
{
    return *this;
}

RenderDevice& SoftwareRenderDevice::setUniform(const std::string&, float)
{
    return *this;
}

RenderDevice& SoftwareRenderDevice::setUniform(const std::string&, int)
{
    return *this;
}

void SoftwareRenderDevice::swap(Window* window)
{
    if (window != nullptr) SDL_GL_SwapWindow(window->getHandle());
}
