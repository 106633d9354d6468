#pragma once

#include "map_solids.h"
#include "map_source.h"

#include <string>
#include <vector>

/// A brush as a solid.
struct SolidBrush {
    const BrushSource* source;
    ConvexSolid solid;
    Point minimum;
    Point maximum;
};

/// A piece of a brush's side that nothing hides. It is not drawn where the side has no texture.
struct SurfacePiece {
    SolidPlane plane; ///< facing outwards
    Loop loop;
    const BrushSource* brush;
    const SideSource* side;
};

/// Throws MapProblem for a brush that is open or has no room inside.
std::vector<SolidBrush> makeSolids(const MeshSource& mesh);

/// All pieces of sides that lie in no solid brush; of those that are not drawn the sides of solid brushes only, which
/// part empty from solid. Of sides of solid brushes that lie on each other and face the same way that of the later
/// brush counts; those that face each other hide each other. A brush that is not solid hides nothing, and has no side
/// where a solid one has it.
std::vector<SurfacePiece> findSurface(const std::vector<SolidBrush>& brushes);
