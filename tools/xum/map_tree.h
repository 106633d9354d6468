#pragma once

#include "map_surface.h"

#include <xum/geometry/bsp_node.h>

#include <array>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

/// Parts space by the planes of a surface until no piece of it lies across a leaf, and files the pieces and the brushes
/// in the leaves.
///
/// Of the planes at hand the one is chosen that cuts the fewest pieces and parts the others most evenly; planes across
/// an axis are preferred a little. Leaves inside a solid brush are of kind true and hold no polygons; a polygon lies in
/// the leaf before it. Pieces that are not drawn part space as the others do, but become no polygons.
class MapTreeBuilder {
public:
    /// Null for what is too small to be drawn.
    using MakePolygon = std::function<Polygon*(const SurfacePiece& piece)>;
    using MakeProgress = std::function<void(double part)>;

    /// `fileBrushes` are what leaves point to, in the order of `solids`.
    MapTreeBuilder(const std::vector<SolidBrush>& solids, const std::vector<Brush*>& fileBrushes,
                   MakePolygon makePolygon);

    std::unique_ptr<BSPNode> build(std::vector<SurfacePiece> surface, const MakeProgress& progress);

private:
    /// A piece on the way to its leaf.
    struct Piece {
        SurfacePiece surface;
        std::size_t plane;     ///< number of its plane
        bool isParting = true; ///< its plane has not parted the region yet
    };

    /// A node to come.
    struct Task {
        BSPNode** place;
        ConvexSolid region;
        std::vector<Piece> pieces;
        std::vector<std::size_t> brushes; ///< that may reach into the region
    };

    std::size_t numberPlane(const SolidPlane& plane);
    std::size_t choosePlane(const Task& task) const;
    void makeNode(Task& task, std::vector<Task>& tasks);
    void makeLeaf(Task& task);
    bool part(Task& task, std::size_t number, Task& front, Task& back) const;

    const std::vector<SolidBrush>& solids;
    const std::vector<Brush*>& fileBrushes;
    MakePolygon makePolygon;
    std::vector<SolidPlane> planes; // by number; opposite ones share a number
    std::map<std::array<double, 4>, std::size_t> numbers;
};
