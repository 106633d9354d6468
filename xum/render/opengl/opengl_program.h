#pragma once

#include <xum/render/program.h>

#include <list>
#include <string>

class Shader;

namespace OpenGL {

class Program final : public ::Program {
public:
    /// Links the shaders (null ones are skipped) and leaves the program current in OpenGL. See
    /// RenderDevice::createProgram for attributes and outputs.
    Program(const std::list<::Shader*>& shaders, const std::list<std::string>& attributes,
            const std::list<std::string>& outputs);
    ~Program() override;

    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    unsigned int getName() const { return name; }

    const std::list<std::string>& getAttributes() override;
    const std::list<std::string>& getOutputs() override;

private:
    void bindAttributes();
    void bindOutputs();

    unsigned int name = 0;
    std::list<std::string> attributes;
    std::list<std::string> outputs;
};

} // namespace OpenGL
