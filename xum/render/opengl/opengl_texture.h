#pragma once

#include <xum/render/texture.h>

namespace OpenGL {

class TextureUnits;

class Texture final : public ::Texture {
public:
    /// Allocates the texture, without data, and leaves it bound to unit 0, the active one from then on. An invalid
    /// format is a fatal error. The units outlive the texture.
    Texture(TextureUnits& units, int width, int height, const TextureFormat& format, bool mipmaps);

    /// Makes the units forget all that they hold: OpenGL unbinds a deleted texture, and the next one may stand at its
    /// address.
    ~Texture() override;

    Texture(const Texture&) = delete;
    Texture& operator=(const Texture&) = delete;

    /// False when the size is one that OpenGL cannot have: the texture then holds nothing and cannot be filled.
    bool hasStorage() const { return isAllocated; }

    unsigned int getHandle() override;
    const TextureFormat& getFormat() override;
    int getWidth() override;
    int getHeight() override;
    void setFilter(TextureFilter::Type filter) override;
    void setClamp(bool clampS, bool clampT) override;
    void update(const void* rgbaPixels) override;
    Image* toImage(bool flipVertically) override;

private:
    TextureUnits& units;
    unsigned int name = 0;
    int width;
    int height;
    TextureFormat format;
    bool mipmaps;
    bool isAllocated;
};

} // namespace OpenGL
