#pragma once

#include <xum/xum.h>

#include <list>
#include <string>

/// A program of two texts. The attributes stand at the locations that meshes, fonts and quads fill; one that the
/// shader does without is no problem. Outputs are "color" or, for several colour attachments, the names given.
inline Program* makeProgram(RenderDevice* device, const std::string& vertexText, const std::string& fragmentText,
                            const std::list<std::string>& outputs = {"color"})
{
    Shader* vertex = device->createShader(ShaderType::Vertex, "vertex shader", {vertexText.begin(), vertexText.end()});
    Shader* fragment =
        device->createShader(ShaderType::Fragment, "fragment shader", {fragmentText.begin(), fragmentText.end()});
    Program* program =
        device->createProgram({vertex, fragment}, {"position", "textureCoordinate", "normal", "vertexColor"}, outputs);
    device->destroyShader(vertex); // a linked program needs them no more
    device->destroyShader(fragment);
    return program;
}
