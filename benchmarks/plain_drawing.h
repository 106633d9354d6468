#pragma once

#include <xum/geometry/vector.h>

#include <string>
#include <vector>

/// The vertices that the engine's helpers draw, made by plain code.
namespace plain {

using Points = std::vector<Vector3<float>>;
using Coordinates = std::vector<Vector2<float>>;
using Colors = std::vector<Vector4<float>>;

struct Vertices {
    Points positions;
    Coordinates coordinates;
    Colors colors; ///< none for uncoloured text
};

/// A bitmap font over the picture of the benchmark, cells of 8 x 16 in 16 columns from the space on.
class Font {
public:
    static constexpr int cellWidth = 8;
    static constexpr int cellHeight = 16;
    static constexpr int columns = 16;
    static constexpr int firstCharacter = 32;
    static constexpr int pictureWidth = cellWidth * columns;
    static constexpr int pictureHeight = 6 * cellHeight;

    Font();

    int measure(const std::string& text, int spacing) const;
    void makeText(Vertices& outVertices, int x, int y, const std::string& text) const;
    void makeColoredText(Vertices& outVertices, int x, int y, const std::string& text,
                         const Vector4<float>& color) const;
    void makeOutlinedText(Vertices& outVertices, int x, int y, const std::string& text,
                          const Vector4<float>& color) const;

private:
    struct Glyph {
        float left, top, right, bottom;
        int width;
    };

    static void resize(Vertices& vertices, const std::string& text, std::size_t copies);
    void write(Vertices& vertices, std::size_t first, float x, float y, const std::string& text) const;

    Glyph glyphs[256] = {};
};

void makeSphere(Points& outPoints, const Vector3<float>& center, float radius, int segments);
void makeBox(Points& outPoints, const Vector3<float>& minimum, const Vector3<float>& maximum);

} // namespace plain
