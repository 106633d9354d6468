#include <xum/render/opengl/opengl_texture_units.h>

#include <xum/render/texture.h>

#include <GL/glew.h>

namespace OpenGL {

void TextureUnits::bind(int unit, ::Texture* texture)
{
    if (activeUnit != unit) {
        glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(unit));
        activeUnit = unit;
    }
    ::Texture*& held = bound[static_cast<std::size_t>(unit)];
    if (held == texture) return;
    glBindTexture(GL_TEXTURE_2D, texture->getHandle());
    held = texture;
}

} // namespace OpenGL
