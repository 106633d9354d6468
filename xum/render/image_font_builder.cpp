#include <xum/render/image_font.h>

#include <xum/files/resource_manager.h>
#include <xum/render/image.h>
#include <xum/render/render_device.h>
#include <xum/render/texture.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <new>

namespace {

constexpr int largestCell = 1 << 24; // up to here floats count pixels

/// Counted from the left edge of a cell; both -1 when nothing in it is visible.
struct Columns {
    int first;
    int last;
};

/// Of the part of a cell that lies within the image.
Columns findVisibleColumns(const Image& image, std::int64_t left, std::int64_t top, int cellWidth, int cellHeight)
{
    const std::int64_t right = std::min<std::int64_t>(left + cellWidth, image.getWidth());
    const std::int64_t bottom = std::min<std::int64_t>(top + cellHeight, image.getHeight());
    const auto isVisible = [&](std::int64_t x) {
        for (std::int64_t y = top; y < bottom; ++y)
            if (image.getPixels()[y * image.getWidth() + x].alpha != 0) return true;
        return false;
    };
    for (std::int64_t first = left; first < right; ++first) {
        if (!isVisible(first)) continue;
        std::int64_t last = right - 1;
        while (!isVisible(last)) --last;
        return {static_cast<int>(first - left), static_cast<int>(last - left)};
    }
    return {-1, -1};
}

} // namespace

ImageFont::ImageFont(const Image& image, const Grid& grid) : cellHeight(grid.cellHeight)
{
    for (int c = std::max(grid.firstCharacter, 0); c < characterCount; ++c) addCharacter(image, grid, c);
    widths[' '] = grid.cellWidth - 5;
}

ImageFont::~ImageFont() = default;

void ImageFont::addCharacter(const Image& image, const Grid& grid, int c)
{
    const std::int64_t cell = std::int64_t{c} - grid.firstCharacter;
    const std::int64_t top = cell / grid.columns * grid.cellHeight;
    std::int64_t left = cell % grid.columns * grid.cellWidth;
    int width = grid.cellWidth;
    if (grid.trim) {
        const Columns visible = findVisibleColumns(image, left, top, grid.cellWidth, grid.cellHeight);
        left += visible.first; // kept on purpose: an empty cell gives the column before it
        width = visible.last - visible.first + 1;
    }
    widths[c] = width;

    // From the middle of the first pixel to the middle of the last: drawn over `width` pixels, each one shows its own.
    const auto divide = [](double pixels, int size) { return static_cast<float>(pixels / size); };
    const auto x = static_cast<double>(left);
    const auto y = static_cast<double>(top);
    glyphs[c] = {divide(x + 0.5, image.getWidth()), divide(y + 0.5, image.getHeight()),
                 divide(x + width - 0.5, image.getWidth()), divide(y + grid.cellHeight - 0.5, image.getHeight())};
}

ImageFont* ImageFont::load(RenderDevice* device, Image* loaded, const Grid& grid)
{
    const std::unique_ptr<Image> image(loaded);
    const auto isCellSize = [](int size) { return size >= 1 && size <= largestCell; };
    if (!image || image->getWidth() == 0 || image->getHeight() == 0 || grid.columns < 1 ||
        !isCellSize(grid.cellWidth) || !isCellSize(grid.cellHeight))
        return nullptr;
    const auto destroy = [device](ImageFont* font) { destroyImageFont(device, font); };
    try {
        std::unique_ptr<ImageFont, decltype(destroy)> font(new ImageFont(*image, grid), destroy);
        if (device != nullptr) font->createResources(*device, *image);
        return font.release();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void ImageFont::createResources(RenderDevice& device, const Image& image)
{
    buffer = device.createVertexBuffer(true);
    secondBuffer = device.createVertexBuffer(true);
    texture = device.createTexture(image.getWidth(), image.getHeight(), false);
    if (texture != nullptr) texture->update(image.getPixels());
}

ImageFont* loadImageFont(RenderDevice* device, const std::string& fileName, int cellWidth, int cellHeight, int columns,
                         int firstCharacter, bool trim)
{
    return ImageFont::load(device, loadImage(fileName), {cellWidth, cellHeight, columns, firstCharacter, trim});
}

ImageFont* loadImageFontFromMemory(RenderDevice* device, ResourceManager* resources, const std::string& name,
                                   int cellWidth, int cellHeight, int columns, int firstCharacter, bool trim)
{
    std::vector<unsigned char> data;
    if (resources == nullptr || !resources->load(data, name)) return nullptr;
    return ImageFont::load(device, loadImageFromMemory(data), {cellWidth, cellHeight, columns, firstCharacter, trim});
}

void destroyImageFont(RenderDevice* device, ImageFont* font)
{
    if (font == nullptr) return;
    if (device != nullptr) {
        device->destroyTexture(font->texture);
        device->destroyVertexBuffer(font->buffer);
        device->destroyVertexBuffer(font->secondBuffer);
    }
    delete font;
}
