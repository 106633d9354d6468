#include "obstacles.h"

#include "level.h"

#include <xum/geometry/brush.h>
#include <xum/geometry/bsp.h>
#include <xum/geometry/bsp_mesh.h>
#include <xum/geometry/bsp_node.h>
#include <xum/geometry/terrain.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr float gap = 0.002f; // to what is touched
constexpr unsigned char solidKind = 0;
constexpr float noGround = -1e6f;

constexpr float courtyardReach = 116.0f; // before its land ends
constexpr float farthest = 1e5f;

/// How far a box reaches along a direction.
float reachAlong(const Vector3<float>& direction, const Vector3<float>& halfSize)
{
    return std::fabs(direction.x) * halfSize.x + std::fabs(direction.y) * halfSize.y +
           std::fabs(direction.z) * halfSize.z;
}

/// Shortens the way of a box to where it meets a convex solid, if it does so earlier than what was met before.
void meetConvex(Contact& contact, const std::vector<Plane<float>>& planes, const Vector3<float>& centre,
                const Vector3<float>& halfSize, const Vector3<float>& way)
{
    float enter = -1;
    float leave = 1;
    float shallowest = -1e30f;
    const Plane<float>* entered = nullptr;
    const Plane<float>* nearest = nullptr;
    bool startsOutside = false;
    for (const Plane<float>& plane : planes) {
        const float before = plane.signedDistance(centre) - reachAlong(plane.normal, halfSize);
        const float change = dot(plane.normal, way);
        const float after = before + change;
        if (before > 0) {
            startsOutside = true;
            if (after >= gap || change >= 0) return;
        } else {
            if (before > shallowest) {
                shallowest = before;
                nearest = &plane;
            }
            if (after <= 0) continue;
        }
        if (change < 0) {
            const float part = std::max((before - gap) / -change, 0.0f);
            if (part > enter) {
                enter = part;
                entered = &plane;
            }
        } else if (change > 0) {
            leave = std::min(leave, (gap - before) / change);
        }
    }
    if (!startsOutside) { // must not go in any deeper
        if (nearest != nullptr && dot(nearest->normal, way) < 0) contact = {0, nearest->normal};
        return;
    }
    if (entered != nullptr && enter < leave && enter < contact.part) contact = {enter, entered->normal};
}

bool overlap(const Box& a, const Box& b)
{
    return a.minimum.x <= b.maximum.x && b.minimum.x <= a.maximum.x && a.minimum.y <= b.maximum.y &&
           b.minimum.y <= a.maximum.y && a.minimum.z <= b.maximum.z && b.minimum.z <= a.maximum.z;
}

/// The solid brushes of all leaves that a box reaches into.
void collectBrushes(std::vector<const Brush*>& brushes, const BSPNode* node, const Box& box)
{
    while (!node->isLeaf()) {
        const BSPNodeContentNode& inner = *node->getNode();
        const float distance = inner.plane.signedDistance((box.minimum + box.maximum) * 0.5f);
        const float reach = reachAlong(inner.plane.normal, (box.maximum - box.minimum) * 0.5f);
        if (distance < -reach) {
            node = inner.back;
            continue;
        }
        if (distance <= reach) collectBrushes(brushes, inner.back, box);
        node = inner.front;
    }
    for (const Brush* brush : node->getLeaf()->brushes)
        if (brush->kind == solidKind && std::find(brushes.begin(), brushes.end(), brush) == brushes.end())
            brushes.push_back(brush);
}

/// The directions in which a unit solid has a side, each with a point of it.
std::vector<std::pair<Vector3<float>, Vector3<float>>> listSides(std::size_t shape)
{
    constexpr float r = 0.5f;
    std::vector<std::pair<Vector3<float>, Vector3<float>>> sides = {{{0, 0, -1}, {0, 0, -r}}};
    const bool isBox = shape == static_cast<std::size_t>(SolidKind::Box) || shape >= solidKindCount;
    const bool isPointed =
        shape == static_cast<std::size_t>(SolidKind::Cone) || shape == static_cast<std::size_t>(SolidKind::Pyramid);
    const bool isSphere = shape == static_cast<std::size_t>(SolidKind::Sphere);
    const int count = isBox || shape == static_cast<std::size_t>(SolidKind::Pyramid) ? 4 : 8;
    if (!isPointed) sides.push_back({{0, 0, 1}, {0, 0, r}});
    for (int i = 0; i < count; ++i) {
        const float angle = 2.0f * 3.14159265f * static_cast<float>(i) / static_cast<float>(count);
        const Vector3<float> outwards = {std::cos(angle), std::sin(angle), 0};
        if (isPointed) {
            sides.emplace_back(outwards + Vector3<float>(0, 0, r), outwards * r - Vector3<float>(0, 0, r));
            continue;
        }
        sides.emplace_back(outwards, outwards * r);
        if (!isSphere) continue;
        for (float up : {-1.0f, 1.0f}) {
            const Vector3<float> slanted = normalize(outwards + Vector3<float>(0, 0, up));
            sides.emplace_back(slanted, slanted * r);
        }
    }
    return sides;
}

} // namespace

