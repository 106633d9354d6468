#include <xum/render/opengl/opengl_program.h>

#include <xum/engine/log.h>
#include <xum/render/opengl/opengl_info_log.h>
#include <xum/render/opengl/opengl_shader.h>

#include <GL/glew.h>

namespace OpenGL {

namespace {

bool isCustomOutput(const std::string& output)
{
    return !output.empty() && output.back() == ')';
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// Binds "name(N)" to colour number N. A name that is not written so is left to OpenGL.
void bindCustomOutput(GLuint program, const std::string& output)
{
    constexpr std::size_t suffixSize = 3; // "(N)"
    if (output.size() <= suffixSize) return;
    const char digit = output[output.size() - 2];
    if (!isDigit(digit)) return;
    const std::string name = output.substr(0, output.size() - suffixSize);
    glBindFragDataLocation(program, static_cast<GLuint>(digit - '0'), name.c_str());
}

} // namespace

Program::Program(const std::list<::Shader*>& shaders, const std::list<std::string>& attributes,
                 const std::list<std::string>& outputs)
    : name(glCreateProgram()), attributes(attributes), outputs(outputs)
{
    for (::Shader* shader : shaders)
        if (shader != nullptr) glAttachShader(name, static_cast<Shader*>(shader)->getName());
    bindAttributes();
    bindOutputs();
    glLinkProgram(name);

    GLint isLinked = GL_FALSE;
    glGetProgramiv(name, GL_LINK_STATUS, &isLinked);
    if (isLinked == GL_FALSE) {
        const std::string log = readInfoLog(name, glGetProgramiv, glGetProgramInfoLog);
        if (!log.empty()) warning(log);
    }

    for (::Shader* shader : shaders)
        if (shader != nullptr) glDetachShader(name, static_cast<Shader*>(shader)->getName());
    glUseProgram(name);
}

Program::~Program()
{
    glDeleteProgram(name);
}

const std::list<std::string>& Program::getAttributes()
{
    return attributes;
}

const std::list<std::string>& Program::getOutputs()
{
    return outputs;
}

void Program::bindAttributes()
{
    GLuint location = 0;
    for (const std::string& attribute : attributes) glBindAttribLocation(name, location++, attribute.c_str());
}

void Program::bindOutputs()
{
    GLuint position = 0;
    for (const std::string& output : outputs) {
        if (isCustomOutput(output) != isCustomOutput(outputs.front()))
            error("If custom outputs for a program are used, all outputs must be custom!");
        if (isCustomOutput(output))
            bindCustomOutput(name, output);
        else
            glBindFragDataLocation(name, position, output.c_str());
        ++position;
    }
}

} // namespace OpenGL
