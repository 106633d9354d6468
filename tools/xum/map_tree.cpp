#include "map_tree.h"

#include <xum/geometry/brush.h>
#include <xum/geometry/polygon.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr double regionMargin = 16;        // around what the brushes take up
constexpr std::size_t mostCandidates = 64; // planes looked at for one node

Plane<float> toFloat(const SolidPlane& plane)
{
    return {
        {static_cast<float>(plane.normal.x), static_cast<float>(plane.normal.y), static_cast<float>(plane.normal.z)},
        static_cast<float>(plane.distance)};
}

/// With the first component that is not 0 positive, so that both sides of a plane look the same.
SolidPlane towardsPositive(const SolidPlane& plane)
{
    for (const double component : {plane.normal.x, plane.normal.y, plane.normal.z}) {
        if (component == 0) continue;
        return component > 0 ? plane : SolidPlane(-plane.normal, -plane.distance);
    }
    return plane;
}

bool isAxial(const SolidPlane& plane)
{
    return std::max({std::fabs(plane.normal.x), std::fabs(plane.normal.y), std::fabs(plane.normal.z)}) == 1;
}

ConvexSolid makeRegion(const std::vector<SolidBrush>& solids)
{
    Point minimum = solids.front().minimum;
    Point maximum = solids.front().maximum;
    for (const SolidBrush& solid : solids) {
        minimum = {std::min(minimum.x, solid.minimum.x), std::min(minimum.y, solid.minimum.y),
                   std::min(minimum.z, solid.minimum.z)};
        maximum = {std::max(maximum.x, solid.maximum.x), std::max(maximum.y, solid.maximum.y),
                   std::max(maximum.z, solid.maximum.z)};
    }
    const Point margin = {regionMargin, regionMargin, regionMargin};
    return {minimum - margin, maximum + margin};
}

/// What lies on a face counts as inside: between brushes that touch there is no room.
bool isInside(const ConvexSolid& solid, const Point& point)
{
    return std::all_of(solid.getFaces().begin(), solid.getFaces().end(),
                       [&](const ConvexSolid::Face& face) { return face.plane.signedDistance(point) <= onPlane; });
}

bool overlap(const ConvexSolid& region, const ConvexSolid& solid)
{
    ConvexSolid rest = region;
    for (const ConvexSolid::Face& face : solid.getFaces()) {
        rest = rest.cutToBack(face.plane);
        if (rest.isEmpty()) return false;
    }
    return true;
}

} // namespace

MapTreeBuilder::MapTreeBuilder(const std::vector<SolidBrush>& solids, const std::vector<Brush*>& fileBrushes,
                               MakePolygon makePolygon)
    : solids(solids), fileBrushes(fileBrushes), makePolygon(std::move(makePolygon))
{}

std::unique_ptr<BSPNode> MapTreeBuilder::build(std::vector<SurfacePiece> surface, const MakeProgress& progress)
{
    BSPNode* root = nullptr;
    std::vector<Task> tasks(1);
    tasks[0].place = &root;
    tasks[0].region = makeRegion(solids);
    for (SurfacePiece& piece : surface) {
        const std::size_t plane = numberPlane(piece.plane);
        tasks[0].pieces.push_back({std::move(piece), plane});
    }
    for (std::size_t i = 0; i < solids.size(); ++i) tasks[0].brushes.push_back(i);

    // No recursion: a round thing of many sides makes a deep tree. What is made hangs in the tree at once.
    double done = 0;
    std::vector<double> shares = {1};
    try {
        while (!tasks.empty()) {
            Task task = std::move(tasks.back());
            const double share = shares.back();
            tasks.pop_back();
            shares.pop_back();
            const std::size_t before = tasks.size();
            makeNode(task, tasks);
            if (tasks.size() == before)
                done += share;
            else
                shares.insert(shares.end(), 2, share / 2);
            progress(done);
        }
    } catch (...) {
        delete root;
        throw;
    }
    return std::unique_ptr<BSPNode>(root);
}

std::size_t MapTreeBuilder::numberPlane(const SolidPlane& plane)
{
    const SolidPlane wanted = towardsPositive(plane);
    // Only equal planes share a number: a piece that lies on a plane parts its region exactly there.
    const Point& normal = wanted.normal;
    const auto [known, isNew] = numbers.try_emplace({normal.x, normal.y, normal.z, wanted.distance}, planes.size());
    if (isNew) planes.push_back(wanted);
    return known->second;
}

