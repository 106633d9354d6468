#include <xum/geometry/base_list.h>
#include <xum/geometry/bsp_mesh.h>
#include <xum/geometry/bsp_node.h>
#include <xum/geometry/map_grid.h>
#include <xum/geometry/mesh.h>
#include <xum/geometry/terrain.h>

#include "slots.h"

#include <gtest/gtest.h>

#include <type_traits>

// Hosts compile against the places of these operations. A destructor takes two of them.

TEST(InterfaceSlots, ofListsAndTheirNodesHaveOnlyTheDestructor)
{
    EXPECT_EQ(placesOf<BaseList<MapGridObject>>(), 2);
    EXPECT_EQ(placesOf<BaseListNode<MapGridObject>>(), 2);
    EXPECT_EQ(placesOf<BSPMesh>(), 2);
    EXPECT_EQ(placesOf<Terrain>(), 2);
    static_assert(std::has_virtual_destructor_v<BaseList<MapGridObject>>);
    static_assert(std::has_virtual_destructor_v<BaseListNode<MapGridObject>>);
}

TEST(InterfaceSlots, ofTheMapGridHaveOnlyTheDestructor)
{
    EXPECT_EQ(placesOf<MapGrid>(), 2);
    EXPECT_EQ(placesOf<MapGridCell>(), 2);
    EXPECT_EQ(placesOf<MapGridObject>(), 2);
    static_assert(std::has_virtual_destructor_v<MapGrid> && std::has_virtual_destructor_v<MapGridCell>);
    static_assert(std::has_virtual_destructor_v<MapGridObject>);
}

TEST(InterfaceSlots, ofMeshAndNodeContentAreTheDestructorAndOneOperation)
{
    EXPECT_EQ(placesOf<BSPNodeContent>(), 3);
    EXPECT_EQ(placesOf<Mesh>(), 3);
    static_assert(std::has_virtual_destructor_v<BSPNodeContent> && std::has_virtual_destructor_v<Mesh>);
}
