#include "map_levels.h"

#include <map_check.h>

#include <gtest/gtest.h>

#include <deque>
#include <limits>

// Each thing that can be wrong with a map.

namespace {

constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();
constexpr float infinity = std::numeric_limits<float>::infinity();

std::vector<std::string> problemsOf(const BSPMesh& mesh)
{
    MapProblems problems;
    checkMesh(mesh, "mesh 1", problems);
    return problems.getLines();
}

Polygon makePolygon(const std::vector<Vector3<float>>& positions)
{
    std::vector<Vertex> vertices;
    vertices.reserve(positions.size());
    for (const Vector3<float>& position : positions) vertices.emplace_back(position, Vector2<float>());
    return Polygon(vertices);
}

/// The problem of the only polygon of the only leaf.
std::string problemOfPolygon(Polygon polygon)
{
    const std::string where = "mesh 1, leaf 1, polygon 1: ";
    const std::vector<std::string> problems = problemsOf(BSPMesh({}, new BSP(new BSPNode(false, {}, {&polygon}))));
    if (problems.empty()) return "";
    EXPECT_EQ(problems.size(), 1u);
    EXPECT_EQ(problems[0].substr(0, where.size()), where);
    return problems[0].substr(where.size());
}

std::string problemOfPolygon(const std::vector<Vector3<float>>& positions)
{
    return problemOfPolygon(makePolygon(positions));
}

const std::vector<Plane<float>> cube = {{{1, 0, 0}, 1},  {{-1, 0, 0}, 1}, {{0, 1, 0}, 1},
                                        {{0, -1, 0}, 1}, {{0, 0, 1}, 1},  {{0, 0, -1}, 1}};

/// The problem of the second brush of a leaf, behind one that is good.
std::string problemOfBrush(const std::vector<Plane<float>>& planes)
{
    const std::string where = "mesh 1, brush 2: ";
    Brush good(cube, 0);
    Brush brush(planes, 0);
    const std::vector<std::string> problems =
        problemsOf(BSPMesh({}, new BSP(new BSPNode(true, {&good, &brush, &brush}, {}))));
    if (problems.empty()) return "";
    EXPECT_EQ(problems.size(), 1u) << "a brush is looked at once";
    EXPECT_EQ(problems[0].substr(0, where.size()), where);
    return problems[0].substr(where.size());
}

std::string problemOfPlane(const Plane<float>& plane)
{
    const std::vector<std::string> problems = problemsOf(
        BSPMesh({}, new BSP(new BSPNode({{1, 0, 0}, 0}, new BSPNode(false, {}, {}),
                                        new BSPNode(plane, new BSPNode(false, {}, {}), new BSPNode(false, {}, {}))))));
    return problems.empty() ? "" : problems.at(0);
}

std::vector<std::string> problemsOfSecondText(const std::string& text, const std::vector<std::size_t>& polygonCounts)
{
    std::deque<Polygon> polygons;
    CompiledMap map("", text);
    for (const std::size_t count : polygonCounts) {
        std::vector<Polygon*> ofMesh;
        for (std::size_t i = 0; i < count; ++i)
            ofMesh.push_back(&polygons.emplace_back(makePolygon({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}})));
        map.getBSPMeshes().append(new BSPMesh({}, new BSP(new BSPNode(false, {}, ofMesh))));
    }
    MapProblems problems;
    checkTextureLists(map, problems);
    return problems.getLines();
}

} // namespace

TEST(MapCheck, compiledLevelHasNoProblem)
{
    const CompiledLevel level = compileBrushes(boxBrush("0 0 0 1 1 1") + boxBrush("0.5 0.25 0 2 2 2"));
    EXPECT_EQ(problemsOf(*level.map->getBSPMeshes().getFirst()), std::vector<std::string>());
}

TEST(MapCheck, polygonHasThreeVerticesAndAnArea)
{
    EXPECT_EQ(problemOfPolygon(std::vector<Vector3<float>>()), "has less than 3 vertices");
    EXPECT_EQ(problemOfPolygon({{0, 0, 0}, {1, 0, 0}}), "has less than 3 vertices");
    EXPECT_EQ(problemOfPolygon({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}), "");
    EXPECT_EQ(problemOfPolygon({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}}), "has no area");
    EXPECT_EQ(problemOfPolygon({{5, 5, 5}, {5, 5, 5}, {5, 5, 5}}), "has no area");
}

