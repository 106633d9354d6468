#include "scene.h"

#include "shapes.h"

#include <xum/geometry/mesh.h>

#include <algorithm>
#include <cmath>

const std::array<const char*, textureCount> textureFileNames = {"grass.jpg", "paving.png", "limestone.png",
                                                                "brick.png", "wood.png",   "bronze.png",
                                                                "water.png", "roof.jpg",   "leaves.jpg"};

namespace {

const Material paving = {TextureName::Paving, 0.28f, {1, 1, 1}, 0.06f, 30};
const Material limestone = {TextureName::Limestone, 0.5f, {1, 1, 1}, 0.05f, 20};
const Material brick = {TextureName::Brick, 0.5f};
const Material wood = {TextureName::Wood, 1.0f, {1, 1, 1}, 0.05f, 16};
const Material barrelWood = {TextureName::Wood, 1.2f, {0.9f, 0.8f, 0.7f}, 0.08f, 20};
const Material iron = {TextureName::Bronze, 1.0f, {0.16f, 0.16f, 0.18f}, 0.4f, 40};
const Material bronze = {TextureName::Bronze, 0.8f, {1.0f, 0.95f, 0.85f}, 0.9f, 60};
const Material water = {TextureName::Water, 0.35f, {0.8f, 0.95f, 1.0f}, 0.8f, 180};
const Material roof = {TextureName::Roof, 0.5f, {1, 1, 1}, 0.04f, 16};
const Material clay = {TextureName::Limestone, 0.6f, {0.75f, 0.36f, 0.22f}, 0.05f, 16};
const Material leaves = {TextureName::Leaves, 0.55f};
const Material cypress = {TextureName::Leaves, 0.4f, {0.62f, 0.75f, 0.7f}};
const Material bark = {TextureName::Wood, 0.6f, {0.5f, 0.45f, 0.4f}};
const Material lampLight = {TextureName::Limestone, 0.5f, {1.0f, 0.74f, 0.36f}, 0, 1, 6.0f};

constexpr float floorHeight = 0.30f; // of the paved courtyard above the meadow

using Things = std::vector<Thing>;

void addGround(Things& things)
{
    things.push_back(place(SolidKind::Box, limestone, {0, 0, 0}, {24.8f, 24.8f, 0.15f}));
    things.push_back(place(SolidKind::Box, paving, {0, 0, 0}, {24, 24, floorHeight}));
    things.push_back(place(SolidKind::Box, paving, {0, -32, 0}, {4, 38, 0.04f}));
}

/// Foot, shaft and head; the whole is `height` high.
void addColumn(Things& things, const Vector3<float>& foot, float height)
{
    const auto above = [&](float z) { return foot + Vector3<float>(0, 0, z); };
    things.push_back(place(SolidKind::Box, limestone, foot, {1.15f, 1.15f, 0.25f}));
    things.push_back(place(SolidKind::Ring, limestone, above(0.20f), {1.1f, 1.1f, 2.0f}));
    things.push_back(place(SolidKind::Cylinder, limestone, above(0.25f), {0.8f, 0.8f, height - 0.5f}));
    things.push_back(place(SolidKind::Ring, limestone, above(height - 0.50f), {0.98f, 0.98f, 1.5f}));
    things.push_back(place(SolidKind::Box, limestone, above(height - 0.25f), {1.15f, 1.15f, 0.25f}));
}

void addColonnade(Things& things, float x)
{
    constexpr float height = 4.2f;
    for (int i = -2; i <= 2; ++i) addColumn(things, {x, 4.0f * static_cast<float>(i), floorHeight}, height);
    things.push_back(place(SolidKind::Box, limestone, {x, 0, floorHeight + height}, {1.0f, 17.6f, 0.55f}));
    things.push_back(place(SolidKind::Box, limestone, {x, 0, floorHeight + height + 0.55f}, {1.4f, 18.0f, 0.22f}));
}

void addFountain(Things& things)
{
    const auto at = [](float z) { return Vector3<float>(0, 0, floorHeight + z); };
    things.push_back(place(SolidKind::Cylinder, limestone, at(0), {7.0f, 7.0f, 0.16f}));
    things.push_back(place(SolidKind::Cylinder, limestone, at(0.16f), {5.6f, 5.6f, 0.62f}));
    things.push_back(place(SolidKind::Cylinder, water, at(0.16f), {5.0f, 5.0f, 0.66f}));
    things.push_back(place(SolidKind::Ring, limestone, at(0.54f), {5.9f, 5.9f, 4.2f}));
    things.push_back(place(SolidKind::Cylinder, limestone, at(0.5f), {0.9f, 0.9f, 1.5f}));
    things.push_back(place(SolidKind::Cylinder, limestone, at(1.9f), {2.3f, 2.3f, 0.22f}));
    things.push_back(place(SolidKind::Cylinder, water, at(2.0f), {2.0f, 2.0f, 0.16f}));
    things.push_back(place(SolidKind::Ring, limestone, at(2.02f), {2.5f, 2.5f, 2.0f}));
    things.push_back(place(SolidKind::Cylinder, limestone, at(2.1f), {0.4f, 0.4f, 0.8f}));
    things.push_back(place(SolidKind::Ring, bronze, at(3.28f), {1.6f, 1.6f, 0.9f}));
}

/// On top of the fountain.
void addBall(Scene& scene)
{
    std::unique_ptr<Mesh> ball(createSphereMesh(4, 0.525f));
    addOwnShape(scene, makeShape(*ball), bronze, {0, 0, floorHeight + 3.325f}, 0.8f);
}

void addPavilion(Things& things)
{
    constexpr float floor = floorHeight + 0.4f;
    constexpr float height = 3.6f;
    things.push_back(place(SolidKind::Box, limestone, {0, 8.6f, floorHeight}, {8.4f, 6.4f, 0.2f}));
    things.push_back(place(SolidKind::Box, paving, {0, 8.6f, floorHeight}, {7.6f, 5.6f, 0.4f}));
    for (float x : {-3.0f, 3.0f})
        for (float y : {6.6f, 10.6f}) addColumn(things, {x, y, floor}, height);
    things.push_back(place(SolidKind::Box, limestone, {0, 8.6f, floor + height}, {7.4f, 5.4f, 0.5f}));
    things.push_back(place(SolidKind::Box, limestone, {0, 8.6f, floor + height + 0.5f}, {8.0f, 6.0f, 0.18f}));
    things.push_back(place(SolidKind::Pyramid, roof, {0, 8.6f, floor + height + 0.68f}, {8.4f, 6.4f, 2.3f}));
    things.push_back(place(SolidKind::Sphere, bronze, {0, 8.6f, floor + height + 2.85f}, {0.5f, 0.5f, 0.5f}));
    things.push_back(place(SolidKind::Box, limestone, {0, 8.6f, floor}, {1.3f, 1.3f, 0.9f}));
    things.push_back(place(SolidKind::Pyramid, bronze, {0, 8.6f, floor + 0.9f}, {0.8f, 0.8f, 2.0f}));
}

void addWalls(Things& things)
{
    const auto addWall = [&](float x, float y, float length, float turn) {
        things.push_back(place(SolidKind::Box, brick, {x, y, 0}, {length, 0.5f, 2.2f}, turn));
        things.push_back(place(SolidKind::Box, limestone, {x, y, 2.2f}, {length + 0.3f, 0.75f, 0.16f}, turn));
    };
    addWall(-8.4f, 14, 11.2f, 0);
    addWall(8.4f, 14, 11.2f, 0);
    addWall(-14, 0, 28, 90);
    addWall(14, 0, 28, 90);
    addWall(-8.4f, -14, 11.2f, 0);
    addWall(8.4f, -14, 11.2f, 0);
}

/// The pillars beside an entrance, with a ball on each.
void addGate(Things& things, float y, const Material& ball)
{
    for (float x : {-2.4f, 2.4f}) {
        things.push_back(place(SolidKind::Box, brick, {x, y, 0}, {1.1f, 1.1f, 2.9f}));
        things.push_back(place(SolidKind::Box, limestone, {x, y, 2.9f}, {1.4f, 1.4f, 0.2f}));
        things.push_back(place(SolidKind::Sphere, ball, {x, y, 3.1f}, {0.6f, 0.6f, 0.6f}));
    }
}

void addTree(Scene& scene, float x, float y, float height)
{
    Things& things = scene.things;
    things.push_back(place(SolidKind::Cylinder, bark, {x, y, 0}, {0.4f, 0.4f, 1.2f}));
    things.push_back(place(SolidKind::Cone, cypress, {x, y, 0.7f}, {height * 0.30f, height * 0.30f, height * 0.93f}));
    scene.treeTops.emplace_back(x, y, height);
}

void addRoundTree(Scene& scene, float x, float y, float size)
{
    Things& things = scene.things;
    things.push_back(place(SolidKind::Cylinder, bark, {x, y, 0}, {0.16f * size, 0.16f * size, 1.3f * size}));
    things.push_back(place(SolidKind::Sphere, leaves, {x, y, 0.9f * size}, {1.7f * size, 1.7f * size, 1.5f * size}));
    scene.treeTops.emplace_back(x, y, 2.4f * size);
}

void addTrees(Scene& scene)
{
    addTree(scene, -13.4f, 17.2f, 8.2f);
    addTree(scene, -5.6f, 17.0f, 6.0f);
    addTree(scene, 5.6f, 17.0f, 6.0f);
    addTree(scene, 13.6f, 16.8f, 8.6f);
    addTree(scene, -17.2f, 9.0f, 7.8f);
    addTree(scene, -17.6f, -2.0f, 7.2f);
    addTree(scene, 17.4f, 5.0f, 8.0f);
    addTree(scene, 17.0f, -6.0f, 7.0f);
    addRoundTree(scene, -20, 22, 3.0f);
    addRoundTree(scene, 17.5f, 24, 3.4f);
    addRoundTree(scene, 22, 15, 3.0f);
    addRoundTree(scene, -23, 6, 3.2f);
    addRoundTree(scene, -6, 37, 3.0f);
}

void addPots(Things& things)
{
    for (float y : {-11.2f, 4.9f}) {
        for (float x : {-4.9f, 4.9f}) {
            things.push_back(place(SolidKind::Cylinder, clay, {x, y, floorHeight}, {0.9f, 0.9f, 0.8f}));
            things.push_back(place(SolidKind::Ring, clay, {x, y, floorHeight + 0.72f}, {1.08f, 1.08f, 1.6f}));
            things.push_back(place(SolidKind::Sphere, leaves, {x, y, floorHeight + 0.6f}, {1.3f, 1.3f, 1.3f}));
        }
    }
}

void addBarrel(Things& things, float x, float y)
{
    things.push_back(place(SolidKind::Cylinder, barrelWood, {x, y, floorHeight}, {0.9f, 0.9f, 1.2f}));
    for (float z : {0.12f, 0.98f})
        things.push_back(place(SolidKind::Ring, iron, {x, y, floorHeight + z}, {0.97f, 0.97f, 1.0f}));
}

void addStores(Things& things)
{
    things.push_back(place(SolidKind::Box, wood, {5.4f, -6.2f, floorHeight}, {1.3f, 1.3f, 1.3f}, 12));
    things.push_back(place(SolidKind::Box, wood, {5.9f, -4.1f, floorHeight}, {1.1f, 1.1f, 1.1f}, -20));
    things.push_back(place(SolidKind::Box, wood, {5.4f, -6.2f, floorHeight + 1.3f}, {0.8f, 0.8f, 0.8f}, 40));
    addBarrel(things, 6.6f, -6.9f);
    addBarrel(things, 4.2f, -7.3f);
}

/// A bench of stone.
void addBench(Things& things, float x, float y)
{
    for (float offset : {-0.8f, 0.8f})
        things.push_back(place(SolidKind::Box, limestone, {x, y + offset, floorHeight}, {0.6f, 0.3f, 0.45f}));
    things.push_back(place(SolidKind::Box, wood, {x, y, floorHeight + 0.45f}, {0.8f, 2.4f, 0.12f}));
}

Matrix3<float> turnAboutVertical(float degrees)
{
    const float angle = degrees * 3.14159265f / 180.0f;
    const float c = std::cos(angle);
    const float s = std::sin(angle);
    return {c, -s, 0, s, c, 0, 0, 0, 1};
}

/// Flat faces show as many repeats as they are long. Around a solid the two ends must meet: a whole number, and about
/// three times as many as across.
Vector3<float> calculateTextureRepeat(SolidKind kind, const Vector3<float>& size, float repeatsPerUnit)
{
    if (!isRound(kind)) return size * repeatsPerUnit;
    const float around = std::max(std::round(size.x * repeatsPerUnit * 3.0f), 1.0f);
    const bool isUpright = kind == SolidKind::Cylinder || kind == SolidKind::Cone;
    const float upwards = isUpright ? size.z * repeatsPerUnit : std::max(std::round(around / 2.0f), 1.0f);
    return {around, around, upwards};
}

Box calculateBoundsOfUnitCube(const Matrix4<float>& world)
{
    Box bounds;
    for (int corner = 0; corner < 8; ++corner) {
        const auto side = [&](int axis) { return (corner >> axis & 1) != 0 ? 0.5f : -0.5f; };
        const Vector4<float> placed = world * Vector4<float>(side(0), side(1), side(2), 1.0f);
        bounds.add({placed.x, placed.y, placed.z});
    }
    return bounds;
}

} // namespace

