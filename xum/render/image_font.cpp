#include <xum/render/image_font.h>

#include <xum/render/render_device.h>
#include <xum/render/texture.h>
#include <xum/render/vertex_buffer.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>

namespace {

constexpr int firstPrinted = 33;
constexpr int lastPrinted = 127;
constexpr std::size_t verticesPerCharacter = 6;

bool isPrinted(int c)
{
    return c >= firstPrinted && c <= lastPrinted;
}

/// Cut off, and kept within what an int holds; 0 for no number.
int toInt(float value)
{
    constexpr float limit = 2147483648.0f;
    if (value >= limit) return std::numeric_limits<int>::max();
    if (value < -limit) return std::numeric_limits<int>::min();
    return value == value ? static_cast<int>(value) : 0;
}

} // namespace

void ImageFont::setFilter(RenderDevice* device, TextureFilter::Type filter)
{
    if (device == nullptr || texture == nullptr) return;
    device->bindTexture(0, texture);
    texture->setFilter(filter);
}

int ImageFont::measure(const std::string& text, float scale, int spacing) const
{
    if (text.empty()) return 0;
    std::int64_t characterWidths = 0;
    for (const char c : text) characterWidths += getCharacterWidth(static_cast<unsigned char>(c));
    // A double holds these sums exactly, and there is no overflow.
    const double total =
        static_cast<double>(characterWidths) + static_cast<double>(text.size()) * (getCharacterSpace() + 2.0 * spacing);
    return toInt(static_cast<float>(total - getCharacterSpace()) * scale);
}

void ImageFont::generateCharacter(std::vector<Vector3<float>>& outPositions,
                                  std::vector<Vector2<float>>& outCoordinates, int x, int y, float scale,
                                  float leftHalfHeight, float rightHalfHeight, int character) const
{
    if (!isPrinted(character)) return;
    const auto left = static_cast<float>(x);
    const auto middle = static_cast<float>(y);
    const float right = left + static_cast<float>(widths[character]) * scale;
    outPositions.resize(outPositions.size() + verticesPerCharacter);
    outCoordinates.resize(outCoordinates.size() + verticesPerCharacter);
    const Corners corners = {{left, middle - leftHalfHeight, 0},
                             {left, middle + leftHalfHeight, 0},
                             {right, middle + rightHalfHeight, 0},
                             {right, middle - rightHalfHeight, 0}};
    write(corners, glyphs[character], &outPositions.back() + 1 - verticesPerCharacter,
          &outCoordinates.back() + 1 - verticesPerCharacter);
}

void ImageFont::draw(RenderDevice* device, int x, int y, const std::string& text, bool centerX, bool centerY)
{
    drawScaled(device, x, y, text, 1.0f, centerX, centerY);
}

void ImageFont::drawScaled(RenderDevice* device, int x, int y, const std::string& text, float scale, bool centerX,
                           bool centerY)
{
    if (begin(text, 1) == 0) return;
    writeText(text, findPlace(x, y, text, scale, centerX, centerY), 0);
    drawWritten(device, buffer);
}

void ImageFont::drawColored(RenderDevice* device, int x, int y, const std::string& text, const Vector4<float>& color,
                            bool centerX, bool centerY)
{
    const std::size_t vertices = begin(text, 1);
    if (vertices == 0) return;
    writeText(text, findPlace(x, y, text, 1.0f, centerX, centerY), 0);
    colors.assign(vertices, color);
    drawWritten(device, secondBuffer);
}

void ImageFont::drawOutlined(RenderDevice* device, int x, int y, const std::string& text, const Vector4<float>& color,
                             bool centerX, bool centerY)
{
    constexpr Vector2<float> shifts[] = {{-1, -1}, {0, -1}, {1, -1}, {-1, 0}, {1, 0}, {-1, 1}, {0, 1}, {1, 1}, {0, 0}};
    const std::size_t vertices = begin(text, std::size(shifts));
    if (vertices == 0) return;
    const Place place = findPlace(x, y, text, 1.0f, centerX, centerY);
    std::size_t first = 0;
    for (const Vector2<float>& shift : shifts) {
        writeText(text, {place.left + shift.x, place.top + shift.y, place.scale}, first);
        first += vertices;
    }
    colors.assign(positions.size(), {0, 0, 0, color.w});
    std::fill(colors.end() - static_cast<std::ptrdiff_t>(vertices), colors.end(), color);
    drawWritten(device, secondBuffer);
}

ImageFont::Place ImageFont::findPlace(int x, int y, const std::string& text, float scale, bool centerX,
                                      bool centerY) const
{
    std::int64_t left = x;
    std::int64_t top = y;
    if (centerX) left -= measure(text, scale, 0) / 2;
    if (centerY) top -= toInt(static_cast<float>(cellHeight) * scale) / 2;
    return {static_cast<float>(left), static_cast<float>(top), scale};
}

/// Makes room for so many copies of the text and returns how many vertices each has.
std::size_t ImageFont::begin(const std::string& text, std::size_t copies)
{
    const auto printed =
        std::count_if(text.begin(), text.end(), [](char c) { return isPrinted(static_cast<unsigned char>(c)); });
    const std::size_t vertices = static_cast<std::size_t>(printed) * verticesPerCharacter;
    positions.resize(vertices * copies);
    coordinates.resize(vertices * copies);
    return vertices;
}

void ImageFont::writeText(const std::string& text, const Place& place, std::size_t firstVertex)
{
    // Edges, not a middle: for cells of odd height that would lie between two pixels.
    const float bottom = place.top + static_cast<float>(cellHeight) * place.scale;
    Vector3<float>* position = positions.data() + firstVertex;
    Vector2<float>* coordinate = coordinates.data() + firstVertex;
    std::int64_t offset = 0;
    for (const char character : text) {
        const int c = static_cast<unsigned char>(character);
        const int width = getCharacterWidth(c);
        if (isPrinted(c)) {
            const float left = place.left + static_cast<float>(toInt(static_cast<float>(offset) * place.scale));
            const float right = left + static_cast<float>(width) * place.scale;
            write({{left, place.top, 0}, {left, bottom, 0}, {right, bottom, 0}, {right, place.top, 0}}, glyphs[c],
                  position, coordinate);
            position += verticesPerCharacter;
            coordinate += verticesPerCharacter;
        }
        offset += width + getCharacterSpace();
    }
}

void ImageFont::write(const Corners& corners, const Rectangle& glyph, Vector3<float>* position,
                      Vector2<float>* coordinate)
{
    const auto put = [&](const Vector3<float>& at, float u, float v) {
        *position++ = at;
        *coordinate++ = {u, v};
    };
    put(corners.leftTop, glyph.left, glyph.top);
    put(corners.leftBottom, glyph.left, glyph.bottom);
    put(corners.rightBottom, glyph.right, glyph.bottom);
    put(corners.rightBottom, glyph.right, glyph.bottom);
    put(corners.rightTop, glyph.right, glyph.top);
    put(corners.leftTop, glyph.left, glyph.top);
}

void ImageFont::drawWritten(RenderDevice* device, VertexBuffer* target) const
{
    if (device == nullptr || target == nullptr) return;
    device->bindTexture(0, texture);
    target->setAttribute(VertexAttribute::Position, positions);
    target->setAttribute(VertexAttribute::TextureCoordinate, coordinates);
    if (target == secondBuffer) target->setAttribute(VertexAttribute::Color, colors);
    target->drawTriangles();
}
