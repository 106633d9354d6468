#include "map_compiler.h"

#include "map_surface.h"
#include "map_texture.h"
#include "map_tree.h"

#include <xum/files/config_section.h>

#include <map>
#include <list>
#include <sstream>
#include <utility>

namespace {

Vector3<float> toFloat(const Point& point)
{
    return {static_cast<float>(point.x), static_cast<float>(point.y), static_cast<float>(point.z)};
}

bool hasArea(const std::vector<Vertex>& vertices)
{
    Vector3<float> doubleArea;
    for (std::size_t i = 2; i < vertices.size(); ++i)
        doubleArea +=
            cross(vertices[i - 1].position - vertices[0].position, vertices[i].position - vertices[0].position);
    return length(doubleArea) > 0;
}

/// Numbers textures as they come.
class TextureNames {
public:
    int getNumber(const std::string& name)
    {
        const auto [known, isNew] = numbers.try_emplace(name, static_cast<int>(names.size()));
        if (isNew) names.push_back(name);
        return known->second;
    }

    const std::vector<std::string>& get() const { return names; }

private:
    std::map<std::string, int> numbers;
    std::vector<std::string> names;
};

class Compiler {
public:
    explicit Compiler(const CompileProgress& progress) : progress(progress) {}

    std::unique_ptr<BSPMesh> compileMesh(const MeshSource& source, const std::string& name);
    std::string describe(const MapSource& source);

    CompiledLevel level;

private:
    std::vector<Brush*> makeBrushes(const MeshSource& source);
    Polygon* makePolygon(const SurfacePiece& piece);

    const CompileProgress& progress;
    TextureNames textures;
    std::vector<std::string> polygonTextures; // of each mesh, the numbers in the order of the leaves
};

std::unique_ptr<BSPMesh> Compiler::compileMesh(const MeshSource& source, const std::string& name)
{
    progress(name + ", solids", 0);
    const std::vector<SolidBrush> solids = makeSolids(source);
    const std::vector<Brush*> brushes = makeBrushes(source);
    progress(name + ", surface", 0);
    std::vector<SurfacePiece> surface = findSurface(solids);
    MapTreeBuilder builder(solids, brushes, [this](const SurfacePiece& piece) { return makePolygon(piece); });
    auto bsp = std::make_unique<BSP>(
        builder.build(std::move(surface), [&](double part) { progress(name + ", tree", part); }).release());

    std::ostringstream numbers;
    const char* separator = "";
    for (const BSPNode* leaf : bsp->calculateLeafArray()) {
        for (const Polygon* polygon : leaf->getLeaf()->polygons) {
            numbers << separator << polygon->tag;
            separator = " ";
        }
    }
    polygonTextures.push_back(numbers.str());
    return std::make_unique<BSPMesh>(source.origin, bsp.release());
}

std::vector<Brush*> Compiler::makeBrushes(const MeshSource& source)
{
    std::vector<Brush*> brushes;
    for (const BrushSource& brush : source.brushes) {
        std::vector<Plane<float>> planes;
        for (const SideSource& side : brush.sides)
            planes.emplace_back(toFloat(side.normal), static_cast<float>(side.distance));
        brushes.push_back(&level.brushes.emplace_back(planes, brush.kind));
    }
    return brushes;
}

/// Null for a piece that the coarser floats, far from the origin, leave no area.
Polygon* Compiler::makePolygon(const SurfacePiece& piece)
{
    std::vector<Vertex> vertices;
    for (const Point& point : piece.loop) {
        const Vector3<float> position = toFloat(point);
        if (vertices.empty() || position != vertices.back().position)
            vertices.emplace_back(position, calculateTextureCoordinate(point, piece.plane.normal, piece.brush->scale));
    }
    while (vertices.size() > 1 && vertices.front().position == vertices.back().position) vertices.pop_back();
    if (vertices.size() < 3 || !hasArea(vertices)) return nullptr;
    Polygon& polygon = level.polygons.emplace_back(vertices);
    polygon.tag = textures.getNumber(piece.side->texture);
    return &polygon;
}

/// The second text of the map: see compileMap.
std::string Compiler::describe(const MapSource& source)
{
    std::ostringstream text;
    const auto writeEntry = [&](const char* indentation, const std::string& name, const std::string& value) {
        const char* const quote = value.find(' ') != std::string::npos ? "\"" : "";
        text << indentation << "<" << name << " " << quote << value << quote << "/>\r\n";
    };
    text << "<map>\r\n";
    for (const TerrainSource& terrain : source.terrains) {
        text << "   <terrain>\r\n";
        const std::unique_ptr<ConfigSection> section = makeTerrainSection(terrain);
        std::list<const ConfigEntry*> entries;
        std::as_const(*section).getEntries(entries);
        for (const ConfigEntry* entry : entries) writeEntry("      ", entry->getName(), entry->getValue());
        text << "   </terrain>\r\n";
    }
    for (const EntitySource& entity : source.entities) {
        text << "   <entity>\r\n";
        for (const auto& [name, value] : entity) writeEntry("      ", name, value);
        text << "   </entity>\r\n";
    }
    text << "   <textures>\r\n";
    for (std::size_t i = 0; i < textures.get().size(); ++i) writeEntry("      ", std::to_string(i), textures.get()[i]);
    text << "   </textures>\r\n";
    for (const std::string& numbers : polygonTextures) {
        text << "   <mesh>\r\n";
        writeEntry("      ", "polygons", numbers);
        text << "   </mesh>\r\n";
    }
    text << "</map>\r\n";
    return text.str();
}

} // namespace

CompiledLevel compileMap(const MapSource& source, const CompileProgress& progress)
{
    Compiler compiler(progress);
    std::vector<std::unique_ptr<BSPMesh>> meshes;
    for (std::size_t i = 0; i < source.meshes.size(); ++i)
        meshes.push_back(compiler.compileMesh(source.meshes[i], "mesh " + std::to_string(i + 1)));
    compiler.level.map = std::make_unique<CompiledMap>(source.title, compiler.describe(source));
    for (std::unique_ptr<BSPMesh>& mesh : meshes) compiler.level.map->getBSPMeshes().append(mesh.release());
    return std::move(compiler.level);
}
