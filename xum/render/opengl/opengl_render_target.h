#pragma once

#include <xum/render/render_target.h>
#include <xum/render/render_types.h>

#include <array>
#include <list>
#include <memory>

namespace OpenGL {
class Texture;
class TextureUnits;
}

class OpenGLRenderTarget final : public RenderTarget {
public:
    /// Leaves its framebuffer bound for drawing and reading. See RenderDevice::createRenderTarget.
    OpenGLRenderTarget(OpenGL::TextureUnits& units, int width, int height, const std::list<TextureFormat>& formats);
    ~OpenGLRenderTarget();

    OpenGLRenderTarget(const OpenGLRenderTarget&) = delete;
    OpenGLRenderTarget& operator=(const OpenGLRenderTarget&) = delete;

    unsigned int getName() const { return framebuffer.name; }

    void setColorWrite(int attachment, bool enabled) override;
    Texture* getTexture(int attachment) override;
    Texture* getDepthTexture() override;
    void blit(int srcX0, int srcY0, int srcX1, int srcY1, int dstX0, int dstY0, int dstX1, int dstY1, bool color,
              bool depth, bool stencil) override;

private:
    static constexpr int colorCount = 4;

    void attach(std::unique_ptr<OpenGL::Texture> texture, int& nextColor);
    void attachDepth(std::unique_ptr<OpenGL::Texture> texture);
    void selectDrawBuffers();

    /// Generated and bound; deleted also when the construction of the target fails later.
    struct Framebuffer {
        unsigned int name = 0;
        Framebuffer();
        ~Framebuffer();
        Framebuffer(const Framebuffer&) = delete;
        Framebuffer& operator=(const Framebuffer&) = delete;
    };

    Framebuffer framebuffer;
    std::unique_ptr<OpenGL::Texture> depthTexture;
    std::array<std::unique_ptr<OpenGL::Texture>, colorCount> colorTextures;
};
