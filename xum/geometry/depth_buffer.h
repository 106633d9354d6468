#pragma once

#include <xum/engine/export.h>

#include <cassert>
#include <memory>
#include <vector>

/// What draws in main memory, without graphics hardware.
namespace Software {

/// A depth buffer in main memory, kept in tiles so that a small piece of the screen lies together. Larger depths are
/// nearer.
class XUM_API DepthBuffer {
public:
    /// Of width x height pixels in tiles of tileWidth x tileHeight. Each tile size must be a power of two from 2 to
    /// 2048, else it is a fatal error: "invalid shift value for depth buffer tile!".
    DepthBuffer(int width, int height, int tileWidth, int tileHeight);

    /// A copy shares the tiles of its source: what one writes the other sees, until one is resized.
    /// @{
    DepthBuffer(const DepthBuffer& other);
    DepthBuffer& operator=(const DepthBuffer& other);
    /// @}
    ~DepthBuffer();

    /// Does nothing when that is the size already; else the contents are lost: clear() comes before the first test. A
    /// size below 1 holds no pixel. Throws std::bad_alloc when memory runs out; then everything stays.
    void resize(int width, int height);

    /// Sets every depth to 0, the farthest.
    void clear();

    /// Whether `depth` is nearer than what the pixel holds; if so it is stored. The pixel must be inside.
    bool test(int x, int y, float depth)
    {
        assert(x >= 0 && y >= 0 && x < width && y < height);
        const auto row = static_cast<std::size_t>(y >> tileShiftY);
        float* const tile =
            tiles[row * static_cast<std::size_t>(tilesPerRow) + static_cast<std::size_t>(x >> tileShiftX)];
        float& stored = tile[((y & (tileHeight - 1)) << tileShiftX) + (x & (tileWidth - 1))];
        if (!(depth > stored)) return false;
        stored = depth;
        return true;
    }

    /// In pixels, as they were asked for, a size below 1 included.
    /// @{
    int getWidth() const { return width; }
    int getHeight() const { return height; }
    /// @}

    /// Those at the right and at the lower edge included, of which a part may lie outside.
    /// @{
    int getTilesPerRow() const { return tilesPerRow; }
    int getTileCount() const { return static_cast<int>(tiles.size()); }
    /// @}

private:
    int width = 0;
    int height = 0;
    int tileWidth;
    int tileHeight;
    int tileShiftX;
    int tileShiftY;
    int tilesPerRow = 0;
    std::vector<float*> tiles; // row by row, each into the storage
    std::shared_ptr<std::vector<float>> storage;
};

}
