#pragma once

/// @file
/// TrueType fonts: how they are opened, and text as a texture.

#include <xum/engine/export.h>
#include <xum/geometry/vector.h>

#include <string>

class RenderDevice;
class Texture;

/// A TrueType font at one size. Text is one line of Latin-1 characters, one a byte, up to the first NUL. Slot order is
/// ABI.
class XUM_API Font {
public:
    /// Width and height in pixels of the rendered text.
    virtual Vector2<int> measure(const std::string& text) = 0;

    /// A new texture of the text's size without mipmaps: white everywhere, with the letters in its alpha, so that the
    /// program that draws it chooses the colour. The caller gives it back to RenderDevice::destroyTexture. Null for
    /// text of no width, text that is larger than a texture can be, and from a device that makes none.
    virtual Texture* render(RenderDevice* device, const std::string& text) = 0;

protected:
    ~Font() = default;
};

/// Opens a font file at a size in points (1/72 inch at 72 dots an inch: pixels). The caller hands it to destroyFont
/// before the engine is shut down. Null when it cannot be opened; then standard output has the line
/// "TTF_OpenFont: REASON", and there is a warning: "Could not load font (FILENAME)!".
XUM_API Font* loadFont(const std::string& fileName, int pointSize);

/// Null is ignored.
XUM_API void destroyFont(Font* font);