/// The best plane to part the region by; planes.size() when no piece asks for one.
std::size_t MapTreeBuilder::choosePlane(const Task& task) const
{
    std::vector<std::size_t> candidates;
    for (const Piece& piece : task.pieces)
        if (piece.isParting) candidates.push_back(piece.plane);
    std::sort(candidates.begin(), candidates.end());
    candidates.erase(std::unique(candidates.begin(), candidates.end()), candidates.end());

    std::size_t best = planes.size();
    double bestCost = 0;
    const std::size_t step = candidates.size() / mostCandidates + 1;
    for (std::size_t i = 0; i < candidates.size(); i += step) {
        const SolidPlane& plane = planes[candidates[i]];
        double cuts = 0;
        double balance = 0;
        for (const Piece& piece : task.pieces) {
            switch (classify(piece.surface.loop, plane)) {
            case SideOfPlane::On: break;
            case SideOfPlane::Front: balance += 1; break;
            case SideOfPlane::Back: balance -= 1; break;
            case SideOfPlane::Both: cuts += 1; break;
            }
        }
        const double cost = cuts * 8 + std::fabs(balance) + (isAxial(plane) ? 0 : 4);
        if (best == planes.size() || cost < bestCost) {
            best = candidates[i];
            bestCost = cost;
        }
    }
    return best;
}

void MapTreeBuilder::makeNode(Task& task, std::vector<Task>& tasks)
{
    for (;;) {
        const std::size_t chosen = choosePlane(task);
        if (chosen == planes.size()) {
            makeLeaf(task);
            return;
        }
        Task front;
        Task back;
        if (part(task, chosen, front, back)) {
            *task.place = new BSPNode(toFloat(planes[chosen]), nullptr, nullptr);
            front.place = &(*task.place)->getNode()->front;
            back.place = &(*task.place)->getNode()->back;
            tasks.push_back(std::move(back));
            tasks.push_back(std::move(front));
            return;
        }
        // The plane only touches the region: it parts nothing.
        for (Piece& piece : task.pieces)
            if (piece.plane == chosen) piece.isParting = false;
    }
}

/// False when one side of the region has no room.
bool MapTreeBuilder::part(Task& task, std::size_t number, Task& front, Task& back) const
{
    const SolidPlane& plane = planes[number];
    front.region = task.region.cutToFront(plane);
    back.region = task.region.cutToBack(plane);
    if (front.region.isEmpty() || back.region.isEmpty()) return false;
    for (Piece& piece : task.pieces) {
        switch (classify(piece.surface.loop, plane)) {
        case SideOfPlane::On: {
            // Seen from the leaf before it.
            Task& side = dot(piece.surface.plane.normal, plane.normal) > 0 ? front : back;
            piece.isParting = false;
            side.pieces.push_back(std::move(piece));
            break;
        }
        case SideOfPlane::Front: front.pieces.push_back(std::move(piece)); break;
        case SideOfPlane::Back: back.pieces.push_back(std::move(piece)); break;
        case SideOfPlane::Both: {
            Piece before = piece;
            before.surface.loop = clipToFront(piece.surface.loop, plane);
            piece.surface.loop = clipToBack(piece.surface.loop, plane);
            if (!before.surface.loop.empty()) front.pieces.push_back(std::move(before));
            if (!piece.surface.loop.empty()) back.pieces.push_back(std::move(piece));
            break;
        }
        }
    }
    for (const std::size_t brush : task.brushes) {
        const SideOfPlane side = solids[brush].solid.classify(plane);
        if (side != SideOfPlane::Back) front.brushes.push_back(brush);
        if (side != SideOfPlane::Front) back.brushes.push_back(brush);
    }
    return true;
}

void MapTreeBuilder::makeLeaf(Task& task)
{
    const Point middle = task.region.calculateMiddle();
    bool isSolid = false;
    std::vector<Brush*> brushes;
    for (const std::size_t brush : task.brushes) {
        if (!overlap(task.region, solids[brush].solid)) continue;
        brushes.push_back(fileBrushes[brush]);
        isSolid = isSolid || (solids[brush].source->isSolid && isInside(solids[brush].solid, middle));
    }
    std::vector<Polygon*> polygons;
    for (const Piece& piece : task.pieces) {
        if (isSolid || piece.surface.side->texture.empty()) continue;
        if (Polygon* const polygon = makePolygon(piece.surface)) polygons.push_back(polygon);
    }
    *task.place = new BSPNode(isSolid, std::move(brushes), std::move(polygons));
}