TEST(MapCheck, polygonIsFlat)
{
    EXPECT_EQ(problemOfPolygon({{0, 0, 0}, {1, 0, 0}, {1, 1, 0.1f}, {0, 1, 0}}), "is not flat");
    EXPECT_EQ(problemOfPolygon({{0, 0, 0}, {1, 0, 0}, {1, 1, 0.0005f}, {0, 1, 0}}), "");
    EXPECT_EQ(problemOfPolygon({{60000, 0, 0}, {60001, 0, 0}, {60001, 1, 0.01f}, {60000, 1, 0}}), "")
        << "floats are coarser there";
    EXPECT_EQ(problemOfPolygon({{60000, 0, 0}, {60001, 0, 0}, {60001, 1, 0.5f}, {60000, 1, 0}}), "is not flat");
}

TEST(MapCheck, polygonIsConvex)
{
    EXPECT_EQ(problemOfPolygon({{0, 0, 0}, {4, 0, 0}, {1, 1, 0}, {0, 4, 0}}), "is not convex");
    EXPECT_EQ(problemOfPolygon({{0, 4, 0}, {1, 1, 0}, {4, 0, 0}, {0, 0, 0}}), "is not convex");
    EXPECT_EQ(problemOfPolygon({{0, 0, 0}, {2, 0, 0}, {4, 0, 0}, {0, 4, 0}}), "") << "corners on an edge";
    std::vector<Vector3<float>> star; // turns one way only, but twice around
    for (int i = 0; i < 5; ++i) {
        const float angle = 2.5132741f * static_cast<float>(i);
        star.emplace_back(std::cos(angle), std::sin(angle), 0.f);
    }
    EXPECT_EQ(problemOfPolygon(star), "is not convex");
}

TEST(MapCheck, valuesOfPolygonsAreNumbers)
{
    const std::string problem = "has a value that is no number";
    EXPECT_EQ(problemOfPolygon({{0, 0, 0}, {1, notANumber, 0}, {0, 1, 0}}), problem);
    EXPECT_EQ(problemOfPolygon({{0, 0, 0}, {1, 0, 0}, {0, 1, -infinity}}), problem);
    Polygon polygon = makePolygon({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}});
    polygon.vertices[2].textureCoordinate.y = notANumber;
    EXPECT_EQ(problemOfPolygon(polygon), problem);
}

TEST(MapCheck, polygonsLieInTheirLeaves)
{
    Polygon polygon = makePolygon({{1, 0, 0}, {2, 0, 0}, {1, 1, 0}});
    const auto problems = [&](bool isInFront, bool isBehind) {
        const auto leaf = [&](bool hasPolygon) {
            return hasPolygon ? new BSPNode(false, {}, {&polygon}) : new BSPNode(false, {}, {});
        };
        return problemsOf(BSPMesh({}, new BSP(new BSPNode({{1, 0, 0}, 0.5f}, leaf(isInFront), leaf(isBehind)))));
    };
    EXPECT_EQ(problems(true, false), std::vector<std::string>());
    EXPECT_EQ(problems(false, true), std::vector<std::string>{"mesh 1, leaf 2, polygon 1: reaches out of its leaf"});
    polygon.vertices[2].position.x = 0.4f;
    EXPECT_EQ(problems(true, false), std::vector<std::string>{"mesh 1, leaf 1, polygon 1: reaches out of its leaf"});
    polygon.vertices[2].position.x = 0.4995f;
    EXPECT_EQ(problems(true, false), std::vector<std::string>());
}

TEST(MapCheck, brushesAreClosedAndHaveRoom)
{
    EXPECT_EQ(problemOfBrush(cube), "");
    EXPECT_EQ(problemOfBrush({}), "is open");
    EXPECT_EQ(problemOfBrush({cube.begin(), cube.end() - 1}), "is open");
    std::vector<Plane<float>> planes = cube;
    planes.push_back({{1, 0, 0}, -2});
    EXPECT_EQ(problemOfBrush(planes), "is empty");
    planes.assign(5000, cube[0]);
    EXPECT_EQ(problemOfBrush(planes), "has more than 4096 planes, which are not looked at");
}

