#include "picking.h"

#include "map_edits.h"
#include "terrain_brush.h"

#include <cmath>
#include <limits>

namespace {

constexpr double farthest = 2000;

struct Entry {
    double distance = -std::numeric_limits<double>::infinity();
    std::size_t side = 0;
};

/// Where a ray enters a convex solid; nullopt when it misses it or begins inside.
std::optional<Entry> enter(const Ray& ray, const std::vector<SideSource>& sides, const Vector3<double>& origin)
{
    Entry entry;
    double exit = farthest;
    const Vector3<double> start = ray.origin - origin;
    for (std::size_t i = 0; i < sides.size(); ++i) {
        const double height = dot(sides[i].normal, start) - sides[i].distance;
        const double speed = dot(sides[i].normal, ray.direction);
        if (std::fabs(speed) < 1e-12) {
            if (height > 0) return std::nullopt;
            continue;
        }
        const double distance = -height / speed;
        if (speed < 0 && distance > entry.distance) entry = {distance, i};
        if (speed > 0 && distance < exit) exit = distance;
    }
    if (entry.distance < 0 || entry.distance > exit) return std::nullopt;
    return entry;
}

std::optional<double> enterBox(const Ray& ray, const Vector3<double>& middle, double half)
{
    std::vector<SideSource> sides;
    sides.reserve(boxSides.size());
    for (const BoxSide& side : boxSides) sides.push_back({side.normal, half, ""});
    const std::optional<Entry> entry = enter(ray, sides, middle);
    if (!entry) return std::nullopt;
    return entry->distance;
}

/// Steps along the ray until it goes from above the land to below it, then closes in. Land is not met from below, nor
/// at its rim, where it has no side.
std::optional<double> meetTerrain(const MapDocument& document, const Ray& ray)
{
    if (document.terrains.empty()) return std::nullopt;
    const double step = document.terrains.front()->spacing * 0.25;
    enum class Place : int { Outside, Above, Below };
    const auto placeAt = [&](double distance) {
        const Vector3<double> point = ray.at(distance);
        const std::optional<double> height = findHeight(document, point.x, point.y);
        if (!height) return Place::Outside;
        return point.z < *height ? Place::Below : Place::Above;
    };
    Place before = placeAt(0);
    const int steps = static_cast<int>(std::min(farthest / step, 20000.0));
    for (int i = 1; i < steps; ++i) {
        const double distance = i * step;
        const Place now = placeAt(distance);
        if (before != Place::Above || now != Place::Below) {
            before = now;
            continue;
        }
        double above = distance - step;
        double below = distance;
        for (int halving = 0; halving < 30; ++halving) {
            const double middle = (above + below) / 2;
            (placeAt(middle) == Place::Below ? below : above) = middle;
        }
        return below;
    }
    return std::nullopt;
}

} // namespace

Hit pick(const MapDocument& document, const Ray& ray)
{
    Hit hit;
    hit.distance = farthest;
    for (std::size_t i = 0; i < document.brushes.size(); ++i) {
        const PlacedBrush& placed = *document.brushes[i];
        const auto entry = enter(ray, placed.brush.sides, document.getOrigin(placed.mesh));
        if (!entry || entry->distance >= hit.distance) continue;
        hit = {Hit::Kind::Brush,
               i,
               entry->side,
               entry->distance,
               ray.at(entry->distance),
               placed.brush.sides[entry->side].normal};
    }
    for (std::size_t i = 0; i < document.entities.size(); ++i) {
        const auto distance = enterBox(ray, getPosition(document, *document.entities[i]), entityHalfSize);
        if (!distance || *distance >= hit.distance) continue;
        hit = {Hit::Kind::Entity, i, 0, *distance, ray.at(*distance), {0, 0, 1}};
    }
    const auto ground = meetTerrain(document, ray);
    if (ground && *ground < hit.distance) hit = {Hit::Kind::Terrain, 0, 0, *ground, ray.at(*ground), {0, 0, 1}};
    return hit;
}

std::optional<Vector3<double>> meetPlane(const Ray& ray, const Vector3<double>& point, const Vector3<double>& normal,
                                         double farthestPoint)
{
    const double speed = dot(ray.direction, normal);
    if (std::fabs(speed) < 1e-6) return std::nullopt;
    const double distance = dot(point - ray.origin, normal) / speed;
    if (!(distance > 0 && distance <= farthestPoint)) return std::nullopt;
    return ray.at(distance);
}

Vector3<double> nearestOnLine(const Ray& ray, const Vector3<double>& point, const Vector3<double>& axis)
{
    const Vector3<double> between = point - ray.origin;
    const double cosine = dot(axis, ray.direction);
    const double sineSquared = 1 - cosine * cosine;
    if (sineSquared < 1e-6) return point;
    const double along = (cosine * dot(ray.direction, between) - dot(axis, between)) / sineSquared;
    return point + axis * along;
}
