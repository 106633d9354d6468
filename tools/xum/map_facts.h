#pragma once

#include <xum/geometry/bsp_node.h>
#include <xum/geometry/vector.h>

#include <cstdint>
#include <vector>

class BSPMesh;

/// What a mesh of a map holds.
struct MeshFacts {
    std::uint64_t nodes = 0; ///< inner ones
    std::uint64_t solidLeaves = 0;
    std::uint64_t emptyLeaves = 0;
    std::uint64_t depth = 0; ///< planes above the deepest leaf
    std::uint64_t polygons = 0;
    std::uint64_t vertices = 0;
    std::uint64_t brushes = 0;
    std::uint64_t references = 0; ///< of leaves to brushes
    Vector3<float> minimum;       ///< of the vertices, seen from the mesh's origin
    Vector3<float> maximum;
};

MeshFacts findFacts(const BSPMesh& mesh);

/// A step on the way from the root to a leaf.
struct TreeStep {
    const BSPNodeContentNode* node;
    bool isBehind;
};

/// Visits the leaves in the order of the file, each with the way to it. No recursion: trees may be of any depth.
template <class VisitLeaf>
void walkLeaves(const BSPNode* node, VisitLeaf visitLeaf)
{
    std::vector<TreeStep> way;
    for (;;) {
        while (node != nullptr && !node->isLeaf()) {
            way.push_back({node->getNode(), false});
            node = node->getNode()->front;
        }
        if (node != nullptr) visitLeaf(*node->getLeaf(), way);
        while (!way.empty() && way.back().isBehind) way.pop_back();
        if (way.empty()) return;
        way.back().isBehind = true;
        node = way.back().node->back;
    }
}
