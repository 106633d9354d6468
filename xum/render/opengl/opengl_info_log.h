#pragma once

#include <GL/glew.h>

#include <string>
#include <vector>

namespace OpenGL {

/// The info log of a shader or program without its final NUL; empty when there is none. The functions are
/// glGetShaderiv and glGetShaderInfoLog, or those for programs.
template <class GetParameter, class GetLog>
std::string readInfoLog(GLuint name, GetParameter getParameter, GetLog getLog)
{
    GLint size = 0; // left alone when the name is 0
    getParameter(name, GL_INFO_LOG_LENGTH, &size);
    if (size <= 0) return {};
    std::vector<GLchar> buffer(static_cast<std::size_t>(size));
    GLsizei length = 0;
    getLog(name, size, &length, buffer.data());
    return std::string(buffer.data(), static_cast<std::size_t>(length));
}

} // namespace OpenGL
