#include "mesh_bytes.h"
#include "mesh_import.h"
#include "mesh_model.h"
#include "mesh_polygon.h"
#include "own_directory.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

class MeshObj : public ::testing::Test {
protected:
    void SetUp() override { enterOwnDirectory(); }
};

std::string bytesOfObj(const std::string& text, const std::string& options = "--up z", const std::string& notes = "")
{
    writeFileContents("a.obj", text);
    return importedBytes("a.obj", options, notes);
}

void expectObjRefusal(const std::string& text, const std::string& reason)
{
    SCOPED_TRACE(text);
    writeFileContents("a.obj", text);
    expectRefusal("a.obj", "a.obj: " + reason + "\n");
}

constexpr char threePositions[] = "v 1 2 3\nv 4 5 6\nv 7 8 10\n";
const std::vector<float> threePositionValues = {1, 2, 3, 4, 5, 6, 7, 8, 10};

std::string meshOfThree()
{
    return meshOf(threePositionValues, {}, {0, 1, 2});
}

} // namespace

// ---- what it becomes ----------------------------------------------------------------------------------------------

TEST_F(MeshObj, triangleBecomesAMesh)
{
    EXPECT_EQ(bytesOfObj(std::string(threePositions) + "f 1 2 3\n"), meshOfThree());
}

TEST_F(MeshObj, axesAreTurnedUnlessZIsUp)
{
    const std::string model = "v 1 2 3\nv 4 5 6\nv 7 0 0\nf 1 2 3\n";
    const std::string turned = meshOf({1, -3, 2, 4, -6, 5, 7, 0, 0}, {}, {0, 1, 2});
    EXPECT_EQ(bytesOfObj(model, ""), turned);
    EXPECT_EQ(bytesOfObj(model, "--up y"), turned);
    EXPECT_EQ(bytesOfObj(model, "--up y --scale 2"), meshOf({2, -6, 4, 8, -12, 10, 14, 0, 0}, {}, {0, 1, 2}));
    EXPECT_EQ(bytesOfObj(model, "--up z --scale 0.5"), meshOf({0.5, 1, 1.5, 2, 2.5, 3, 3.5, 0, 0}, {}, {0, 1, 2}));
}

TEST_F(MeshObj, textureCoordinatesRunDownwards)
{
    EXPECT_EQ(bytesOfObj(std::string(threePositions) + "vt 0 0\nvt 1 0.25 9\nvt 0.5 1\nf 1/1 2/2 3/3\n"),
              meshOf(threePositionValues, {0, 1, 1, 0.75, 0.5, 0}, {0, 1, 2}));
}

TEST_F(MeshObj, vertexIsAPairOfPositionAndTextureCoordinate)
{
    // Position 1 has two texture coordinates; the normals part nothing.
    EXPECT_EQ(bytesOfObj(std::string(threePositions) +
                         "vt 0 1\nvt 1 1\nvn 0 0 1\nvn 1 0 0\nf 1/1/1 2/1/1 3/1/1\nf 3/1/2 2/1/2 1/2/2\n"),
              meshOf({1, 2, 3, 4, 5, 6, 7, 8, 10, 1, 2, 3}, {0, 0, 0, 0, 0, 0, 1, 0}, {0, 1, 2, 2, 1, 3}));
}

TEST_F(MeshObj, onlyPositionsOfFacesAreTakenInTheirOrder)
{
    EXPECT_EQ(bytesOfObj("v 9 9 9\n" + std::string(threePositions) + "vt 0 0\nf 3//1 4//1 2//1\n"),
              meshOf({4, 5, 6, 7, 8, 10, 1, 2, 3}, {}, {0, 1, 2}));
}

TEST_F(MeshObj, missingTextureCoordinatesAreZero)
{
    const std::string model = std::string(threePositions) + "vt 0.5 0.5\nf 1/1 2 3/1\n";
    EXPECT_EQ(bytesOfObj(model, "--up z", "a.obj: note: vertices without a texture coordinate get 0 0: 1\n"),
              meshOf(threePositionValues, {0.5, 0.5, 0, 0, 0.5, 0.5}, {0, 1, 2}));
    EXPECT_EQ(bytesOfObj(model, "--up z --no-texture-coordinates"), meshOfThree());
}

TEST_F(MeshObj, negativeIndexesCountBackFromWhatCameBefore)
{
    EXPECT_EQ(bytesOfObj("v 9 9 9\n" + std::string(threePositions) + "f -3 -2 -1\nv 5 5 5\n"), meshOfThree());
    EXPECT_EQ(bytesOfObj(std::string(threePositions) + "vt 0 1\nvt 1 0\nf -3/-2 -2/-1 -1/-1\n"),
              meshOf(threePositionValues, {0, 0, 1, 1, 1, 1}, {0, 1, 2}));
}

TEST_F(MeshObj, indexesMayLeadAhead)
{
    EXPECT_EQ(bytesOfObj("f 1 2 3\n" + std::string(threePositions)), meshOfThree());
}

