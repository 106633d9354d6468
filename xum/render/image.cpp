#include <xum/render/image.h>

#include <xum/engine/log.h>
#include <xum/files/sdl_file_name.h>
#include <xum/render/pixel_conversion.h>

#include <SDL.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>

namespace {

/// False for a negative size and for one whose bytes cannot be counted.
bool isUsableSize(int width, int height)
{
    constexpr std::uint64_t mostPixels = std::numeric_limits<std::ptrdiff_t>::max() / sizeof(Pixel);
    if (width < 0 || height < 0) return false;
    return static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height) <= mostPixels;
}

std::size_t pixelCount(const Image& image)
{
    return static_cast<std::size_t>(image.getWidth()) * static_cast<std::size_t>(image.getHeight());
}

/// The part of [start, start + size) that lies inside [0, limit), in 64 bits: start + size may not fit an int.
struct Span {
    std::int64_t begin;
    std::int64_t end;
    Span(int start, int size, int limit)
        : begin(std::max<std::int64_t>(start, 0)), end(std::min<std::int64_t>(std::int64_t{start} + size, limit))
    {}
    bool isEmpty() const { return begin >= end; }
};

} // namespace

void Image::FreePixels::operator()(Pixel* pixels) const
{
    ::operator delete(pixels);
}

Image::Image(int width, int height, bool hasAlpha)
    : width(isUsableSize(width, height) ? width : 0), height(isUsableSize(width, height) ? height : 0), alpha(hasAlpha)
{
    // Raw memory: nearly every image is filled at once, and a first pass over fresh pages costs as much as that
    // filling.
    pixels.reset(static_cast<Pixel*>(::operator new(pixelCount(*this) * sizeof(Pixel))));
}

Image::Image(int width, int height, int pitch, const SDL_PixelFormat* format, const unsigned char* data, bool hasAlpha)
    : Image(width, height, hasAlpha)
{
    const std::size_t count = pixelCount(*this);
    if (data == nullptr) {
        std::fill_n(pixels.get(), count, Pixel());
    } else if (format == nullptr) {
        std::memcpy(pixels.get(), data, count * sizeof(Pixel));
    } else {
        const bool isTranslucent = convertPixels(pixels.get(), this->width, this->height, pitch, *format, data);
        alpha = alpha || isTranslucent;
    }
}

Image::Image(const Image& other) : Image(other.width, other.height, other.alpha)
{
    std::memcpy(pixels.get(), other.pixels.get(), pixelCount(*this) * sizeof(Pixel));
}

Image::~Image() = default;

const Pixel& Image::getPixel(int x, int y) const
{
    static const Pixel outside;
    if (x < 0 || x >= width || y < 0 || y >= height) return outside;
    return pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)];
}

Image* Image::getSub(int x, int y, int subWidth, int subHeight) const
{
    try {
        std::unique_ptr<Image> sub(new Image(std::max(subWidth, 0), std::max(subHeight, 0), false));
        const Span columns(x, sub->width, width);
        const Span rows(y, sub->height, height);
        const bool isWhollyInside = columns.begin == x && columns.end == std::int64_t{x} + sub->width &&
                                    rows.begin == y && rows.end == std::int64_t{y} + sub->height;
        if (!isWhollyInside) std::fill_n(sub->pixels.get(), pixelCount(*sub), Pixel());
        if (columns.isEmpty() || rows.isEmpty()) return sub.release();

        const std::size_t length = static_cast<std::size_t>(columns.end - columns.begin);
        bool isTranslucent = false;
        for (std::int64_t row = rows.begin; row < rows.end; ++row) {
            const Pixel* source = pixels.get() + row * width + columns.begin;
            Pixel* target = sub->pixels.get() + (row - y) * sub->width + (columns.begin - x);
            std::memcpy(target, source, length * sizeof(Pixel));
            isTranslucent = hasTranslucentPixel(source, length) || isTranslucent;
        }
        sub->alpha = isTranslucent;
        return sub.release();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

Image* Image::clone() const
{
    try {
        return new Image(*this);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

bool Image::writeToFile(const std::string& fileName) const
{
    if (fileName.rfind(".bmp") == std::string::npos) {
        warning("Image::writeToFile() -> Only 'BMP' supported for now!");
        return false;
    }
    if (fileName.find('\0') != std::string::npos) return false; // the system would write a file of another name
    // 64 bits: the pitch of an image wider than 2^29 pixels does not fit SDL's int.
    const std::int64_t pitch = std::int64_t{width} * static_cast<std::int64_t>(sizeof(Pixel));
    if (pitch > std::numeric_limits<int>::max()) return false;
    SDL_Surface* surface = SDL_CreateRGBSurfaceFrom(pixels.get(), width, height, 32, static_cast<int>(pitch),
                                                    0x000000FFu, 0x0000FF00u, 0x00FF0000u, 0xFF000000u);
    if (surface == nullptr) return false;
    const bool isSaved = SDL_SaveBMP_RW(surface, SDL_RWFromFile(SdlFileName(fileName).get(), "wb"), 1) == 0;
    SDL_FreeSurface(surface);
    return isSaved;
}
