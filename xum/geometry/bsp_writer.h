#pragma once

#include <xum/geometry/bsp_node.h>

#include <cstdint>
#include <unordered_map>

class Serializer;

/// Writes the tree of a BSPMesh.
class BSPWriter {
public:
    explicit BSPWriter(Serializer& out) : out(out) {}

    /// A missing node is written as an empty leaf.
    void write(const Vector3<float>& origin, const BSPNode* root);

private:
    void numberBrushes(const BSPNode* root);
    void writeBrushes();
    void writeNode(const BSPNode* node);
    void writeLeaf(const BSPNodeContentLeaf& leaf);

    Serializer& out;
    std::unordered_map<const Brush*, std::uint32_t> numbers;
    std::vector<const Brush*> brushes; // by number
};