Material materialOf(TextureName texture)
{
    for (const Material& material : {paving, limestone, brick, wood, roof, bronze, water, leaves})
        if (material.texture == texture) return material;
    return {texture};
}

void addOwnShape(Scene& scene, Solid shape, const Material& material, const Vector3<float>& position, float repeats)
{
    Thing thing = {solidKindCount + scene.ownShapes.size(), material, {}, {}, {repeats, repeats, repeats}, {}};
    thing.world = Matrix4<float>::translation(position);
    for (const Vector3<float>& point : shape.positions) thing.bounds.add(point + position);
    scene.things.push_back(thing);
    scene.ownShapes.push_back(std::move(shape));
}

Thing place(SolidKind kind, const Material& material, const Vector3<float>& foot, const Vector3<float>& size,
            float turn)
{
    // A ring is only a tenth as high as the cube it is made in, and stands on its lower side.
    const float halfHeight = kind == SolidKind::Ring ? 0.05f : 0.5f;
    const Vector3<float> centre = foot + Vector3<float>(0, 0, size.z * halfHeight);
    const Matrix3<float> turning = turnAboutVertical(turn);
    const Matrix3<float> shrinking = {1 / size.x, 0, 0, 0, 1 / size.y, 0, 0, 0, 1 / size.z};

    Thing thing = {static_cast<std::size_t>(kind), material, {}, turning * shrinking, {}, {}};
    thing.world = Matrix4<float>::translation(centre) * Matrix4<float>(turning) * Matrix4<float>::scaling(size);
    thing.bounds = calculateBoundsOfUnitCube(thing.world);
    thing.textureRepeat = calculateTextureRepeat(kind, size, material.repeatsPerUnit);
    return thing;
}

