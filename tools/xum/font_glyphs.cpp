#include "font_glyphs.h"

#include <xum/files/file.h>

#include <SDL.h>
#include <SDL_ttf.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <memory>
#include <system_error>
#include <utility>

namespace fs = std::filesystem;

namespace {

constexpr int largestGlyph = 2048; // pixels; a damaged font may ask for any number

struct FreeSurface {
    void operator()(SDL_Surface* surface) const { SDL_FreeSurface(surface); }
};

struct CloseFont {
    void operator()(TTF_Font* font) const { TTF_CloseFont(font); }
};

/// SDL_ttf, without the rest of SDL: it needs no display.
class FontLibrary {
public:
    FontLibrary()
    {
        if (TTF_Init() != 0) throw FontProblem(std::string("cannot be read: ") + SDL_GetError());
    }
    ~FontLibrary() { TTF_Quit(); }
    FontLibrary(const FontLibrary&) = delete;
    FontLibrary& operator=(const FontLibrary&) = delete;
};

std::string readFontFile(const fs::path& path)
{
    std::error_code failure;
    const fs::file_status status = fs::status(path, failure);
    if (!fs::exists(status)) throw FontProblem("cannot be opened: " + failure.message());
    if (!fs::is_regular_file(status)) throw FontProblem("is no file");
    InputFile file(path.native());
    if (!file.isOpen()) throw FontProblem("cannot be opened");
    const std::uint64_t size = file.getSize();
    if (size > std::numeric_limits<int>::max()) throw FontProblem("is too large (2 GiB or more)");
    std::string bytes(static_cast<std::size_t>(size), '\0');
    if (!file.read(bytes.data(), static_cast<unsigned>(size))) throw FontProblem("cannot be read");
    return bytes;
}

/// A font that is opened from memory, at one size.
class GlyphDrawer {
public:
    GlyphDrawer(std::string fontBytes, int size, bool isMono) : bytes(std::move(fontBytes)), isMono(isMono)
    {
        font.reset(TTF_OpenFontRW(SDL_RWFromConstMem(bytes.data(), static_cast<int>(bytes.size())), 1, size));
        if (!font) throw FontProblem(std::string("is no font that can be read: ") + SDL_GetError());
        if (isMono) TTF_SetFontHinting(font.get(), TTF_HINTING_MONO);
    }

    bool has(int code) const { return TTF_GlyphIsProvided32(font.get(), static_cast<Uint32>(code)) != 0; }

    int getAdvance(int code) const { return measure(code).advance; }

    /// Without pixels for a character that has none, such as a space.
    Glyph draw(int code) const
    {
        const Metrics metrics = measure(code);
        if (metrics.right <= metrics.left || metrics.top <= metrics.bottom) return {code, 0, 0, 0, 0, {}};
        constexpr SDL_Color white = {255, 255, 255, 255};
        const auto character = static_cast<Uint32>(code);
        const std::unique_ptr<SDL_Surface, FreeSurface> surface(
            isMono ? TTF_RenderGlyph32_Solid(font.get(), character, white)
                   : TTF_RenderGlyph32_Blended(font.get(), character, white));
        if (!surface) throw cannotDraw(code, SDL_GetError());
        // The surface begins at the pen, or further left where the character does; it is as high as the font reaches
        // above the baseline, or as the character does.
        const int pen = std::max(0, -metrics.left);
        const int baseline = std::max(TTF_FontAscent(font.get()), metrics.top);
        return cut(*surface, code, pen, baseline);
    }

private:
    /// Pixels from the pen on the baseline, with y upwards.
    struct Metrics {
        int left;
        int right;
        int bottom;
        int top;
        int advance;
    };

    static FontProblem cannotDraw(int code, const std::string& reason)
    {
        return FontProblem("cannot be drawn: the character of code " + std::to_string(code) + ": " + reason);
    }

    Metrics measure(int code) const
    {
        Metrics m = {};
        if (TTF_GlyphMetrics32(font.get(), static_cast<Uint32>(code), &m.left, &m.right, &m.bottom, &m.top,
                               &m.advance) != 0)
            throw cannotDraw(code, SDL_GetError());
        for (const int place : {m.left, m.right, m.bottom, m.top, m.advance})
            if (place < -largestGlyph || place > largestGlyph) throw cannotDraw(code, "is too large");
        return m;
    }

    unsigned char coverageAt(const SDL_Surface& surface, int x, int y) const
    {
        const auto* const row = static_cast<const unsigned char*>(surface.pixels) + std::ptrdiff_t{y} * surface.pitch;
        if (isMono) return row[x] != 0 ? 255 : 0; // 0 is the background's place in the palette
        return static_cast<unsigned char>(reinterpret_cast<const Uint32*>(row)[x] >> 24);
    }

    Glyph cut(const SDL_Surface& surface, int code, int pen, int baseline) const
    {
        int left = surface.w;
        int right = 0;
        int top = surface.h;
        int bottom = 0;
        for (int y = 0; y < surface.h; ++y)
            for (int x = 0; x < surface.w; ++x) {
                if (coverageAt(surface, x, y) == 0) continue;
                left = std::min(left, x);
                right = std::max(right, x + 1);
                top = std::min(top, y);
                bottom = y + 1;
            }
        if (left >= right) return {code, 0, 0, 0, 0, {}};
        Glyph glyph = {code, left - pen, top - baseline, right - left, bottom - top, {}};
        for (int y = top; y < bottom; ++y)
            for (int x = left; x < right; ++x) glyph.coverage.push_back(coverageAt(surface, x, y));
        return glyph;
    }

    std::string bytes; // the font reads them as long as it is open
    bool isMono;
    std::unique_ptr<TTF_Font, CloseFont> font;
};

} // namespace

GlyphSet drawGlyphs(const std::string& fontFile, int size, bool isMono, int first, int last)
{
    const FontLibrary library;
    const GlyphDrawer drawer(readFontFile(fontFile), size, isMono);
    GlyphSet set;
    if (drawer.has(' ')) set.spaceAdvance = drawer.getAdvance(' ');
    for (int code = first; code <= last; ++code) {
        if (!drawer.has(code)) {
            set.missingCodes.push_back(code);
            continue;
        }
        Glyph glyph = drawer.draw(code);
        if (glyph.width > 0) set.glyphs.push_back(std::move(glyph));
    }
    return set;
}
