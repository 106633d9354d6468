#pragma once

#include <GL/glew.h>

#include <vector>

// What benchmarks need of OpenGL without the engine, to compare with.

inline GLuint compilePlain(GLenum type, const char* text)
{
    const GLuint shader = glCreateShader(type);
    glShaderSource(shader, 1, &text, nullptr);
    glCompileShader(shader);
    return shader;
}

/// Fills an attribute of the bound vertex array through a buffer.
template <class Element>
void fillPlain(GLuint location, GLuint buffer, const std::vector<Element>& values, GLenum usage)
{
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(values.size() * sizeof(Element)), values.data(), usage);
    glEnableVertexAttribArray(location);
    glVertexAttribPointer(location, static_cast<GLint>(sizeof(Element) / sizeof(float)), GL_FLOAT, GL_FALSE, 0,
                          nullptr);
}
