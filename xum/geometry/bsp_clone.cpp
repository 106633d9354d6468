#include <xum/geometry/bsp_clone.h>

#include <utility>

std::unique_ptr<BSPNode> BSPCloner::cloneTree(const BSPNode* root)
{
    BSPNode* copy = nullptr;
    try {
        cloneInto(copy, root);
    } catch (...) {
        delete copy;
        throw;
    }
    giveAway();
    return std::unique_ptr<BSPNode>(copy);
}

std::unique_ptr<BSPNodeContentNode> BSPCloner::cloneNode(const BSPNodeContentNode& node)
{
    auto copy = std::make_unique<BSPNodeContentNode>(node.plane, nullptr, nullptr);
    cloneInto(copy->front, node.front);
    cloneInto(copy->back, node.back);
    giveAway();
    return copy;
}

std::unique_ptr<BSPNodeContentLeaf> BSPCloner::cloneLeaf(const BSPNodeContentLeaf& leaf)
{
    auto copy = copyLeaf(leaf);
    giveAway();
    return copy;
}

std::unique_ptr<BSPNodeContentLeaf> BSPCloner::copyLeaf(const BSPNodeContentLeaf& leaf)
{
    auto copy = std::make_unique<BSPNodeContentLeaf>(leaf.kind, leaf.brushes, leaf.polygons);
    for (Brush*& brush : copy->brushes) brush = cloneBrush(brush);
    for (Polygon*& polygon : copy->polygons) polygon = clonePolygon(polygon);
    return copy;
}

// What is copied hangs in the tree at once, so that whoever owns the root can delete it at any time.
void BSPCloner::cloneInto(BSPNode*& root, const BSPNode* source)
{
    std::vector<std::pair<BSPNode**, const BSPNode*>> pending = {{&root, source}};
    while (!pending.empty()) {
        const auto [place, original] = pending.back();
        pending.pop_back();
        if (original == nullptr) continue;
        *place = cloneWithoutChildren(*original).release();
        if (const BSPNodeContentNode* node = original->getNode()) {
            pending.emplace_back(&(*place)->getNode()->back, node->back);
            pending.emplace_back(&(*place)->getNode()->front, node->front);
        }
    }
}

std::unique_ptr<BSPNode> BSPCloner::cloneWithoutChildren(const BSPNode& node)
{
    std::unique_ptr<BSPNode> copy;
    if (const BSPNodeContentNode* inner = node.getNode()) {
        copy = std::make_unique<BSPNode>(inner->plane, nullptr, nullptr);
    } else {
        const std::unique_ptr<BSPNodeContentLeaf> leaf = copyLeaf(*node.getLeaf());
        copy = std::make_unique<BSPNode>(leaf->kind, std::move(leaf->brushes), std::move(leaf->polygons));
    }
    copy->word = node.word;
    return copy;
}

Brush* BSPCloner::cloneBrush(const Brush* brush)
{
    if (brush == nullptr) return nullptr;
    if (pool != nullptr) return &pool->add(*brush);
    return brushes.emplace_back(std::make_unique<Brush>(*brush)).get();
}

Polygon* BSPCloner::clonePolygon(const Polygon* polygon)
{
    if (polygon == nullptr) return nullptr;
    if (pool != nullptr) return &pool->add(*polygon);
    return polygons.emplace_back(std::make_unique<Polygon>(*polygon)).get();
}

void BSPCloner::giveAway()
{
    for (std::unique_ptr<Brush>& brush : brushes) static_cast<void>(brush.release());
    for (std::unique_ptr<Polygon>& polygon : polygons) static_cast<void>(polygon.release());
}
