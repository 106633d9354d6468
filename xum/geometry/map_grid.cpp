#include <xum/geometry/map_grid.h>

MapGridObject::~MapGridObject() = default;

MapGridCell::~MapGridCell() = default;

MapGrid::MapGrid() : cells(new MapGridCell[static_cast<std::size_t>(size) * size]) {}

MapGrid::~MapGrid() = default;

MapGridCell* MapGrid::getCell(int x, int y)
{
    if (x < 0 || y < 0 || x >= size || y >= size) return nullptr;
    return &cells[static_cast<std::size_t>(y) * size + static_cast<std::size_t>(x)];
}
