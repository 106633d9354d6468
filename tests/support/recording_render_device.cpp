#include "recording_render_device.h"

#include <xum/render/image.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

namespace {

template <class... Values>
std::string describe(const char* call, const Values&... values)
{
    std::ostringstream text;
    text << call;
    ((text << ' ' << values), ...);
    return text.str();
}

} // namespace

bool RecordingVertexBuffer::isRecorded() const
{
    EXPECT_FALSE(isHandedBack);
    return device->isRecording;
}

template <class Values>
void RecordingVertexBuffer::keep(const char* call, int location, const Values& values)
{
    if (!isRecorded()) return;
    using Value = typename Values::value_type;
    constexpr int components = sizeof(Value) / sizeof(float);
    calls.push_back(describe(call, location, "Vector" + std::to_string(components), "x", values.size()));
    fours.erase(location);
    threes.erase(location);
    twos.erase(location);
    const std::vector<Value> copy(values.begin(), values.end());
    if constexpr (components == 4)
        fours[location] = copy;
    else if constexpr (components == 3)
        threes[location] = copy;
    else
        twos[location] = copy;
}

void RecordingVertexBuffer::setAttribute(int location, const std::vector<Vector4<float>>& values)
{
    keep("setAttribute", location, values);
}

void RecordingVertexBuffer::setAttribute(int location, const std::vector<Vector3<float>>& values)
{
    keep("setAttribute", location, values);
}

void RecordingVertexBuffer::setAttribute(int location, const std::vector<Vector2<float>>& values)
{
    keep("setAttribute", location, values);
}

void RecordingVertexBuffer::setAttributeFrom(int location, const std::list<Vector4<float>>& values)
{
    keep("setAttributeFrom", location, values);
}

void RecordingVertexBuffer::setAttributeFrom(int location, const std::list<Vector3<float>>& values)
{
    keep("setAttributeFrom", location, values);
}

void RecordingVertexBuffer::setAttributeFrom(int location, const std::list<Vector2<float>>& values)
{
    keep("setAttributeFrom", location, values);
}

void RecordingVertexBuffer::setIndices(const std::vector<unsigned int>& values)
{
    if (!isRecorded()) return;
    calls.push_back(describe("setIndices", values.size()));
    indices = values;
}

void RecordingVertexBuffer::keepDraw(const char* call, int first, int count)
{
    if (!isRecorded()) return;
    calls.push_back(describe(call, first, count));
    drawnTexture = device->firstUnit;
}

void RecordingVertexBuffer::drawLines(int first, int count)
{
    keepDraw("drawLines", first, count);
}

void RecordingVertexBuffer::drawTriangles(int first, int count)
{
    keepDraw("drawTriangles", first, count);
}

void RecordingVertexBuffer::drawTriangleFan(int first, int count)
{
    keepDraw("drawTriangleFan", first, count);
}

template <class... Values>
void RecordingTexture::record(const char* call, const Values&... values) const
{
    EXPECT_FALSE(isHandedBack);
    device->record("texture", number, call, values...);
}

void RecordingTexture::setFilter(TextureFilter::Type newFilter)
{
    record("setFilter", static_cast<int>(newFilter));
    filter = newFilter;
}

void RecordingTexture::setClamp(bool newClampS, bool newClampT)
{
    record("setClamp", newClampS, newClampT);
    clampS = newClampS;
    clampT = newClampT;
}

void RecordingTexture::update(const void* rgbaPixels)
{
    record("update");
    const auto* const bytes = static_cast<const unsigned char*>(rgbaPixels);
    const std::size_t size = static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4;
    pixels.assign(bytes, bytes == nullptr ? nullptr : bytes + size);
}

Image* RecordingTexture::toImage(bool flipVertically)
{
    record("toImage", flipVertically);
    auto* const image = new Image(width, height, 0, nullptr, pixels.empty() ? nullptr : pixels.data(), false);
    for (int y = 0; flipVertically && y < height / 2; ++y) {
        Pixel* const row = image->getPixels() + static_cast<std::ptrdiff_t>(y) * width;
        std::swap_ranges(row, row + width, image->getPixels() + static_cast<std::ptrdiff_t>(height - 1 - y) * width);
    }
    return image;
}

template <class... Values>
void RecordingRenderDevice::record(const char* call, const Values&... values)
{
    if (isRecording) calls.push_back(describe(call, values...));
}

template <class Values>
RenderDevice& RecordingRenderDevice::recordUniform(const std::string& name, const char* type, const Values& value)
{
    if (!isRecording) return *this;
    std::string text = describe("setUniform", name, type);
    if constexpr (std::is_arithmetic_v<Values>) {
        text += describe("", value);
    } else {
        const float* const components = reinterpret_cast<const float*>(&value);
        for (std::size_t i = 0; i < sizeof value / sizeof(float); ++i) text += describe("", components[i]);
    }
    calls.push_back(text);
    return *this;
}

RecordingRenderDevice::~RecordingRenderDevice()
{
    EXPECT_TRUE(buffers.empty()) << buffers.size() << " vertex buffers were not handed back";
    EXPECT_TRUE(textures.empty()) << textures.size() << " textures were not handed back";
}

void RecordingRenderDevice::makeCurrent(Window*)
{
    record("makeCurrent");
}

RenderTarget* RecordingRenderDevice::createRenderTarget(int width, int height, const std::list<TextureFormat>& formats)
{
    record("createRenderTarget", width, height, formats.size());
    return nullptr;
}

void RecordingRenderDevice::destroyRenderTarget(RenderTarget*)
{
    record("destroyRenderTarget");
}

