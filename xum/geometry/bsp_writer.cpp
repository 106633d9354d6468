#include <xum/geometry/bsp_writer.h>

#include <xum/geometry/brush.h>
#include <xum/geometry/polygon.h>
#include <xum/geometry/serialized_values.h>

#include <algorithm>

namespace {

constexpr char innerFlag = 0;
constexpr char leafFlag = 1;

std::uint32_t asCount(std::size_t size)
{
    return static_cast<std::uint32_t>(size);
}

/// Calls `visit` for every node, a missing one as null, in the order of the file: front before back.
template <class Visit>
void walk(const BSPNode* root, Visit visit)
{
    std::vector<const BSPNode*> pending = {root};
    while (!pending.empty()) {
        const BSPNode* const node = pending.back();
        pending.pop_back();
        visit(node);
        if (node == nullptr || node->isLeaf()) continue;
        pending.push_back(node->getNode()->back);
        pending.push_back(node->getNode()->front);
    }
}

} // namespace

void BSPWriter::write(const Vector3<float>& origin, const BSPNode* root)
{
    writeValue(out, origin);
    numberBrushes(root);
    writeBrushes();
    walk(root, [this](const BSPNode* node) { writeNode(node); });
}

void BSPWriter::numberBrushes(const BSPNode* root)
{
    walk(root, [this](const BSPNode* node) {
        if (node == nullptr || !node->isLeaf()) return;
        for (const Brush* brush : node->getLeaf()->brushes)
            if (brush != nullptr && numbers.try_emplace(brush, asCount(brushes.size())).second)
                brushes.push_back(brush);
    });
}

// In the order of their numbers, so that the same map gives the same bytes.
void BSPWriter::writeBrushes()
{
    writeValue(out, asCount(brushes.size()));
    for (std::size_t i = 0; i < brushes.size(); ++i) {
        const Brush& brush = *brushes[i];
        writeValue(out, asCount(i));
        writeValue(out, asCount(brush.planes.size()));
        writeValues(out, brush.planes.data(), brush.planes.size());
        writeValue(out, brush.kind);
    }
}

void BSPWriter::writeNode(const BSPNode* node)
{
    const BSPNodeContentNode* const inner = node != nullptr ? node->getNode() : nullptr;
    if (inner != nullptr) {
        writeValue(out, innerFlag);
        writeValue(out, inner->plane);
        return;
    }
    writeValue(out, leafFlag);
    if (node != nullptr)
        writeLeaf(*node->getLeaf());
    else
        writeLeaf(BSPNodeContentLeaf(false, {}, {}));
}

void BSPWriter::writeLeaf(const BSPNodeContentLeaf& leaf)
{
    const auto countPresent = [](const auto& pointers) {
        return asCount(pointers.size() -
                       static_cast<std::size_t>(std::count(pointers.begin(), pointers.end(), nullptr)));
    };
    writeValue(out, static_cast<unsigned char>(leaf.kind ? 1 : 0));
    writeValue(out, countPresent(leaf.brushes));
    for (const Brush* brush : leaf.brushes)
        if (brush != nullptr) writeValue(out, numbers.at(brush));
    writeValue(out, countPresent(leaf.polygons));
    for (const Polygon* polygon : leaf.polygons) {
        if (polygon == nullptr) continue;
        writeValue(out, asCount(polygon->vertices.size()));
        writeValues(out, polygon->vertices.data(), polygon->vertices.size());
    }
}
