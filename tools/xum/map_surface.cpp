#include "map_surface.h"

#include <utility>

namespace {

bool mayTouch(const SolidBrush& a, const SolidBrush& b)
{
    const auto overlaps = [](double minimumA, double maximumA, double minimumB, double maximumB) {
        return minimumA <= maximumB + onPlane && minimumB <= maximumA + onPlane;
    };
    return overlaps(a.minimum.x, a.maximum.x, b.minimum.x, b.maximum.x) &&
           overlaps(a.minimum.y, a.maximum.y, b.minimum.y, b.maximum.y) &&
           overlaps(a.minimum.z, a.maximum.z, b.minimum.z, b.maximum.z);
}

/// The parts of a piece outside a solid. A piece that lies on a face of it and faces the same way survives if
/// `keepsShared`; one that faces it does not.
std::vector<Loop> cutAway(const Loop& loop, const SolidPlane& plane, const ConvexSolid& solid, bool keepsShared)
{
    std::vector<Loop> outside;
    Loop rest = loop;
    for (const ConvexSolid::Face& face : solid.getFaces()) {
        switch (classify(rest, face.plane)) {
        case SideOfPlane::On:
            if (dot(plane.normal, face.plane.normal) > 0 && keepsShared) return {loop};
            break; // goes on as if inside
        case SideOfPlane::Front: return {loop};
        case SideOfPlane::Back: break;
        case SideOfPlane::Both: {
            Loop front = clipToFront(rest, face.plane);
            Loop back = clipToBack(rest, face.plane);
            if (!front.empty()) outside.push_back(std::move(front));
            if (back.empty()) return {loop}; // what reaches in is too narrow to count
            rest = std::move(back);
            break;
        }
        }
    }
    return outside;
}

} // namespace

std::vector<SolidBrush> makeSolids(const MeshSource& mesh)
{
    std::vector<SolidBrush> solids;
    for (const BrushSource& brush : mesh.brushes) {
        std::vector<SolidPlane> planes;
        for (const SideSource& side : brush.sides) planes.emplace_back(side.normal, side.distance);
        SolidBrush made = {&brush, ConvexSolid(planes), {}, {}};
        if (!made.solid.isBounded()) throw MapProblem(brush.name + ": its planes leave it open");
        if (made.solid.isEmpty()) throw MapProblem(brush.name + ": there is no room behind all its planes");
        made.minimum = made.solid.calculateMinimum();
        made.maximum = made.solid.calculateMaximum();
        solids.push_back(std::move(made));
    }
    return solids;
}

std::vector<SurfacePiece> findSurface(const std::vector<SolidBrush>& brushes)
{
    std::vector<SurfacePiece> surface;
    for (std::size_t i = 0; i < brushes.size(); ++i) {
        const SolidBrush& brush = brushes[i];
        for (const ConvexSolid::Face& face : brush.solid.getFaces()) {
            const SideSource& side = brush.source->sides[face.number];
            if (side.texture.empty() && !brush.source->isSolid) continue;
            std::vector<Loop> pieces = {face.loop};
            for (std::size_t k = 0; k < brushes.size() && !pieces.empty(); ++k) {
                if (k == i || !brushes[k].source->isSolid || !mayTouch(brush, brushes[k])) continue;
                const bool keepsShared = brush.source->isSolid && k < i;
                std::vector<Loop> left;
                for (const Loop& piece : pieces)
                    for (Loop& part : cutAway(piece, face.plane, brushes[k].solid, keepsShared))
                        left.push_back(std::move(part));
                pieces.swap(left);
            }
            for (Loop& piece : pieces) surface.push_back({face.plane, std::move(piece), brush.source, &side});
        }
    }
    return surface;
}