TEST_F(MeshObj, objectsGroupsAndMaterialsAreMerged)
{
    EXPECT_EQ(bytesOfObj("mtllib nosuch.mtl\no first\nusemtl red\nv 0 0 0\nv 1 0 0\nv 0 1 0\ns 1\nf 1 2 3\n"
                         "g second\nusemtl blue\nv 0 0 1\nf 1 2 4\ng\nf 4 2 1\n"),
              meshOf({0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1}, {}, {0, 1, 2, 0, 1, 3, 3, 1, 0}));
}

TEST_F(MeshObj, spellingsOfLinesAndNumbers)
{
    EXPECT_EQ(bytesOfObj("\xEF\xBB\xBFv 1 2 3 # not the end\r\n  v\t+4 5. .6e1 1.0\r# f 9 9 9 \\\rv 7 \\\n 8 1E1\n"
                         "\nf 1 \\\r\n2 3#4"),
              meshOfThree());
}

TEST_F(MeshObj, whatIsNoTriangleIsNotedAndLeftOut)
{
    EXPECT_EQ(bytesOfObj(std::string(threePositions) + "p 1\nl 1 2\nf 1 2 3\nf 1 2\nf 1\n", "--up z",
                         "a.obj: note: faces with fewer than 3 corners are left out: 2\n"
                         "a.obj: note: lines and points are left out\n"),
              meshOfThree());
    EXPECT_EQ(bytesOfObj(std::string(threePositions) + "curv 0 1 1 2\nf 1 2 3\n", "--up z",
                         "a.obj: note: curves and curved surfaces are left out\n"),
              meshOfThree());
}

// ---- polygons -----------------------------------------------------------------------------------------------------

TEST_F(MeshObj, convexPolygonBecomesAFan)
{
    const std::string square = "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\n";
    const std::vector<float> positions = {0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 0};
    EXPECT_EQ(bytesOfObj(square + "f 1 2 3 4\n"), meshOf(positions, {}, {0, 1, 2, 0, 2, 3}));
}

TEST_F(MeshObj, cornerThatStandsInIsRespected)
{
    // An arrow head: corner 2 stands in, so that the fan from corner 0 would cover what is outside.
    const std::string arrow = "v 0 0 0\nv 4 0 0\nv 1 1 0\nv 0 4 0\n";
    const std::vector<float> positions = {0, 0, 0, 4, 0, 0, 1, 1, 0, 0, 4, 0};
    EXPECT_EQ(bytesOfObj(arrow + "f 1 2 3 4\n"), meshOf(positions, {}, {0, 1, 2, 0, 2, 3}));
    EXPECT_EQ(bytesOfObj(arrow + "f 4 1 2 3\n"), meshOf({0, 4, 0, 0, 0, 0, 4, 0, 0, 1, 1, 0}, {}, {1, 2, 3, 1, 3, 0}));
}

TEST(MeshPolygon, trianglesFillPolygonsOfAnyShapeInSpace)
{
    // Stars around the origin have any radius at any corner; the sum of signed areas tells gaps and overlaps.
    std::mt19937 random(1);
    std::uniform_real_distribution<double> radius(0.2, 3);
    for (int round = 0; round < 300; ++round) {
        const int count = 4 + round % 37;
        const bool isReversed = round % 2 != 0;
        std::vector<Vector3<float>> corners;
        for (int i = 0; i < count; ++i) {
            const double angle = 2 * 3.14159265358979 * (isReversed ? count - i : i) / count;
            const double size = radius(random);
            const auto u = static_cast<float>(size * std::cos(angle));
            const auto v = static_cast<float>(size * std::sin(angle));
            corners.emplace_back(round % 3 == 0 ? Vector3<float>(u, v, 2 * u - v)
                                                : (round % 3 == 1 ? Vector3<float>(3 * v, u, v) //
                                                                  : Vector3<float>(-v, 4, -u)));
        }
        Vector3<double> whole;
        const auto at = [&corners](std::size_t i) {
            const Vector3<float>& corner = corners[i % corners.size()];
            return Vector3<double>(corner.x, corner.y, corner.z);
        };
        for (std::size_t i = 0; i < corners.size(); ++i) whole += cross(at(i), at(i + 1));
        double sum = 0;
        const auto triangles = triangulate(corners);
        EXPECT_EQ(triangles.size(), corners.size() - 2);
        for (const auto& [a, b, c] : triangles) {
            const Vector3<double> area = cross(at(static_cast<std::size_t>(b)) - at(static_cast<std::size_t>(a)),
                                               at(static_cast<std::size_t>(c)) - at(static_cast<std::size_t>(a)));
            EXPECT_GT(dot(area, whole), 0) << round;
            sum += length(area);
        }
        EXPECT_NEAR(sum, length(whole), 1e-4 * length(whole)) << round;
    }
}

