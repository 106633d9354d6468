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

bool canDraw(const RenderDevice* device, const VertexBuffer* target)
{
    return device != nullptr && target != nullptr;
}

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

struct Corners {
    Vector3<float> leftTop;
    Vector3<float> leftBottom;
    Vector3<float> rightBottom;
    Vector3<float> rightTop;
};

/// The vertices of a character whose part of the texture is `glyph`. It takes copies, which are not read again after
/// each vertex, and it is no member, which would be exported and hence never be inlined.
template <class Rectangle>
void write(Vector3<float>* positions, Vector2<float>* coordinates, Corners corners, Rectangle glyph)
{
    positions[0] = corners.leftTop;
    positions[1] = corners.leftBottom;
    positions[2] = corners.rightBottom;
    positions[3] = corners.rightBottom;
    positions[4] = corners.rightTop;
    positions[5] = corners.leftTop;
    coordinates[0] = {glyph.left, glyph.top};
    coordinates[1] = {glyph.left, glyph.bottom};
    coordinates[2] = {glyph.right, glyph.bottom};
    coordinates[3] = {glyph.right, glyph.bottom};
    coordinates[4] = {glyph.right, glyph.top};
    coordinates[5] = {glyph.left, glyph.top};
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
    if (outCoordinates.capacity() <
        outCoordinates.size() + verticesPerCharacter) // without memory both stay as they were
        outCoordinates.reserve(outCoordinates.size() * 2 + verticesPerCharacter);
    outPositions.resize(outPositions.size() + verticesPerCharacter);
    outCoordinates.resize(outCoordinates.size() + verticesPerCharacter);
    const Corners corners = {{left, middle - leftHalfHeight, 0},
                             {left, middle + leftHalfHeight, 0},
                             {right, middle + rightHalfHeight, 0},
                             {right, middle - rightHalfHeight, 0}};
    write(&outPositions.back() + 1 - verticesPerCharacter, &outCoordinates.back() + 1 - verticesPerCharacter, corners,
          glyphs[character]);
}

void ImageFont::draw(RenderDevice* device, int x, int y, const std::string& text, bool centerX, bool centerY)
{
    drawScaled(device, x, y, text, 1.0f, centerX, centerY);
}

void ImageFont::drawScaled(RenderDevice* device, int x, int y, const std::string& text, float scale, bool centerX,
                           bool centerY)
{
    if (!canDraw(device, buffer) || begin(text, 1) == 0) return;
    writeText(text, findPlace(x, y, text, scale, centerX, centerY), 0);
    drawWritten(device, buffer);
}

void ImageFont::drawColored(RenderDevice* device, int x, int y, const std::string& text, const Vector4<float>& color,
                            bool centerX, bool centerY)
{
    if (!canDraw(device, secondBuffer)) return;
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
    if (!canDraw(device, secondBuffer)) return;
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

void ImageFont::writeText(const std::string& text, Place place, std::size_t firstVertex)
{
    // Edges, not a middle: for cells of odd height that would lie between two pixels.
    const float top = place.top;
    const float bottom = top + static_cast<float>(cellHeight) * place.scale;
    Vector3<float>* position = positions.data() + firstVertex;
    Vector2<float>* coordinate = coordinates.data() + firstVertex;
    std::int64_t offset = 0;
    for (const char character : text) {
        const int c = static_cast<unsigned char>(character);
        const int width = getCharacterWidth(c);
        if (isPrinted(c)) {
            const float left = place.left + static_cast<float>(toInt(static_cast<float>(offset) * place.scale));
            const float right = left + static_cast<float>(width) * place.scale;
            write(position, coordinate, {{left, top, 0}, {left, bottom, 0}, {right, bottom, 0}, {right, top, 0}},
                  glyphs[c]);
            position += verticesPerCharacter;
            coordinate += verticesPerCharacter;
        }
        offset += width + getCharacterSpace();
    }
}

void ImageFont::drawWritten(RenderDevice* device, VertexBuffer* target) const
{
    device->bindTexture(0, texture);
    target->setAttribute(VertexAttribute::Position, positions);
    target->setAttribute(VertexAttribute::TextureCoordinate, coordinates);
    if (target == secondBuffer) target->setAttribute(VertexAttribute::Color, colors);
    target->drawTriangles();
}
