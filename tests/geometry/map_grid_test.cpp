#include <xum/geometry/map_grid.h>

#include <gtest/gtest.h>

#include <type_traits>
#include <vector>

namespace {

static_assert(std::has_virtual_destructor_v<MapGrid> && std::has_virtual_destructor_v<MapGridCell> &&
              std::has_virtual_destructor_v<MapGridObject>);
static_assert(std::is_base_of_v<BaseList<MapGridObject>, MapGridCell>);
static_assert(std::is_base_of_v<BaseListNode<MapGridObject>, MapGridObject>);
static_assert(!std::is_copy_constructible_v<MapGrid> && !std::is_copy_assignable_v<MapGrid>);
static_assert(MapGrid::size == 256);

/// Writes its number down when it is deleted.
class NumberedObject final : public MapGridObject {
public:
    NumberedObject(int number, std::vector<int>& deleted, MapGridCell* cell = nullptr)
        : MapGridObject(cell), number(number), deleted(&deleted)
    {}
    ~NumberedObject() override { deleted->push_back(number); }

private:
    int number;
    std::vector<int>* deleted;
};

} // namespace

TEST(MapGrid, hasTwoHundredAndFiftySixCellsInEachDirection)
{
    MapGrid grid;
    EXPECT_EQ(grid.getSize(), 256);
    ASSERT_NE(grid.getCells(), nullptr);
    for (int i = 0; i < 65536; ++i) {
        const MapGridCell& cell = grid.getCells()[i];
        ASSERT_EQ(cell.getCount(), 0U);
        ASSERT_EQ(cell.getFirst(), nullptr);
        ASSERT_TRUE(cell.isOwner());
    }
}

TEST(MapGrid, keepsItsCellsRowByRow)
{
    MapGrid grid;
    MapGridCell* const cells = grid.getCells();
    for (int y = 0; y < 256; ++y)
        for (int x = 0; x < 256; ++x) ASSERT_EQ(grid.getCell(x, y), cells + y * 256 + x);
}

TEST(MapGrid, hasNoCellsOutside)
{
    MapGrid grid;
    for (const int outside : {-1, 256, 257, 65536, -2147483647 - 1, 2147483647}) {
        EXPECT_EQ(grid.getCell(outside, 0), nullptr);
        EXPECT_EQ(grid.getCell(0, outside), nullptr);
        EXPECT_EQ(grid.getCell(outside, outside), nullptr);
    }
}

TEST(MapGrid, deletesTheObjectsThatAreLeftInIt)
{
    std::vector<int> deleted;
    NumberedObject outside(4, deleted);
    {
        MapGrid grid;
        new NumberedObject(1, deleted, grid.getCell(0, 0));
        new NumberedObject(2, deleted, grid.getCell(255, 255));
        auto* const taken = new NumberedObject(3, deleted, grid.getCell(7, 8));
        grid.getCell(7, 8)->append(&outside);
        outside.unlink();
        delete taken;
        EXPECT_EQ(deleted, std::vector<int>{3});
        EXPECT_EQ(grid.getCell(7, 8)->getCount(), 0U);
    }
    ASSERT_EQ(deleted.size(), 3U);
    EXPECT_EQ(deleted[1] + deleted[2], 1 + 2);
}

TEST(MapGridCell, deletesItsObjectsFromTheFront)
{
    std::vector<int> deleted;
    {
        MapGridCell cell;
        for (int i = 0; i < 5; ++i) new NumberedObject(i, deleted, &cell);
        EXPECT_EQ(cell.getCount(), 5U);
    }
    EXPECT_EQ(deleted, (std::vector<int>{0, 1, 2, 3, 4}));
}

TEST(MapGridObject, isInNoCellUnlessItIsToldSo)
{
    const MapGridObject object;
    EXPECT_EQ(object.getList(), nullptr);
}

TEST(MapGridObject, movesToTheCellThatItIsAppendedTo)
{
    std::vector<int> deleted;
    MapGrid grid;
    auto* const object = new NumberedObject(1, deleted, grid.getCell(3, 4));
    auto* const other = new NumberedObject(2, deleted, grid.getCell(5, 6));
    grid.getCell(5, 6)->append(object);
    EXPECT_EQ(grid.getCell(3, 4)->getCount(), 0U);
    EXPECT_EQ(grid.getCell(5, 6)->getCount(), 2U);
    EXPECT_EQ(grid.getCell(5, 6)->getFirst(), other);
    EXPECT_EQ(grid.getCell(5, 6)->getLast(), object);
    EXPECT_EQ(object->getList(), grid.getCell(5, 6));
    EXPECT_TRUE(deleted.empty());
}
