#include "mesh_bytes.h"
#include "mesh_import.h"
#include "own_directory.h"

#include <xum/geometry/mesh.h>

#include <gtest/gtest.h>

#include <cstring>
#include <memory>

namespace fs = std::filesystem;

namespace {

class MeshCommand : public ::testing::Test {
protected:
    void SetUp() override { enterOwnDirectory(); }
};

template <class Value>
std::string bytesOf(const std::vector<Value>& values)
{
    return {reinterpret_cast<const char*>(values.data()), values.size() * sizeof(Value)};
}

void expectProblem(const std::string& arguments, const std::string& errors)
{
    const ProgramRun run = runXum("mesh " + arguments);
    EXPECT_EQ(run.status, 1) << arguments;
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.errors, errors);
}

} // namespace

// ---- sphere -------------------------------------------------------------------------------------------------------

TEST_F(MeshCommand, sphereIsThatOfTheLibrary)
{
    for (const int subdivisions : {0, 3}) {
        const ProgramRun run = runXum("mesh sphere " + std::to_string(subdivisions) + " 2.5 a.mesh");
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(run.output + run.errors, "");
        const std::unique_ptr<Mesh> sphere(createSphereMesh(subdivisions, 2.5f));
        EXPECT_EQ(fileContents("a.mesh"), meshHeader(static_cast<int>(sphere->getPositions().size()), 0,
                                                     static_cast<int>(sphere->getIndexes().size())) +
                                              bytesOf(sphere->getPositions()) + bytesOf(sphere->getIndexes()));
    }
}

TEST_F(MeshCommand, sphereIsReadBack)
{
    EXPECT_EQ(runXum("mesh sphere 2 1 a.mesh").status, 0);
    const std::unique_ptr<Mesh> mesh(loadMesh("a.mesh"));
    const std::unique_ptr<Mesh> sphere(createSphereMesh(2, 1));
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->getPositions(), sphere->getPositions());
    EXPECT_EQ(mesh->getIndexes(), sphere->getIndexes());
    EXPECT_TRUE(mesh->getTextureCoordinates().empty());
    const std::string info = runXum("mesh info a.mesh").output;
    EXPECT_NE(info.find("surface: closed\n"), std::string::npos) << info;
}

TEST_F(MeshCommand, sphereThatCannotBeIsWrongUsage)
{
    for (const char* arguments : {"", "-1 1 a.mesh", "13 1 a.mesh", "1.5 1 a.mesh", "1 0 a.mesh", "1 -2 a.mesh",
                                  "1 inf a.mesh", "1 nan a.mesh", "1 1e39 a.mesh", "1 x a.mesh", "1 1", "1 1 a.mesh b"})
        EXPECT_EQ(runXum("mesh sphere " + std::string(arguments)).status, 2) << arguments;
    EXPECT_FALSE(fs::exists("a.mesh"));
}

// ---- files --------------------------------------------------------------------------------------------------------

TEST_F(MeshCommand, meshThatCannotBeWrittenLeavesTheOldOne)
{
    fs::create_directory("d");
    expectProblem("sphere 1 1 d", "d: cannot be written: there is something else of that name\n");
    expectProblem("sphere 1 1 nosuch/a.mesh", "nosuch/a.mesh: cannot be written: No such file or directory\n");
#ifndef _WIN32
    writeFileContents("a.mesh", "old");
    const ProgramRun run =
        runProgram("sh", "-c \"trap '' XFSZ; ulimit -f 1; '" XUM_PROGRAM "' mesh sphere 4 1 a.mesh\"");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.errors, "a.mesh: cannot be written: File too large\n");
    EXPECT_EQ(fileContents("a.mesh"), "old");
#endif
}

TEST_F(MeshCommand, modelThatCannotBeImportedLeavesTheOldMesh)
{
    writeFileContents("a.obj", "v 1\n");
    writeFileContents("a.mesh", "old");
    EXPECT_EQ(runXum("mesh import a.obj a.mesh").status, 1);
    EXPECT_EQ(fileContents("a.mesh"), "old");
}

TEST_F(MeshCommand, modelThatCannotBeReadIsRefused)
{
    writeFileContents("a.txt", "");
    writeFileContents("b", "");
    fs::create_directory("d.obj");
    expectRefusal("a.txt", "a.txt: has none of the extensions .obj, .gltf and .glb\n");
    expectRefusal("b", "b: has none of the extensions .obj, .gltf and .glb\n");
    expectRefusal("nosuch.obj", "nosuch.obj: cannot be opened: No such file or directory\n");
    expectRefusal("d.obj", "d.obj: is no file\n");
}

TEST_F(MeshCommand, formatWithoutItsLoaderIsRefused)
{
#ifndef XUM_HAS_OBJ
    writeFileContents("a.obj", "");
    expectRefusal("a.obj", "a.obj: this xum was built without tinyobjloader, and reads no OBJ files\n");
#endif
#ifndef XUM_HAS_GLTF
    writeFileContents("a.gltf", "");
    expectRefusal("a.gltf", "a.gltf: this xum was built without tinygltf, and reads no glTF files\n");
#endif
}

TEST_F(MeshCommand, wrongUsageIsToldFromFailure)
{
    for (const char* arguments : {"", "nosuch", "import", "import a.obj", "import a.obj a.mesh b", "info",
                                  "info a.mesh b.mesh", "import --up x a.obj a.mesh", "import --scale 0 a.obj a.mesh",
                                  "import --scale -1 a.obj a.mesh", "import --scale inf a.obj a.mesh"})
        EXPECT_EQ(runXum("mesh " + std::string(arguments)).status, 2) << arguments;
    for (const char* arguments : {"--help", "import --help", "info --help", "sphere --help"})
        EXPECT_EQ(runXum("mesh " + std::string(arguments)).status, 0) << arguments;
}
