#include <xum/geometry/bsp.h>

#include <xum/geometry/bsp_clone.h>
#include <xum/geometry/bsp_pool.h>

BSP::BSP(BSPNode* root) : root(root) {}

BSP::BSP(std::unique_ptr<BSPNode> root, std::unique_ptr<BSPPool> pool) : root(root.release()), pool(std::move(pool)) {}

BSP::BSP(const BSP& other) : root(nullptr), pool(std::make_unique<BSPPool>())
{
    root = BSPCloner(pool.get()).cloneTree(other.root).release();
}

BSP::~BSP()
{
    delete root;
}

const BSPNode* BSP::locatePoint(const Vector3<float>& point) const
{
    const BSPNode* node = root;
    while (node != nullptr) {
        const BSPNodeContentNode* const content = node->getNode();
        if (content == nullptr) return node;
        node = content->plane.isInFront(point) ? content->front : content->back;
    }
    return nullptr;
}

std::vector<BSPNode*> BSP::calculateLeafArray()
{
    std::vector<BSPNode*> leaves;
    std::vector<BSPNode*> pending = {root};
    while (!pending.empty()) {
        BSPNode* const top = pending.back();
        pending.pop_back();
        if (top == nullptr) continue;
        if (BSPNodeContentNode* node = top->getNode()) {
            pending.push_back(node->back);
            pending.push_back(node->front);
        } else {
            leaves.push_back(top);
        }
    }
    return leaves;
}
