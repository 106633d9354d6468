#pragma once

#include <xum/geometry/vector.h>

#include <array>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

class ConfigSection;

/// A side of a brush: what lies behind the plane may be inside. The normal has length 1.
struct SideSource {
    Vector3<double> normal;
    double distance = 0;
    std::string texture; ///< empty: the side is not drawn
};

/// A convex solid as its maker described it.
struct BrushSource {
    std::vector<SideSource> sides;
    unsigned char kind = 0;
    double scale = 1;    ///< repeats of a texture a world unit
    bool isSolid = true; ///< hides what is inside it and makes leaves solid
    std::string name;    ///< for messages: "brush 3"
};

/// One tree with its place.
struct MeshSource {
    Vector3<float> origin;
    std::vector<BrushSource> brushes;
};

/// A height field as the engine's Terrain has it: 2 * width + 1 columns and 2 * height + 1 rows around its origin.
struct TerrainSource {
    int width = 1;
    int height = 1;
    int spacing = 1; ///< world units from column to column
    Vector3<float> origin;
    std::string texture;
    double scale = 1;           ///< repeats of the texture a world unit
    std::vector<float> heights; ///< above the origin, row by row

    int countColumns() const { return 2 * width + 1; }
    int countRows() const { return 2 * height + 1; }
};

/// A thing for the game: entries by name, in order.
using EntitySource = std::vector<std::pair<std::string, std::string>>;

/// A readable description of a level.
struct MapSource {
    std::string title;
    std::vector<MeshSource> meshes;
    std::vector<EntitySource> entities;
    std::vector<TerrainSource> terrains;
};

/// What is wrong with a description, for the user.
class MapProblem : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Throws MapProblem for what is no level; unknown names are problems, too, so that a slip does not pass unseen.
MapSource readMapSource(const ConfigSection& root);

/// The description of a map, which readMapSource reads as the same map.
std::unique_ptr<ConfigSection> makeMapSection(const MapSource& source);

/// Of a terrain alone; compiled maps hold it, too.
std::unique_ptr<ConfigSection> makeTerrainSection(const TerrainSource& terrain);
TerrainSource readTerrain(const ConfigSection& section, const std::string& name);

/// Of a box in this order, with the names of the entries for a texture of their own.
struct BoxSide {
    const char* name;
    Vector3<double> normal;
};
extern const std::array<BoxSide, 6> boxSides;

/// A brush's two corners when it is a box, with its sides in the order of boxSides.
std::optional<std::pair<Vector3<double>, Vector3<double>>> asBox(const BrushSource& brush);
