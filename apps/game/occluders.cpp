#include "occluders.h"

#include "level.h"

#include <xum/geometry/brush.h>
#include <xum/geometry/bsp.h>
#include <xum/geometry/bsp_mesh.h>
#include <xum/geometry/bsp_node.h>
#include <xum/geometry/clipper.h>

#include <cmath>
#include <set>

namespace {

constexpr float smallestArea = 1.0f;
constexpr float largestSide = 500.0f; // of anything

float calculateArea(const std::vector<Vertex>& corners)
{
    Vector3<float> sum;
    for (std::size_t i = 2; i < corners.size(); ++i)
        sum += cross(corners[i - 1].position - corners[0].position, corners[i].position - corners[0].position);
    return length(sum) / 2;
}

/// Each side of a convex solid is a large square in its plane, cut by all other planes. The clipper leaves it a little
/// smaller than it is.
void addSides(std::vector<Polygon>& sides, const std::vector<Plane<float>>& planes, const Vector3<float>& origin)
{
    for (const Plane<float>& plane : planes) {
        const Vector3<float> any = std::fabs(plane.normal.z) < 0.7f ? Vector3<float>(0, 0, 1) : Vector3<float>(1, 0, 0);
        const Vector3<float> across = normalize(cross(any, plane.normal)) * largestSide;
        const Vector3<float> up = cross(plane.normal, across);
        const Vector3<float> middle = plane.normal * plane.distance;
        const Polygon square({Vertex(middle - across - up, {}), Vertex(middle + across - up, {}),
                              Vertex(middle + across + up, {}), Vertex(middle - across + up, {})});
        std::vector<Plane<float>> others;
        for (const Plane<float>& other : planes)
            if (&other != &plane) others.emplace_back(-other.normal, -other.distance);
        std::vector<Vertex> corners = Clipper(others).clipPolygon(&square);
        for (Vertex& corner : corners) corner.position += origin;
        if (corners.size() >= 3 && calculateArea(corners) >= smallestArea) sides.emplace_back(corners);
    }
}

std::vector<Plane<float>> makeBoxPlanes(const Thing& thing)
{
    std::vector<Plane<float>> planes;
    for (const Vector3<float>& side : {Vector3<float>(1, 0, 0), Vector3<float>(0, 1, 0), Vector3<float>(0, 0, 1)}) {
        for (const float sign : {-1.0f, 1.0f}) {
            const Vector3<float> normal = normalize(thing.normals * (side * sign));
            const Vector4<float> point = thing.world * Vector4<float>(side * (0.5f * sign), 1);
            planes.emplace_back(normal, dot(normal, {point.x, point.y, point.z}));
        }
    }
    return planes;
}

/// Whether a box reaches into solid leaves.
bool touchesSolid(const BSPNode* node, const Vector3<float>& centre, float reach)
{
    if (node->isLeaf()) return node->getLeaf()->kind;
    const BSPNodeContentNode& inner = *node->getNode();
    const Vector3<float>& normal = inner.plane.normal;
    const float distance = inner.plane.signedDistance(centre);
    const float extent = (std::fabs(normal.x) + std::fabs(normal.y) + std::fabs(normal.z)) * reach;
    return (distance >= -extent && touchesSolid(inner.front, centre, reach)) ||
           (distance <= extent && touchesSolid(inner.back, centre, reach));
}

} // namespace

Occluders::Occluders(const Scene& scene) : level(scene.level)
{
    for (const Thing& thing : scene.things)
        if (thing.shape == static_cast<std::size_t>(SolidKind::Box)) addSides(sidesOfThings, makeBoxPlanes(thing), {});
    if (!level) return;
    const auto& meshes = level->getMap().getBSPMeshes();
    for (const BSPMesh* mesh = meshes.getFirst(); mesh != nullptr; mesh = mesh->getNext()) {
        std::set<const Brush*> known;
        for (const BSPNode* leaf : mesh->getBSP()->calculateLeafArray()) {
            if (!leaf->getLeaf()->kind) continue; // a brush that is not solid hides nothing
            for (const Brush* brush : leaf->getLeaf()->brushes)
                if (known.insert(brush).second) addSides(sidesOfLevel, brush->planes, mesh->getOrigin());
        }
    }
}

void Occluders::addTo(OcclusionMap& map, const Vector3<float>& eye, float reach) const
{
    for (const Polygon& side : sidesOfThings) map.addOccluder(side);
    if (!level) return;
    const auto& meshes = level->getMap().getBSPMeshes();
    for (const BSPMesh* mesh = meshes.getFirst(); mesh != nullptr; mesh = mesh->getNext())
        if (touchesSolid(mesh->getBSP()->getRoot(), eye - mesh->getOrigin(), reach)) return;
    for (const Polygon& side : sidesOfLevel) map.addOccluder(side);
}
