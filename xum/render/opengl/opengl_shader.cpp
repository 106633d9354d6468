#include <xum/render/opengl/opengl_shader.h>

#include <xum/engine/log.h>
#include <xum/render/opengl/opengl_info_log.h>
#include <xum/render/opengl/opengl_mappings.h>

#include <GL/glew.h>

#include <algorithm>
#include <limits>

namespace OpenGL {

// Where the context has no such shaders (compute before 4.3) the name is 0; OpenGL refuses it wherever it is used.
Shader::Shader(ShaderType type) : name(glCreateShader(shaderTypeToGL(type).value_or(GL_NONE))) {}

Shader::~Shader()
{
    glDeleteShader(name);
}

void Shader::compile(const std::string& sourceName, const std::vector<char>& source)
{
    const auto end = std::find(source.begin(), source.end(), '\0');
    if (end - source.begin() > std::numeric_limits<GLint>::max()) return;
    const GLint length = static_cast<GLint>(end - source.begin());
    const GLchar* text = length > 0 ? source.data() : "";
    glShaderSource(name, 1, &text, &length);
    glCompileShader(name);

    GLint isCompiled = GL_FALSE; // left alone when the name is 0
    glGetShaderiv(name, GL_COMPILE_STATUS, &isCompiled);
    if (isCompiled != GL_FALSE) return;
    const std::string log = readInfoLog(name, glGetShaderiv, glGetShaderInfoLog);
    if (!log.empty()) warning(sourceName + "\n\n" + log);
}

std::unique_ptr<Shader> makeShader(ShaderType type)
{
    switch (type) {
    case ShaderType::Vertex: return std::make_unique<VertexShader>();
    case ShaderType::Geometry: return std::make_unique<GeometryShader>();
    case ShaderType::Fragment: return std::make_unique<FragmentShader>();
    case ShaderType::Compute: return std::make_unique<ComputeShader>();
    default: return nullptr;
    }
}

} // namespace OpenGL