Obstacles::Obstacles(const Scene& scene)
    : reach(scene.hasCourtyard ? courtyardReach : farthest), level(scene.level), land(scene.land)
{
    for (const Thing& thing : scene.things)
        if (thing.blocks) things.push_back(makeConvex(thing));
}

Obstacles::Convex Obstacles::makeConvex(const Thing& thing)
{
    Convex convex;
    convex.bounds = thing.bounds;
    if (thing.shape >= solidKindCount) { // one of its own: its box
        const auto& [minimum, maximum] = thing.bounds;
        convex.planes = {{{1, 0, 0}, maximum.x},   {{-1, 0, 0}, -minimum.x}, {{0, 1, 0}, maximum.y},
                         {{0, -1, 0}, -minimum.y}, {{0, 0, 1}, maximum.z},   {{0, 0, -1}, -minimum.z}};
        return convex;
    }
    for (const auto& [direction, point] : listSides(thing.shape)) {
        const Vector3<float> normal = normalize(thing.normals * direction);
        const Vector4<float> placed = thing.world * Vector4<float>(point, 1);
        convex.planes.emplace_back(normal, dot(normal, {placed.x, placed.y, placed.z}));
    }
    return convex;
}

Contact Obstacles::move(const Vector3<float>& centre, const Vector3<float>& halfSize, const Vector3<float>& way) const
{
    const Vector3<float> reach = halfSize + Vector3<float>(gap, gap, gap) * 2.0f;
    Box swept(centre - reach, centre + reach);
    swept.add(centre + way - reach);
    swept.add(centre + way + reach);

    Contact contact;
    for (const Convex& thing : things)
        if (overlap(thing.bounds, swept)) meetConvex(contact, thing.planes, centre, halfSize, way);
    if (!level) return contact;
    std::vector<const Brush*> brushes;
    const auto& meshes = level->getMap().getBSPMeshes();
    for (const BSPMesh* mesh = meshes.getFirst(); mesh != nullptr; mesh = mesh->getNext()) {
        const Vector3<float>& origin = mesh->getOrigin();
        brushes.clear();
        collectBrushes(brushes, mesh->getBSP()->getRoot(), {swept.minimum - origin, swept.maximum - origin});
        for (const Brush* brush : brushes) meetConvex(contact, brush->planes, centre - origin, halfSize, way);
    }
    return contact;
}

bool Obstacles::isSolid(const Vector3<float>& point) const
{
    for (const Convex& thing : things) {
        const auto isBehind = [&](const Plane<float>& plane) { return plane.signedDistance(point) < 0; };
        if (std::all_of(thing.planes.begin(), thing.planes.end(), isBehind)) return true;
    }
    if (!level) return false;
    const auto& meshes = level->getMap().getBSPMeshes();
    for (const BSPMesh* mesh = meshes.getFirst(); mesh != nullptr; mesh = mesh->getNext())
        if (mesh->getBSP()->locatePoint(point - mesh->getOrigin())->getLeaf()->kind) return true;
    return false;
}

float Obstacles::getGroundHeight(float x, float y) const
{
    if (!land || land->getWidth() < 1 || land->getHeight() < 1) return noGround;
    const auto spacing = static_cast<float>(land->getSpacing());
    const Vector3<float>& corner = land->getPositions().front();
    const Vector3<float>& opposite = land->getPositions().back();
    if (x < corner.x || y < corner.y || x > opposite.x || y > opposite.y) return noGround;
    const auto locate = [&](float coordinate, float first, int halfCount, int& cell) {
        const float position = (coordinate - first) / spacing;
        cell = static_cast<int>(std::clamp(std::floor(position), 0.0f, static_cast<float>(2 * halfCount - 1)));
        return std::clamp(position - static_cast<float>(cell), 0.0f, 1.0f);
    };
    int column = 0;
    int row = 0;
    const float u = locate(x, corner.x, land->getWidth(), column);
    const float v = locate(y, corner.y, land->getHeight(), row);
    const auto heightAt = [&](int right, int up) {
        const int number = (row + up) * (2 * land->getWidth() + 1) + column + right;
        return land->getPositions()[static_cast<std::size_t>(number)].z;
    };
    // A cell is two triangles, parted from its first corner to the opposite one.
    const float first = heightAt(0, 0);
    const float last = heightAt(1, 1);
    if (u >= v) return first + u * (heightAt(1, 0) - first) + v * (last - heightAt(1, 0));
    return first + v * (heightAt(0, 1) - first) + u * (last - heightAt(0, 1));
}
