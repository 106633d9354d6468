#pragma once

#include "solids.h"

class Mesh;
class Terrain;

/// The engine's own shapes as solids to draw.

/// A mesh with its vertex normals, which must have been calculated. One without texture coordinates gets a texture as
/// if it were projected along y, from 0 to 1 over a unit.
Solid makeShape(const Mesh& mesh);

/// A terrain with smooth normals.
Solid makeShape(const Terrain& terrain);
