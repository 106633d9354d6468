#pragma once

#include <xum/render/font.h>

#include <SDL_ttf.h>

#include <memory>

/// By SDL_ttf.
class FontImplementation final : public Font {
public:
    /// Owns the handle.
    explicit FontImplementation(TTF_Font* handle) : handle(handle) {}

    Vector2<int> measure(const std::string& text) override;
    Texture* render(RenderDevice* device, const std::string& text) override;

private:
    /// Whether no texture can hold the text.
    bool isTooLarge(const std::string& text);

    struct CloseFont {
        void operator()(TTF_Font* font) const { TTF_CloseFont(font); }
    };

    std::unique_ptr<TTF_Font, CloseFont> handle;
};
