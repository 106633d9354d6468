#pragma once

#include <xum/render/opengl/opengl_texture_units.h>
#include <xum/render/render_device.h>

namespace OpenGL {
class Program;
}

class OpenGLRenderTarget;

class OpenGLRenderDevice final : public RenderDevice {
public:
    /// A device on a new 3.2 core context of the window. Null, with a log line, when the window has no handle or no
    /// context can be made; null when memory runs out.
    static OpenGLRenderDevice* create(Window* window);
    ~OpenGLRenderDevice() override;

    OpenGLRenderDevice(const OpenGLRenderDevice&) = delete;
    OpenGLRenderDevice& operator=(const OpenGLRenderDevice&) = delete;

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

private:
    using Context = void*; // SDL's handle

    explicit OpenGLRenderDevice(Context context);

    /// The location in the current program, which is made OpenGL's current one first. Only with a current program.
    int findUniform(const std::string& name);

    Context context;
    OpenGL::Program* currentProgram = nullptr;
    bool isOtherProgramInUse = false; // creating a program leaves it in use, whatever currentProgram says
    OpenGL::TextureUnits textureUnits;
    OpenGLRenderTarget* drawTarget = nullptr; // null: the window
    OpenGLRenderTarget* readTarget = nullptr;
};
