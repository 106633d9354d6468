#pragma once

#include "game_data.h"
#include "level_land.h"
#include "scene.h"

#include <xum/geometry/box.h>
#include <xum/geometry/compiled_map.h>
#include <xum/geometry/polygon.h>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

/// Where something of the map stands.
struct Place {
    Vector3<float> position;
    float turn = 0; ///< degrees, positive to the left
};

/// A compiled map in the world: what its second text says about the polygons and the things for the game.
class Level {
public:
    struct Face {
        Polygon polygon; ///< in world coordinates
        TextureName texture;
    };

    /// What can be seen in one leaf of a tree.
    struct Leaf {
        std::vector<Face> faces;
        Box bounds; ///< of the faces
    };

    /// Where in the level a point lies.
    struct Position {
        std::size_t leaf; ///< counted through all trees, those with nothing to see included
        bool isSolid;     ///< inside of a brush
    };

    using Entity = std::map<std::string, std::string>; ///< its entries; "class" tells what it is

    /// Throws Failure, naming the file, for a map whose text does not fit its polygons or names an unknown texture.
    Level(std::unique_ptr<CompiledMap> map, const std::string& fileName);

    /// Only leaves with something to see.
    const std::vector<Leaf>& getLeaves() const { return leaves; }

    const CompiledMap& getMap() const { return *map; }

    /// None for a point outside of the box around all faces: trees go on for ever.
    std::optional<Position> locate(const Vector3<float>& point) const;

    /// Where the entities of a class stand, in world coordinates: those of a map count from its first mesh's origin.
    std::vector<Vector3<float>> findPositions(const std::string& className) const;

    /// The same with the entry "turn".
    std::vector<Place> findPlaces(const std::string& className) const;

    /// None without any.
    const std::optional<LevelLand>& getLand() const { return land; }

private:
    /// One tree of the map.
    struct Region {
        const BSPMesh* mesh;
        Box bounds; ///< of its faces
        std::unordered_map<const BSPNode*, std::size_t> leafNumbers;
    };

    void addLeaves(const BSPMesh& mesh, const std::string& textureNumbers, const std::vector<TextureName>& textures,
                   const std::string& fileName);

    std::unique_ptr<CompiledMap> map;
    std::vector<Leaf> leaves;
    std::vector<Region> regions;
    std::size_t leafCount = 0;
    std::vector<Entity> entities;
    std::optional<LevelLand> land;
};

/// Throws Failure, naming the file, when it is missing or no map.
std::unique_ptr<Level> loadLevel(GameData& data, const std::string& name);

/// The same from any file on the disk.
std::unique_ptr<Level> loadLevelFile(const std::string& fileName);
