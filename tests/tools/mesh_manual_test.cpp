#include "mesh_bytes.h"
#include "own_directory.h"
#include "pack_manual.h"
#include "program.h"

#include <xum/geometry/mesh.h>

#include <gtest/gtest.h>

#include <memory>
#include <sstream>

// The mesh part of docs/file_formats.md against the library and xum.

namespace {

class MeshManual : public ::testing::Test {
protected:
    void SetUp() override { enterOwnDirectory(); }
};

} // namespace

TEST_F(MeshManual, exampleIsAMesh)
{
    const std::vector<std::string> examples = fileFormatBlocks("mesh");
    ASSERT_EQ(examples.size(), 1u);
    std::string bytes;
    std::istringstream lines(examples[0]);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream numbers(line);
        std::size_t offset = 0;
        numbers >> std::hex >> offset;
        EXPECT_EQ(offset, bytes.size());
        for (unsigned byte = 0; numbers >> byte;) bytes += static_cast<char>(byte);
    }
    EXPECT_EQ(bytes, meshOf({0, 0, 0, 1, 0, 0, 0, 1, 0}, {0, 1, 1, 1, 0, 0}, {0, 1, 2}));
    writeFileContents("a.mesh", bytes);
    const std::unique_ptr<Mesh> mesh(loadMesh("a.mesh"));
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->getPositions()[1], Vector3<float>(1, 0, 0));
    EXPECT_EQ(runXum("mesh info a.mesh").status, 0);
}

#ifdef XUM_HAS_OBJ
TEST_F(MeshManual, exampleComesFromTheModelBesideIt)
{
    const std::vector<std::string> models = fileFormatBlocks("obj");
    ASSERT_EQ(models.size(), 1u);
    writeFileContents("a.obj", models[0]);
    EXPECT_EQ(runXum("mesh import --up z a.obj a.mesh").status, 0);
    EXPECT_EQ(fileContents("a.mesh"), meshOf({0, 0, 0, 1, 0, 0, 0, 1, 0}, {0, 1, 1, 1, 0, 0}, {0, 1, 2}));
}
#endif
