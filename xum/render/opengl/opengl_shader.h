#pragma once

#include <xum/render/shader.h>

#include <memory>
#include <string>
#include <vector>

namespace OpenGL {

/// A shader object; the four kinds differ in the type that they report.
class Shader : public ::Shader {
public:
    ~Shader() override;

    Shader(const Shader&) = delete;
    Shader& operator=(const Shader&) = delete;

    unsigned int getName() const { return name; }

    /// Compiles the source up to its first NUL. A problem is warned of: the shader's name, "\n\n", the compiler's log.
    void compile(const std::string& sourceName, const std::vector<char>& source);

protected:
    explicit Shader(ShaderType type);

private:
    unsigned int name = 0;
};

class VertexShader final : public Shader {
public:
    VertexShader() : Shader(ShaderType::Vertex) {}
    ShaderType getType() override { return ShaderType::Vertex; }
};

class GeometryShader final : public Shader {
public:
    GeometryShader() : Shader(ShaderType::Geometry) {}
    ShaderType getType() override { return ShaderType::Geometry; }
};

class FragmentShader final : public Shader {
public:
    FragmentShader() : Shader(ShaderType::Fragment) {}
    ShaderType getType() override { return ShaderType::Fragment; }
};

class ComputeShader final : public Shader {
public:
    ComputeShader() : Shader(ShaderType::Compute) {}
    ShaderType getType() override { return ShaderType::Compute; }
};

/// An empty shader of that kind; null for an unknown one.
std::unique_ptr<Shader> makeShader(ShaderType type);

} // namespace OpenGL
