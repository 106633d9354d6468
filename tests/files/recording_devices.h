#pragma once

#include <xum/devices/audio_device.h>
#include <xum/files/resource_manager.h>
#include <xum/render/program.h>
#include <xum/render/render_device.h>
#include <xum/render/shader.h>
#include <xum/render/texture.h>

#include <cstddef>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// What a cache asks of the objects of its host, in order, as text such as "gl.destroyTexture(2)". Objects are numbered
/// over all devices in the order in which they are made.
struct CallRecord {
    std::vector<std::string> calls;
    int objects = 0;

    /// The calls since the last time.
    std::vector<std::string> take()
    {
        std::vector<std::string> taken;
        taken.swap(calls);
        return taken;
    }
};

/// A host's own resource manager, over files in memory.
class HostResources final : public ResourceManager {
public:
    explicit HostResources(CallRecord& record) : record(&record) {}

    ResourceFileImplementation* addResourceFile(const std::string& /*fileName*/) override { return nullptr; }

    bool load(std::vector<unsigned char>& data, const std::string& name) override
    {
        record->calls.push_back("load(" + name + ")");
        if (const std::function<void()> act = duringLoad) act(); // a copy: it may replace itself
        const auto found = files.find(name);
        if (found == files.end()) return false;
        data.assign(found->second.begin(), found->second.end());
        return true;
    }

    std::map<std::string, std::string> files;
    std::function<void()> duringLoad;

private:
    CallRecord* record;
};

/// Of all that the recording devices made and were not handed back.
std::size_t livingObjectCount();

/// What the recording devices make.
class RecordedObject {
public:
    explicit RecordedObject(CallRecord& record) : record(&record), number(++record.objects) {}

    std::string getNumber() const { return std::to_string(number); }
    CallRecord& getRecord() const { return *record; }

private:
    CallRecord* record;
    int number;
};

class RecordedShader final : public Shader, public RecordedObject {
public:
    RecordedShader(CallRecord& record, ShaderType type) : RecordedObject(record), type(type) {}
    ShaderType getType() override { return type; }

private:
    ShaderType type;
};

class RecordedProgram final : public Program, public RecordedObject {
public:
    RecordedProgram(CallRecord& record, std::list<std::string> attributes, std::list<std::string> outputs)
        : RecordedObject(record), attributes(std::move(attributes)), outputs(std::move(outputs))
    {}
    const std::list<std::string>& getAttributes() override { return attributes; }
    const std::list<std::string>& getOutputs() override { return outputs; }

private:
    std::list<std::string> attributes;
    std::list<std::string> outputs;
};

class RecordedTexture final : public Texture, public RecordedObject {
public:
    RecordedTexture(CallRecord& record, int width, int height) : RecordedObject(record), width(width), height(height) {}
    unsigned int getHandle() override { return 0; }
    const TextureFormat& getFormat() override { return format; }
    int getWidth() override { return width; }
    int getHeight() override { return height; }
    void setFilter(TextureFilter::Type /*filter*/) override {}
    void setClamp(bool /*clampS*/, bool /*clampT*/) override {}

    /// Writes the pixels down as "RRGGBBAA" each, joined by blanks.
    void update(const void* rgbaPixels) override
    {
        static constexpr char digits[] = "0123456789abcdef";
        std::string text = getNumber() + ".update(";
        for (int i = 0; i < width * height * 4; ++i) {
            const unsigned char byte = static_cast<const unsigned char*>(rgbaPixels)[i];
            if (i > 0 && i % 4 == 0) text += ' ';
            text += digits[byte / 16];
            text += digits[byte % 16];
        }
        getRecord().calls.push_back(text + ")");
    }

    Image* toImage(bool /*flipVertically*/) override { return nullptr; }

private:
    TextureFormat format;
    int width;
    int height;
};

/// Makes shaders, programs and textures, and fails a test that hands it what it did not make. The rest does nothing.
class RecordingRenderDevice final : public RenderDevice {
public:
    RecordingRenderDevice(CallRecord& record, std::string name) : record(&record), name(std::move(name)) {}
    ~RecordingRenderDevice() override;

    /// While it is set, everything that is made is null.
    bool isInert = false;

    /// Called before something is destroyed.
    std::function<void()> duringDestroy;

