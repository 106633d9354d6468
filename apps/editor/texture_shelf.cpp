#include "texture_shelf.h"

#include <xum/engine/system_device.h>
#include <xum/files/cache.h>
#include <xum/files/resource_manager.h>
#include <xum/render/image.h>
#include <xum/render/texture.h>

#include <memory>

namespace {

const Pixel chequers[] = {{220, 40, 200, 255}, {30, 30, 30, 255}, {30, 30, 30, 255}, {220, 40, 200, 255}};

} // namespace

TextureShelf::TextureShelf(RenderDevice& device, GameData& data, SystemDevice& files)
    : device(device), data(data), missing(device.createTexture(2, 2, false), {&device})
{
    if (missing) {
        missing->update(chequers);
        missing->setClamp(false, false);
    }
    const std::string directory = data.getFileName(data.getCache().getTextureDirectory(), "");
    files.listFiles(directory, "", false,
                    [this](const std::string&, const std::string& name) { names.push_back(name); });
}

Texture* TextureShelf::get(const std::string& name)
{
    const auto known = textures.find(name);
    if (known != textures.end()) return known->second;
    Cache& cache = data.getCache();
    std::vector<unsigned char> bytes;
    Texture* texture = missing.get();
    // The cache would end the program for a file that is no picture.
    const bool isThere = data.getResources().load(bytes, data.getFileName(cache.getTextureDirectory(), name));
    if (isThere && std::unique_ptr<Image>(loadImageFromMemory(bytes))) {
        texture = cache.getTexture(&device, cache.getId(name), true, false);
        if (texture != nullptr) {
            texture->setFilter(TextureFilter::Linear);
            texture->setClamp(false, false);
        }
    }
    return textures[name] = texture;
}
