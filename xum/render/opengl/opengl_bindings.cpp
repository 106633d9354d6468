#include <xum/render/opengl/opengl_bindings.h>

namespace {

// No name is ever 0, which in a core context is "nothing bound": the state that a new context starts with.
GLuint boundVertexArray = 0;
GLuint boundArrayBuffer = 0;

} // namespace

void bindVertexArray(GLuint name)
{
    if (boundVertexArray == name) return;
    glBindVertexArray(name);
    boundVertexArray = name;
}

void bindArrayBuffer(GLuint name)
{
    if (boundArrayBuffer == name) return;
    glBindBuffer(GL_ARRAY_BUFFER, name);
    boundArrayBuffer = name;
}

void deleteVertexArray(GLuint name)
{
    if (boundVertexArray == name) boundVertexArray = 0;
    glDeleteVertexArrays(1, &name);
}

void deleteArrayBuffer(GLuint name)
{
    if (boundArrayBuffer == name) boundArrayBuffer = 0;
    glDeleteBuffers(1, &name);
}

// 0 may be wrong for the context that becomes current; it only has to differ from every name.
void forgetBufferBindings()
{
    boundVertexArray = 0;
    boundArrayBuffer = 0;
}
