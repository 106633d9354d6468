#pragma once

#include <xum/engine/export.h>
#include <xum/geometry/bsp_node.h>

#include <memory>
#include <vector>

class BSPPool;

/// A tree that parts space by planes; the leaves hold the brushes and polygons of their region. The engine does not
/// build such trees: compiled maps bring them. Trees may be of any depth.
class XUM_API BSP {
public:
    /// Takes ownership of the tree. The brushes and polygons in its leaves stay the caller's.
    explicit BSP(BSPNode* root);

    /// Copies everything. The copies of brushes and polygons belong to the new tree; a brush that several leaves share
    /// becomes several brushes. Throws std::bad_alloc when memory runs out.
    BSP(const BSP& other);
    BSP& operator=(const BSP&) = delete;

    ~BSP();

    /// Owned by the tree; null if it was made of null.
    BSPNode* getRoot() const { return root; }

    /// The leaf that holds the point. On a plane, the front side counts. Null only where the tree lacks a child.
    const BSPNode* locatePoint(const Vector3<float>& point) const;

    /// Every leaf once, those in front of a plane before those behind it.
    std::vector<BSPNode*> calculateLeafArray();

private:
    friend class BSPReader;

    /// A tree with the brushes and polygons that belong to it.
    BSP(std::unique_ptr<BSPNode> root, std::unique_ptr<BSPPool> pool);

    BSPNode* root;
    std::unique_ptr<BSPPool> pool; // null for a tree that the host built
};
