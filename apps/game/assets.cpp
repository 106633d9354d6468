#include "assets.h"

#include "failure.h"
#include "program_check.h"

#include <xum/render/image.h>
#include <xum/render/shader.h>
#include <xum/render/texture.h>

#include <filesystem>
#include <fstream>
#include <list>
#include <system_error>
#include <vector>

namespace {

void requireDirectory(const std::string& directory)
{
    std::error_code failure;
    if (std::filesystem::is_directory(directory, failure)) return;
    throw Failure(ExitStatus::BrokenData, "there is no data directory " + directory + " (choose another with --data)");
}

// Asked before the engine is: it says nothing of a file that it cannot read.
void requireFile(const std::string& fileName)
{
    std::error_code failure;
    const bool isFile = std::filesystem::is_regular_file(fileName, failure);
    if (!isFile || !std::ifstream(fileName)) throw Failure(ExitStatus::BrokenData, "cannot read the file " + fileName);
}

OwnedShader loadRequiredShader(RenderDevice& device, const std::string& fileName)
{
    requireFile(fileName);
    const bool isVertexShader = fileName.rfind(".vert") != std::string::npos;
    return {device.loadShader(isVertexShader ? ShaderType::Vertex : ShaderType::Fragment, fileName), {&device}};
}

OwnedProgram loadProgram(RenderDevice& device, const std::string& directory, const std::list<std::string>& fileNames)
{
    std::list<OwnedShader> shaders;
    std::list<Shader*> parts;
    std::string names;
    for (const std::string& fileName : fileNames) {
        shaders.push_back(loadRequiredShader(device, directory + fileName));
        parts.push_back(shaders.back().get());
        names += (names.empty() ? "" : ", ") + directory + fileName;
    }
    OwnedProgram program(device.createProgram(parts, {"position", "textureCoordinate", "normal"}, {"color"}),
                         {&device});
    if (!canDraw(device, program.get())) {
        throw Failure(ExitStatus::BrokenData,
                      "the shaders " + names + " do not compile or do not fit together; log.txt says why");
    }
    return program;
}

OwnedTexture loadTexture(RenderDevice& device, const std::string& fileName)
{
    requireFile(fileName);
    const std::unique_ptr<Image> image(loadImage(fileName));
    if (!image) throw Failure(ExitStatus::BrokenData, "cannot decode the picture " + fileName);
    OwnedTexture texture(device.createTexture(image->getWidth(), image->getHeight(), true), {&device});
    if (!texture) throw Failure(ExitStatus::NoGraphics, "not enough memory for the picture " + fileName);
    texture->update(image->getPixels());
    texture->setFilter(TextureFilter::Linear);
    texture->setClamp(false, false);
    return texture;
}

} // namespace

Assets::Assets(RenderDevice& device, const std::string& dataDirectory)
{
    requireDirectory(dataDirectory);
    const std::string shaders = dataDirectory + "shaders/";
    solidProgram = loadProgram(device, shaders, {"solid.vert", "solid.frag", "display.frag"});
    skyProgram = loadProgram(device, shaders, {"sky.vert", "sky.frag", "display.frag"});
    flatProgram = loadProgram(device, shaders, {"flat.vert", "flat.frag"});
    for (std::size_t i = 0; i < textureCount; ++i)
        textures[i] = loadTexture(device, dataDirectory + "textures/" + textureFileNames[i]);
}
