#pragma once

#include "draw_counter.h"
#include "owned.h"

#include <xum/geometry/vector.h>
#include <xum/render/font.h>

#include <map>
#include <string>

class Program;

struct DestroyFont {
    void operator()(Font* font) const { destroyFont(font); }
};

/// Lines of text in one TrueType font, at the bottom of the screen. Each text is rendered when it is drawn first.
class Captions {
public:
    /// The program is that of caption.cfg; the font file is on the disk. Keeps the reference and the pointer. The font
    /// is null when it cannot be opened: then nothing is drawn.
    Captions(RenderDevice& device, Program* program, const std::string& fontFile, int pointSize);

    bool hasFont() const { return font != nullptr; }

    /// Centred, its lower edge so many pixels above that of the screen, with a shadow; as small as it must be to fit
    /// the screen's width. Returns its height. Nothing is drawn of an empty text. The caller has switched the depth
    /// test off and blending on.
    int draw(const std::string& text, const Vector2<int>& screenSize, int bottom, const Vector3<float>& color,
             DrawCounter& draws);

private:
    Texture* getTexture(const std::string& text);
    void drawAt(const Vector2<float>& corner, const Vector2<float>& size, const Vector4<float>& color);

    RenderDevice& device;
    Program* program;
    std::unique_ptr<Font, DestroyFont> font;
    std::map<std::string, OwnedTexture> textures; ///< null for what cannot be rendered
};
