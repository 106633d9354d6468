#include "mesh_bytes.h"
#include "own_directory.h"
#include "program.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

class MeshInfoTest : public ::testing::Test {
protected:
    void SetUp() override { enterOwnDirectory(); }
};

void expectInfo(const std::string& bytes, const std::string& output, const std::string& errors = "")
{
    writeFileContents("a.mesh", bytes);
    const ProgramRun run = runXum("mesh info a.mesh");
    EXPECT_EQ(run.output, output);
    EXPECT_EQ(run.errors, errors);
    EXPECT_EQ(run.status, errors.empty() ? 0 : 1);
}

const std::vector<float> corners = {0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1};

} // namespace

TEST_F(MeshInfoTest, closedMesh)
{
    expectInfo(meshOf(corners, {}, {0, 2, 1, 0, 1, 3, 1, 2, 3, 2, 0, 3}), "positions: 4\n"
                                                                          "texture coordinates: none\n"
                                                                          "triangles: 4\n"
                                                                          "bounds: 0 0 0 to 1 1 1\n"
                                                                          "unused positions: 0\n"
                                                                          "triangles without area: 0\n"
                                                                          "duplicate triangles: 0\n"
                                                                          "edges: 6\n"
                                                                          "edges of one triangle: 0\n"
                                                                          "edges of three or more triangles: 0\n"
                                                                          "surface: closed\n");
}

TEST_F(MeshInfoTest, openMeshWithAllThatIsOdd)
{
    // Position 4 lies where 0 does, 5 is used by none. The third triangle is the first one, turned; the fourth names
    // a position twice; the fifth lies on a line.
    const std::vector<float> positions = {0, 0, 0, 1, 0, 0, 0, -1.5, 0, 0, 0, 1, 0, 0, 0, 1e10f, 0, 0, 2, 0, 0};
    expectInfo(meshOf(positions, std::vector<float>(14), {0, 1, 2, 4, 1, 3, 2, 0, 1, 0, 1, 1, 0, 1, 6}),
               "positions: 7\n"
               "texture coordinates: 7\n"
               "triangles: 5\n"
               "bounds: 0 -1.5 0 to 1e+10 0 1\n"
               "unused positions: 1\n"
               "triangles without area: 2\n"
               "duplicate triangles: 1\n"
               "edges: 7\n"
               "edges of one triangle: 4\n"
               "edges of three or more triangles: 1\n"
               "surface: open\n");
}

TEST_F(MeshInfoTest, emptyMesh)
{
    expectInfo(meshHeader(0, 0, 0), "positions: 0\n"
                                    "texture coordinates: none\n"
                                    "triangles: 0\n"
                                    "unused positions: 0\n"
                                    "triangles without area: 0\n"
                                    "duplicate triangles: 0\n");
}

TEST_F(MeshInfoTest, whatTheEngineBearsIsOnlyNoted)
{
    expectInfo(meshOf(corners, {1, 1}, {0, 1}) + "tail", "positions: 4\n"
                                                         "texture coordinates: 1\n"
                                                         "triangles: 0\n"
                                                         "note: the texture coordinates are not used, as there is not "
                                                         "one for each position\n"
                                                         "note: the last indexes are no whole triangle\n"
                                                         "note: 4 bytes behind the end are not used\n"
                                                         "bounds: 0 0 0 to 1 1 1\n"
                                                         "unused positions: 4\n"
                                                         "triangles without area: 0\n"
                                                         "duplicate triangles: 0\n");
}

TEST_F(MeshInfoTest, indexesThatNameNoPositionAreAProblem)
{
    expectInfo(meshOf(corners, {}, {0, 1, 4, 1, 2, 3, -1, 0, 1}),
               "positions: 4\n"
               "texture coordinates: none\n"
               "triangles: 3\n"
               "bounds: 0 0 0 to 1 1 1\n"
               "unused positions: 1\n"
               "triangles without area: 0\n"
               "duplicate triangles: 0\n",
               "a.mesh: 2 indexes name no position\n");
}

TEST_F(MeshInfoTest, numbersThatAreNotFiniteAreAProblem)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float infinity = std::numeric_limits<float>::infinity();
    const ProgramRun run = [&] {
        writeFileContents("a.mesh", meshOf({nan, 0, 0, 0, -infinity, 0, 1, 1, nan, 0, 0, 0},
                                           {0, 0, 0, 0, 0, 0, 0, infinity}, {0, 1, 2}));
        return runXum("mesh info a.mesh");
    }();
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.errors, "a.mesh: 4 positions and texture coordinates are not finite\n");
}

TEST_F(MeshInfoTest, brokenFilesAreProblems)
{
    const std::string whole = meshOf(corners, {}, {0, 1, 2});
    expectInfo("", "", "a.mesh: is no mesh file\n");
    expectInfo("!XumMap" + whole.substr(7), "", "a.mesh: is no mesh file\n");
    expectInfo(whole.substr(0, 31), "", "a.mesh: ends within its header\n");
    for (std::size_t size = 32; size < whole.size(); ++size)
        expectInfo(whole.substr(0, size), "", "a.mesh: ends at byte " + std::to_string(size) + " of 92\n");
    for (int which = 0; which < 3; ++which) {
        expectInfo(meshHeader(which == 0 ? -1 : 0, which == 1 ? -1 : 0, which == 2 ? -1 : 0), "",
                   "a.mesh: has a count below 0\n");
    }
    const int most = 2147483647;
    expectInfo(meshHeader(most, most, most), "", "a.mesh: ends at byte 32 of 51539607560\n");
}

TEST_F(MeshInfoTest, whatIsNoFileIsAProblem)
{
    const ProgramRun missing = runXum("mesh info nosuch.mesh");
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.errors, "nosuch.mesh: cannot be opened: No such file or directory\n");
    EXPECT_EQ(runXum("mesh info .").errors, ".: is no file\n");
}
