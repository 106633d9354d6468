#include "program_check.h"

#include "owned.h"

#include <xum/geometry/matrix.h>
#include <xum/geometry/vector.h>
#include <xum/render/image.h>
#include <xum/render/render_target.h>
#include <xum/render/shader.h>
#include <xum/render/texture.h>
#include <xum/render/vertex_buffer.h>

#include <string>
#include <vector>

namespace {

const std::string vertexSource = R"(#version 150
in vec3 position;
void main() { gl_Position = vec4(position, 1.0); }
)";

const std::string fragmentSource = R"(#version 150
out vec4 color;
void main() { color = vec4(0.2, 0.4, 0.6, 1.0); }
)";

constexpr Pixel mark = {51, 102, 153, 255}; // the colour above; no program of the game draws just that here

OwnedProgram makeMarkProgram(RenderDevice& device)
{
    const auto compile = [&](ShaderType type, const std::string& source) {
        const std::vector<char> text(source.c_str(), source.c_str() + source.size() + 1);
        return OwnedShader(device.createShader(type, "program check", text), {&device});
    };
    const OwnedShader vertexShader = compile(ShaderType::Vertex, vertexSource);
    const OwnedShader fragmentShader = compile(ShaderType::Fragment, fragmentSource);
    return {device.createProgram({vertexShader.get(), fragmentShader.get()}, {"position"}, {"color"}), {&device}};
}

} // namespace

// A program that is not linked cannot be made current: the one before it stays, here the one that leaves the mark.
bool canDraw(RenderDevice& device, Program* program)
{
    constexpr int size = 2;
    const OwnedTarget target(device.createRenderTarget(size, size, {TextureFormat()}), {&device});
    const OwnedBuffer triangle(device.createVertexBuffer(false), {&device});
    const OwnedProgram markProgram = makeMarkProgram(device);
    if (program == nullptr || !target || !triangle || !markProgram) return false;
    triangle->setAttribute(VertexAttribute::Position, std::vector<Vector3<float>>{{-1, -1, 0}, {3, -1, 0}, {-1, 3, 0}});

    device.setViewport(0, 0, size, size, size);
    device.clear(true, false, false);
    device.useProgram(markProgram.get());
    device.useProgram(program);
    device.setUniform("world", Matrix4<float>()).setUniform("viewProjection", Matrix4<float>());
    triangle->drawTriangles();
    const std::unique_ptr<Image> picture(target->getTexture(0)->toImage(true));
    device.bindRenderTarget(nullptr, TargetBinding::Both);
    return picture && picture->getPixel(0, 0) != mark;
}
