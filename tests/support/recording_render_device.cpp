#include "recording_render_device.h"

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

template <class Values>
void RecordingVertexBuffer::keep(const char* call, int location, const Values& values)
{
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
    calls.push_back(describe("setIndices", values.size()));
    indices = values;
}

void RecordingVertexBuffer::drawLines(int first, int count)
{
    calls.push_back(describe("drawLines", first, count));
}

void RecordingVertexBuffer::drawTriangles(int first, int count)
{
    calls.push_back(describe("drawTriangles", first, count));
}

void RecordingVertexBuffer::drawTriangleFan(int first, int count)
{
    calls.push_back(describe("drawTriangleFan", first, count));
}

template <class... Values>
void RecordingRenderDevice::record(const char* call, const Values&... values)
{
    calls.push_back(describe(call, values...));
}

template <class Values>
RenderDevice& RecordingRenderDevice::recordUniform(const std::string& name, const char* type, const Values& value)
{
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

Texture* RecordingRenderDevice::createTexture(int width, int height, bool mipmaps)
{
    record("createTexture", width, height, mipmaps);
    return nullptr;
}

void RecordingRenderDevice::destroyTexture(Texture*)
{
    record("destroyTexture");
}

VertexBuffer* RecordingRenderDevice::createVertexBuffer(bool dynamic)
{
    record("createVertexBuffer", dynamic);
    buffers.push_back(std::make_unique<RecordingVertexBuffer>(dynamic));
    return buffers.back().get();
}

void RecordingRenderDevice::destroyVertexBuffer(VertexBuffer* buffer)
{
    const auto found = std::find_if(buffers.begin(), buffers.end(), [buffer](const auto& owned) {
        return static_cast<VertexBuffer*>(owned.get()) == buffer;
    });
    EXPECT_TRUE(buffer == nullptr || found != buffers.end()) << "a buffer that is not this device's";
    if (found != buffers.end()) buffers.erase(found);
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

void RecordingRenderDevice::bindTexture(int unit, Texture*)
{
    record("bindTexture", unit);
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
