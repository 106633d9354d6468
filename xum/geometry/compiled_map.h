#pragma once

#include <xum/engine/export.h>
#include <xum/geometry/base_list.h>
#include <xum/geometry/bsp_mesh.h>
#include <xum/geometry/map_grid.h>
#include <xum/geometry/terrain.h>

#include <list>
#include <string>

/// A level: two texts, BSP meshes, terrains, and a grid for the game's objects. The texts and the BSP meshes are what a
/// compiled map file holds; docs/file_formats.md has the bytes.
class XUM_API CompiledMap {
public:
    /// What the texts say is up to whoever makes the map. Throws std::bad_alloc when memory runs out.
    CompiledMap(const std::string& first, const std::string& second);
    ~CompiledMap();

    CompiledMap(const CompiledMap&) = delete;
    CompiledMap& operator=(const CompiledMap&) = delete;

    /// The texts as they were given or read.
    /// @{
    const std::string& getFirst() const { return first; }
    const std::string& getSecond() const { return second; }
    /// @}

    /// Owned by the map, as what is appended to the lists. Only the meshes are written to files.
    /// @{
    BaseList<BSPMesh>& getBSPMeshes() { return bspMeshes; }
    const BaseList<BSPMesh>& getBSPMeshes() const { return bspMeshes; }
    BaseList<Terrain>& getTerrains() { return terrains; }
    const BaseList<Terrain>& getTerrains() const { return terrains; }
    MapGrid& getGrid() { return grid; }
    /// @}

    /// False when anything fails; then the file may be there in part.
    bool writeToFile(const std::string& path) const;

    /// A new map, owned by the caller. Null, without a message, for what is no compiled map: a missing file, another
    /// magic, data that no map can have. A file that ends early gives the map up to there, or null.
    static CompiledMap* readFromFile(const std::string& path);

private:
    std::string first;
    std::string second;
    BaseList<BSPMesh> bspMeshes{true};
    BaseList<Terrain> terrains{true};
    std::list<void*> unused; // destroyed between grid and terrains; nothing fills it
    MapGrid grid;
};
