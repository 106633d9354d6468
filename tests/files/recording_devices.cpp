#include "recording_devices.h"

#include <gtest/gtest.h>

#include <set>

namespace {

std::set<const void*>& livingObjects()
{
    static std::set<const void*> objects;
    return objects;
}

std::string numberOf(Shader* shader)
{
    return shader != nullptr ? dynamic_cast<RecordedShader&>(*shader).getNumber() : "null";
}

std::string joined(const std::list<std::string>& texts)
{
    std::string all;
    for (const std::string& text : texts) all += (all.empty() ? "" : " ") + text;
    return "[" + all + "]";
}

} // namespace

std::size_t livingObjectCount()
{
    return livingObjects().size();
}

RecordingRenderDevice::~RecordingRenderDevice() = default;

Shader* RecordingRenderDevice::createShader(ShaderType type, const std::string& label, const std::vector<char>& source)
{
    EXPECT_FALSE(source.empty());
    EXPECT_EQ(source.back(), '\0');
    const std::string text(source.begin(), source.end() - 1);
    record->calls.push_back(name + ".createShader(" + std::to_string(static_cast<int>(type)) + ", " + label + ", " +
                            text + ")");
    if (isInert) return nullptr;
    auto* shader = new RecordedShader(*record, type);
    livingObjects().insert(shader);
    return shader;
}

Program* RecordingRenderDevice::createProgram(const std::list<Shader*>& shaders,
                                              const std::list<std::string>& attributes,
                                              const std::list<std::string>& outputs)
{
    std::list<std::string> numbers;
    for (Shader* shader : shaders) numbers.push_back(numberOf(shader));
    record->calls.push_back(name + ".createProgram(" + joined(numbers) + ", " + joined(attributes) + ", " +
                            joined(outputs) + ")");
    if (isInert) return nullptr;
    auto* program = new RecordedProgram(*record, attributes, outputs);
    livingObjects().insert(program);
    return program;
}

Texture* RecordingRenderDevice::createTexture(int width, int height, bool mipmaps)
{
    record->calls.push_back(name + ".createTexture(" + std::to_string(width) + ", " + std::to_string(height) +
                            (mipmaps ? ", mipmaps)" : ")"));
    if (isInert) return nullptr;
    auto* texture = new RecordedTexture(*record, width, height);
    livingObjects().insert(texture);
    return texture;
}

template <class Recorded, class Object>
void RecordingRenderDevice::destroy(const std::string& operation, Object* object)
{
    if (duringDestroy) duringDestroy();
    if (object == nullptr) {
        record->calls.push_back(name + "." + operation + "(null)");
        return;
    }
    auto* recorded = static_cast<Recorded*>(object);
    if (livingObjects().erase(recorded) == 0) {
        ADD_FAILURE() << operation << " of what is no such object, or none any more";
        return;
    }
    record->calls.push_back(name + "." + operation + "(" + recorded->getNumber() + ")");
    delete recorded;
}

void RecordingRenderDevice::destroyShader(Shader* shader)
{
    destroy<RecordedShader>("destroyShader", shader);
}

void RecordingRenderDevice::destroyProgram(Program* program)
{
    destroy<RecordedProgram>("destroyProgram", program);
}

void RecordingRenderDevice::destroyTexture(Texture* texture)
{
    destroy<RecordedTexture>("destroyTexture", texture);
}

RecordedObject* RecordingAudioDevice::make(const std::string& operation, const std::vector<unsigned char>& data)
{
    const std::string text(data.begin(), data.end());
    record->calls.push_back(name + "." + operation + "(" + text + ")");
    if (text == "broken") return nullptr;
    RecordedObject* object = made.emplace_back(std::make_unique<RecordedObject>(*record)).get();
    livingObjects().insert(object);
    return object;
}

void RecordingAudioDevice::destroy(const std::string& operation, const void* object)
{
    if (livingObjects().erase(object) == 0) {
        ADD_FAILURE() << operation << " of what is no such object, or none any more";
        return;
    }
    const auto* recorded = static_cast<const RecordedObject*>(object);
    record->calls.push_back(name + "." + operation + "(" + recorded->getNumber() + ")");
}

Sample* RecordingAudioDevice::loadSampleFromMemory(const std::vector<unsigned char>& data)
{
    return reinterpret_cast<Sample*>(make("loadSample", data));
}

void RecordingAudioDevice::destroySample(Sample* sample)
{
    destroy("destroySample", sample);
}

Stream* RecordingAudioDevice::loadStreamFromMemory(const std::vector<unsigned char>& data)
{
    return reinterpret_cast<Stream*>(make("loadStream", data));
}

void RecordingAudioDevice::destroyStream(Stream* stream)
{
    destroy("destroyStream", stream);
}
