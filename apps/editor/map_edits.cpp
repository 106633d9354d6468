#include "map_edits.h"

#include "map_solids.h"

#include <algorithm>
#include <cmath>

namespace {

bool isNear(const Vector3<double>& v)
{
    return std::fabs(v.x) <= largestCoordinate && std::fabs(v.y) <= largestCoordinate &&
           std::fabs(v.z) <= largestCoordinate;
}

/// Sums of decimal fractions would otherwise end up in files as 0.30000000000000004.
double withoutNoise(double coordinate)
{
    const double rounded = std::round(coordinate * 1e9) / 1e9;
    return std::fabs(coordinate) <= largestCoordinate ? rounded + 0.0 : coordinate;
}

bool isScale(double scale)
{
    return std::fabs(scale) <= largestCoordinate && scale != 0;
}

/// In files "none" means no texture.
std::string nameOrNone(const std::string& texture)
{
    return texture == "none" ? "" : texture;
}

bool isSame(const EntitySource& a, const EntitySource& b)
{
    return a == b;
}

bool isSame(const PlacedBrush& a, const PlacedBrush& b)
{
    const auto isSameSide = [](const SideSource& s, const SideSource& t) {
        return s.normal == t.normal && s.distance == t.distance && s.texture == t.texture;
    };
    const BrushSource& first = a.brush;
    const BrushSource& second = b.brush;
    return a.mesh == b.mesh && first.kind == second.kind && first.scale == second.scale &&
           first.isSolid == second.isSolid &&
           std::equal(first.sides.begin(), first.sides.end(), second.sides.begin(), second.sides.end(), isSameSide);
}

bool isBrushSize(const Bounds& box)
{
    const Vector3<double> size = box.maximum - box.minimum;
    return size.x >= smallestBrush && size.y >= smallestBrush && size.z >= smallestBrush && isNear(box.minimum) &&
           isNear(box.maximum);
}

/// Puts a changed copy in the place of a part; one that is as before is no change.
template <class Part, class Change>
bool replace(std::vector<std::shared_ptr<const Part>>& parts, std::size_t number, Change change)
{
    if (number >= parts.size()) return false;
    auto changed = std::make_shared<Part>(*parts[number]);
    change(*changed);
    if (!isSame(*changed, *parts[number])) parts[number] = std::move(changed);
    return true;
}

template <class Part>
bool erase(std::vector<std::shared_ptr<const Part>>& parts, std::size_t number)
{
    if (number >= parts.size()) return false;
    parts.erase(parts.begin() + static_cast<std::ptrdiff_t>(number));
    return true;
}

void setBoxPlanes(BrushSource& brush, const Bounds& box)
{
    for (std::size_t i = 0; i < boxSides.size(); ++i) {
        const Vector3<double>& normal = boxSides[i].normal;
        const bool isUpper = normal.x + normal.y + normal.z > 0;
        brush.sides[i].distance = withoutNoise(dot(normal, isUpper ? box.maximum : box.minimum));
    }
}

ConvexSolid makeSolid(const BrushSource& brush)
{
    std::vector<SolidPlane> planes;
    for (const SideSource& side : brush.sides) planes.emplace_back(side.normal, side.distance);
    return ConvexSolid(planes);
}

} // namespace

bool setTitle(MapDocument& document, const std::string& title)
{
    if (!isStorable(title)) return false;
    document.title = title;
    return true;
}

bool addBox(MapDocument& document, const Bounds& box, const std::string& texture, double scale)
{
    if (!isBrushSize(box) || !isStorable(texture) || !isScale(scale)) return false;
    PlacedBrush placed;
    placed.brush.scale = scale;
    for (const BoxSide& side : boxSides) placed.brush.sides.push_back({side.normal, 0, nameOrNone(texture)});
    const Vector3<double> origin = document.getOrigin(0);
    setBoxPlanes(placed.brush, {box.minimum - origin, box.maximum - origin});
    document.brushes.push_back(std::make_shared<const PlacedBrush>(std::move(placed)));
    return true;
}

bool removeBrush(MapDocument& document, std::size_t number)
{
    return erase(document.brushes, number);
}

bool moveBrush(MapDocument& document, std::size_t number, const Vector3<double>& by)
{
    if (number >= document.brushes.size()) return false;
    const Bounds bounds = getBounds(document, *document.brushes[number]);
    if (!isBrushSize({bounds.minimum + by, bounds.maximum + by})) return false;
    replace(document.brushes, number, [&](PlacedBrush& placed) {
        for (SideSource& side : placed.brush.sides) side.distance = withoutNoise(side.distance + dot(side.normal, by));
    });
    return true;
}

bool resizeBrush(MapDocument& document, std::size_t number, const Bounds& box)
{
    if (number >= document.brushes.size() || !asBox(document.brushes[number]->brush) || !isBrushSize(box)) return false;
    const Vector3<double> origin = document.getOrigin(document.brushes[number]->mesh);
    replace(document.brushes, number, [&](PlacedBrush& placed) {
        setBoxPlanes(placed.brush, {box.minimum - origin, box.maximum - origin});
    });
    return true;
}

