#pragma once

#include <xum/geometry/bsp_node.h>
#include <xum/geometry/bsp_pool.h>

#include <memory>

/// Copies trees and their contents, of any depth, without recursion.
class BSPCloner {
public:
    /// The copies of brushes and polygons go into the pool; without one they are the caller's to delete.
    explicit BSPCloner(BSPPool* pool) : pool(pool) {}

    /// Null for null.
    std::unique_ptr<BSPNode> cloneTree(const BSPNode* root);

    std::unique_ptr<BSPNodeContentNode> cloneNode(const BSPNodeContentNode& node);
    std::unique_ptr<BSPNodeContentLeaf> cloneLeaf(const BSPNodeContentLeaf& leaf);

private:
    void cloneInto(BSPNode*& root, const BSPNode* source);
    std::unique_ptr<BSPNodeContentLeaf> copyLeaf(const BSPNodeContentLeaf& leaf);
    std::unique_ptr<BSPNode> cloneWithoutChildren(const BSPNode& node);
    Brush* cloneBrush(const Brush* brush);
    Polygon* clonePolygon(const Polygon* polygon);
    void giveAway();

    BSPPool* pool;
    // Without a pool: the copies, until all is copied and they are the caller's.
    std::vector<std::unique_ptr<Brush>> brushes;
    std::vector<std::unique_ptr<Polygon>> polygons;
};
