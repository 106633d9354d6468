#include <xum/geometry/terrain.h>

#include <xum/files/serializer.h>

#include <cstdint>
#include <limits>
#include <new>

namespace {

/// Throws for a grid that cannot be; 0 for a negative size.
std::size_t countVertices(int width, int height)
{
    if (width < 0 || height < 0) return 0;
    const std::int64_t columns = std::int64_t{2} * width + 1;
    const std::int64_t rows = std::int64_t{2} * height + 1;
    if (columns > std::numeric_limits<int>::max() / rows) throw std::bad_alloc();
    return static_cast<std::size_t>(columns * rows);
}

} // namespace

Terrain::Terrain(int width, int height, int spacing) : width(width), height(height), spacing(spacing)
{
    const std::size_t count = countVertices(width, height);
    positions.reserve(count);
    textureCoordinates.reserve(count);
    if (count > 0) {
        // Integers, so that the places do not depend on rounding; wide ones, so that they cannot overflow.
        const auto along = [spacing](int half, int number) {
            return static_cast<float>(-std::int64_t{half} * spacing + std::int64_t{number} * spacing);
        };
        const auto part = [](int number, int half) {
            return static_cast<float>(number) / static_cast<float>(2 * half);
        };
        for (int row = 0; row <= 2 * height; ++row) {
            const float y = along(height, row);
            const float v = part(row, height);
            for (int column = 0; column <= 2 * width; ++column) {
                positions.emplace_back(along(width, column), y, 0.0f);
                textureCoordinates.emplace_back(part(column, width), v);
            }
        }
        indexes.resize(static_cast<std::size_t>(2 * width) * static_cast<std::size_t>(2 * height) * 6);
        int* cell = indexes.data();
        const int columns = 2 * width + 1;
        for (int row = 0; row < 2 * height; ++row) {
            for (int column = 0; column < 2 * width; ++column, cell += 6) {
                const int a = columns * row + column;
                cell[0] = cell[5] = a;
                cell[1] = a + 1;
                cell[2] = cell[3] = a + columns + 1;
                cell[4] = a + columns;
            }
        }
    }
    calculateBoundingBox();
}

Terrain::Terrain(const Terrain& other) = default;

Terrain::~Terrain() = default;

void Terrain::modify(const std::function<Vector3<float>(int x, int y, const Vector3<float>& position)>& function,
                     int smoothPasses)
{
    // Taken before anything changes: what can fail fails here or in the function.
    const bool isSmoothed = smoothPasses > 0 && !positions.empty();
    std::vector<float> heights(isSmoothed ? positions.size() : 0);
    std::vector<float> smoothed(heights.size());
    try {
        callForEach(function);
    } catch (...) {
        calculateBoundingBox();
        throw;
    }
    if (isSmoothed) smooth(smoothPasses, heights, smoothed);
    calculateBoundingBox();
}

void Terrain::callForEach(const std::function<Vector3<float>(int x, int y, const Vector3<float>& position)>& function)
{
    if (positions.empty()) return;
    std::size_t i = 0;
    for (int row = 0; row <= 2 * height; ++row)
        for (int column = 0; column <= 2 * width; ++column, ++i) positions[i] = function(column, row, positions[i]);
}

Terrain* Terrain::clone() const
{
    try {
        return new Terrain(*this);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

bool Terrain::serialize(Serializer& out) const
{
    return !out.failed();
}

int Terrain::calculateOffset(int x, int y) const
{
    return (2 * width + 1) * y + x;
}

/// The vertex itself and its neighbours to the left, to the right, in the row below and in the row above.
void Terrain::getSurroundingOffsets(std::vector<int>& offsets, int x, int y) const
{
    offsets.clear();
    offsets.push_back(calculateOffset(x, y));
    if (x > 0) offsets.push_back(calculateOffset(x - 1, y));
    if (x < 2 * width) offsets.push_back(calculateOffset(x + 1, y));
    if (y > 0) offsets.push_back(calculateOffset(x, y - 1));
    if (y < 2 * height) offsets.push_back(calculateOffset(x, y + 1));
}

// Between passes only the heights exist, close together: a pass is bound by memory.
void Terrain::smooth(int passes, std::vector<float>& heights, std::vector<float>& smoothed)
{
    for (std::size_t i = 0; i < positions.size(); ++i) heights[i] = positions[i].z;
    for (int pass = 0; pass < passes; ++pass) {
        smoothOnce(heights, smoothed);
        heights.swap(smoothed);
    }
    for (std::size_t i = 0; i < positions.size(); ++i) positions[i].z = heights[i];
}

void Terrain::smoothOnce(const std::vector<float>& before, std::vector<float>& after) const
{
    const int lastColumn = 2 * width;
    const int lastRow = 2 * height;
    std::vector<int> offsets;
    const auto smoothAtBorder = [&](int x, int y) {
        getSurroundingOffsets(offsets, x, y);
        float sum = before[static_cast<std::size_t>(offsets[0])];
        for (std::size_t i = 1; i < offsets.size(); ++i) sum += before[static_cast<std::size_t>(offsets[i])];
        after[static_cast<std::size_t>(offsets[0])] = sum / static_cast<float>(offsets.size());
    };
    for (int y = 0; y <= lastRow; ++y) {
        if (y == 0 || y == lastRow) {
            for (int x = 0; x <= lastColumn; ++x) smoothAtBorder(x, y);
            continue;
        }
        smoothAtBorder(0, y);
        const std::size_t columns = static_cast<std::size_t>(lastColumn) + 1;
        const float* const row = before.data() + static_cast<std::size_t>(y) * columns;
        float* const out = after.data() + static_cast<std::size_t>(y) * columns;
        for (std::size_t x = 1; x + 1 < columns; ++x) // in the order of getSurroundingOffsets
            out[x] = (row[x] + row[x - 1] + row[x + 1] +
                      row[static_cast<std::ptrdiff_t>(x) - static_cast<std::ptrdiff_t>(columns)] + row[x + columns]) /
                     5.0f;
        if (lastColumn > 0) smoothAtBorder(lastColumn, y);
    }
}

void Terrain::calculateBoundingBox()
{
    boundingBox = Box::around(positions);
}
