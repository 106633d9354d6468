#pragma once

#include <xum/engine/export.h>
#include <xum/geometry/base_list.h>

#include <memory>

/// What a game registers in a MapGrid; games derive from it. Appending it to another cell moves it there.
class XUM_API MapGridObject : public BaseListNode<MapGridObject> {
public:
    /// In the cell, or in none for null.
    explicit MapGridObject(BaseList<MapGridObject>* cell = nullptr) : BaseListNode(cell) {}
    ~MapGridObject() override;
};

/// The objects of one place. Owns them.
class XUM_API MapGridCell : public BaseList<MapGridObject> {
public:
    MapGridCell() : BaseList(true) {}
    ~MapGridCell() override;
};

/// A square of cells over a map. What they stand for is the game's business.
class XUM_API MapGrid {
public:
    static constexpr int size = 256; ///< cells in each direction

    /// Throws std::bad_alloc when memory runs out.
    MapGrid();
    virtual ~MapGrid();

    MapGrid(const MapGrid&) = delete;
    MapGrid& operator=(const MapGrid&) = delete;

    /// The constant `size`.
    int getSize() const { return size; }

    /// x and y from 0 to 255; null outside.
    MapGridCell* getCell(int x, int y);

    /// All size * size cells, row by row: cell (x, y) is number y * size + x.
    MapGridCell* getCells() { return cells.get(); }

private:
    std::unique_ptr<MapGridCell[]> cells;
};
