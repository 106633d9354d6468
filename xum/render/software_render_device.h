#pragma once

#include <xum/render/render_device.h>

/// The inert device: creators return null, everything else does nothing, but swap, which presents the window as the
/// OpenGL device does.
class SoftwareRenderDevice final : public RenderDevice {
public:
    void makeCurrent(Window* window) override;
    RenderTarget* createRenderTarget(int width, int height, const std::list<TextureFormat>& formats) override;
    void destroyRenderTarget(RenderTarget* target) override;
    Shader* loadShader(ShaderType type, const std::string& fileName) override;
    Shader* createShader(ShaderType type, const std::string& name, const std::vector<char>& source) override;
    void destroyShader(Shader* shader) override;
    Program* createProgram(const std::list<Shader*>& shaders, const std::list<std::string>& attributes,
                           const std::list<std::string>& outputs) override;
    void destroyProgram(Program* program) override;
    Texture* createTexture(int width, int height, bool mipmaps) override;
    void destroyTexture(Texture* texture) override;
    VertexBuffer* createVertexBuffer(bool dynamic) override;
    void destroyVertexBuffer(VertexBuffer* buffer) override;
    void setViewport(int x, int y, int width, int height, int screenHeight) override;
    void setScissor(int x, int y, int width, int height, int screenHeight) override;
    void clear(bool color, bool depth, bool stencil) override;
    void enable(RenderFeature feature) override;
    void disable(RenderFeature feature) override;
    void bindRenderTarget(RenderTarget* target, TargetBinding binding) override;
    void useProgram(Program* program) override;
    void bindTexture(int unit, Texture* texture) override;
    void setDepthFunction(DepthFunction function) override;
    void setCullMode(CullMode mode) override;
    void setBlendMode(BlendMode mode) override;
    void setStencilFunction(CompareFunction function, unsigned char reference, unsigned char mask) override;
    void setStencilOperation(StencilOperation stencilFail, StencilOperation depthFail,
                             StencilOperation depthPass) override;
    RenderDevice& setUniform(const std::string& name, const Matrix4<float>& value) override;
    RenderDevice& setUniform(const std::string& name, const Matrix3<float>& value) override;
    RenderDevice& setUniform(const std::string& name, const Vector4<float>& value) override;
    RenderDevice& setUniform(const std::string& name, const Vector3<float>& value) override;
    RenderDevice& setUniform(const std::string& name, const Vector2<float>& value) override;
    RenderDevice& setUniform(const std::string& name, float value) override;
    RenderDevice& setUniform(const std::string& name, int value) override;
    void swap(Window* window) override;
};
