#include "world.h"

#include "data_archive.h"
#include "engine_fixtures.h"
#include "failure.h"
#include "file_contents.h"
#include "landscape.h"
#include "level.h"
#include "own_directory.h"
#include "run_program.h"

#include <xum/geometry/bsp.h>
#include <xum/geometry/bsp_mesh.h>
#include <xum/geometry/bsp_node.h>

#include <cmath>
#include <set>

namespace {

namespace fs = std::filesystem;

/// The data of the game, of which each test may damage its own copy of scripts, maps and meshes.
class World : public EngineFixture {
protected:
    void SetUp() override
    {
        EngineFixture::SetUp();
        directory = ownDirectory().generic_string() + "/";
        for (const char* kind : {"lisp", "maps", "meshes"})
            fs::copy(fs::path(XUM_DATA_DIRECTORY) / kind, fs::path(directory) / kind, fs::copy_options::recursive);
    }

    void TearDown() override
    {
        fs::remove_all(directory);
        EngineFixture::TearDown();
    }

    void expectFailure(const std::string& message)
    {
        try {
            GameData data(*engine, {directory, ""});
            Scene scene;
            addWorld(scene, *engine, data);
            ADD_FAILURE() << message;
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.what(), message);
            EXPECT_EQ(failure.getStatus(), ExitStatus::BrokenData);
        }
    }

    std::unique_ptr<Terrain> landscape()
    {
        GameData data(*engine, {directory, ""});
        return makeLandscape(*engine, data);
    }

    std::string directory;
};

} // namespace

TEST_F(World, landIsFlatAroundTheCourtyardAndTheGatehouseAndRisesBehind)
{
    const auto terrain = landscape();
    float highest = 0;
    for (const Vector3<float>& position : terrain->getPositions()) {
        EXPECT_TRUE(std::isfinite(position.z));
        EXPECT_GE(position.z, 0);
        const bool isFlat = position.x >= -18 && position.x <= 18 && position.y >= -48 &&
                            position.y <= 36; // smoothing softens the edge
        EXPECT_TRUE(!isFlat || position.z == 0) << position.x << " " << position.y;
        highest = std::max(highest, position.z);
    }
    EXPECT_GT(highest, 15);
    EXPECT_LT(highest, 40);
    EXPECT_EQ(terrain->getBoundingBox().minimum.x, -120);
    EXPECT_EQ(terrain->getBoundingBox().maximum.y, 120);
}

TEST_F(World, landIsTheSameEachTime)
{
    EXPECT_EQ(landscape()->getPositions(), landscape()->getPositions());
}

TEST_F(World, landIsWhatTheScriptSays)
{
    writeFileContents(
        directory + "lisp/landscape.lisp",
        "; a slope\n(define ground-height (closure ((x :float) (y :float)) -> :float (+ x (* 2.0 y))))\n");
    const auto terrain = landscape();
    const int columns = 2 * terrain->getWidth() + 1;
    const Vector3<float>& position = terrain->getPositions()[static_cast<std::size_t>(10 * columns + 20)];
    EXPECT_NEAR(position.z, position.x + 2 * position.y, 1e-3f);
}

TEST_F(World, missingScriptIsNamed)
{
    fs::remove(directory + "lisp/landscape.lisp");
    expectFailure("cannot read the file " + directory + "lisp/landscape.lisp");
    fs::remove(directory + "lisp/base/base.lisp");
    writeFileContents(directory + "lisp/landscape.lisp", "1");
    expectFailure("cannot read the file " + directory + "lisp/base/base.lisp");
}

TEST_F(World, wrongScriptIsNamedWithItsFirstError)
{
    const std::string script = directory + "lisp/landscape.lisp";
    const std::string start = "the script " + script + " is wrong: ";
    writeFileContents(script, "(define ground-height");
    expectFailure(start + "it cannot be read");
    writeFileContents(script, "(define ground-height nowhere)");
    expectFailure(start + "error: symbol 'nowhere' has no binding!");
    writeFileContents(script, "1");
    expectFailure(start + "error: symbol 'ground-height' has no binding!");
    writeFileContents(script, "(define ground-height (closure ((x :float) (y :float)) -> :string \"high\"))");
    expectFailure(start + "(ground-height -120.0 -120.0) gives no height");
    writeFileContents(script, "(define ground-height (closure ((x :float) (y :float)) -> :float (square-root x)))");
    expectFailure(start + "(ground-height -120.0 -120.0) gives no height");
    writeFileContents(script, "(define ground-height (closure ((x :integer) (y :float)) -> :float y))");
    expectFailure(start + "(ground-height -120.0 -120.0) gives no height");
}

