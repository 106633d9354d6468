#pragma once

#include <xum/render/render_device.h>
#include <xum/render/vertex_buffer.h>

#include <list>
#include <string>
#include <vector>

/// Takes vertices and does nothing with them; when `keeps` is set it keeps those of locations 0, 1 and 3.
class NullVertexBuffer final : public VertexBuffer {
public:
    void setAttribute(int, const std::vector<Vector4<float>>& values) override
    {
        if (keeps) colors = values;
    }
    void setAttribute(int, const std::vector<Vector3<float>>& values) override
    {
        if (keeps) positions = values;
    }
    void setAttribute(int, const std::vector<Vector2<float>>& values) override
    {
        if (keeps) coordinates = values;
    }
    void setAttributeFrom(int, const std::list<Vector4<float>>&) override {}
    void setAttributeFrom(int, const std::list<Vector3<float>>& values) override
    {
        if (keeps) positions.assign(values.begin(), values.end());
    }
    void setAttributeFrom(int, const std::list<Vector2<float>>&) override {}
    void setIndices(const std::vector<unsigned int>&) override {}
    void drawLines(int, int) override {}
    void drawTriangles(int, int) override {}
    void drawTriangleFan(int, int) override {}

    bool keeps = false;
    std::vector<Vector3<float>> positions;
    std::vector<Vector2<float>> coordinates;
    std::vector<Vector4<float>> colors;
};

/// Leaves of a draw only what the library itself does. Every buffer that it makes is the same one.
class NullRenderDevice : public RenderDevice {
public:
    void makeCurrent(Window*) override {}
    RenderTarget* createRenderTarget(int, int, const std::list<TextureFormat>&) override { return nullptr; }
    void destroyRenderTarget(RenderTarget*) override {}
    Shader* loadShader(ShaderType, const std::string&) override { return nullptr; }
    Shader* createShader(ShaderType, const std::string&, const std::vector<char>&) override { return nullptr; }
    void destroyShader(Shader*) override {}
    Program* createProgram(const std::list<Shader*>&, const std::list<std::string>&,
                           const std::list<std::string>&) override
    {
        return nullptr;
    }
    void destroyProgram(Program*) override {}
    Texture* createTexture(int, int, bool) override { return nullptr; }
    void destroyTexture(Texture*) override {}
    VertexBuffer* createVertexBuffer(bool) override { return &buffer; }
    void destroyVertexBuffer(VertexBuffer*) override {}
    void setViewport(int, int, int, int, int) override {}
    void setScissor(int, int, int, int, int) override {}
    void clear(bool, bool, bool) override {}
    void enable(RenderFeature) override {}
    void disable(RenderFeature) override {}
    void bindRenderTarget(RenderTarget*, TargetBinding) override {}
    void useProgram(Program*) override {}
    void bindTexture(int, Texture*) override {}
    void setDepthFunction(DepthFunction) override {}
    void setCullMode(CullMode) override {}
    void setBlendMode(BlendMode) override {}
    void setStencilFunction(CompareFunction, unsigned char, unsigned char) override {}
    void setStencilOperation(StencilOperation, StencilOperation, StencilOperation) override {}
    RenderDevice& setUniform(const std::string&, const Matrix4<float>&) override { return *this; }
    RenderDevice& setUniform(const std::string&, const Matrix3<float>&) override { return *this; }
    RenderDevice& setUniform(const std::string&, const Vector4<float>&) override { return *this; }
    RenderDevice& setUniform(const std::string&, const Vector3<float>&) override { return *this; }
    RenderDevice& setUniform(const std::string&, const Vector2<float>&) override { return *this; }
    RenderDevice& setUniform(const std::string&, float) override { return *this; }
    RenderDevice& setUniform(const std::string&, int) override { return *this; }
    void swap(Window*) override {}

    NullVertexBuffer buffer;
};