TEST(MeshPolygon, whatHasNoAreaGetsTrianglesAllTheSame)
{
    EXPECT_TRUE(triangulate({{0, 0, 0}, {1, 0, 0}}).empty());
    EXPECT_EQ(triangulate(std::vector<Vector3<float>>(5)).size(), 3u);
    EXPECT_EQ(triangulate({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}}).size(), 2u);
    EXPECT_EQ(triangulate({{0, 0, 0}, {1, 1, 0}, {1, 0, 0}, {0, 1, 0}}).size(), 2u); // crosses itself
    const float nan = std::nanf("");
    EXPECT_EQ(triangulate({{0, nan, 0}, {1, 1, nan}, {nan, 0, 0}, {0, 1, 0}}).size(), 2u);
}

// ---- refusals -----------------------------------------------------------------------------------------------------

TEST_F(MeshObj, numbersThatAreNoneAreRefused)
{
    expectObjRefusal("v 1 2\n", "line 1: has too few numbers");
    expectObjRefusal("\nvt\n", "line 2: has too few numbers");
    expectObjRefusal("v 1 two 3\n", "line 1: \"two\" is no number");
    expectObjRefusal("v 1 \\\n2,5 3\n", "line 1: \"2,5\" is no number");
    expectObjRefusal("v 1 \\\n2 3\nv nan 2 3\n", "line 3: \"nan\" is no number");
    expectObjRefusal("v 1 2 1e39\n", "line 1: \"1e39\" is no number");
    expectObjRefusal("vt 0 \x1B[1m\n", "line 1: \"\\x1B[1m\" is no number");
}

TEST_F(MeshObj, cornersThatAreNoneAreRefused)
{
    for (const char* corner : {"0", "x", "1/0", "1/x", "1/2/", "1/2/3/4", "/1", "99999999999", "1.5", "1/", "1//"})
        expectObjRefusal("v 0 0 0\nf 1 1 " + std::string(corner) + "\n",
                         "line 2: \"" + std::string(corner) + "\" is no corner of a face");
}

TEST_F(MeshObj, indexesOutOfRangeAreRefused)
{
    const std::string model = std::string(threePositions) + "vt 0 0\n";
    for (const char* face : {"1 2 4", "1 2 -4", "1 2 2147483647", "-2147483648 1 2", "1 4"})
        expectObjRefusal(model + "f " + face + "\n", "line 5: a corner has a position that is not there");
    for (const char* face : {"1/1 2/2 3/1", "1/1 2/-2 3/1"})
        expectObjRefusal(model + "f " + face + "\n", "line 5: a corner has a texture coordinate that is not there");
    expectObjRefusal(model + "f 1 2 3\n\nf\nf 1 2 3 4\n", "line 8: a corner has a position that is not there");
}

TEST_F(MeshObj, whatHoldsNoMeshIsRefused)
{
    expectObjRefusal("", "has no triangles");
    expectObjRefusal(threePositions, "has no triangles");
    expectObjRefusal(std::string("\xFE\xFF\0v\0 ", 6), "is no text in UTF-8 or ASCII");
    std::string face = std::string(threePositions) + "f";
    for (int i = 0; i < 2049; ++i) face += " 1";
    expectObjRefusal(face, "line 4: a face has more than 2048 corners");
}

TEST_F(MeshObj, positionsThatAreScaledBeyondAFloatAreRefused)
{
    writeFileContents("a.obj", "v 1e30 0 0\nv 0 1 0\nv 0 0 1\nf 1 2 3\n");
    const ProgramRun run = runXum("mesh import --scale 1e30 a.obj a.mesh");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.errors, "a.obj: has a position that is not finite\n");
}

TEST(MeshModel, moreThanAnIntCountsIsRefused)
{
    const auto problemOf = [](int limit) {
        Model model(limit);
        try {
            readObjModel("v 0 0 0\nv 1 0 0\nv 0 1 0\nv 1 1 1\nf 1 2 3 4\n", model);
        } catch (const ModelProblem& problem) {
            return std::string(problem.what());
        }
        return std::string();
    };
    EXPECT_EQ(problemOf(6), "");
    EXPECT_EQ(problemOf(5), "has more than 1 triangles");
    EXPECT_EQ(problemOf(3), "has more than 3 vertices");
}

TEST(MeshModel, damagedObjFilesAreReadOrRefused)
{
    std::string text;
    for (int i = 0; i < 12; ++i) text += "v " + std::to_string(i * i % 7) + " 0.5 -1e" + std::to_string(i) + "\n";
    text += "vt 0 1\nvt 0.25 1\ng a b\no c\nf 1/1 2/2 3/1 4/2\nf -1 -2 -3\nusemtl x\nf 1 2 3 4 5 6 7 8 9\n";
    std::mt19937 random(2);
    for (int round = 0; round < 3000; ++round) {
        std::string damaged = text;
        if (round < static_cast<int>(text.size())) damaged.resize(static_cast<std::size_t>(round));
        for (auto i = random() % 6; i > 0 && !damaged.empty(); --i)
            damaged[random() % damaged.size()] = "0123456789 /-\n\\.efvtgo\r\t#\xFF"[random() % 27];
        Model model;
        try {
            readObjModel(damaged, model);
        } catch (const ModelProblem&) {
            continue;
        }
        for (const int index : model.getIndexes())
            ASSERT_LT(static_cast<std::size_t>(index), model.getPositions().size()) << damaged;
    }
}
