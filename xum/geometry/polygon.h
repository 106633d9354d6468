#pragma once

#include <xum/geometry/vector.h>

#include <cstdint>
#include <vector>

/// A corner of a textured polygon.
struct Vertex {
    Vector3<float> position;          ///< in world units
    Vector2<float> textureCoordinate; ///< (0, 0) is the upper left corner of an image, (1, 1) the lower right one

    constexpr Vertex() = default;
    /// Both are stored as they are.
    constexpr Vertex(const Vector3<float>& position, const Vector2<float>& textureCoordinate)
        : position(position), textureCoordinate(textureCoordinate)
    {}
};

static_assert(sizeof(Vertex) == 20 && std::is_standard_layout_v<Vertex>);

/// A convex textured polygon. Behind <windows.h>, which has a function of that name, a host writes "struct Polygon".
struct Polygon {
    std::vector<Vertex> vertices; ///< the loop, in order
    std::int32_t tag = -1;        ///< the host's; copied with the polygon, but not written to files

    /// Copies the loop; nobody checks that it is convex and flat.
    explicit Polygon(const std::vector<Vertex>& vertices) : vertices(vertices) {}
};
