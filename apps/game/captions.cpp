#include "captions.h"

#include <xum/render/quad.h>
#include <xum/render/texture.h>

#include <algorithm>

namespace {

constexpr int textUnit = 0;
constexpr int margin = 4;            // pixels, to the left and right of the widest
constexpr float shadowOffset = 1.0f; // pixels
constexpr float shadowStrength = 0.7f;

} // namespace

Captions::Captions(RenderDevice& device, Program* program, const std::string& fontFile, int pointSize)
    : device(device), program(program), font(loadFont(fontFile, pointSize))
{}

Texture* Captions::getTexture(const std::string& text)
{
    const auto known = textures.find(text);
    if (known != textures.end()) return known->second.get();
    OwnedTexture made(font ? font->render(&device, text) : nullptr, {&device});
    if (made) made->setFilter(TextureFilter::Linear);
    return textures.emplace(text, std::move(made)).first->second.get();
}

int Captions::draw(const std::string& text, const Vector2<int>& screenSize, int bottom, const Vector3<float>& color,
                   DrawCounter& draws)
{
    Texture* texture = getTexture(text);
    if (texture == nullptr) return 0;
    // Whole pixels, so that each shows one of the texture.
    const int width = std::min(texture->getWidth(), std::max(screenSize.x - 2 * margin, 1));
    const int height = std::max(texture->getHeight() * width / texture->getWidth(), 1);
    const int left = (screenSize.x - width) / 2;
    const Vector2<float> corner = {static_cast<float>(left), static_cast<float>(bottom)};
    const Vector2<float> size = {static_cast<float>(width), static_cast<float>(height)};
    device.useProgram(program);
    device.bindTexture(textUnit, texture);
    device.setUniform("surface", textUnit)
        .setUniform("screenSize", Vector2<float>(static_cast<float>(screenSize.x), static_cast<float>(screenSize.y)));
    drawAt({corner.x + shadowOffset, corner.y - shadowOffset}, size, {0, 0, 0, shadowStrength});
    drawAt(corner, size, {color.x, color.y, color.z, 1});
    draws.add(2);
    return height;
}

void Captions::drawAt(const Vector2<float>& corner, const Vector2<float>& size, const Vector4<float>& color)
{
    device.setUniform("corner", corner).setUniform("size", size).setUniform("textColor", color);
    drawQuad(&device, corner.x, corner.y, size.x, size.y);
}
