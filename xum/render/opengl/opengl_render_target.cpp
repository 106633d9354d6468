#include <xum/render/opengl/opengl_render_target.h>

#include <xum/engine/log.h>
#include <xum/render/opengl/opengl_texture.h>

#include <GL/glew.h>

#include <algorithm>

namespace {

bool isDepthType(const TextureFormat& format)
{
    return format.type == TextureFormat::Depth || format.type == TextureFormat::DepthStencil;
}

GLenum depthAttachment(const TextureFormat& format)
{
    switch (format.type) {
    case TextureFormat::Depth: return GL_DEPTH_ATTACHMENT;
    case TextureFormat::DepthStencil: return GL_DEPTH_STENCIL_ATTACHMENT;
    default: error("Invalid texture format for depth stencil attachment!");
    }
}

GLenum colorAttachment(int attachment)
{
    return GL_COLOR_ATTACHMENT0 + static_cast<GLenum>(attachment);
}

void attachTo(GLenum attachment, OpenGL::Texture& texture)
{
    glFramebufferTexture2D(GL_FRAMEBUFFER, attachment, GL_TEXTURE_2D, texture.getHandle(), 0);
}

GLbitfield bufferMask(bool color, bool depth, bool stencil)
{
    return (color ? GL_COLOR_BUFFER_BIT : 0u) | (depth ? GL_DEPTH_BUFFER_BIT : 0u) |
           (stencil ? GL_STENCIL_BUFFER_BIT : 0u);
}

} // namespace

OpenGLRenderTarget::OpenGLRenderTarget(OpenGL::TextureUnits& units, int width, int height,
                                       const std::list<TextureFormat>& formats)
{
    int nextColor = 0;
    for (const TextureFormat& format : formats)
        attach(std::make_unique<OpenGL::Texture>(units, width, height, format, false), nextColor);
    selectDrawBuffers();
    if (glCheckFramebufferStatus(GL_FRAMEBUFFER) != GL_FRAMEBUFFER_COMPLETE) warning("FBO not complete!");
}

// The textures go first, then the framebuffer: the order of the members.
OpenGLRenderTarget::~OpenGLRenderTarget() = default;

OpenGLRenderTarget::Framebuffer::Framebuffer()
{
    glGenFramebuffers(1, &name);
    glBindFramebuffer(GL_FRAMEBUFFER, name);
}

OpenGLRenderTarget::Framebuffer::~Framebuffer()
{
    glDeleteFramebuffers(1, &name);
}

void OpenGLRenderTarget::attach(std::unique_ptr<OpenGL::Texture> texture, int& nextColor)
{
    if (isDepthType(texture->getFormat())) {
        attachDepth(std::move(texture));
    } else if (nextColor == colorCount) {
        getLog() << "OpenGLRenderTarget::OpenGLRenderTarget() -> more than four colour formats, one is left out!"
                 << std::endl;
    } else {
        attachTo(colorAttachment(nextColor), *texture);
        colorTextures[static_cast<std::size_t>(nextColor++)] = std::move(texture);
    }
}

// A second depth format takes the place of the first, which must not stay attached at another point.
void OpenGLRenderTarget::attachDepth(std::unique_ptr<OpenGL::Texture> texture)
{
    depthTexture = std::move(texture);
    attachTo(depthAttachment(depthTexture->getFormat()), *depthTexture);
}

/// One entry for each filled colour slot, at least one: with depth alone nothing is drawn or read as colour.
void OpenGLRenderTarget::selectDrawBuffers()
{
    std::array<GLenum, colorCount> buffers = {GL_NONE, GL_NONE, GL_NONE, GL_NONE};
    GLsizei filled = 0;
    for (int i = 0; i < colorCount; ++i) {
        if (!colorTextures[static_cast<std::size_t>(i)]) continue;
        buffers[static_cast<std::size_t>(i)] = colorAttachment(i);
        ++filled;
    }
    glDrawBuffers(std::max(filled, 1), buffers.data());
    if (filled == 0) glReadBuffer(GL_NONE); // older drivers call a target without colours incomplete otherwise
}

void OpenGLRenderTarget::setColorWrite(int attachment, bool enabled)
{
    if (attachment < 0 || attachment >= colorCount) return;
    const GLboolean mask = enabled ? GL_TRUE : GL_FALSE;
    glColorMaski(static_cast<GLuint>(attachment), mask, mask, mask, mask);
}

Texture* OpenGLRenderTarget::getTexture(int attachment)
{
    if (attachment < 0 || attachment >= colorCount) return nullptr;
    return colorTextures[static_cast<std::size_t>(attachment)].get();
}

Texture* OpenGLRenderTarget::getDepthTexture()
{
    return depthTexture.get();
}

void OpenGLRenderTarget::blit(int srcX0, int srcY0, int srcX1, int srcY1, int dstX0, int dstY0, int dstX1, int dstY1,
                              bool color, bool depth, bool stencil)
{
    glBlitFramebuffer(srcX0, srcY0, srcX1, srcY1, dstX0, dstY0, dstX1, dstY1, bufferMask(color, depth, stencil),
                      GL_NEAREST);
}
