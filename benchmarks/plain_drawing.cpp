#include "plain_drawing.h"

#include <algorithm>
#include <cmath>

namespace plain {

namespace {

constexpr int gap = 4;

bool isPrinted(unsigned char c)
{
    return c > 32 && c < 128;
}

} // namespace

Font::Font()
{
    for (int c = firstCharacter; c < 128; ++c) {
        const auto x = static_cast<float>((c - firstCharacter) % columns * cellWidth);
        const auto y = static_cast<float>((c - firstCharacter) / columns * cellHeight);
        glyphs[c] = {(x + 0.5f) / pictureWidth, (y + 0.5f) / pictureHeight, (x + cellWidth - 0.5f) / pictureWidth,
                     (y + cellHeight - 0.5f) / pictureHeight, cellWidth};
    }
    glyphs[' '].width = cellWidth - 5;
}

int Font::measure(const std::string& text, int spacing) const
{
    int total = -gap;
    for (const char c : text) total += glyphs[static_cast<unsigned char>(c)].width + gap + 2 * spacing;
    return total;
}

void Font::makeText(Vertices& outVertices, int x, int y, const std::string& text) const
{
    resize(outVertices, text, 1);
    write(outVertices, 0, static_cast<float>(x), static_cast<float>(y), text);
}

void Font::makeColoredText(Vertices& outVertices, int x, int y, const std::string& text,
                           const Vector4<float>& color) const
{
    makeText(outVertices, x, y, text);
    outVertices.colors.assign(outVertices.positions.size(), color);
}

void Font::makeOutlinedText(Vertices& outVertices, int x, int y, const std::string& text,
                            const Vector4<float>& color) const
{
    resize(outVertices, text, 9);
    const std::size_t size = outVertices.positions.size() / 9;
    std::size_t first = 0;
    for (int dy = -1; dy <= 1; ++dy) {
        for (int dx = -1; dx <= 1; ++dx) {
            if (dx == 0 && dy == 0) continue;
            write(outVertices, first, static_cast<float>(x + dx), static_cast<float>(y + dy), text);
            first += size;
        }
    }
    write(outVertices, first, static_cast<float>(x), static_cast<float>(y), text);
    outVertices.colors.resize(outVertices.positions.size());
    const auto lastCopy = outVertices.colors.begin() + static_cast<std::ptrdiff_t>(first);
    std::fill(outVertices.colors.begin(), lastCopy, Vector4<float>(0, 0, 0, color.w));
    std::fill(lastCopy, outVertices.colors.end(), color);
}

void Font::resize(Vertices& vertices, const std::string& text, std::size_t copies)
{
    std::size_t printed = 0;
    for (const char c : text) printed += isPrinted(static_cast<unsigned char>(c)) ? 1u : 0u;
    vertices.positions.resize(printed * 6 * copies);
    vertices.coordinates.resize(printed * 6 * copies);
}

void Font::write(Vertices& vertices, std::size_t first, float x, float y, const std::string& text) const
{
    Vector3<float>* p = vertices.positions.data() + first;
    Vector2<float>* t = vertices.coordinates.data() + first;
    const float bottom = y + cellHeight;
    for (const char character : text) {
        const auto c = static_cast<unsigned char>(character);
        const Glyph& g = glyphs[c];
        if (isPrinted(c)) {
            const float right = x + static_cast<float>(g.width);
            p[0] = p[5] = {x, y, 0};
            p[1] = {x, bottom, 0};
            p[2] = p[3] = {right, bottom, 0};
            p[4] = {right, y, 0};
            t[0] = t[5] = {g.left, g.top};
            t[1] = {g.left, g.bottom};
            t[2] = t[3] = {g.right, g.bottom};
            t[4] = {g.right, g.top};
            p += 6;
            t += 6;
        }
        x += static_cast<float>(g.width + gap);
    }
}

void makeSphere(Points& outPoints, const Vector3<float>& center, float radius, int segments)
{
    outPoints.resize(static_cast<std::size_t>(segments + 1) * 6);
    Vector3<float>* point = outPoints.data();
    for (int circle = 0; circle < 3; ++circle) {
        Vector3<float> previous = center + (circle == 0 ? Vector3<float>(radius, 0, 0) : Vector3<float>(0, 0, radius));
        for (int i = 0; i <= segments; ++i) {
            const double angle = i * 2 * 3.14159265358979323846 / segments;
            const auto s = static_cast<float>(std::sin(angle)) * radius;
            const auto c = static_cast<float>(std::cos(angle)) * radius;
            const Vector3<float> offsets[] = {{c, s, 0}, {0, -s, c}, {-s, 0, c}};
            *point++ = previous;
            *point++ = previous = center + offsets[circle];
        }
    }
}

void makeBox(Points& outPoints, const Vector3<float>& a, const Vector3<float>& b)
{
    outPoints.clear();
    for (const float z : {a.z, b.z})
        outPoints.insert(outPoints.end(), {{a.x, a.y, z},
                                           {b.x, a.y, z},
                                           {b.x, a.y, z},
                                           {b.x, b.y, z},
                                           {b.x, b.y, z},
                                           {a.x, b.y, z},
                                           {a.x, b.y, z},
                                           {a.x, a.y, z}});
    for (const float x : {a.x, b.x})
        for (const float y : {a.y, b.y}) outPoints.insert(outPoints.end(), {{x, y, a.z}, {x, y, b.z}});
}

} // namespace plain
