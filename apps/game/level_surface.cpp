#include "level_surface.h"

#include <algorithm>

namespace {

Vector3<float> calculateNormal(const std::vector<Vertex>& corners)
{
    // Newell's sum: corners on one line do no harm.
    Vector3<float> normal;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const Vector3<float>& a = corners[i].position;
        const Vector3<float>& b = corners[(i + 1) % corners.size()].position;
        normal += cross(a - corners[0].position, b - corners[0].position);
    }
    return normalize(normal);
}

void addFace(LevelSurface& surface, std::size_t number, const std::vector<Vertex>& corners)
{
    Solid& solid = surface.solid;
    const auto firstCorner = static_cast<unsigned int>(solid.positions.size());
    const std::size_t firstIndex = solid.triangles.size();
    const Vector3<float> normal = calculateNormal(corners);
    for (const Vertex& corner : corners) {
        solid.positions.push_back(corner.position);
        solid.textureCoordinates.push_back(corner.textureCoordinate);
        solid.normals.push_back(normal);
    }
    for (unsigned int i = 2; i < corners.size(); ++i)
        solid.triangles.insert(solid.triangles.end(), {firstCorner, firstCorner + i - 1, firstCorner + i});
    surface.ranges.push_back(
        {number, static_cast<int>(firstIndex), static_cast<int>(solid.triangles.size() - firstIndex)});
}

} // namespace

std::vector<LevelSurface> makeSurfaces(const Level& level)
{
    std::vector<LevelSurface> surfaces;
    std::size_t number = 0;
    for (const Level::Leaf& leaf : level.getLeaves()) {
        for (const Level::Face& face : leaf.faces) {
            auto surface = std::find_if(surfaces.begin(), surfaces.end(),
                                        [&](const LevelSurface& known) { return known.texture == face.texture; });
            if (surface == surfaces.end()) surface = surfaces.insert(surface, {face.texture, {}, {}});
            addFace(*surface, number++, face.polygon.vertices);
        }
    }
    return surfaces;
}
