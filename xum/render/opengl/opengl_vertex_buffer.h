#pragma once

#include <xum/render/vertex_buffer.h>

#include <memory>
#include <vector>

/// A cache line of its own: a scene draws thousands of buffers one after another, each for the first time in its frame.
class alignas(64) OpenGLVertexBuffer final : public VertexBuffer {
public:
    explicit OpenGLVertexBuffer(bool dynamic);
    ~OpenGLVertexBuffer();

    OpenGLVertexBuffer(const OpenGLVertexBuffer&) = delete;
    OpenGLVertexBuffer& operator=(const OpenGLVertexBuffer&) = delete;

    void setAttribute(int location, const std::vector<Vector4<float>>& values) override;
    void setAttribute(int location, const std::vector<Vector3<float>>& values) override;
    void setAttribute(int location, const std::vector<Vector2<float>>& values) override;
    void setAttributeFrom(int location, const std::list<Vector4<float>>& values) override;
    void setAttributeFrom(int location, const std::list<Vector3<float>>& values) override;
    void setAttributeFrom(int location, const std::list<Vector2<float>>& values) override;
    void setIndices(const std::vector<unsigned int>& indices) override;
    void drawLines(int first, int count) override;
    void drawTriangles(int first, int count) override;
    void drawTriangleFan(int first, int count) override;

private:
    class AttributeBuffer;

    template <class Element>
    void uploadArray(int location, const std::vector<Element>& values);
    template <class Element>
    void uploadList(int location, const std::list<Element>& values);
    AttributeBuffer& replaceAttribute(int location, std::size_t count);
    void pointAttribute(int location, int components);
    void draw(unsigned int mode, int first, int count);

    unsigned int vertexArray = 0;
    std::vector<std::unique_ptr<AttributeBuffer>> attributeBuffers; // by location
    unsigned int indexBuffer = 0;                                   // 0 until there are indices
    int vertexCount = 0;
    int indexCount = 0;
    bool dynamic;
};
