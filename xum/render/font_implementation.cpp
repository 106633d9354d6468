#include <xum/render/font_implementation.h>

#include <xum/engine/log.h>
#include <xum/render/image.h>
#include <xum/render/image_header.h>
#include <xum/render/render_device.h>
#include <xum/render/texture.h>

#include <SDL.h>

#include <cstdio>
#include <memory>
#include <new>

namespace {

struct FreeSurface {
    void operator()(SDL_Surface* surface) const { SDL_FreeSurface(surface); }
};

std::unique_ptr<Image> imageFromSurface(SDL_Surface* rendered)
{
    const std::unique_ptr<SDL_Surface, FreeSurface> surface(rendered);
    if (!surface) return nullptr;
    return std::make_unique<Image>(surface->w, surface->h, surface->pitch, surface->format,
                                   static_cast<const unsigned char*>(surface->pixels), false);
}

} // namespace

Vector2<int> FontImplementation::measure(const std::string& text)
{
    int width = 0;
    int height = 0;
    TTF_SizeText(handle.get(), text.c_str(), &width, &height);
    return {width, height};
}

Texture* FontImplementation::render(RenderDevice* device, const std::string& text)
{
    const Vector2<int> size = measure(text);
    if (device == nullptr || isTooLargeToDecode(size.x, size.y)) return nullptr;
    try {
        const SDL_Color white = {255, 255, 255, 255};
        const std::unique_ptr<Image> image =
            imageFromSurface(TTF_RenderText_Blended(handle.get(), text.c_str(), white));
        if (!image) return nullptr;
        Texture* texture = device->createTexture(image->getWidth(), image->getHeight(), false);
        if (texture != nullptr) texture->update(image->getPixels());
        return texture;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

Font* loadFont(const std::string& fileName, int pointSize)
{
    TTF_Font* handle = nullptr;
    if (fileName.find('\0') == std::string::npos)
        handle = TTF_OpenFont(fileName.c_str(), pointSize);
    else
        SDL_SetError("a file name cannot hold a NUL"); // the system would open a file of another name
    if (handle == nullptr) {
        std::printf("TTF_OpenFont: %s\n", SDL_GetError());
        warning("Could not load font (" + fileName + ")!");
        return nullptr;
    }
    return new FontImplementation(handle);
}

void destroyFont(Font* font)
{
    delete static_cast<FontImplementation*>(font);
}
