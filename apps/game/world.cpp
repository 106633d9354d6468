#include "world.h"

#include "failure.h"
#include "landscape.h"
#include "level.h"
#include "shapes.h"

#include <xum/geometry/mesh.h>
#include <xum/geometry/terrain.h>

namespace {

const Material grass = {TextureName::Grass};
constexpr float grassRepeats = 53; // over the whole land

const Material lampLight = {TextureName::Limestone, 0.5f, {1.0f, 0.74f, 0.36f}, 0, 1, 6.0f};
const Material cord = {TextureName::Bronze, 1.0f, {0.2f, 0.2f, 0.2f}};
const Material urnStone = {TextureName::Limestone, 1.0f, {0.95f, 0.86f, 0.74f}, 0.06f, 20};

Solid loadShape(GameData& data, const std::string& name)
{
    const std::string fileName = data.getFileName("meshes/", name);
    const std::unique_ptr<Mesh> mesh(loadMesh(data.provideFile(fileName)));
    if (!mesh || mesh->getIndexes().empty())
        throw Failure(ExitStatus::BrokenData, "the mesh " + fileName + " is broken");
    mesh->calculateFaceNormals();
    mesh->calculateVertexNormals();
    return makeShape(*mesh);
}

/// A shining ball on a cord, below a ceiling or the beams under it.
void addLamp(Scene& scene, const Vector3<float>& position)
{
    scene.things.push_back(
        place(SolidKind::Sphere, lampLight, position - Vector3<float>(0, 0, 0.15f), {0.3f, 0.3f, 0.3f}));
    scene.things.push_back(place(SolidKind::Cylinder, cord, position, {0.03f, 0.03f, 1.3f}));
}

void addLevel(Scene& scene, GameData& data, std::vector<Vector3<float>> urnPlaces)
{
    scene.levelLamps = scene.level->findPositions("lamp");
    for (const Vector3<float>& lamp : scene.levelLamps) addLamp(scene, lamp);
    const std::vector<Vector3<float>> places = scene.level->findPositions("urn");
    urnPlaces.insert(urnPlaces.begin(), places.begin(), places.end());
    const Solid urn = loadShape(data, "urn.mesh");
    for (const Vector3<float>& place : urnPlaces) addOwnShape(scene, urn, urnStone, place, 1);
}

} // namespace

void addOwnMap(Scene& scene, GameData& data, const std::string& fileName)
{
    scene.level = loadLevelFile(fileName);
    if (const std::optional<LevelLand>& land = scene.level->getLand()) {
        scene.land = land->terrain;
        addOwnShape(scene, makeShape(*scene.land), {land->texture}, {0, 0, 0}, land->repeats);
        scene.things.back().blocks = false; // its box is all of the world
    }
    addLevel(scene, data, {});
}

void addWorld(Scene& scene, Engine& engine, GameData& data)
{
    scene.land = makeLandscape(engine, data);
    addOwnShape(scene, makeShape(*scene.land), grass, {0, 0, 0}, grassRepeats);
    scene.things.back().blocks = false; // its box is all of the world
    scene.level = loadLevel(data, "gatehouse.map");
    addLevel(scene, data, {{-3.4f, -13.2f, 0.3f}, {3.4f, -13.2f, 0.3f}, {-3.4f, 13.2f, 0.3f}, {3.4f, 13.2f, 0.3f}});
}
