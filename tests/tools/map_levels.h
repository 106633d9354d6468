#pragma once

#include <map_compiler.h>
#include <map_facts.h>

#include <xum/files/config_reader.h>
#include <xum/geometry/bsp_mesh.h>
#include <xum/geometry/compiled_map.h>

#include <memory>
#include <sstream>
#include <string>
#include <vector>

/// Levels for the tests of the map compiler.

inline MapSource readMapText(const std::string& text)
{
    return readMapSource(*ConfigReader(text).read());
}

inline CompiledLevel compileText(const std::string& text)
{
    return compileMap(readMapText(text), [](const std::string&, double) {});
}

/// A level of one mesh.
inline CompiledLevel compileBrushes(const std::string& brushes)
{
    return compileText("<map><mesh>" + brushes + "</mesh></map>");
}

/// What is wrong with a level; empty when nothing is.
inline std::string problemOf(const std::string& text)
{
    try {
        compileText(text);
        return "";
    } catch (const MapProblem& problem) {
        return problem.what();
    }
}

/// A brush with a box as six numbers.
inline std::string boxBrush(const std::string& numbers, const std::string& more = "<texture wall/>")
{
    return "<brush><box \"" + numbers + "\"/>" + more + "</brush>";
}

inline BSP& treeOf(const CompiledLevel& level)
{
    return *level.map->getBSPMeshes().getFirst()->getBSP();
}

inline bool isSolidAt(const CompiledLevel& level, const Vector3<float>& point)
{
    return treeOf(level).locatePoint(point)->getLeaf()->kind;
}

inline std::vector<const Polygon*> polygonsOf(const CompiledLevel& level)
{
    std::vector<const Polygon*> polygons;
    for (const BSPNode* leaf : treeOf(level).calculateLeafArray())
        polygons.insert(polygons.end(), leaf->getLeaf()->polygons.begin(), leaf->getLeaf()->polygons.end());
    return polygons;
}

inline Vector3<double> toDouble(const Vector3<float>& v)
{
    return {v.x, v.y, v.z};
}

/// Normal to the side that it is seen from, as long as the area.
inline Vector3<double> areaVectorOf(const Polygon& polygon)
{
    Vector3<double> sum;
    const Vector3<double> start = toDouble(polygon.vertices[0].position);
    for (std::size_t i = 2; i < polygon.vertices.size(); ++i)
        sum +=
            cross(toDouble(polygon.vertices[i - 1].position) - start, toDouble(polygon.vertices[i].position) - start);
    return sum / 2.0;
}

inline Vector3<double> middleOf(const Polygon& polygon)
{
    Vector3<double> sum;
    for (const Vertex& vertex : polygon.vertices) sum += toDouble(vertex.position);
    return sum / static_cast<double>(polygon.vertices.size());
}

inline double areaOf(const CompiledLevel& level)
{
    double sum = 0;
    for (const Polygon* polygon : polygonsOf(level)) sum += length(areaVectorOf(*polygon));
    return sum;
}

/// The area of the polygons that face this way and lie on this plane.
inline double areaOn(const CompiledLevel& level, const Vector3<double>& normal, double distance)
{
    double sum = 0;
    for (const Polygon* polygon : polygonsOf(level)) {
        const Vector3<double> area = areaVectorOf(*polygon);
        const bool isOnPlane = std::abs(dot(normal, middleOf(*polygon)) - distance) < 1e-3;
        if (isOnPlane && dot(normalize(area), normal) > 0.999) sum += length(area);
    }
    return sum;
}
