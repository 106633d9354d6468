#include "assets.h"

#include "failure.h"
#include "program_check.h"

#include <xum/engine/log.h>
#include <xum/files/cache.h>
#include <xum/files/config_file.h>
#include <xum/render/image.h>
#include <xum/render/texture.h>

#include <memory>
#include <sstream>
#include <vector>

namespace {

/// The shaders of a program, from its description.
std::vector<std::string> listShaders(GameData& data, const std::string& descriptionFile)
{
    data.read(descriptionFile); // throws when it is missing
    // A broken one stops the program with a message that does not name it.
    getLog() << "Reading the program " << descriptionFile << std::endl;
    const ConfigFile description(&data.getResources(), descriptionFile);
    std::vector<std::string> shaders;
    for (const char* kind : {"vertex-shaders", "geometry-shaders", "fragment-shaders"}) {
        const ConfigEntry* entry = description.getEntry(kind, false);
        if (entry == nullptr) continue;
        std::istringstream names(entry->getValue());
        for (std::string name; std::getline(names >> std::ws, name, ',');) shaders.push_back(name);
    }
    return shaders;
}

/// The cache leaves a missing shader out without a word, so they are asked for here. Returns their names for a message.
std::string requireShaders(GameData& data, const std::string& descriptionFile)
{
    std::string fileNames;
    for (const std::string& shader : listShaders(data, descriptionFile)) {
        const std::string fileName = data.getFileName(data.getCache().getShaderDirectory(), shader);
        data.read(fileName);
        fileNames += (fileNames.empty() ? "" : ", ") + fileName;
    }
    if (fileNames.empty()) throw Failure(ExitStatus::BrokenData, "no shaders are named in " + descriptionFile);
    return fileNames;
}

Program* loadProgram(RenderDevice& device, GameData& data, const std::string& name)
{
    Cache& cache = data.getCache();
    const std::string shaders = requireShaders(data, data.getFileName(cache.getProgramDirectory(), name));
    Program* program = cache.getProgram(&device, cache.getId(name), false);
    if (canDraw(device, program)) return program;
    throw Failure(ExitStatus::BrokenData,
                  "the shaders " + shaders + " do not compile or do not fit together; log.txt says why");
}

Texture* loadTexture(RenderDevice& device, GameData& data, const std::string& name)
{
    Cache& cache = data.getCache();
    const std::string fileName = data.getFileName(cache.getTextureDirectory(), name);
    if (!std::unique_ptr<Image>(loadImageFromMemory(data.read(fileName))))
        throw Failure(ExitStatus::BrokenData, "cannot decode the picture " + fileName);
    Texture* texture = cache.getTexture(&device, cache.getId(name), true, false);
    if (texture == nullptr) throw Failure(ExitStatus::NoGraphics, "not enough memory for the picture " + fileName);
    texture->setFilter(TextureFilter::Linear);
    texture->setClamp(false, false);
    return texture;
}

} // namespace

Assets::Assets(RenderDevice& device, GameData& data)
    : solidProgram(loadProgram(device, data, "solid.cfg")), skyProgram(loadProgram(device, data, "sky.cfg")),
      flatProgram(loadProgram(device, data, "flat.cfg")), pictureProgram(loadProgram(device, data, "picture.cfg")),
      filmProgram(loadProgram(device, data, "film.cfg")), textProgram(loadProgram(device, data, "text.cfg")),
      captionProgram(loadProgram(device, data, "caption.cfg")), haloProgram(loadProgram(device, data, "halo.cfg"))
{
    for (std::size_t i = 0; i < textureCount; ++i) textures[i] = loadTexture(device, data, textureFileNames[i]);
}
