#pragma once

#include <cstdint>

struct SDL_RWops;

/// More than 2^28 pixels: a gibibyte of RGBA.
bool isTooLargeToDecode(std::int64_t width, std::int64_t height);

/// Reads the size that a PNG, BMP or JPEG header promises and says whether decoding can end well: not too many pixels,
/// and no more than a file of this length can hold. A decoder allocates by the header alone, so that a file of 65 bytes
/// could cost gigabytes. A PNG must also be there to its last chunk: the decoder may run for ever at the end of one
/// that was cut off. Of GIF, PCX and PNM only the number of pixels is looked at; any other format passes. Leaves the
/// source anywhere.
bool isImageHeaderBelievable(SDL_RWops* source);
