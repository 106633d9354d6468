#pragma once

#include <string>

struct SDL_Surface;

/// Writes a picture as PNG, in its own pixel format; an older file is replaced when the new one is whole. Returns what
/// went wrong, else nothing.
std::string writePNGFile(const std::string& fileName, SDL_Surface& picture);
