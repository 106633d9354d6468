#pragma once

#include "map_source.h"

#include <xum/geometry/bsp_mesh.h>
#include <xum/geometry/brush.h>
#include <xum/geometry/compiled_map.h>
#include <xum/geometry/polygon.h>

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

/// A compiled level with what its trees point to.
struct CompiledLevel {
    std::deque<Brush> brushes;
    std::deque<Polygon> polygons; ///< the tag is the number of the texture
    std::unique_ptr<CompiledMap> map;
};

/// Called now and then with what is done and how much of all, 0 to 1.
using CompileProgress = std::function<void(const std::string& what, double part)>;

/// Makes the level of a description: cuts away what lies inside solids, parts space by the planes of what is left, and
/// files polygons and brushes in the leaves. The first text of the map is the title; the second one is a configuration
/// text with the entities, the names of the textures and, for each mesh, the texture numbers of its polygons in the
/// order of the leaves; docs/file_formats.md shows it. Throws MapProblem, naming the brush, for a brush that is open or
/// has no room inside.
CompiledLevel compileMap(const MapSource& source, const CompileProgress& progress);
