#pragma once

#include <xum/engine/export.h>
#include <xum/render/render_types.h>

class Image;

/// A two-dimensional texture. Made by RenderDevice::createTexture or together with a render target; only the device
/// destroys it. Until it is updated or drawn to, its contents are undefined, and one with mipmaps samples as black.
/// New textures filter Nearest and clamp both coordinates. Slot order is ABI.
class XUM_API Texture {
public:
    /// The graphics library's name of the texture.
    virtual unsigned int getHandle() = 0;

    /// The format that it was made with.
    virtual const TextureFormat& getFormat() = 0;

    /// In pixels.
    /// @{
    virtual int getWidth() = 0;
    virtual int getHeight() = 0;
    /// @}

    /// Sets both filters, through the mipmaps where there are any. Anisotropic is a fatal error:
    /// "Texture::setFilter() -> Anisotropic not implemented!". Other values change nothing.
    virtual void setFilter(TextureFilter::Type filter) = 0;

    /// For each coordinate: true clamps to the edge, false repeats.
    virtual void setClamp(bool clampS, bool clampT) = 0;

    /// Replaces the whole image by width x height 8-bit RGBA pixels, whatever the format was, and rebuilds the mipmaps.
    /// The first row sent is at texture coordinate v = 0: for an Image that is its top row. Null only allocates.
    virtual void update(const void* rgbaPixels) = 0;

    /// Reads the texture back as 8-bit RGBA; the caller owns the image. A rendered target has its bottom row first:
    /// flip it for an upright image. A depth texture reads as zeroes. Null when memory runs out, and
    /// for a texture of a render target whose size is impossible.
    virtual Image* toImage(bool flipVertically) = 0;

    virtual ~Texture() = default;
};
