#include "terrain_brush.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float highest = 10000;

/// Grid numbers from the first to the last that may be within reach.
struct Range {
    int first;
    int last;
};

Range findRange(double at, double origin, double radius, int half, int spacing)
{
    const double middle = (at - origin) / spacing + half;
    const double reach = radius / spacing;
    const auto clamp = [&](double number) { return static_cast<int>(std::clamp(number, -1.0, 2.0 * half + 1)); };
    return {std::max(clamp(std::ceil(middle - reach)), 0), std::min(clamp(std::floor(middle + reach)), 2 * half)};
}

/// 1 in the middle, 0 at the edge and beyond, without corners.
double weigh(double distance, double radius)
{
    if (distance >= radius) return 0;
    const double part = distance / radius;
    return 0.5 + 0.5 * std::cos(part * 3.14159265358979);
}

class Grid {
public:
    explicit Grid(const TerrainSource& terrain) : terrain(terrain) {}

    std::size_t numberOf(int column, int row) const
    {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(terrain.countColumns()) +
               static_cast<std::size_t>(column);
    }

    double heightAt(int column, int row) const
    {
        const int c = std::clamp(column, 0, terrain.countColumns() - 1);
        const int r = std::clamp(row, 0, terrain.countRows() - 1);
        return terrain.heights[numberOf(c, r)];
    }

    double meanAround(int column, int row) const
    {
        return (heightAt(column, row) + heightAt(column - 1, row) + heightAt(column + 1, row) +
                heightAt(column, row - 1) + heightAt(column, row + 1)) /
               5;
    }

private:
    const TerrainSource& terrain;
};

double change(const TerrainBrush& brush, const Grid& grid, int column, int row, double target, double amount)
{
    const double height = grid.heightAt(column, row);
    const double way = std::min(amount * 3, 1.0); // with a strength of 2, most of it in half a second
    switch (brush.change) {
    case TerrainChange::Raise: return height + amount;
    case TerrainChange::Lower: return height - amount;
    case TerrainChange::Smooth: return height + (grid.meanAround(column, row) - height) * way;
    case TerrainChange::Flatten: return height + (target - height) * way;
    }
    return height;
}

} // namespace

bool shapeTerrain(MapDocument& document, const TerrainBrush& brush, const Vector3<double>& at, double seconds)
{
    if (document.terrains.empty() || !(brush.radius > 0)) return false;
    const TerrainSource& before = *document.terrains.front();
    const Range columns = findRange(at.x, before.origin.x, brush.radius, before.width, before.spacing);
    const Range rows = findRange(at.y, before.origin.y, brush.radius, before.height, before.spacing);
    if (columns.first > columns.last || rows.first > rows.last) return false;

    auto after = std::make_shared<TerrainSource>(before);
    const Grid grid(before);
    for (int row = rows.first; row <= rows.last; ++row) {
        for (int column = columns.first; column <= columns.last; ++column) {
            const double x = before.origin.x + (column - before.width) * static_cast<double>(before.spacing) - at.x;
            const double y = before.origin.y + (row - before.height) * static_cast<double>(before.spacing) - at.y;
            const double amount = brush.strength * seconds * weigh(std::hypot(x, y), brush.radius);
            if (amount == 0) continue;
            const double height = change(brush, grid, column, row, at.z - before.origin.z, amount);
            after->heights[grid.numberOf(column, row)] =
                std::clamp(static_cast<float>(height), -highest, highest) + 0.0f; // no -0 in files
        }
    }
    document.terrains.front() = std::move(after);
    return true;
}

std::optional<double> findHeight(const MapDocument& document, double x, double y)
{
    if (document.terrains.empty()) return std::nullopt;
    const TerrainSource& terrain = *document.terrains.front();
    const double column = (x - terrain.origin.x) / terrain.spacing + terrain.width;
    const double row = (y - terrain.origin.y) / terrain.spacing + terrain.height;
    if (!(column >= 0 && row >= 0 && column <= 2.0 * terrain.width && row <= 2.0 * terrain.height)) return std::nullopt;
    const int c = std::min(static_cast<int>(column), 2 * terrain.width - 1);
    const int r = std::min(static_cast<int>(row), 2 * terrain.height - 1);
    const double u = column - c;
    const double v = row - r;
    const Grid grid(terrain);
    // In the one of the cell's two triangles, as they are drawn.
    const double start = grid.heightAt(c, r);
    const double end = grid.heightAt(c + 1, r + 1);
    const double corner = u >= v ? grid.heightAt(c + 1, r) : grid.heightAt(c, r + 1);
    const double height =
        u >= v ? start + (corner - start) * u + (end - corner) * v : start + (corner - start) * v + (end - corner) * u;
    return terrain.origin.z + height;
}
