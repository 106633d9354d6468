#pragma once

#include "text_program.h"

/// Fills the picture with a dark gradient: a window that is cleared is black.
class Backdrop {
public:
    explicit Backdrop(RenderDevice* device) : device(device) {}
    ~Backdrop() { device->destroyProgram(program); }
    Backdrop(const Backdrop&) = delete;
    Backdrop& operator=(const Backdrop&) = delete;

    /// Sets the viewport and clears; afterwards nearer things hide farther ones, and there is no blending.
    void begin(const Vector2<int>& size)
    {
        device->setViewport(0, 0, size.x, size.y, size.y);
        device->setBlendMode(BlendMode::None);
        device->setCullMode(CullMode::None);
        device->disable(RenderFeature::DepthTest);
        device->clear(true, true, false);
        device->useProgram(program);
        device->setUniform("height", static_cast<float>(size.y));
        drawFullscreenQuad(device);
        device->enable(RenderFeature::DepthTest);
    }

private:
    const std::string vertexText = R"(#version 150
in vec3 position;
void main() { gl_Position = vec4(position, 1.0); }
)";

    const std::string fragmentText = R"(#version 150
uniform float height;
out vec4 color;
void main() { color = vec4(mix(vec3(0.11, 0.12, 0.16), vec3(0.22, 0.26, 0.36), gl_FragCoord.y / height), 1.0); }
)";

    RenderDevice* device;
    Program* program = makeProgram(device, vertexText, fragmentText);
};
