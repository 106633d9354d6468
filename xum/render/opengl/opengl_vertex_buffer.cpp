#include <xum/render/opengl/opengl_vertex_buffer.h>

#include <xum/render/opengl/opengl_bindings.h>

#include <GL/glew.h>

#include <algorithm>
#include <cstdint>

namespace {

// What every 3.2 context offers at least; meshes, quads and fonts use the first four.
constexpr int locationCount = 16;

bool isLocation(int location)
{
    return location >= 0 && location < locationCount;
}

GLenum usageHint(bool dynamic)
{
    return dynamic ? GL_DYNAMIC_DRAW : GL_STATIC_DRAW;
}

template <class Element>
constexpr GLint componentCount = sizeof(Element) / sizeof(float);

} // namespace

/// The data store of one attribute. Binds itself when it is made, so that data can follow.
class OpenGLVertexBuffer::AttributeBuffer {
public:
    AttributeBuffer(std::size_t count, bool dynamic) : count(count), dynamic(dynamic)
    {
        glGenBuffers(1, &name);
        bindArrayBuffer(name);
    }

    ~AttributeBuffer() { deleteArrayBuffer(name); }

    AttributeBuffer(const AttributeBuffer&) = delete;
    AttributeBuffer& operator=(const AttributeBuffer&) = delete;

    /// Null data only allocates.
    void allocate(std::size_t elementSize, const void* data)
    {
        glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(count * elementSize), data, usageHint(dynamic));
    }

private:
    GLuint name = 0;
    std::size_t count;
    bool dynamic;
};

OpenGLVertexBuffer::OpenGLVertexBuffer(bool dynamic) : dynamic(dynamic)
{
    glGenVertexArrays(1, &vertexArray);
    bindVertexArray(vertexArray);
}

OpenGLVertexBuffer::~OpenGLVertexBuffer()
{
    if (indexBuffer != 0) glDeleteBuffers(1, &indexBuffer);
    attributeBuffers.clear();
    deleteVertexArray(vertexArray);
}

void OpenGLVertexBuffer::setAttribute(int location, const std::vector<Vector4<float>>& values)
{
    uploadArray(location, values);
}

void OpenGLVertexBuffer::setAttribute(int location, const std::vector<Vector3<float>>& values)
{
    if (location == 0) vertexCount = static_cast<int>(values.size());
    uploadArray(location, values);
}

void OpenGLVertexBuffer::setAttribute(int location, const std::vector<Vector2<float>>& values)
{
    uploadArray(location, values);
}

void OpenGLVertexBuffer::setAttributeFrom(int location, const std::list<Vector4<float>>& values)
{
    uploadList(location, values);
}

void OpenGLVertexBuffer::setAttributeFrom(int location, const std::list<Vector3<float>>& values)
{
    if (location == 0) vertexCount = static_cast<int>(values.size());
    uploadList(location, values);
}

void OpenGLVertexBuffer::setAttributeFrom(int location, const std::list<Vector2<float>>& values)
{
    uploadList(location, values);
}

template <class Element>
void OpenGLVertexBuffer::uploadArray(int location, const std::vector<Element>& values)
{
    if (!isLocation(location)) return;
    replaceAttribute(location, values.size()).allocate(sizeof(Element), values.data());
    pointAttribute(location, componentCount<Element>);
}

template <class Element>
void OpenGLVertexBuffer::uploadList(int location, const std::list<Element>& values)
{
    if (!isLocation(location)) return;
    replaceAttribute(location, values.size()).allocate(sizeof(Element), nullptr);
    if (!values.empty()) { // an empty store cannot be mapped
        if (void* mapped = glMapBuffer(GL_ARRAY_BUFFER, GL_WRITE_ONLY)) {
            std::copy(values.begin(), values.end(), static_cast<Element*>(mapped));
            glUnmapBuffer(GL_ARRAY_BUFFER);
        }
    }
    pointAttribute(location, componentCount<Element>);
}

/// Makes a new, bound buffer for the location in place of the one that it held. The vertex array is bound first:
/// it remembers which buffers its attributes come from.
OpenGLVertexBuffer::AttributeBuffer& OpenGLVertexBuffer::replaceAttribute(int location, std::size_t count)
{
    bindVertexArray(vertexArray);
    const std::size_t index = static_cast<std::size_t>(location);
    if (attributeBuffers.size() <= index) attributeBuffers.resize(index + 1);
    auto replacement = std::make_unique<AttributeBuffer>(count, dynamic);
    attributeBuffers[index] = std::move(replacement); // deletes the old one after the new one is bound
    return *attributeBuffers[index];
}

void OpenGLVertexBuffer::pointAttribute(int location, int components)
{
    const GLuint index = static_cast<GLuint>(location);
    glEnableVertexAttribArray(index);
    glVertexAttribPointer(index, components, GL_FLOAT, GL_FALSE, 0, nullptr);
}

void OpenGLVertexBuffer::setIndices(const std::vector<unsigned int>& indices)
{
    static_assert(sizeof(unsigned int) == 4);
    bindVertexArray(vertexArray); // the element binding is part of its state
    indexCount = static_cast<int>(indices.size());
    if (indexBuffer == 0) glGenBuffers(1, &indexBuffer);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, indexBuffer);
    glBufferData(GL_ELEMENT_ARRAY_BUFFER, static_cast<GLsizeiptr>(indices.size() * sizeof(unsigned int)),
                 indices.data(), usageHint(dynamic));
}

void OpenGLVertexBuffer::drawLines(int first, int count)
{
    draw(GL_LINES, first, count);
}

void OpenGLVertexBuffer::drawTriangles(int first, int count)
{
    draw(GL_TRIANGLES, first, count);
}

void OpenGLVertexBuffer::drawTriangleFan(int first, int count)
{
    draw(GL_TRIANGLE_FAN, first, count);
}

void OpenGLVertexBuffer::draw(unsigned int mode, int first, int count)
{
    if (first < 0) return;
    const bool isIndexed = indexBuffer != 0;
    if (count == -1) count = std::max((isIndexed ? indexCount : vertexCount) - first, 0);
    bindVertexArray(vertexArray);
    if (isIndexed) {
        const std::intptr_t offset = std::intptr_t{first} * static_cast<std::intptr_t>(sizeof(unsigned int));
        glDrawElements(mode, count, GL_UNSIGNED_INT, reinterpret_cast<const void*>(offset));
    } else {
        glDrawArrays(mode, first, count);
    }
}
