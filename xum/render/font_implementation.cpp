#include <xum/render/font_implementation.h>

#include <xum/engine/log.h>
#include <xum/files/sdl_file_name.h>
#include <xum/render/image.h>
#include <xum/render/image_header.h>
#include <xum/render/render_device.h>
#include <xum/render/texture.h>

#include <SDL.h>

#include <cstdint>
#include <cstdio>
#include <memory>
#include <new>

namespace {

constexpr int largestTexture = 32768; // in either direction, on any hardware

/// SDL_ttf would do the same on the stack, which a long text overflows.
std::string toUtf8(const std::string& latin1)
{
    std::string text;
    text.reserve(latin1.size());
    for (const char c : latin1) {
        const unsigned code = static_cast<unsigned char>(c);
        if (code < 0x80) {
            text += c;
        } else {
            text += static_cast<char>(0xC0 | code >> 6);
            text += static_cast<char>(0x80 | (code & 0x3F));
        }
    }
    return text;
}

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
    TTF_SizeUTF8(handle.get(), toUtf8(text).c_str(), &width, &height);
    return {width, height};
}

bool FontImplementation::isTooLarge(const std::string& text)
{
    // In parts, because SDL_ttf adds up 64ths of pixels in an int: that of a whole text may overflow.
    constexpr std::size_t partLength = 256;
    std::int64_t width = 0;
    for (std::size_t start = 0; start < text.size(); start += partLength) {
        width += measure(text.substr(start, partLength)).x;
        if (width > 2 * largestTexture) return true; // the parts may be a little wider than the whole
    }
    const Vector2<int> size = measure(text);
    return size.x > largestTexture || size.y > largestTexture || isTooLargeToDecode(size.x, size.y);
}

Texture* FontImplementation::render(RenderDevice* device, const std::string& text)
{
    if (device == nullptr) return nullptr;
    try {
        const std::string line = text.substr(0, text.find('\0'));
        if (isTooLarge(line)) return nullptr;
        const SDL_Color white = {255, 255, 255, 255};
        const std::unique_ptr<Image> image =
            imageFromSurface(TTF_RenderUTF8_Blended(handle.get(), toUtf8(line).c_str(), white));
        if (!image) return nullptr;
        const auto destroy = [device](Texture* texture) { device->destroyTexture(texture); };
        std::unique_ptr<Texture, decltype(destroy)> texture(
            device->createTexture(image->getWidth(), image->getHeight(), false), destroy);
        if (texture) texture->update(image->getPixels());
        return texture.release();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

Font* loadFont(const std::string& fileName, int pointSize)
{
    TTF_Font* handle = nullptr;
    if (fileName.find('\0') == std::string::npos)
        handle = TTF_OpenFont(SdlFileName(fileName).get(), pointSize);
    else
        SDL_SetError("a file name cannot hold a NUL"); // the system would open a file of another name
    if (handle == nullptr) {
        std::printf("TTF_OpenFont: %s\n", SDL_GetError());
        std::fflush(stdout); // the box keeps the program waiting
        warning("Could not load font (" + fileName + ")!");
        return nullptr;
    }
    Font* font = new (std::nothrow) FontImplementation(handle);
    if (font == nullptr) TTF_CloseFont(handle);
    return font;
}

void destroyFont(Font* font)
{
    delete static_cast<FontImplementation*>(font);
}
