#include "map_edits.h"

#include "map_solids.h"

#include <algorithm>
#include <cmath>

namespace {

bool isBrushSize(const Bounds& box)
{
    const Vector3<double> size = box.maximum - box.minimum;
    const auto isNear = [](const Vector3<double>& v) {
        return std::fabs(v.x) <= largestCoordinate && std::fabs(v.y) <= largestCoordinate &&
               std::fabs(v.z) <= largestCoordinate;
    };
    return size.x >= smallestBrush && size.y >= smallestBrush && size.z >= smallestBrush && isNear(box.minimum) &&
           isNear(box.maximum);
}

/// Puts a changed copy in the place of a part.
template <class Part, class Change>
void replace(std::vector<std::shared_ptr<const Part>>& parts, std::size_t number, Change change)
{
    if (number >= parts.size()) return;
    auto changed = std::make_shared<Part>(*parts[number]);
    change(*changed);
    parts[number] = std::move(changed);
}

void setBoxPlanes(BrushSource& brush, const Bounds& box)
{
    for (std::size_t i = 0; i < boxSides.size(); ++i) {
        const Vector3<double>& normal = boxSides[i].normal;
        const bool isUpper = normal.x + normal.y + normal.z > 0;
        brush.sides[i].distance = dot(normal, isUpper ? box.maximum : box.minimum);
    }
}

ConvexSolid makeSolid(const BrushSource& brush)
{
    std::vector<SolidPlane> planes;
    for (const SideSource& side : brush.sides) planes.emplace_back(side.normal, side.distance);
    return ConvexSolid(planes);
}

} // namespace

bool addBox(MapDocument& document, const Bounds& box, const std::string& texture, double scale)
{
    if (!isBrushSize(box) || !isStorable(texture) || !std::isfinite(scale) || scale == 0) return false;
    PlacedBrush placed;
    placed.brush.scale = scale;
    for (const BoxSide& side : boxSides) placed.brush.sides.push_back({side.normal, 0, texture});
    const Vector3<double> origin = document.getOrigin(0);
    setBoxPlanes(placed.brush, {box.minimum - origin, box.maximum - origin});
    document.brushes.push_back(std::make_shared<const PlacedBrush>(std::move(placed)));
    return true;
}

void removeBrush(MapDocument& document, std::size_t number)
{
    if (number < document.brushes.size())
        document.brushes.erase(document.brushes.begin() + static_cast<std::ptrdiff_t>(number));
}

bool moveBrush(MapDocument& document, std::size_t number, const Vector3<double>& by)
{
    if (number >= document.brushes.size()) return false;
    const Bounds bounds = getBounds(document, *document.brushes[number]);
    if (!isBrushSize({bounds.minimum + by, bounds.maximum + by})) return false;
    replace(document.brushes, number, [&](PlacedBrush& placed) {
        for (SideSource& side : placed.brush.sides) side.distance += dot(side.normal, by);
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

void setTexture(MapDocument& document, std::size_t brush, const std::string& texture)
{
    if (!isStorable(texture)) return;
    replace(document.brushes, brush, [&](PlacedBrush& placed) {
        for (SideSource& side : placed.brush.sides) side.texture = texture;
    });
}

void setSideTexture(MapDocument& document, std::size_t brush, std::size_t side, const std::string& texture)
{
    if (!isStorable(texture)) return;
    replace(document.brushes, brush, [&](PlacedBrush& placed) {
        if (side < placed.brush.sides.size()) placed.brush.sides[side].texture = texture;
    });
}

void setTextureScale(MapDocument& document, std::size_t brush, double scale)
{
    if (!(std::fabs(scale) <= largestCoordinate) || scale == 0) return;
    replace(document.brushes, brush, [&](PlacedBrush& placed) { placed.brush.scale = scale; });
}

void setSolid(MapDocument& document, std::size_t brush, bool isSolid)
{
    replace(document.brushes, brush, [&](PlacedBrush& placed) { placed.brush.isSolid = isSolid; });
}

Bounds getBounds(const MapDocument& document, const PlacedBrush& placed)
{
    const Vector3<double> origin = document.getOrigin(placed.mesh);
    if (const auto box = asBox(placed.brush)) return {box->first + origin, box->second + origin};
    const ConvexSolid solid = makeSolid(placed.brush);
    if (solid.isEmpty()) return {origin, origin};
    return {solid.calculateMinimum() + origin, solid.calculateMaximum() + origin};
}

void addEntity(MapDocument& document, const std::string& className, const Vector3<double>& position)
{
    if (className.empty() || !isStorable(className)) return;
    const std::string place = formatPosition(position - document.getEntityOrigin());
    document.entities.push_back(
        std::make_shared<const EntitySource>(EntitySource{{"class", className}, {"position", place}}));
}

void removeEntity(MapDocument& document, std::size_t number)
{
    if (number < document.entities.size())
        document.entities.erase(document.entities.begin() + static_cast<std::ptrdiff_t>(number));
}

void moveEntity(MapDocument& document, std::size_t number, const Vector3<double>& by)
{
    if (number >= document.entities.size()) return;
    const Vector3<double> place = getPosition(document, *document.entities[number]) + by - document.getEntityOrigin();
    setEntityEntry(document, number, "position", formatPosition(place));
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

void setFlatTerrain(MapDocument& document, int width, int height, int spacing, const std::string& texture)
{
    TerrainSource terrain;
    terrain.width = std::clamp(width, 1, 256);
    terrain.height = std::clamp(height, 1, 256);
    terrain.spacing = std::clamp(spacing, 1, 1000);
    terrain.texture = texture;
    terrain.scale = 0.25;
    terrain.heights.assign(
        static_cast<std::size_t>(terrain.countColumns()) * static_cast<std::size_t>(terrain.countRows()), 0.0f);
    auto shared = std::make_shared<const TerrainSource>(std::move(terrain));
    if (document.terrains.empty())
        document.terrains.push_back(std::move(shared));
    else
        document.terrains.front() = std::move(shared);
}

bool isStorable(const std::string& text)
{
    return text.find_first_of("\"<>\r\n") == std::string::npos && text.find('\0') == std::string::npos;
}

double snap(double coordinate, double grid)
{
    return grid > 0 ? std::floor(coordinate / grid + 0.5) * grid : coordinate;
}

Vector3<double> snap(const Vector3<double>& point, double grid)
{
    return {snap(point.x, grid), snap(point.y, grid), snap(point.z, grid)};
}