    void makeCurrent(Window* /*window*/) override {}
    RenderTarget* createRenderTarget(int /*width*/, int /*height*/,
                                     const std::list<TextureFormat>& /*formats*/) override
    {
        return nullptr;
    }
    void destroyRenderTarget(RenderTarget* /*target*/) override {}
    Shader* loadShader(ShaderType /*type*/, const std::string& /*fileName*/) override { return nullptr; }
    Shader* createShader(ShaderType type, const std::string& label, const std::vector<char>& source) override;
    void destroyShader(Shader* shader) override;
    Program* createProgram(const std::list<Shader*>& shaders, const std::list<std::string>& attributes,
                           const std::list<std::string>& outputs) override;
    void destroyProgram(Program* program) override;
    Texture* createTexture(int width, int height, bool mipmaps) override;
    void destroyTexture(Texture* texture) override;
    VertexBuffer* createVertexBuffer(bool /*dynamic*/) override { return nullptr; }
    void destroyVertexBuffer(VertexBuffer* /*buffer*/) override {}
    void setViewport(int /*x*/, int /*y*/, int /*width*/, int /*height*/, int /*screenHeight*/) override {}
    void setScissor(int /*x*/, int /*y*/, int /*width*/, int /*height*/, int /*screenHeight*/) override {}
    void clear(bool /*color*/, bool /*depth*/, bool /*stencil*/) override {}
    void enable(RenderFeature /*feature*/) override {}
    void disable(RenderFeature /*feature*/) override {}
    void bindRenderTarget(RenderTarget* /*target*/, TargetBinding /*binding*/) override {}
    void useProgram(Program* /*program*/) override {}
    void bindTexture(int /*unit*/, Texture* /*texture*/) override {}
    void setDepthFunction(DepthFunction /*function*/) override {}
    void setCullMode(CullMode /*mode*/) override {}
    void setBlendMode(BlendMode /*mode*/) override {}
    void setStencilFunction(CompareFunction /*function*/, unsigned char /*reference*/, unsigned char /*mask*/) override
    {}
    void setStencilOperation(StencilOperation /*stencilFail*/, StencilOperation /*depthFail*/,
                             StencilOperation /*depthPass*/) override
    {}
    RenderDevice& setUniform(const std::string& /*name*/, const Matrix4<float>& /*value*/) override { return *this; }
    RenderDevice& setUniform(const std::string& /*name*/, const Matrix3<float>& /*value*/) override { return *this; }
    RenderDevice& setUniform(const std::string& /*name*/, const Vector4<float>& /*value*/) override { return *this; }
    RenderDevice& setUniform(const std::string& /*name*/, const Vector3<float>& /*value*/) override { return *this; }
    RenderDevice& setUniform(const std::string& /*name*/, const Vector2<float>& /*value*/) override { return *this; }
    RenderDevice& setUniform(const std::string& /*name*/, float /*value*/) override { return *this; }
    RenderDevice& setUniform(const std::string& /*name*/, int /*value*/) override { return *this; }
    void swap(Window* /*window*/) override {}

private:
    template <class Recorded, class Object>
    void destroy(const std::string& operation, Object* object);

    CallRecord* record;
    std::string name;
};

/// Makes samples and streams of all data but "broken". The rest does nothing.
class RecordingAudioDevice final : public AudioDevice {
public:
    RecordingAudioDevice(CallRecord& record, std::string name) : record(&record), name(std::move(name)) {}

    Sample* loadSample(const std::string& /*fileName*/) override { return nullptr; }
    Sample* loadSampleFromMemory(const std::vector<unsigned char>& data) override;
    void destroySample(Sample* sample) override;
    Stream* loadStream(const std::string& /*fileName*/) override { return nullptr; }
    Stream* loadStreamFromMemory(const std::vector<unsigned char>& data) override;
    void destroyStream(Stream* stream) override;
    bool isMusicPlaying() override { return false; }
    void setMusicVolume(float /*volume*/) override {}
    void playStream(Stream* /*stream*/, bool /*loop*/, float /*fadeSeconds*/) override {}
    void stopMusic(float /*fadeSeconds*/) override {}
    AudioSource* acquireSource() override { return nullptr; }
    const Vector3<float>& getListenerPosition() override { return listener; }
    void setListener(const Vector3<float>& /*position*/, const Vector3<float>& /*direction*/) override {}
    void update(float /*seconds*/) override {}

private:
    /// Hosts know samples and streams only as pointers, so that these may point at anything.
    RecordedObject* make(const std::string& operation, const std::vector<unsigned char>& data);
    void destroy(const std::string& operation, const void* object);

    CallRecord* record;
    std::string name;
    std::vector<std::unique_ptr<RecordedObject>> made;
    Vector3<float> listener = {0, 0, 0};
};
