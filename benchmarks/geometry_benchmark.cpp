#include "headless.h"
#include "plain_geometry.h"

#include <xum/files/file_serializer.h>
#include <xum/geometry/brush.h>
#include <xum/geometry/bsp.h>
#include <xum/geometry/bsp_mesh.h>
#include <xum/geometry/clipper.h>
#include <xum/geometry/depth_buffer.h>
#include <xum/geometry/mesh.h>
#include <xum/geometry/terrain.h>

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

// Trees, clipping, meshes, terrain and the depth buffer beside plain code for the same work (plain_geometry.h), which
// gives the same results: they are compared before anything is measured.

namespace {

std::string scratch(const char* name)
{
    return (std::filesystem::temp_directory_path() / (std::string("xum-geometry-benchmark-") + name)).string();
}

void require(bool isTrue, const char* what)
{
    if (isTrue) return;
    std::fprintf(stderr, "geometry_benchmark: %s\n", what);
    std::exit(1);
}

template <class Value>
bool areSame(const std::vector<Value>& a, const std::vector<Value>& b)
{
    return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(Value)) == 0);
}

void registerPair(const std::string& name, benchmark::TimeUnit unit, const std::function<void()>& plain,
                  const std::function<void()>& engine)
{
    const auto add = [&](const char* side, const std::function<void()>& work) {
        const auto run = [work](benchmark::State& state) {
            for (auto _ : state) work();
        };
        benchmark::RegisterBenchmark((name + side).c_str(), run)->Unit(unit);
    };
    add("/plain", plain);
    add("/engine", engine);
}

// ----------------------------------------------------------------------------------------------------------------
// trees

/// A tree of so many leaves in a file, as the engine has read it and as plain code has.
struct Trees {
    std::string file;
    std::unique_ptr<BSPMesh> engine;
    std::unique_ptr<plain::Tree> plain;

    explicit Trees(int leaves, const char* name) : file(scratch(name))
    {
        plain::writeTree(file, leaves);
        FileDeserializer in(file);
        engine.reset(BSPMesh::deserialize(in));
        require(engine != nullptr, "the tree was not read");
        plain = plain::readTree(file);
    }
};

std::uint64_t locateAll(const BSP& bsp, const std::vector<Vector3<float>>& points)
{
    std::uint64_t sum = 0;
    for (const Vector3<float>& point : points) sum += bsp.locatePoint(point)->getLeaf()->brushes[0]->kind;
    return sum;
}

void registerTrees(int leaves, const char* name)
{
    const auto trees = std::make_shared<Trees>(leaves, name);
    const BSP* const bsp = trees->engine->getBSP();
    const plain::Tree* const tree = trees->plain.get();
    for (const bool areCoherent : {false, true}) {
        const auto points = std::make_shared<std::vector<Vector3<float>>>(plain::makePoints(100000, areCoherent));
        require(locateAll(*bsp, *points) == plain::locateAll(*tree, *points), "points located elsewhere");
        registerPair(
            std::string("locate_100000_") + (areCoherent ? "coherent_" : "random_") + name, benchmark::kMicrosecond,
            [trees, tree, points] { benchmark::DoNotOptimize(plain::locateAll(*tree, *points)); },
            [trees, bsp, points] { benchmark::DoNotOptimize(locateAll(*bsp, *points)); });
    }
    require(trees->engine->getBSP()->calculateLeafArray().size() == plain::collectLeaves(*tree).size(), "leaves");
    registerPair(
        std::string("leaf_array_") + name, benchmark::kMicrosecond,
        [trees, tree] { benchmark::DoNotOptimize(plain::collectLeaves(*tree).data()); },
        [trees] { benchmark::DoNotOptimize(trees->engine->getBSP()->calculateLeafArray().data()); });
    registerPair(
        std::string("tree_clone_and_destroy_") + name, benchmark::kMicrosecond,
        [trees, tree] { benchmark::DoNotOptimize(plain::cloneTree(*tree)); },
        [trees, bsp] { benchmark::DoNotOptimize(BSP(*bsp).getRoot()); });
    registerPair(
        std::string("tree_read_and_destroy_") + name, benchmark::kMicrosecond,
        [trees] { benchmark::DoNotOptimize(plain::readTree(trees->file)); },
        [trees] {
            FileDeserializer in(trees->file);
            const std::unique_ptr<BSPMesh> mesh(BSPMesh::deserialize(in));
            benchmark::DoNotOptimize(mesh.get());
        });
    const std::string out = scratch("written");
    registerPair(
        std::string("tree_write_") + name, benchmark::kMicrosecond, [out, leaves] { plain::writeTree(out, leaves); },
        [out, trees] {
            FileSerializer file(out);
            require(trees->engine->serialize(file), "the tree was not written");
        });
}

