#include "solids.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <utility>

namespace {

constexpr float pi = 3.14159265f;
constexpr float radius = 0.5f;
constexpr int sides = 32; // of round solids

float part(int i, int count)
{
    return static_cast<float>(i) / static_cast<float>(count);
}

unsigned int addVertex(Solid& solid, const Vector3<float>& position, const Vector2<float>& textureCoordinate,
                       const Vector3<float>& normal)
{
    solid.positions.push_back(position);
    solid.textureCoordinates.push_back(textureCoordinate);
    solid.normals.push_back(normalize(normal));
    return static_cast<unsigned int>(solid.positions.size() - 1);
}

void addTriangle(Solid& solid, unsigned int a, unsigned int b, unsigned int c)
{
    solid.triangles.insert(solid.triangles.end(), {a, b, c});
}

/// A flat parallelogram. Seen from its front, `across` points to the right and `up` upwards.
void addRectangle(Solid& solid, const Vector3<float>& lowerLeft, const Vector3<float>& across, const Vector3<float>& up)
{
    const Vector3<float> normal = cross(across, up);
    const unsigned int a = addVertex(solid, lowerLeft, {0.0f, 1.0f}, normal);
    const unsigned int b = addVertex(solid, lowerLeft + across, {1.0f, 1.0f}, normal);
    const unsigned int c = addVertex(solid, lowerLeft + across + up, {1.0f, 0.0f}, normal);
    const unsigned int d = addVertex(solid, lowerLeft + up, {0.0f, 0.0f}, normal);
    addTriangle(solid, a, b, c);
    addTriangle(solid, a, c, d);
}

/// A surface in columns from left to right and rows from bottom to top, seen from its front. `vertexAt(u, v)` gives
/// position and normal; u and v run from 0 to 1. Triangles without area, at a pole or an apex, are left out.
template <class VertexAt>
void addGrid(Solid& solid, int columns, int rows, VertexAt vertexAt)
{
    const unsigned int first = static_cast<unsigned int>(solid.positions.size());
    for (int row = 0; row <= rows; ++row) {
        for (int column = 0; column <= columns; ++column) {
            const auto [position, normal] = vertexAt(part(column, columns), part(row, rows));
            addVertex(solid, position, {part(column, columns), 1.0f - part(row, rows)}, normal);
        }
    }
    const auto addUnlessEmpty = [&](unsigned int a, unsigned int b, unsigned int c) {
        const Vector3<float>& corner = solid.positions[a];
        const Vector3<float> area = cross(solid.positions[b] - corner, solid.positions[c] - corner);
        if (length(area) > 1e-6f) addTriangle(solid, a, b, c);
    };
    const unsigned int stride = static_cast<unsigned int>(columns) + 1;
    for (unsigned int row = 0; row < static_cast<unsigned int>(rows); ++row) {
        for (unsigned int column = 0; column + 1 < stride; ++column) {
            const unsigned int corner = first + row * stride + column;
            addUnlessEmpty(corner, corner + 1, corner + stride + 1);
            addUnlessEmpty(corner, corner + stride + 1, corner + stride);
        }
    }
}

Vector3<float> onCircle(float turn)
{
    return {std::cos(2.0f * pi * turn), std::sin(2.0f * pi * turn), 0.0f};
}

using VertexPlace = std::pair<Vector3<float>, Vector3<float>>; // position and normal

/// The side of a cylinder or, with a smaller top, of a cone.
void addSide(Solid& solid, float topRadius)
{
    const Vector3<float> slope = {0.0f, 0.0f, radius - topRadius};
    addGrid(solid, sides, 1, [&](float u, float v) {
        const Vector3<float> outwards = onCircle(u);
        const Vector3<float> height = {0.0f, 0.0f, v - 0.5f};
        return VertexPlace(outwards * (radius + (topRadius - radius) * v) + height, outwards + slope);
    });
}

/// A round lid at the top, facing up, or at the bottom, facing down.
void addLid(Solid& solid, bool isTop)
{
    const Vector3<float> up = {0.0f, 0.0f, isTop ? 1.0f : -1.0f};
    const unsigned int centre = addVertex(solid, up * 0.5f, {0.5f, 0.5f}, up);
    for (int i = 0; i <= sides; ++i) {
        const Vector3<float> edge = onCircle(part(i, sides)) * radius;
        addVertex(solid, edge + up * 0.5f, {edge.x + 0.5f, 0.5f - edge.y}, up);
    }
    for (unsigned int i = 1; i <= static_cast<unsigned int>(sides); ++i)
        addTriangle(solid, centre, centre + (isTop ? i : i + 1), centre + (isTop ? i + 1 : i));
}

void addBox(Solid& solid)
{
    addRectangle(solid, {-radius, -radius, -radius}, {1, 0, 0}, {0, 0, 1});
    addRectangle(solid, {radius, -radius, -radius}, {0, 1, 0}, {0, 0, 1});
    addRectangle(solid, {radius, radius, -radius}, {-1, 0, 0}, {0, 0, 1});
    addRectangle(solid, {-radius, radius, -radius}, {0, -1, 0}, {0, 0, 1});
    addRectangle(solid, {-radius, -radius, radius}, {1, 0, 0}, {0, 1, 0});
    addRectangle(solid, {-radius, radius, -radius}, {1, 0, 0}, {0, -1, 0});
}

void addSphere(Solid& solid)
{
    addGrid(solid, sides, sides / 2, [](float u, float v) {
        const float latitude = pi * (v - 0.5f);
        const Vector3<float> outwards = onCircle(u) * std::cos(latitude) + Vector3<float>(0, 0, std::sin(latitude));
        return VertexPlace(outwards * radius, outwards);
    });
}

void addRing(Solid& solid)
{
    constexpr float tubeRadius = 0.1f * radius;
    addGrid(solid, sides, sides / 2, [](float u, float v) {
        const float around = 2.0f * pi * v;
        const Vector3<float> outwards = onCircle(u) * std::cos(around) + Vector3<float>(0, 0, std::sin(around));
        return VertexPlace(onCircle(u) * (radius - tubeRadius) + outwards * tubeRadius, outwards);
    });
}

void addPyramid(Solid& solid)
{
    const Vector3<float> corners[] = {
        {-radius, -radius, -radius}, {radius, -radius, -radius}, {radius, radius, -radius}, {-radius, radius, -radius}};
    const Vector3<float> apex = {0.0f, 0.0f, 0.5f};
    for (int i = 0; i < 4; ++i) {
        const Vector3<float>& left = corners[i];
        const Vector3<float>& right = corners[(i + 1) % 4];
        const Vector3<float> normal = cross(right - left, apex - left);
        const unsigned int a = addVertex(solid, left, {0.0f, 1.0f}, normal);
        const unsigned int b = addVertex(solid, right, {1.0f, 1.0f}, normal);
        const unsigned int c = addVertex(solid, apex, {0.5f, 0.0f}, normal);
        addTriangle(solid, a, b, c);
    }
    addRectangle(solid, {-radius, radius, -radius}, {1, 0, 0}, {0, -1, 0});
}

} // namespace

