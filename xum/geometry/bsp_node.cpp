#include <xum/geometry/bsp_node.h>

#include <xum/geometry/bsp_clone.h>

#include <memory>

namespace {

/// Deletes a tree of any depth without recursion and without memory: an inner child is turned up above its parent until
/// the top has no front child any more.
void destroyTree(BSPNode* top)
{
    while (top != nullptr) {
        BSPNodeContentNode* const node = top->getNode();
        if (node == nullptr) {
            delete top;
            return;
        }
        BSPNode* const front = node->front;
        if (front == nullptr) {
            BSPNode* const back = node->back;
            node->back = nullptr;
            delete top;
            top = back;
        } else if (front->isLeaf()) {
            node->front = nullptr;
            delete front;
        } else {
            node->front = front->getNode()->back;
            front->getNode()->back = top;
            top = front;
        }
    }
}

} // namespace

BSPNodeContentNode::~BSPNodeContentNode()
{
    destroyTree(front);
    destroyTree(back);
}

BSPNodeContentNode* BSPNodeContentNode::clone() const
{
    return BSPCloner(nullptr).cloneNode(*this).release();
}

BSPNodeContentLeaf* BSPNodeContentLeaf::clone() const
{
    return BSPCloner(nullptr).cloneLeaf(*this).release();
}

BSPNode::BSPNode(const Plane<float>& plane, BSPNode* front, BSPNode* back)
    : leaf(false), innerContent(plane, front, back)
{}

BSPNode::BSPNode(bool kind, std::vector<Brush*> brushes, std::vector<Polygon*> polygons)
    : leaf(true), leafContent(kind, std::move(brushes), std::move(polygons))
{}

BSPNode::~BSPNode()
{
    if (leaf)
        leafContent.~BSPNodeContentLeaf();
    else
        innerContent.~BSPNodeContentNode();
}
