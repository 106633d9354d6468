#include <xum/geometry/depth_buffer.h>

#include <xum/engine/log.h>

#include <algorithm>
#include <new>

namespace {

bool isPowerOfTwo(int size)
{
    return size > 0 && (size & (size - 1)) == 0;
}

int findShift(int size)
{
    for (int shift = 1; shift <= 11; ++shift)
        if (size == 1 << shift) return shift;
    error("invalid shift value for depth buffer tile!");
}

/// Rounded up; none for a size below 1.
int countTiles(int size, int tileSize, int shift)
{
    return size <= 0 ? 0 : static_cast<int>((static_cast<long long>(size) - 1 + tileSize) >> shift);
}

} // namespace

namespace Software {

DepthBuffer::DepthBuffer(int width, int height, int tileWidth, int tileHeight)
    : tileWidth(tileWidth), tileHeight(tileHeight), tileShiftX(findShift(tileWidth)), tileShiftY(findShift(tileHeight))
{
    if (!isPowerOfTwo(tileWidth) || !isPowerOfTwo(tileHeight)) error("depth buffer tile size must be a power of two!");
    resize(width, height);
}

DepthBuffer::DepthBuffer(const DepthBuffer& other) = default;
DepthBuffer& DepthBuffer::operator=(const DepthBuffer& other) = default;
DepthBuffer::~DepthBuffer() = default;

void DepthBuffer::resize(int newWidth, int newHeight)
{
    if (newWidth == width && newHeight == height) return;
    const int across = countTiles(newWidth, tileWidth, tileShiftX);
    const int down = countTiles(newHeight, tileHeight, tileShiftY);
    const std::size_t tileCount = static_cast<std::size_t>(across) * static_cast<std::size_t>(down);
    const std::size_t tileSize = static_cast<std::size_t>(tileWidth) * static_cast<std::size_t>(tileHeight);
    if (tileCount > std::vector<float>().max_size() / tileSize) throw std::bad_alloc(); // not std::length_error
    auto newStorage = std::make_shared<std::vector<float>>(tileCount * tileSize);
    std::vector<float*> newTiles(tileCount);
    for (std::size_t i = 0; i < tileCount; ++i) newTiles[i] = newStorage->data() + i * tileSize;
    storage.swap(newStorage);
    tiles.swap(newTiles);
    width = newWidth;
    height = newHeight;
    tilesPerRow = across;
}

void DepthBuffer::clear()
{
    if (storage) std::fill(storage->begin(), storage->end(), 0.0f);
}

}