// -------------------------------------------------------------------------------------------------------------
// clipping

void registerClipping()
{
    const auto polygons = std::make_shared<std::vector<Polygon>>(plain::makePolygons(10000));
    const std::vector<Plane<float>> planes = plain::makeFrustum();
    const Clipper clipper(planes);
    for (const Polygon& polygon : *polygons)
        require(areSame(clipper.clipPolygon(&polygon), plain::clipPolygon(planes, polygon)), "another polygon");
    registerPair(
        "clip_10000_polygons_by_5_planes", benchmark::kMicrosecond,
        [polygons, planes] {
            for (const Polygon& polygon : *polygons)
                benchmark::DoNotOptimize(plain::clipPolygon(planes, polygon).data());
        },
        [polygons, clipper] {
            for (const Polygon& polygon : *polygons) benchmark::DoNotOptimize(clipper.clipPolygon(&polygon).data());
        });

    const auto ends = std::make_shared<std::vector<Vector3<float>>>(plain::makeScatteredPoints(20000));
    const auto sumOf = [ends](const auto& clip) {
        float sum = 0;
        for (std::size_t i = 0; i < ends->size(); i += 2) {
            Vector3<float> start;
            Vector3<float> end;
            if (clip(start, end, (*ends)[i], (*ends)[i + 1])) sum += start.x + end.y;
        }
        return sum;
    };
    const auto clipPlainly = [planes](auto&... arguments) { return plain::clipLine(planes, arguments...); };
    const auto clip = [clipper](auto&... arguments) { return clipper.clipLine(arguments...); };
    require(sumOf(clipPlainly) == sumOf(clip), "other lines");
    registerPair(
        "clip_10000_lines_by_5_planes", benchmark::kMicrosecond, //
        [=] { benchmark::DoNotOptimize(sumOf(clipPlainly)); }, [=] { benchmark::DoNotOptimize(sumOf(clip)); });
}

// ---------------------------------------------------------------------------------------------------------------
// meshes

void registerSphere(int subdivisions, const char* name)
{
    const std::unique_ptr<Mesh> mesh(createSphereMesh(subdivisions, 2));
    const plain::Arrays arrays = plain::makeSphere(subdivisions, 2);
    require(areSame(mesh->getPositions(), arrays.positions) && areSame(mesh->getIndexes(), arrays.indexes) &&
                areSame(mesh->getVertexNormals(), arrays.vertexNormals),
            "another sphere");
    registerPair(
        name, benchmark::kMicrosecond,
        [subdivisions] { benchmark::DoNotOptimize(plain::makeSphere(subdivisions, 2).positions.data()); },
        [subdivisions] {
            const std::unique_ptr<Mesh> sphere(createSphereMesh(subdivisions, 2));
            benchmark::DoNotOptimize(sphere.get());
        });
}

void registerMeshes()
{
    registerSphere(5, "sphere_of_5_subdivisions");
    registerSphere(7, "sphere_of_7_subdivisions");

    const auto grid = std::make_shared<plain::Arrays>(plain::makeGrid(1000, 500)); // about a million triangles
    const auto mesh = std::make_shared<Mesh>(grid->positions, grid->textureCoordinates, grid->indexes);
    mesh->calculateFaceNormals();
    mesh->calculateVertexNormals();
    plain::calculateNormals(*grid);
    require(areSame(mesh->getVertexNormals(), grid->vertexNormals), "other normals");
    registerPair(
        "normals_of_1000000_triangles", benchmark::kMillisecond, [grid] { plain::calculateNormals(*grid); },
        [mesh] {
            mesh->calculateFaceNormals();
            mesh->calculateVertexNormals();
        });

    const std::string file = scratch("mesh");
    plain::writeMesh(file, plain::makeGrid(1000, 1000));
    {
        const std::unique_ptr<Mesh> read(loadMesh(file));
        require(read && areSame(read->getIndexes(), plain::readMesh(file).indexes), "another mesh");
    }
    registerPair(
        "mesh_file_of_1000000_vertices", benchmark::kMillisecond,
        [file] { benchmark::DoNotOptimize(plain::readMesh(file).positions.data()); },
        [file] {
            const std::unique_ptr<Mesh> read(loadMesh(file));
            benchmark::DoNotOptimize(read.get());
        });
}

// --------------------------------------------------------------------------------------------------------------
// terrain

