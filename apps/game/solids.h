#pragma once

#include <xum/geometry/vector.h>

#include <cstddef>
#include <vector>

/// The kinds of solids. Each fits a cube with sides of 1 around the origin; front faces are counter-clockwise.
enum class SolidKind : int { Box, Sphere, Cylinder, Cone, Pyramid, Ring };
constexpr std::size_t solidKindCount = 6;

/// Vertices with texture coordinates and normals, and the index lists that draw them.
struct Solid {
    std::vector<Vector3<float>> positions;
    std::vector<Vector2<float>> textureCoordinates; ///< 0 to 1 over each face, v downwards
    std::vector<Vector3<float>> normals;
    std::vector<unsigned int> triangles;
};

/// A pyramid and a cone stand on their base, a ring lies flat; its tube is a tenth of its width thick.
Solid makeSolid(SolidKind kind);

/// Whether a texture goes around the solid and therefore must repeat a whole number of times.
bool isRound(SolidKind kind);

/// The edges of triangles as index pairs, each edge once.
std::vector<unsigned int> makeEdges(const std::vector<unsigned int>& triangles);
