#pragma once

#include <xum/geometry/vector.h>

#include <array>
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

/// A thing for the game: entries by name, in order.
using EntitySource = std::vector<std::pair<std::string, std::string>>;

/// A readable description of a level.
struct MapSource {
    std::string title;
    std::vector<MeshSource> meshes;
    std::vector<EntitySource> entities;
};

/// What is wrong with a description, for the user.
class MapProblem : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Throws MapProblem for what is no level; unknown names are problems, too, so that a slip does not pass unseen.
MapSource readMapSource(const ConfigSection& root);
