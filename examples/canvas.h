#pragma once

#include "text_program.h"

/// Flat shapes, pictures and text in window pixels, y downwards. Examples whose subject is something else draw with it.
class Canvas {
public:
    explicit Canvas(RenderDevice* device) : device(device)
    {
        const Pixel pixel{255, 255, 255, 255};
        white = device->createTexture(1, 1, false);
        white->update(&pixel);
        font = loadImageFont(device, defaultDataRoot() + "fonts/hud.png", 12, 19, 16, 32, true);
        if (font != nullptr) font->setFilter(device, TextureFilter::Linear); // it is drawn at any scale
    }

    /// Before the device is destroyed.
    ~Canvas()
    {
        destroyImageFont(device, font);
        device->destroyTexture(white);
        device->destroyProgram(program);
    }

    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    /// Covers the window, or what else of that size is bound, with the dark background.
    void begin(const Vector2<int>& size)
    {
        device->setViewport(0, 0, size.x, size.y, size.y);
        device->clear(true, true, false);
        over(size);
        fill(0, 0, static_cast<float>(size.x), static_cast<float>(size.y), {0.09f, 0.11f, 0.15f, 1});
    }

    /// Draws over what is there already.
    void over(const Vector2<int>& size)
    {
        device->disable(RenderFeature::DepthTest);
        device->setCullMode(CullMode::None);
        device->setBlendMode(BlendMode::Alpha);
        device->useProgram(program);
        device->setUniform("size", Vector2<float>(static_cast<float>(size.x), static_cast<float>(size.y)));
    }

    /// Prepares for shapes in one colour, those of debug_shapes.h for example.
    void use(const Vector4<float>& color)
    {
        device->bindTexture(0, white);
        device->setUniform("tint", color).setUniform("rectangle", Vector4<float>());
    }

    void fill(float x, float y, float width, float height, const Vector4<float>& color)
    {
        use(color);
        drawQuad(device, x, y, width, height);
    }

    void draw(Texture* texture, float x, float y, float width, float height,
              const Vector4<float>& tint = Vector4<float>(1, 1, 1, 1))
    {
        device->bindTexture(0, texture);
        device->setUniform("tint", tint).setUniform("rectangle", Vector4<float>(x, y, width, height));
        drawQuad(device, x, y, width, height);
    }

    void write(int x, int y, const std::string& text, const Vector4<float>& color, float scale = 1, bool center = false)
    {
        if (font == nullptr) return;
        use(color);
        font->drawScaled(device, x, y, text, scale, center, center);
    }

private:
    // What texts bring as texture coordinates, pictures take from their place in the rectangle.
    const std::string vertexText = R"(#version 150
in vec3 position;
in vec2 textureCoordinate;
uniform vec2 size;
uniform vec4 rectangle;
out vec2 place;
void main()
{
    place = rectangle.z > 0.0 ? (position.xy - rectangle.xy) / rectangle.zw : textureCoordinate;
    gl_Position = vec4(position.x / size.x * 2.0 - 1.0, 1.0 - position.y / size.y * 2.0, 0.0, 1.0);
}
)";

    const std::string fragmentText = R"(#version 150
in vec2 place;
uniform sampler2D picture;
uniform vec4 tint;
out vec4 color;
void main() { color = texture(picture, place) * tint; }
)";

    RenderDevice* device;
    Program* program = makeProgram(device, vertexText, fragmentText);
    Texture* white = nullptr;
    ImageFont* font = nullptr;
};