Solid makeSolid(SolidKind kind)
{
    Solid solid;
    switch (kind) {
    case SolidKind::Box: addBox(solid); break;
    case SolidKind::Sphere: addSphere(solid); break;
    case SolidKind::Cylinder:
        addSide(solid, radius);
        addLid(solid, true);
        addLid(solid, false);
        break;
    case SolidKind::Cone:
        addSide(solid, 0.0f);
        addLid(solid, false);
        break;
    case SolidKind::Pyramid: addPyramid(solid); break;
    case SolidKind::Ring: addRing(solid); break;
    }
    return solid;
}

bool isRound(SolidKind kind)
{
    return kind != SolidKind::Box && kind != SolidKind::Pyramid;
}

std::vector<unsigned int> makeEdges(const std::vector<unsigned int>& triangles)
{
    std::set<std::pair<unsigned int, unsigned int>> edges;
    for (std::size_t i = 0; i + 2 < triangles.size(); i += 3) {
        for (std::size_t corner = 0; corner < 3; ++corner) {
            const unsigned int a = triangles[i + corner];
            const unsigned int b = triangles[i + (corner + 1) % 3];
            edges.emplace(std::min(a, b), std::max(a, b));
        }
    }
    std::vector<unsigned int> indices;
    indices.reserve(edges.size() * 2);
    for (const auto& [a, b] : edges) indices.insert(indices.end(), {a, b});
    return indices;
}
