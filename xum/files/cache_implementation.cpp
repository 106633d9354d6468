#include <xum/files/cache_implementation.h>

#include <xum/devices/audio_device.h>
#include <xum/engine/log.h>
#include <xum/files/config_file.h>
#include <xum/files/data_root.h>
#include <xum/files/program_description.h>
#include <xum/files/resource_manager.h>
#include <xum/render/image.h>
#include <xum/render/program.h>
#include <xum/render/render_device.h>
#include <xum/render/shader.h>
#include <xum/render/texture.h>

#include <list>
#include <memory>
#include <new>

CacheImplementation::CacheImplementation(ResourceManager* resources) : resources(resources), dataRoot(defaultDataRoot())
{}

CacheImplementation::~CacheImplementation()
{
    for (std::size_t index = 0; index < records.size(); ++index) releaseRecord(index, nullptr, nullptr);
    releaseShaders(nullptr);
}

std::string CacheImplementation::getDataRoot()
{
    return dataRoot;
}

void CacheImplementation::setDataRoot(const std::string& directory)
{
    dataRoot = directory;
}

std::string CacheImplementation::getShaderDirectory()
{
    return shaderDirectory;
}

void CacheImplementation::setShaderDirectory(const std::string& directory)
{
    shaderDirectory = directory;
}

std::string CacheImplementation::getProgramDirectory()
{
    return programDirectory;
}

void CacheImplementation::setProgramDirectory(const std::string& directory)
{
    programDirectory = directory;
}

std::string CacheImplementation::getTextureDirectory()
{
    return textureDirectory;
}

void CacheImplementation::setTextureDirectory(const std::string& directory)
{
    textureDirectory = directory;
}

std::string CacheImplementation::getSampleDirectory()
{
    return sampleDirectory;
}

void CacheImplementation::setSampleDirectory(const std::string& directory)
{
    sampleDirectory = directory;
}

std::string CacheImplementation::getStreamDirectory()
{
    return streamDirectory;
}

void CacheImplementation::setStreamDirectory(const std::string& directory)
{
    streamDirectory = directory;
}

int CacheImplementation::getId(const std::string& name)
{
    if (const auto known = ids.find(name); known != ids.end()) return known->second;
    try { // what can fail comes first, so that nothing is half registered
        const std::size_t count = records.size();
        if (count == records.capacity()) records.reserve(count * 2 + 16);
        names.reserve(records.capacity());
        const int id = static_cast<int>(count);
        names.push_back(&ids.emplace(name, id).first->first);
        records.emplace_back();
        return id;
    } catch (const std::bad_alloc&) {
        return -1;
    }
}

