#pragma once

#include <xum/render/render_device.h>
#include <xum/render/vertex_buffer.h>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// What a RecordingRenderDevice makes. It keeps what was put into it.
class RecordingVertexBuffer final : public VertexBuffer {
public:
    explicit RecordingVertexBuffer(bool dynamic) : dynamic(dynamic) {}

    void setAttribute(int location, const std::vector<Vector4<float>>& values) override;
    void setAttribute(int location, const std::vector<Vector3<float>>& values) override;
    void setAttribute(int location, const std::vector<Vector2<float>>& values) override;
    void setAttributeFrom(int location, const std::list<Vector4<float>>& values) override;
    void setAttributeFrom(int location, const std::list<Vector3<float>>& values) override;
    void setAttributeFrom(int location, const std::list<Vector2<float>>& values) override;
    void setIndices(const std::vector<unsigned int>& values) override;
    void drawLines(int first, int count) override;
    void drawTriangles(int first, int count) override;
    void drawTriangleFan(int first, int count) override;

    const bool dynamic;

    /// Each call with its numbers and the count of its values: "setAttribute 0 Vector3 x 6", "setIndices 24",
    /// "drawLines 0 -1".
    std::vector<std::string> calls;

    /// What a location was last filled with is in one of them.
    std::map<int, std::vector<Vector4<float>>> fours;
    std::map<int, std::vector<Vector3<float>>> threes;
    std::map<int, std::vector<Vector2<float>>> twos;

    std::optional<std::vector<unsigned int>> indices;

private:
    template <class Values>
    void keep(const char* call, int location, const Values& values);
};

/// A device without hardware that records, so that what draws can be tested without OpenGL. It makes vertex buffers and
/// no other resource. Its destruction fails the test when a buffer was not handed back.
class RecordingRenderDevice final : public RenderDevice {
public:
    ~RecordingRenderDevice() override;

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

    /// Each call as its name and its numbers, "createVertexBuffer 0" for example; pointers are left out.
    std::vector<std::string> calls;

    /// Those that were not handed back.
    std::vector<std::unique_ptr<RecordingVertexBuffer>> buffers;

private:
    template <class... Values>
    void record(const char* call, const Values&... values);
    template <class Values>
    RenderDevice& recordUniform(const std::string& name, const char* type, const Values& value);
};
