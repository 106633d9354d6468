#include <xum/render/opengl/opengl_texture.h>

#include <xum/engine/log.h>
#include <xum/render/image.h>
#include <xum/render/opengl/opengl_mappings.h>
#include <xum/render/opengl/opengl_texture_units.h>

#include <GL/glew.h>

#include <algorithm>
#include <new>
#include <vector>

namespace OpenGL {

namespace {

void setParameter(GLenum parameter, GLint value)
{
    glTexParameteri(GL_TEXTURE_2D, parameter, value);
}

void setFilters(GLint magnification, GLint minification)
{
    setParameter(GL_TEXTURE_MAG_FILTER, magnification);
    setParameter(GL_TEXTURE_MIN_FILTER, minification);
}

GLint wrapMode(bool clamp)
{
    return clamp ? GL_CLAMP_TO_EDGE : GL_REPEAT;
}

/// Larger sizes are more than an error to some drivers.
bool isPossibleSize(int width, int height)
{
    GLint largest = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &largest);
    return width >= 0 && height >= 0 && width <= largest && height <= largest;
}

void reverseRows(std::vector<unsigned char>& pixels, std::size_t rowSize)
{
    auto top = pixels.begin();
    auto bottom = pixels.end() - static_cast<std::ptrdiff_t>(rowSize);
    for (; top < bottom; top += static_cast<std::ptrdiff_t>(rowSize), bottom -= static_cast<std::ptrdiff_t>(rowSize))
        std::swap_ranges(top, top + static_cast<std::ptrdiff_t>(rowSize), bottom);
}

bool hasTranslucentByte(const std::vector<unsigned char>& rgba)
{
    unsigned char smallest = 255;
    for (std::size_t i = 3; i < rgba.size(); i += 4) smallest = std::min(smallest, rgba[i]);
    return smallest < 255;
}

} // namespace

Texture::Texture(TextureUnits& units, int width, int height, const TextureFormat& format, bool mipmaps)
    : units(units), width(width), height(height), format(format), mipmaps(mipmaps),
      isAllocated(isPossibleSize(width, height))
{
    const auto layout = textureFormatToGL(format);
    if (!layout) error("Invalid texture format!");
    glGenTextures(1, &name);
    units.bind(0, this);
    setFilters(GL_NEAREST, mipmaps ? GL_NEAREST_MIPMAP_NEAREST : GL_NEAREST);
    setParameter(GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    setParameter(GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    if (!isAllocated) {
        getLog() << "Texture::Texture() -> impossible size (" << width << " x " << height << ")!" << std::endl;
        return;
    }
    glTexImage2D(GL_TEXTURE_2D, 0, layout->internalFormat, width, height, 0, layout->format, layout->type, nullptr);
}

Texture::~Texture()
{
    units.forgetAll();
    glDeleteTextures(1, &name);
}

unsigned int Texture::getHandle()
{
    return name;
}

const TextureFormat& Texture::getFormat()
{
    return format;
}

int Texture::getWidth()
{
    return width;
}

int Texture::getHeight()
{
    return height;
}

void Texture::setFilter(TextureFilter::Type filter)
{
    switch (filter) {
    case TextureFilter::Nearest:
        units.bindToActiveUnit(this);
        setFilters(GL_NEAREST, mipmaps ? GL_NEAREST_MIPMAP_NEAREST : GL_NEAREST);
        break;
    case TextureFilter::Linear:
        units.bindToActiveUnit(this);
        setFilters(GL_LINEAR, mipmaps ? GL_LINEAR_MIPMAP_LINEAR : GL_LINEAR);
        break;
    case TextureFilter::Anisotropic: error("Texture::setFilter() -> Anisotropic not implemented!");
    default: break;
    }
}

void Texture::setClamp(bool clampS, bool clampT)
{
    units.bindToActiveUnit(this);
    setParameter(GL_TEXTURE_WRAP_S, wrapMode(clampS));
    setParameter(GL_TEXTURE_WRAP_T, wrapMode(clampT));
}

void Texture::update(const void* rgbaPixels)
{
    if (!isAllocated) return;
    units.bindToActiveUnit(this);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, width, height, 0, GL_RGBA, GL_UNSIGNED_BYTE, rgbaPixels);
    if (mipmaps) glGenerateMipmap(GL_TEXTURE_2D);
}

Image* Texture::toImage(bool flipVertically)
{
    if (!isAllocated) return nullptr;
    try {
        const std::size_t rowSize = static_cast<std::size_t>(std::max(width, 0)) * 4;
        // Zeroes: what a texture that OpenGL cannot read as colours, a depth texture, gives.
        std::vector<unsigned char> pixels(rowSize * static_cast<std::size_t>(std::max(height, 0)));
        units.bindToActiveUnit(this);
        glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
        if (flipVertically) reverseRows(pixels, rowSize);
        return new Image(width, height, 0, nullptr, pixels.data(), hasTranslucentByte(pixels));
    } catch (const std::exception&) {
        return nullptr; // memory ran out, or the size cannot be counted
    }
}

} // namespace OpenGL