Scene makeEmptyScene()
{
    constexpr Vector3<float> farAway = {0, 0, -1e6f};
    Scene scene;
    scene.lamps = {farAway, farAway, farAway};
    scene.fountain = farAway;
    scene.lampColor = {5.0f, 2.9f, 1.1f};
    scene.sunDirection = normalize(Vector3<float>(-0.62f, -0.42f, 0.52f));
    scene.sunColor = {2.9f, 2.2f, 1.45f};
    scene.skyLight = {0.42f, 0.52f, 0.70f};
    scene.groundLight = {0.20f, 0.18f, 0.13f};
    scene.hazeColor = {0.84f, 0.86f, 0.84f};
    scene.zenithColor = {0.10f, 0.30f, 0.85f};
    return scene;
}

Scene makeCourtyard()
{
    Scene scene = makeEmptyScene();
    scene.hasCourtyard = true;
    addGround(scene.things);
    addFountain(scene.things);
    for (float x : {-8.5f, 8.5f}) addColonnade(scene.things, x);
    addPavilion(scene.things);
    addWalls(scene.things);
    addGate(scene.things, -14, lampLight);
    addGate(scene.things, 14, limestone);
    addBall(scene);
    addTrees(scene);
    addPots(scene.things);
    addStores(scene.things);
    addBench(scene.things, -6.4f, -4);
    addBench(scene.things, -6.4f, 1.5f);

    scene.lamps = {Vector3<float>(-2.4f, -14, 3.4f), Vector3<float>(2.4f, -14, 3.4f), Vector3<float>(0, 7.4f, 3.4f)};
    scene.fountain = {0, 0, floorHeight + 1.5f};
    return scene;
}

Thing moved(Thing thing, const Vector3<float>& by)
{
    thing.world = Matrix4<float>::translation(by) * thing.world;
    thing.bounds.minimum += by;
    thing.bounds.maximum += by;
    return thing;
}