void registerTerrain()
{
    constexpr int half = 512;
    const auto shape = [](int x, int y, const Vector3<float>& position) {
        return Vector3<float>(position.x, position.y, static_cast<float>((x * 7 + y * 13) & 255));
    };
    const auto unchanged = [](int, int, const Vector3<float>& position) { return position; };

    const auto terrain = std::make_shared<Terrain>(half, half, 3);
    const auto grid = std::make_shared<plain::TerrainArrays>(half, half, 3);
    require(areSame(terrain->getPositions(), grid->positions) && areSame(terrain->getIndexes(), grid->indexes) &&
                areSame(terrain->getTextureCoordinates(), grid->textureCoordinates),
            "another grid");
    terrain->modify(shape, 10);
    grid->modify(shape);
    grid->smooth(10);
    require(areSame(terrain->getPositions(), grid->positions), "other heights");

    registerPair(
        "terrain_1025_built", benchmark::kMillisecond,
        [] { benchmark::DoNotOptimize(plain::TerrainArrays(half, half, 3).positions.data()); },
        [] { benchmark::DoNotOptimize(Terrain(half, half, 3).getPositions().data()); });
    registerPair(
        "terrain_1025_modified", benchmark::kMillisecond, [grid, shape] { grid->modify(shape); },
        [terrain, shape] { terrain->modify(shape, 0); });
    registerPair(
        "terrain_1025_modified_and_smoothed_10_times", benchmark::kMillisecond,
        [grid, unchanged] {
            grid->modify(unchanged);
            grid->smooth(10);
        },
        [terrain, unchanged] { terrain->modify(unchanged, 10); });
}

// --------------------------------------------------------------------------------------------------------- depth
// buffer

constexpr int screenWidth = 1920;
constexpr int screenHeight = 1080;

/// All pixels in order, each nearer than before.
template <class Buffer>
int testInOrder(Buffer& buffer, float depth)
{
    int passed = 0;
    for (int y = 0; y < screenHeight; ++y)
        for (int x = 0; x < screenWidth; ++x) passed += buffer.test(x, y, depth) ? 1 : 0;
    return passed;
}

template <class Buffer>
int testAt(Buffer& buffer, const std::vector<std::uint32_t>& places, float depth)
{
    int passed = 0;
    for (const std::uint32_t place : places)
        passed += buffer.test(static_cast<int>(place & 0xFFFF), static_cast<int>(place >> 16),
                              depth + static_cast<float>(place >> 4 & 1023))
                      ? 1
                      : 0;
    return passed;
}

void registerDepthBuffer()
{
    const auto engine = std::make_shared<Software::DepthBuffer>(screenWidth, screenHeight, 16, 16);
    const auto plain = std::make_shared<plain::TiledDepths>(screenWidth, screenHeight, 4, 4);
    const auto places = std::make_shared<std::vector<std::uint32_t>>();
    plain::Random random;
    for (int i = 0; i < screenWidth * screenHeight; ++i)
        places->push_back(random.below(screenWidth) | random.below(screenHeight) << 16);
    engine->clear();
    plain->clear();
    require(testAt(*engine, *places, 1) == testAt(*plain, *places, 1), "other pixels pass");

    const auto inOrder = [](const auto& buffer) {
        return [buffer, depth = 2000.0f]() mutable {
            depth += 1;
            benchmark::DoNotOptimize(testInOrder(*buffer, depth));
        };
    };
    const auto failing = [](const auto& buffer) {
        return [buffer] { benchmark::DoNotOptimize(testInOrder(*buffer, -1)); };
    };
    const auto scattered = [places](const auto& buffer) {
        return [buffer, places, depth = 1.0f]() mutable {
            depth += 1;
            benchmark::DoNotOptimize(testAt(*buffer, *places, depth));
        };
    };
    registerPair("depth_1920x1080_in_order", benchmark::kMicrosecond, inOrder(plain), inOrder(engine));
    registerPair("depth_1920x1080_all_fail", benchmark::kMicrosecond, failing(plain), failing(engine));
    registerPair("depth_1920x1080_random", benchmark::kMicrosecond, scattered(plain), scattered(engine));
    registerPair(
        "depth_1920x1080_clear", benchmark::kMicrosecond, [plain] { plain->clear(); }, [engine] { engine->clear(); });
}

} // namespace

int main(int argc, char** argv)
{
    prepareMeasurement();
    registerTrees(65536, "65536_leaves");
    registerTrees(100000, "100000_leaves");
    registerClipping();
    registerMeshes();
    registerTerrain();
    registerDepthBuffer();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    for (const char* name : {"65536_leaves", "100000_leaves", "written", "mesh"})
        std::filesystem::remove(scratch(name));
}