bool duplicateBrush(MapDocument& document, std::size_t number, const Vector3<double>& by)
{
    if (number >= document.brushes.size()) return false;
    document.brushes.push_back(document.brushes[number]);
    if (moveBrush(document, document.brushes.size() - 1, by)) return true;
    document.brushes.pop_back();
    return false;
}

bool setTexture(MapDocument& document, std::size_t brush, const std::string& texture)
{
    if (!isStorable(texture)) return false;
    return replace(document.brushes, brush, [&](PlacedBrush& placed) {
        for (SideSource& side : placed.brush.sides) side.texture = nameOrNone(texture);
    });
}

bool setSideTexture(MapDocument& document, std::size_t brush, std::size_t side, const std::string& texture)
{
    const bool isThere = brush < document.brushes.size() && side < document.brushes[brush]->brush.sides.size();
    if (!isStorable(texture) || !isThere) return false;
    return replace(document.brushes, brush,
                   [&](PlacedBrush& placed) { placed.brush.sides[side].texture = nameOrNone(texture); });
}

bool setTextureScale(MapDocument& document, std::size_t brush, double scale)
{
    if (!isScale(scale)) return false;
    return replace(document.brushes, brush, [&](PlacedBrush& placed) { placed.brush.scale = scale; });
}

bool setSolid(MapDocument& document, std::size_t brush, bool isSolid)
{
    return replace(document.brushes, brush, [&](PlacedBrush& placed) { placed.brush.isSolid = isSolid; });
}

Bounds getBounds(const MapDocument& document, const PlacedBrush& placed)
{
    const Vector3<double> origin = document.getOrigin(placed.mesh);
    if (const auto box = asBox(placed.brush)) return {box->first + origin, box->second + origin};
    const ConvexSolid solid = makeSolid(placed.brush);
    if (solid.isEmpty()) return {origin, origin};
    return {solid.calculateMinimum() + origin, solid.calculateMaximum() + origin};
}

bool addEntity(MapDocument& document, const std::string& className, const Vector3<double>& position)
{
    if (className.empty() || !isStorable(className) || !isNear(position)) return false;
    const std::string place = formatPosition(position - document.getEntityOrigin());
    document.entities.push_back(
        std::make_shared<const EntitySource>(EntitySource{{"class", className}, {"position", place}}));
    return true;
}

bool removeEntity(MapDocument& document, std::size_t number)
{
    return erase(document.entities, number);
}

bool moveEntity(MapDocument& document, std::size_t number, const Vector3<double>& by)
{
    if (number >= document.entities.size()) return false;
    const Vector3<double> place = getPosition(document, *document.entities[number]) + by;
    if (!isNear(place)) return false;
    return setEntityEntry(document, number, "position", formatPosition(place - document.getEntityOrigin()));
}

bool setEntityEntry(MapDocument& document, std::size_t number, const std::string& name, const std::string& value)
{
    const bool isName = !name.empty() && isStorable(name) && name.find_first_of(" \t/") == std::string::npos;
    if (!isName || !isStorable(value) || number >= document.entities.size()) return false;
    if (name == "class" && value.empty()) return false;
    replace(document.entities, number, [&](EntitySource& entity) {
        const auto found = std::find_if(entity.begin(), entity.end(), [&](const auto& e) { return e.first == name; });
        if (value.empty()) {
            if (found != entity.end()) entity.erase(found);
        } else if (found != entity.end()) {
            found->second = value;
        } else {
            entity.emplace_back(name, value);
        }
    });
    return true;
}

Vector3<double> getPosition(const MapDocument& document, const EntitySource& entity)
{
    return document.getEntityOrigin() + readPosition(getEntry(entity, "position")).value_or(Vector3<double>());
}

bool setFlatTerrain(MapDocument& document, int width, int height, int spacing, const std::string& texture)
{
    if (!isStorable(texture)) return false;
    TerrainSource terrain;
    terrain.width = std::clamp(width, 1, 256);
    terrain.height = std::clamp(height, 1, 256);
    terrain.spacing = std::clamp(spacing, 1, 1000);
    terrain.texture = nameOrNone(texture);
    terrain.scale = 0.25;
    terrain.heights.assign(
        static_cast<std::size_t>(terrain.countColumns()) * static_cast<std::size_t>(terrain.countRows()), 0.0f);
    auto shared = std::make_shared<const TerrainSource>(std::move(terrain));
    if (document.terrains.empty())
        document.terrains.push_back(std::move(shared));
    else
        document.terrains.front() = std::move(shared);
    return true;
}

bool isStorable(const std::string& text)
{
    return text.find_first_of("\"<>\r\n") == std::string::npos && text.find('\0') == std::string::npos;
}

double snap(double coordinate, double grid)
{
    return grid > 0 ? withoutNoise(std::floor(coordinate / grid + 0.5) * grid) : coordinate;
}

Vector3<double> snap(const Vector3<double>& point, double grid)
{
    return {snap(point.x, grid), snap(point.y, grid), snap(point.z, grid)};
}
