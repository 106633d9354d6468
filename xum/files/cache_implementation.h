#pragma once

#include <xum/files/cache.h>
#include <xum/render/render_types.h>

#include <string>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

class ResourceManager;
class Shader;

class CacheImplementation final : public Cache {
public:
    /// Keeps the pointer; a null one finds no file.
    explicit CacheImplementation(ResourceManager* resources);
    ~CacheImplementation();

    CacheImplementation(const CacheImplementation&) = delete;
    CacheImplementation& operator=(const CacheImplementation&) = delete;

    std::string getDataRoot() override;
    void setDataRoot(const std::string& directory) override;
    std::string getShaderDirectory() override;
    void setShaderDirectory(const std::string& directory) override;
    std::string getProgramDirectory() override;
    void setProgramDirectory(const std::string& directory) override;
    std::string getTextureDirectory() override;
    void setTextureDirectory(const std::string& directory) override;
    std::string getSampleDirectory() override;
    void setSampleDirectory(const std::string& directory) override;
    std::string getStreamDirectory() override;
    void setStreamDirectory(const std::string& directory) override;
    int getId(const std::string& name) override;
    Program* getProgram(RenderDevice* device, int id, bool transient) override;
    Texture* getTexture(RenderDevice* device, int id, bool mipmaps, bool transient) override;
    Sample* getSample(AudioDevice* audio, int id, bool transient) override;
    Stream* getStream(AudioDevice* audio, int id, bool transient) override;
    void release(RenderDevice* device, AudioDevice* audio, bool all) override;

private:
    /// An object with the device that made it.
    template <class ObjectType, class DeviceType>
    struct Made {
        using Object = ObjectType;
        using Device = DeviceType;
        Object* object;
        Device* device;
    };
    using MadeProgram = Made<Program, RenderDevice>;
    using MadeTexture = Made<Texture, RenderDevice>;
    using MadeSample = Made<Sample, AudioDevice>;
    using MadeStream = Made<Stream, AudioDevice>;

    struct Record {
        std::variant<std::monostate, MadeProgram, MadeTexture, MadeSample, MadeStream> loaded;
        bool transient = false;
    };

    struct CachedShader {
        Shader* shader = nullptr;
        RenderDevice* device = nullptr; // the one that was asked for it; null when there is no such file
    };

    struct HashShaderKey {
        std::size_t operator()(const std::pair<ShaderType, std::string>& key) const
        {
            return std::hash<std::string>()(key.second) * 4 + static_cast<std::size_t>(key.first);
        }
    };
    using ShaderMap = std::unordered_map<std::pair<ShaderType, std::string>, CachedShader, HashShaderKey>;
    static constexpr std::size_t shaderBuckets = 8; // at the start

    template <class Item, class Load>
    typename Item::Object* get(const char* operation, typename Item::Device* device, int id, bool transient, Load load);
    bool loadFile(std::vector<unsigned char>& data, const std::string& directory, const std::string& name);
    Program* loadProgram(RenderDevice* device, const std::string& name);
    Texture* loadTexture(RenderDevice* device, const std::string& name, bool mipmaps);
    Sample* loadSample(AudioDevice* audio, const std::string& name);
    Stream* loadStream(AudioDevice* audio, const std::string& name);
    Shader* getShader(RenderDevice* device, ShaderType type, const std::string& name);
    void releaseRecord(std::size_t index, RenderDevice* device, AudioDevice* audio);
    void releaseShaders(RenderDevice* device);

    // Through the device that is given or, for null, through the one that made it.
    static void destroy(const MadeProgram& program, RenderDevice* device);
    static void destroy(const MadeTexture& texture, RenderDevice* device);
    static void destroy(const MadeSample& sample, AudioDevice* audio);
    static void destroy(const MadeStream& stream, AudioDevice* audio);

    ResourceManager* resources;
    std::string dataRoot;
    std::string shaderDirectory = "shaders/";
    std::string programDirectory = "programs/";
    std::string textureDirectory = "textures/";
    std::string sampleDirectory = "samples/";
    std::string streamDirectory = "streams/";
    std::unordered_map<std::string, int> ids;
    std::vector<const std::string*> names; // by identifier; they lie in ids
    std::vector<Record> records;           // by identifier
    ShaderMap shaders{shaderBuckets};
};
