#include "map_facts.h"

#include <xum/geometry/bsp_mesh.h>
#include <xum/geometry/polygon.h>

#include <algorithm>
#include <unordered_set>

namespace {

void takeIn(MeshFacts& facts, const Vector3<float>& point)
{
    if (facts.vertices == 0) facts.minimum = facts.maximum = point;
    ++facts.vertices;
    facts.minimum = {std::min(facts.minimum.x, point.x), std::min(facts.minimum.y, point.y),
                     std::min(facts.minimum.z, point.z)};
    facts.maximum = {std::max(facts.maximum.x, point.x), std::max(facts.maximum.y, point.y),
                     std::max(facts.maximum.z, point.z)};
}

} // namespace

MeshFacts findFacts(const BSPMesh& mesh)
{
    MeshFacts facts;
    std::unordered_set<const Brush*> brushes;
    walkLeaves(mesh.getBSP()->getRoot(), [&](const BSPNodeContentLeaf& leaf, const std::vector<TreeStep>& way) {
        ++(leaf.kind ? facts.solidLeaves : facts.emptyLeaves);
        facts.depth = std::max<std::uint64_t>(facts.depth, way.size());
        facts.polygons += leaf.polygons.size();
        facts.references += leaf.brushes.size();
        brushes.insert(leaf.brushes.begin(), leaf.brushes.end());
        for (const Polygon* polygon : leaf.polygons)
            for (const Vertex& vertex : polygon->vertices) takeIn(facts, vertex.position);
    });
    facts.nodes = facts.solidLeaves + facts.emptyLeaves - 1;
    facts.brushes = brushes.size();
    return facts;
}
