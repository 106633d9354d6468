#include <xum/render/pixel_conversion.h>

#include <xum/render/image.h>

#include <SDL.h>

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace {

/// Where the channels of a format with whole bytes lie inside a pixel.
struct ByteLayout {
    int red;
    int green;
    int blue;
    int alpha; // -1: there is none, all pixels are opaque
};

/// False when a channel is not exactly one byte, the format has a palette, or there is alpha in only three bytes.
bool findByteLayout(const SDL_PixelFormat& format, ByteLayout& out)
{
    if (format.palette != nullptr || (format.BytesPerPixel != 3 && format.BytesPerPixel != 4)) return false;
    const auto byteOf = [&](Uint32 mask, Uint8 shift, Uint8 loss) {
        const bool isWholeByte = loss == 0 && shift % 8 == 0 && mask == Uint32{0xFF} << shift;
        if (!isWholeByte || shift / 8 >= format.BytesPerPixel) return -1;
        return SDL_BYTEORDER == SDL_LIL_ENDIAN ? shift / 8 : format.BytesPerPixel - 1 - shift / 8;
    };
    out.red = byteOf(format.Rmask, format.Rshift, format.Rloss);
    out.green = byteOf(format.Gmask, format.Gshift, format.Gloss);
    out.blue = byteOf(format.Bmask, format.Bshift, format.Bloss);
    if (format.BytesPerPixel == 3 && format.Amask != 0) return false;
    out.alpha = format.Amask == 0 ? -1 : byteOf(format.Amask, format.Ashift, format.Aloss);
    const bool isAlphaUnderstood = format.Amask == 0 || out.alpha >= 0;
    return out.red >= 0 && out.green >= 0 && out.blue >= 0 && isAlphaUnderstood;
}

// One loop body for each pixel size and for with or without alpha, so that the compiler can vectorise it.
template <int bytesPerPixel, bool hasAlpha>
void convertRow(Pixel* out, const unsigned char* in, int width, const ByteLayout& layout)
{
    for (int x = 0; x < width; ++x, in += bytesPerPixel) {
        Pixel pixel;
        pixel.red = in[layout.red];
        pixel.green = in[layout.green];
        pixel.blue = in[layout.blue];
        if constexpr (hasAlpha) pixel.alpha = in[layout.alpha];
        out[x] = pixel;
    }
}

// What PNG and JPEG files decode to. Four bytes are moved for each pixel but the last, whose fourth byte may lie behind
// the end of the data.
void convertRgbRow(Pixel* out, const unsigned char* in, int width)
{
    constexpr unsigned char opaqueBytes[sizeof(Pixel)] = {0, 0, 0, 255};
    std::uint32_t opaque = 0;
    std::memcpy(&opaque, opaqueBytes, sizeof opaque);
    for (int x = 0; x + 1 < width; ++x, in += 3) {
        std::uint32_t bytes = 0;
        std::memcpy(&bytes, in, sizeof bytes);
        bytes |= opaque;
        std::memcpy(static_cast<void*>(out + x), &bytes, sizeof bytes);
    }
    if (width > 0) out[width - 1] = Pixel{in[0], in[1], in[2], 255};
}

constexpr ByteLayout rgbaLayout = {0, 1, 2, 3};

bool isRgba(const ByteLayout& layout)
{
    return layout.red == rgbaLayout.red && layout.green == rgbaLayout.green && layout.blue == rgbaLayout.blue &&
           layout.alpha == rgbaLayout.alpha;
}

void convertBytes(Pixel* out, const unsigned char* in, int width, int bytesPerPixel, const ByteLayout& layout)
{
    constexpr ByteLayout rgb = {0, 1, 2, -1};
    const bool isRgb = layout.red == rgb.red && layout.green == rgb.green && layout.blue == rgb.blue;
    if (isRgba(layout))
        std::memcpy(out, in, static_cast<std::size_t>(width) * sizeof(Pixel));
    else if (bytesPerPixel == 3 && isRgb)
        convertRgbRow(out, in, width);
    else if (bytesPerPixel == 3)
        convertRow<3, false>(out, in, width, layout);
    else if (layout.alpha >= 0)
        convertRow<4, true>(out, in, width, layout);
    else
        convertRow<4, false>(out, in, width, layout);
}

// SDL reads 32 bits at each pixel; a shorter pixel is copied out first, for its last bytes may end the buffer.
void convertWithSDL(Pixel* out, const unsigned char* in, int width, const SDL_PixelFormat& format)
{
    const std::size_t size = std::min<std::size_t>(format.BytesPerPixel, sizeof(Uint32));
    for (int x = 0; x < width; ++x, in += format.BytesPerPixel) {
        unsigned char bytes[sizeof(Uint32)] = {};
        std::memcpy(SDL_BYTEORDER == SDL_LIL_ENDIAN ? bytes : bytes + sizeof(Uint32) - size, in, size);
        Uint32 value = 0;
        std::memcpy(&value, bytes, sizeof value);
        SDL_GetRGBA(value, &format, &out[x].red, &out[x].green, &out[x].blue, &out[x].alpha);
    }
}

} // namespace

bool convertPixels(Pixel* out, int width, int height, int pitch, const SDL_PixelFormat& format,
                   const unsigned char* data)
{
    ByteLayout layout = {};
    const bool hasByteLayout = findByteLayout(format, layout);
    const bool canBeTranslucent = !hasByteLayout || layout.alpha >= 0;
    bool isTranslucent = false;
    for (int y = 0; y < height; ++y, out += width, data += pitch) {
        if (hasByteLayout)
            convertBytes(out, data, width, format.BytesPerPixel, layout);
        else
            convertWithSDL(out, data, width, format);
        if (canBeTranslucent && !isTranslucent)
            isTranslucent = hasTranslucentPixel(out, static_cast<std::size_t>(width));
    }
    return isTranslucent;
}

bool hasTranslucentPixel(const Pixel* pixels, std::size_t count)
{
    // The smallest alpha decides: a loop without an early way out runs many pixels at a time.
    unsigned char smallest = 255;
    for (std::size_t i = 0; i < count; ++i) smallest = std::min(smallest, pixels[i].alpha);
    return smallest < 255;
}
