#include "level.h"

#include "failure.h"
#include "text_as_file.h"

#include <xum/files/config_check.h>
#include <xum/files/config_file.h>
#include <xum/geometry/bsp.h>
#include <xum/geometry/bsp_mesh.h>
#include <xum/geometry/bsp_node.h>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <system_error>

namespace {

const char* const mapDirectory = "maps/";

[[noreturn]] void fail(const std::string& fileName, const std::string& problem)
{
    throw Failure(ExitStatus::BrokenData, "the map " + fileName + " " + problem);
}

/// By the number that the polygons have.
std::vector<TextureName> readTextures(const ConfigSection& section, const std::string& fileName)
{
    std::vector<TextureName> textures;
    std::list<const ConfigEntry*> entries;
    section.getEntries(entries);
    for (const ConfigEntry* entry : entries) {
        const auto known = std::find(textureFileNames.begin(), textureFileNames.end(), entry->getValue());
        if (known == textureFileNames.end()) fail(fileName, "needs the unknown texture " + entry->getValue());
        textures.push_back(static_cast<TextureName>(known - textureFileNames.begin()));
    }
    return textures;
}

Level::Entity readEntity(const ConfigSection& section)
{
    Level::Entity entity;
    std::list<const ConfigEntry*> entries;
    section.getEntries(entries);
    for (const ConfigEntry* entry : entries) entity[entry->getName()] = entry->getValue();
    return entity;
}

Polygon moved(Polygon polygon, const Vector3<float>& by)
{
    for (Vertex& vertex : polygon.vertices) vertex.position += by;
    return polygon;
}

} // namespace

Level::Level(std::unique_ptr<CompiledMap> compiledMap, const std::string& fileName) : map(std::move(compiledMap))
{
    std::string problem;
    if (!checkConfigText(map->getSecond(), problem)) fail(fileName, "has a text that is broken: " + problem);
    TextAsFile text(map->getSecond());
    const ConfigFile description(&text, fileName);
    std::vector<TextureName> textures;
    const BSPMesh* mesh = map->getBSPMeshes().getFirst();
    for (const ConfigSection* section : description.getRootSection()->getAllSections()) {
        if (section->getName() == "entity") entities.push_back(readEntity(*section));
        if (section->getName() == "terrain") {
            if (land) fail(fileName, "has more than one terrain, and one is walked on");
            land = readLand(*section);
            if (!land) fail(fileName, "has a terrain that makes no sense");
        }
        if (section->getName() == "textures") textures = readTextures(*section, fileName);
        if (section->getName() != "mesh") continue;
        const ConfigEntry* const numbers = section->getEntry("polygons", false);
        if (mesh == nullptr || numbers == nullptr) fail(fileName, "has a text that does not fit its polygons");
        addLeaves(*mesh, numbers->getValue(), textures, fileName);
        mesh = mesh->getNext();
    }
    if (mesh != nullptr) fail(fileName, "has a text that does not fit its polygons");
}

void Level::addLeaves(const BSPMesh& mesh, const std::string& textureNumbers, const std::vector<TextureName>& textures,
                      const std::string& fileName)
{
    std::istringstream numbers(textureNumbers);
    Region region = {&mesh, {}, {}};
    for (const BSPNode* node : mesh.getBSP()->calculateLeafArray()) {
        region.leafNumbers.emplace(node, leafCount++);
        Leaf leaf;
        for (const Polygon* polygon : node->getLeaf()->polygons) {
            std::size_t number = 0;
            if (!(numbers >> number) || number >= textures.size())
                fail(fileName, "has a text that does not fit its polygons");
            leaf.faces.push_back({moved(*polygon, mesh.getOrigin()), textures[number]});
            for (const Vertex& vertex : leaf.faces.back().polygon.vertices) leaf.bounds.add(vertex.position);
        }
        if (leaf.faces.empty()) continue;
        region.bounds.add(leaf.bounds.minimum);
        region.bounds.add(leaf.bounds.maximum);
        leaves.push_back(std::move(leaf));
    }
    std::size_t more = 0;
    if (numbers >> more) fail(fileName, "has a text that does not fit its polygons");
    regions.push_back(std::move(region));
}

std::optional<Level::Position> Level::locate(const Vector3<float>& point) const
{
    for (const Region& region : regions) {
        const auto& [minimum, maximum] = region.bounds;
        const bool isInside = point.x >= minimum.x && point.x <= maximum.x && point.y >= minimum.y &&
                              point.y <= maximum.y && point.z >= minimum.z && point.z <= maximum.z;
        if (!isInside) continue;
        const BSPNode* const node = region.mesh->getBSP()->locatePoint(point - region.mesh->getOrigin());
        const auto number = region.leafNumbers.find(node);
        if (number != region.leafNumbers.end()) return Position{number->second, node->getLeaf()->kind};
    }
    return std::nullopt;
}

std::vector<Place> Level::findPlaces(const std::string& className) const
{
    std::vector<Place> places;
    const BSPMesh* const mesh = map->getBSPMeshes().getFirst();
    const Vector3<float> origin = mesh != nullptr ? mesh->getOrigin() : Vector3<float>();
    for (const Entity& entity : entities) {
        const auto name = entity.find("class");
        const auto position = entity.find("position");
        if (name == entity.end() || name->second != className || position == entity.end()) continue;
        std::istringstream numbers(position->second);
        Place place;
        if (!(numbers >> place.position.x >> place.position.y >> place.position.z)) continue;
        place.position += origin;
        const auto turn = entity.find("turn");
        if (turn != entity.end() && !(std::istringstream(turn->second) >> place.turn)) place.turn = 0;
        places.push_back(place);
    }
    return places;
}

std::vector<Vector3<float>> Level::findPositions(const std::string& className) const
{
    std::vector<Vector3<float>> positions;
    for (const Place& place : findPlaces(className)) positions.push_back(place.position);
    return positions;
}

std::unique_ptr<Level> loadLevelFile(const std::string& fileName)
{
    std::error_code failure;
    if (!std::filesystem::is_regular_file(fileName, failure))
        throw Failure(ExitStatus::BrokenData, "cannot read the map " + fileName);
    std::unique_ptr<CompiledMap> map(CompiledMap::readFromFile(fileName));
    if (!map) fail(fileName, "is no compiled map");
    return std::make_unique<Level>(std::move(map), fileName);
}

std::unique_ptr<Level> loadLevel(GameData& data, const std::string& name)
{
    const std::string fileName = data.getFileName(mapDirectory, name);
    std::unique_ptr<CompiledMap> map(CompiledMap::readFromFile(data.provideFile(fileName)));
    if (!map) fail(fileName, "is no compiled map");
    return std::make_unique<Level>(std::move(map), fileName);
}