TEST_F(World, missingMapAndMeshAreNamed)
{
    fs::remove(directory + "meshes/urn.mesh");
    expectFailure("cannot read the file " + directory + "meshes/urn.mesh");
    fs::remove(directory + "maps/gatehouse.map");
    expectFailure("cannot read the file " + directory + "maps/gatehouse.map");
}

TEST_F(World, otherFilesAreNoMapAndNoMesh)
{
    writeFileContents(directory + "meshes/urn.mesh", "clay");
    expectFailure("the mesh " + directory + "meshes/urn.mesh is broken");
    writeFileContents(directory + "maps/gatehouse.map", "a drawing");
    expectFailure("the map " + directory + "maps/gatehouse.map is no compiled map");
}

TEST_F(World, gatehouseIsABuildingWithRooms)
{
    GameData data(*engine, {directory, ""});
    const auto level = loadLevel(data, "gatehouse.map");
    EXPECT_EQ(level->getMap().getFirst(), "Gatehouse");
    const BSPMesh* mesh = level->getMap().getBSPMeshes().getFirst();
    std::set<const Brush*> brushes;
    for (const BSPNode* leaf : mesh->getBSP()->calculateLeafArray())
        brushes.insert(leaf->getLeaf()->brushes.begin(), leaf->getLeaf()->brushes.end());
    EXPECT_GE(brushes.size(), 200u);

    const auto isSolid = [&](const Vector3<float>& point) {
        return mesh->getBSP()->locatePoint(point - mesh->getOrigin())->getLeaf()->kind;
    };
    EXPECT_FALSE(isSolid({0, 25, 2}));        // the passage
    EXPECT_FALSE(isSolid({6, 25, 2}));        // a room
    EXPECT_FALSE(isSolid({3.8f, 25, 2}));     // its door
    EXPECT_TRUE(isSolid({3.8f, 27, 2}));      // the wall beside it
    EXPECT_TRUE(isSolid({0, 25, 4.3f}));      // the bridge
    EXPECT_FALSE(isSolid({-6, 26, 6}));       // the other tower's upper room
    EXPECT_TRUE(isSolid({-10.5f, 23, 0.5f})); // its stairs
    for (const Vector3<float>& lamp : level->findPositions("lamp")) EXPECT_FALSE(isSolid(lamp));
    EXPECT_EQ(level->findPositions("lamp").size(), Scene::levelLampCount);
}

#ifdef XUM_PROGRAM
TEST_F(World, mapIsWhatItsDescriptionCompilesTo)
{
    const std::string compiled = directory + "compiled.map";
    const ProgramRun run =
        runProgram(XUM_PROGRAM, "map compile \"" XUM_DATA_DIRECTORY "/maps/gatehouse.cfg\" \"" + compiled + "\"");
    ASSERT_EQ(run.status, 0) << run.errors;
    EXPECT_TRUE(fileContents(compiled) == fileContents(XUM_DATA_DIRECTORY "/maps/gatehouse.map"));
}

TEST_F(World, meshIsWhatItsModelImportsTo)
{
    const std::string imported = directory + "imported.mesh";
    const ProgramRun run =
        runProgram(XUM_PROGRAM, "mesh import --up z \"" XUM_DATA_DIRECTORY "/meshes/urn.obj\" \"" + imported + "\"");
    if (run.errors.find("built without") != std::string::npos) GTEST_SKIP() << run.errors;
    ASSERT_EQ(run.status, 0) << run.errors;
    EXPECT_TRUE(fileContents(imported) == fileContents(XUM_DATA_DIRECTORY "/meshes/urn.mesh"));
}
#endif

TEST_F(World, sceneGetsLandLevelLampsAndUrns)
{
    GameData data(*engine, {directory, ""});
    Scene scene;
    addWorld(scene, *engine, data);
    EXPECT_NE(scene.level, nullptr);
    EXPECT_EQ(scene.levelLamps.size(), Scene::levelLampCount);
    EXPECT_EQ(scene.ownShapes.size(), 7u); // the land and six urns
}

TEST_F(World, archiveProvidesTemporaryFilesThatGoAway)
{
    const std::string archive = directory + "world.xum";
    writeDataArchive(archive, XUM_DATA_DIRECTORY);
    std::string root;
    {
        GameData data(*engine, {"", archive});
        Scene scene;
        addWorld(scene, *engine, data);
        EXPECT_EQ(scene.ownShapes.size(), 7u);
        root = data.getLocalRoot();
        EXPECT_TRUE(fs::exists(root + "maps/gatehouse.map"));
        EXPECT_EQ(fileContents(data.provideFile("meshes/urn.mesh")),
                  fileContents(XUM_DATA_DIRECTORY "/meshes/urn.mesh"));
    }
    EXPECT_FALSE(fs::exists(root));
}
