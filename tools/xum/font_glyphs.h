#pragma once

#include <stdexcept>
#include <string>
#include <vector>

/// One character, cut to the pixels that are not empty. Positions count from where the pen stands on the baseline,
/// with y downwards.
struct Glyph {
    int code;
    int left;
    int top;
    int width;
    int height;
    std::vector<unsigned char> coverage; ///< 0 to 255, row by row

    int right() const { return left + width; }
    int bottom() const { return top + height; }
};

/// What a TrueType font draws for some codes.
struct GlyphSet {
    std::vector<Glyph> glyphs;     ///< none for what has no visible pixel
    std::vector<int> missingCodes; ///< those that the font does not know
    int spaceAdvance = 0;          ///< how far the pen moves for a space; 0 without one
};

/// "cannot be opened: REASON" and the like.
class FontProblem : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Draws the codes from `first` to `last`. With `isMono`, each pixel is covered or not. Throws FontProblem.
GlyphSet drawGlyphs(const std::string& fontFile, int size, bool isMono, int first, int last);