template <class Item, class Load>
typename Item::Object* CacheImplementation::get(const char* operation, typename Item::Device* device, int id,
                                                bool transient, Load load)
{
    if (id < 0 || static_cast<std::size_t>(id) >= records.size()) return nullptr;
    const std::size_t index = static_cast<std::size_t>(id);
    if (const Item* item = std::get_if<Item>(&records[index].loaded)) return item->object;
    const std::string& name = *names[index];
    if (records[index].loaded.index() != 0)
        error("Cache::" + std::string(operation) + "() -> data of another kind is loaded (" + name + ")!");
    try {
        typename Item::Object* object = load(name);
        if (object == nullptr) return nullptr;
        // Looked up anew: a resource manager of the host's may have used the cache meanwhile.
        Record& record = records[index];
        if (record.loaded.index() != 0) {
            destroy(Item{object, device}, device);
            const Item* item = std::get_if<Item>(&record.loaded);
            return item != nullptr ? item->object : nullptr;
        }
        record = {Item{object, device}, transient};
        return object;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

Program* CacheImplementation::getProgram(RenderDevice* device, int id, bool transient)
{
    return get<MadeProgram>("getProgram", device, id, transient,
                            [&](const std::string& name) { return loadProgram(device, name); });
}

Texture* CacheImplementation::getTexture(RenderDevice* device, int id, bool mipmaps, bool transient)
{
    return get<MadeTexture>("getTexture", device, id, transient,
                            [&](const std::string& name) { return loadTexture(device, name, mipmaps); });
}

Sample* CacheImplementation::getSample(AudioDevice* audio, int id, bool transient)
{
    return get<MadeSample>("getSample", audio, id, transient,
                           [&](const std::string& name) { return loadSample(audio, name); });
}

Stream* CacheImplementation::getStream(AudioDevice* audio, int id, bool transient)
{
    return get<MadeStream>("getStream", audio, id, transient,
                           [&](const std::string& name) { return loadStream(audio, name); });
}

bool CacheImplementation::loadFile(std::vector<unsigned char>& data, const std::string& directory,
                                   const std::string& name)
{
    return resources != nullptr && resources->load(data, dataRoot + directory + name);
}

Program* CacheImplementation::loadProgram(RenderDevice* device, const std::string& name)
{
    const ProgramDescription description(ConfigFile(resources, dataRoot + programDirectory + name));
    std::list<Shader*> parts;
    for (std::size_t kind = 0; kind < description.shaders.size(); ++kind)
        for (const std::string& shader : description.shaders[kind])
            parts.push_back(getShader(device, static_cast<ShaderType>(kind), shader));
    return device != nullptr ? device->createProgram(parts, description.inputs, description.outputs) : nullptr;
}

Shader* CacheImplementation::getShader(RenderDevice* device, ShaderType type, const std::string& name)
{
    if (device == nullptr) return nullptr;
    if (const auto known = shaders.find({type, name}); known != shaders.end()) {
        const CachedShader& cached = known->second;
        // Nothing from a device that makes nothing is no answer for another one.
        if (cached.shader != nullptr || cached.device == nullptr || cached.device == device) return cached.shader;
    }
    // The file comes first: if the host throws while it reads, that must not count as a missing shader.
    std::vector<unsigned char> data;
    const bool isFound = loadFile(data, shaderDirectory, name);
    std::vector<char> source;
    if (isFound) {
        source.reserve(data.size() + 1);
        source.assign(data.begin(), data.end());
        source.push_back('\0');
    }
    CachedShader& cached = shaders[{type, name}];
    if (isFound && cached.shader == nullptr) // a host that loads items while it reads may have loaded this one
        cached = {device->createShader(type, name, source), device};
    return cached.shader;
}

Texture* CacheImplementation::loadTexture(RenderDevice* device, const std::string& name, bool mipmaps)
{
    std::vector<unsigned char> data;
    std::unique_ptr<Image> image;
    if (loadFile(data, textureDirectory, name)) image.reset(loadImageFromMemory(data));
    if (!image) error("Could not load texture: " + name);
    if (device == nullptr) return nullptr;
    Texture* texture = device->createTexture(image->getWidth(), image->getHeight(), mipmaps);
    if (texture != nullptr) texture->update(image->getPixels());
    return texture;
}

Sample* CacheImplementation::loadSample(AudioDevice* audio, const std::string& name)
{
    std::vector<unsigned char> data;
    const bool isRead = loadFile(data, sampleDirectory, name);
    Sample* sample = isRead && audio != nullptr ? audio->loadSampleFromMemory(data) : nullptr;
    if (!isRead || (sample == nullptr && audio != nullptr)) error("Could not load sample: " + name);
    return sample;
}

Stream* CacheImplementation::loadStream(AudioDevice* audio, const std::string& name)
{
    std::vector<unsigned char> data;
    const bool isRead = loadFile(data, streamDirectory, name);
    Stream* stream = isRead && audio != nullptr ? audio->loadStreamFromMemory(data) : nullptr;
    if (!isRead || (stream == nullptr && audio != nullptr)) error("Could not load stream: " + name);
    return stream;
}

void CacheImplementation::release(RenderDevice* device, AudioDevice* audio, bool all)
{
    for (std::size_t index = 0; index < records.size(); ++index)
        if (all || records[index].transient) releaseRecord(index, device, audio);
    if (!all) return;
    releaseShaders(device);
    try {
        shaders.rehash(shaderBuckets);
    } catch (const std::bad_alloc&) {
        // it grows when it must
    }
}

// What is destroyed is out of the cache first: a device of the host's may use the cache.

void CacheImplementation::releaseRecord(std::size_t index, RenderDevice* device, AudioDevice* audio)
{
    const auto loaded = records[index].loaded;
    records[index].loaded = {};
    if (const auto* program = std::get_if<MadeProgram>(&loaded)) destroy(*program, device);
    if (const auto* texture = std::get_if<MadeTexture>(&loaded)) destroy(*texture, device);
    if (const auto* sample = std::get_if<MadeSample>(&loaded)) destroy(*sample, audio);
    if (const auto* stream = std::get_if<MadeStream>(&loaded)) destroy(*stream, audio);
}

void CacheImplementation::releaseShaders(RenderDevice* device)
{
    ShaderMap released;
    released.swap(shaders);
    for (const auto& [key, cached] : released)
        if (cached.shader != nullptr) (device != nullptr ? device : cached.device)->destroyShader(cached.shader);
}

void CacheImplementation::destroy(const MadeProgram& program, RenderDevice* device)
{
    (device != nullptr ? device : program.device)->destroyProgram(program.object);
}

void CacheImplementation::destroy(const MadeTexture& texture, RenderDevice* device)
{
    (device != nullptr ? device : texture.device)->destroyTexture(texture.object);
}

void CacheImplementation::destroy(const MadeSample& sample, AudioDevice* audio)
{
    (audio != nullptr ? audio : sample.device)->destroySample(sample.object);
}

void CacheImplementation::destroy(const MadeStream& stream, AudioDevice* audio)
{
    (audio != nullptr ? audio : stream.device)->destroyStream(stream.object);
}
