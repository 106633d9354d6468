#pragma once

#include <xum/engine/export.h>
#include <xum/geometry/plane.h>

#include <cstdint>
#include <utility>
#include <vector>

class BSPNode;
struct Brush;
struct Polygon;

/// What a node of a BSP tree holds: a plane with two children, or the contents of a leaf. Slot order is ABI.
class XUM_API BSPNodeContent {
public:
    virtual ~BSPNodeContent() = default;

    /// A new content with everything below copied; whoever asks owns it and the brushes and polygons in its leaves.
    /// A brush that several leaves share becomes several brushes.
    virtual BSPNodeContent* clone() const = 0;

    BSPNodeContent(const BSPNodeContent&) = delete;
    BSPNodeContent& operator=(const BSPNodeContent&) = delete;

protected:
    BSPNodeContent() = default;
};

/// The content of an inner node. Owns its children.
class XUM_API BSPNodeContentNode final : public BSPNodeContent {
public:
    /// Takes ownership of the children.
    BSPNodeContentNode(const Plane<float>& plane, BSPNode* front, BSPNode* back)
        : plane(plane), front(front), back(back)
    {}
    ~BSPNodeContentNode() override;

    BSPNodeContentNode* clone() const override;

    Plane<float> plane; ///< parts the space between the children
    BSPNode* front;     ///< where the plane's signed distance is 0 or more
    BSPNode* back;      ///< where it is less
};

/// The content of a leaf. Owns nothing that it points to.
class XUM_API BSPNodeContentLeaf final : public BSPNodeContent {
public:
    /// Takes the lists, but not what they point to.
    BSPNodeContentLeaf(bool kind, std::vector<Brush*> brushes, std::vector<struct Polygon*> polygons)
        : kind(kind), brushes(std::move(brushes)), polygons(std::move(polygons))
    {}

    BSPNodeContentLeaf* clone() const override;

    bool kind; ///< means what the maker of the map says
    /// Owned by the tree or by the host, see BSP.
    /// @{
    std::vector<Brush*> brushes;
    std::vector<struct Polygon*> polygons;
    /// @}
};

/// A node of a BSP tree. Owns its content, and with it all nodes below.
class XUM_API BSPNode {
public:
    /// An inner node; takes ownership of the children.
    BSPNode(const Plane<float>& plane, BSPNode* front, BSPNode* back);

    /// A leaf. `kind` is only stored; the brushes and polygons stay the caller's, and may be in several leaves.
    BSPNode(bool kind, std::vector<Brush*> brushes, std::vector<struct Polygon*> polygons);

    ~BSPNode();

    BSPNode(const BSPNode&) = delete;
    BSPNode& operator=(const BSPNode&) = delete;

    /// Whether getLeaf has the content; else getNode has it.
    bool isLeaf() const { return leaf; }

    /// The content of an inner node; null for a leaf.
    /// @{
    BSPNodeContentNode* getNode() { return leaf ? nullptr : &innerContent; }
    const BSPNodeContentNode* getNode() const { return leaf ? nullptr : &innerContent; }
    /// @}

    /// The content of a leaf; null for an inner node.
    /// @{
    BSPNodeContentLeaf* getLeaf() { return leaf ? &leafContent : nullptr; }
    const BSPNodeContentLeaf* getLeaf() const { return leaf ? &leafContent : nullptr; }
    /// @}

    /// The content of either kind; never null.
    const BSPNodeContent* getContent() const
    {
        return leaf ? static_cast<const BSPNodeContent*>(&leafContent) : &innerContent;
    }

    std::uint32_t word = 0; ///< the host's; copied with the node, but not written to files

private:
    bool leaf;
    /// @cond
    union { // in the node itself: to follow a path down is to wait for memory once a level
        BSPNodeContentNode innerContent;
        BSPNodeContentLeaf leafContent;
    };
    /// @endcond
};