TEST(MapCheck, planesAreNumbersWithNormalsOfLengthOne)
{
    std::vector<Plane<float>> planes = cube;
    planes[3].normal.y = -2;
    EXPECT_EQ(problemOfBrush(planes), "has a normal whose length is not 1");
    planes[3] = {{0, -1, 0}, infinity};
    EXPECT_EQ(problemOfBrush(planes), "has a plane with a value that is no number");
    EXPECT_EQ(problemOfPlane({{0, 1, 0}, 5}), "");
    EXPECT_EQ(problemOfPlane({{0, 0.99f, 0}, 5}), "mesh 1, node 2: has a normal whose length is not 1");
    EXPECT_EQ(problemOfPlane({{0, notANumber, 0}, 5}), "mesh 1, node 2: has a plane with a value that is no number");
    EXPECT_EQ(problemsOf(BSPMesh({0, infinity, 0}, new BSP(new BSPNode(false, {}, {})))),
              std::vector<std::string>{"mesh 1: the origin has a value that is no number"});
}

TEST(MapCheck, listsOfTexturesFitThePolygons)
{
    const std::string good = "<map><textures><0 a/><1 b/></textures><mesh><polygons \"0 1 1\"/></mesh></map>";
    EXPECT_EQ(problemsOfSecondText(good, {3}), std::vector<std::string>());
    EXPECT_EQ(problemsOfSecondText(good, {2}),
              std::vector<std::string>{"the second text, mesh 1: textures of 3 polygons; there are 2"});
    EXPECT_EQ(problemsOfSecondText(good, {3, 0}),
              std::vector<std::string>{"the second text: textures of 1 meshes; there are 2"});
    EXPECT_EQ(problemsOfSecondText(good, {}),
              std::vector<std::string>{"the second text: textures of 1 meshes; there are 0"});
    EXPECT_EQ(problemsOfSecondText("<map><textures><0 a/></textures><mesh><polygons \"0 1 0\"/></mesh></map>", {3}),
              std::vector<std::string>{"the second text, mesh 1: a texture number that is not listed"});
    EXPECT_EQ(problemsOfSecondText("<map><textures><0 a/></textures><mesh><polygons -1/></mesh></map>", {1}),
              std::vector<std::string>{"the second text, mesh 1: a texture number that is not listed"});
}

TEST(MapCheck, otherSecondTextsAreNoProblem)
{
    for (const char* const text : {"", "hello", "<map>", "<map></map>", "<map><mesh></mesh></map>"})
        EXPECT_EQ(problemsOfSecondText(text, {3}), std::vector<std::string>()) << text;
}

TEST(MapCheck, longListsOfProblemsAreCutShort)
{
    MapProblems problems;
    for (int i = 0; i < 100; ++i) problems.add("x");
    EXPECT_EQ(problems.getLines().size(), 100u);
    for (int i = 0; i < 5; ++i) problems.add("y");
    ASSERT_EQ(problems.getLines().size(), 101u);
    EXPECT_EQ(problems.getLines().back(), "and 5 more problems");
}

TEST(MapCheck, deepTreesAreWalkedAndNotComparedForever)
{
    constexpr int levels = 100000;
    Polygon polygon = makePolygon({{1, 0, 0}, {2, 0, 0}, {1, 1, 0}});
    auto* node = new BSPNode(false, {}, {&polygon});
    for (int i = 0; i < levels; ++i) node = new BSPNode({{1, 0, 0}, 0.5f}, node, new BSPNode(i % 2 == 0, {}, {}));
    const BSPMesh mesh({}, new BSP(node));
    EXPECT_EQ(problemsOf(mesh), std::vector<std::string>());
    const MeshFacts facts = findFacts(mesh);
    EXPECT_EQ(facts.depth, 100000u);
    EXPECT_EQ(facts.nodes, 100000u);
    EXPECT_EQ(facts.solidLeaves, 50000u);
    EXPECT_EQ(facts.emptyLeaves, 50001u);

    std::vector<Polygon*> many(400, &polygon);
    while (!node->isLeaf()) node = node->getNode()->front;
    node->getLeaf()->polygons = many;
    EXPECT_EQ(problemsOf(mesh),
              std::vector<std::string>{"mesh 1: the tree is too deep to compare all polygons with the "
                                       "planes around their leaves"});
}