Shader* RecordingRenderDevice::loadShader(ShaderType type, const std::string& fileName)
{
    record("loadShader", static_cast<int>(type), fileName);
    return nullptr;
}

Shader* RecordingRenderDevice::createShader(ShaderType type, const std::string& name, const std::vector<char>&)
{
    record("createShader", static_cast<int>(type), name);
    return nullptr;
}

void RecordingRenderDevice::destroyShader(Shader*)
{
    record("destroyShader");
}

Program* RecordingRenderDevice::createProgram(const std::list<Shader*>& shaders,
                                              const std::list<std::string>& attributes,
                                              const std::list<std::string>& outputs)
{
    record("createProgram", shaders.size(), attributes.size(), outputs.size());
    return nullptr;
}

void RecordingRenderDevice::destroyProgram(Program*)
{
    record("destroyProgram");
}

/// Moves it from one list to the other, without memory.
template <class Resource, class Interface>
void RecordingRenderDevice::handBack(std::list<Resource>& living, std::list<Resource>& former, Interface* resource)
{
    if (resource == nullptr) return;
    const auto found = std::find_if(living.begin(), living.end(), [resource](const Resource& made) {
        return static_cast<const Interface*>(&made) == resource;
    });
    if (found == living.end()) {
        ADD_FAILURE() << "handed back to a device that has not made it, or once too often";
        return;
    }
    found->isHandedBack = true;
    former.splice(former.end(), living, found);
}

Texture* RecordingRenderDevice::createTexture(int width, int height, bool mipmaps)
{
    record("createTexture", width, height, mipmaps);
    if (!makesResources) return nullptr;
    return &textures.emplace_back(*this, ++textureCount, width, height, mipmaps);
}

void RecordingRenderDevice::destroyTexture(Texture* texture)
{
    handBack(textures, formerTextures, texture);
    if (texture != nullptr) firstUnit = nullptr;
}

VertexBuffer* RecordingRenderDevice::createVertexBuffer(bool dynamic)
{
    record("createVertexBuffer", dynamic);
    if (!makesResources) return nullptr;
    return &buffers.emplace_back(*this, dynamic);
}

void RecordingRenderDevice::destroyVertexBuffer(VertexBuffer* buffer)
{
    handBack(buffers, formerBuffers, buffer);
}

void RecordingRenderDevice::setViewport(int x, int y, int width, int height, int screenHeight)
{
    record("setViewport", x, y, width, height, screenHeight);
}

void RecordingRenderDevice::setScissor(int x, int y, int width, int height, int screenHeight)
{
    record("setScissor", x, y, width, height, screenHeight);
}

void RecordingRenderDevice::clear(bool color, bool depth, bool stencil)
{
    record("clear", color, depth, stencil);
}

void RecordingRenderDevice::enable(RenderFeature feature)
{
    record("enable", static_cast<int>(feature));
}

void RecordingRenderDevice::disable(RenderFeature feature)
{
    record("disable", static_cast<int>(feature));
}

void RecordingRenderDevice::bindRenderTarget(RenderTarget*, TargetBinding binding)
{
    record("bindRenderTarget", static_cast<int>(binding));
}

void RecordingRenderDevice::useProgram(Program*)
{
    record("useProgram");
}

void RecordingRenderDevice::bindTexture(int unit, Texture* texture)
{
    if (texture == nullptr)
        record("bindTexture", unit, "null");
    else
        record("bindTexture", unit, "texture", texture->getHandle());
    if (unit == 0 && texture != nullptr) firstUnit = texture;
}

void RecordingRenderDevice::setDepthFunction(DepthFunction function)
{
    record("setDepthFunction", static_cast<int>(function));
}

void RecordingRenderDevice::setCullMode(CullMode mode)
{
    record("setCullMode", static_cast<int>(mode));
}

void RecordingRenderDevice::setBlendMode(BlendMode mode)
{
    record("setBlendMode", static_cast<int>(mode));
}

void RecordingRenderDevice::setStencilFunction(CompareFunction function, unsigned char reference, unsigned char mask)
{
    record("setStencilFunction", static_cast<int>(function), int{reference}, int{mask});
}

void RecordingRenderDevice::setStencilOperation(StencilOperation stencilFail, StencilOperation depthFail,
                                                StencilOperation depthPass)
{
    record("setStencilOperation", static_cast<int>(stencilFail), static_cast<int>(depthFail),
           static_cast<int>(depthPass));
}

RenderDevice& RecordingRenderDevice::setUniform(const std::string& name, const Matrix4<float>& value)
{
    return recordUniform(name, "Matrix4", value);
}

RenderDevice& RecordingRenderDevice::setUniform(const std::string& name, const Matrix3<float>& value)
{
    return recordUniform(name, "Matrix3", value);
}

RenderDevice& RecordingRenderDevice::setUniform(const std::string& name, const Vector4<float>& value)
{
    return recordUniform(name, "Vector4", value);
}

RenderDevice& RecordingRenderDevice::setUniform(const std::string& name, const Vector3<float>& value)
{
    return recordUniform(name, "Vector3", value);
}

RenderDevice& RecordingRenderDevice::setUniform(const std::string& name, const Vector2<float>& value)
{
    return recordUniform(name, "Vector2", value);
}

RenderDevice& RecordingRenderDevice::setUniform(const std::string& name, float value)
{
    return recordUniform(name, "float", value);
}

RenderDevice& RecordingRenderDevice::setUniform(const std::string& name, int value)
{
    return recordUniform(name, "int", value);
}

void RecordingRenderDevice::swap(Window*)
{
    record("swap");
}
