#include <xum/render/image.h>

#include <xum/engine/log.h>
#include <xum/files/sdl_file_name.h>
#include <xum/render/image_header.h>

#include <SDL.h>
#include <SDL_image.h>

#include <limits>
#include <memory>
#include <new>

namespace {

struct FreeSurface {
    void operator()(SDL_Surface* surface) const { SDL_FreeSurface(surface); }
};

Image* imageFromSurface(SDL_Surface* loaded)
{
    const std::unique_ptr<SDL_Surface, FreeSurface> surface(loaded);
    if (!surface || isTooLargeToDecode(surface->w, surface->h)) return nullptr;
    const int bits = surface->format->BitsPerPixel;
    if (bits != 24 && bits != 32) error("Only 24 and 32 bit images are supported!");
    try {
        return new Image(surface->w, surface->h, surface->pitch, surface->format,
                         static_cast<const unsigned char*>(surface->pixels), false);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

/// Looks at the header before the decoder may allocate what it asks for. The source is read from its start and closed.
bool isWorthDecoding(SDL_RWops* source)
{
    if (source == nullptr) return false;
    const bool isWorthIt = isImageHeaderBelievable(source);
    SDL_RWclose(source);
    return isWorthIt;
}

} // namespace

Image* loadImage(const std::string& fileName)
{
    if (fileName.find('\0') != std::string::npos) return nullptr; // the system would open a file of another name
    const SdlFileName name(fileName);
    if (!isWorthDecoding(SDL_RWFromFile(name.get(), "rb"))) return nullptr;
    return imageFromSurface(IMG_Load(name.get()));
}

Image* loadImageFromMemory(const std::vector<unsigned char>& data)
{
    if (data.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) return nullptr;
    const int size = static_cast<int>(data.size());
    if (!isWorthDecoding(SDL_RWFromConstMem(data.data(), size))) return nullptr;
    return imageFromSurface(IMG_Load_RW(SDL_RWFromConstMem(data.data(), size), 1));
}
