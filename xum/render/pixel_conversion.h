#pragma once

#include <cstddef>

struct Pixel;
struct SDL_PixelFormat;

/// Converts `height` rows of `width` pixels, each row `pitch` bytes after the one before, to RGBA. Every pixel comes
/// out as SDL_GetRGBA gives it; no byte beyond a row's last pixel is read. True when some alpha is below 255.
bool convertPixels(Pixel* out, int width, int height, int pitch, const SDL_PixelFormat& format,
                   const unsigned char* data);

/// Whether some pixel's alpha is below 255.
bool hasTranslucentPixel(const Pixel* pixels, std::size_t count);
