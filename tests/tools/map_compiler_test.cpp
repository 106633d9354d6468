#include "map_levels.h"

#include "file_contents.h"
#include "own_directory.h"

#include <map_file.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

// What levels become.

namespace {

/// A prism under a ramp that climbs along x, from 0 to 2 in each direction.
const std::string wedge =
    "<brush><texture ramp/><kind 3/>"
    "<plane><normal \"0 -1 0\"/><distance 0/></plane><plane><normal \"0 1 0\"/><distance 2/></plane>"
    "<plane><normal \"0 0 -1\"/><distance 0/></plane><plane><normal \"1 0 0\"/><distance 2/></plane>"
    "<plane><normal \"-1 0 1\"/><distance 0/></plane></brush>";

std::vector<std::string> texturesOf(const CompiledLevel& level)
{
    const std::unique_ptr<ConfigSection> text = ConfigReader(level.map->getSecond()).read();
    const ConfigSection& list = *text->getSections("textures").front();
    std::list<const ConfigEntry*> entries;
    list.getEntries(entries);
    std::vector<std::string> textures;
    for (const ConfigEntry* entry : entries) {
        EXPECT_EQ(entry->getName(), std::to_string(textures.size()));
        textures.push_back(entry->getValue());
    }
    return textures;
}

/// The area that is drawn with a texture.
double areaWith(const CompiledLevel& level, const std::string& texture)
{
    const std::vector<std::string> textures = texturesOf(level);
    double sum = 0;
    for (const Polygon* polygon : polygonsOf(level))
        if (textures.at(static_cast<std::size_t>(polygon->tag)) == texture) sum += length(areaVectorOf(*polygon));
    return sum;
}

/// The texture coordinate of the vertex at a place.
Vector2<float> coordinateAt(const CompiledLevel& level, const Vector3<double>& normal, const Vector3<float>& place)
{
    for (const Polygon* polygon : polygonsOf(level)) {
        if (dot(normalize(areaVectorOf(*polygon)), normalize(normal)) < 0.999) continue;
        for (const Vertex& vertex : polygon->vertices)
            if (vertex.position == place) return vertex.textureCoordinate;
    }
    ADD_FAILURE() << "no such vertex";
    return {};
}

class MapFiles : public ::testing::Test {
protected:
    void SetUp() override { enterOwnDirectory(); }
};

} // namespace

// ---- surface and leaves -------------------------------------------------------------------------------------------

TEST(MapCompiler, boxHasSixSidesThatFaceOutwards)
{
    const CompiledLevel level = compileBrushes(boxBrush("0 0 0 2 3 4"));
    const std::vector<const Polygon*> polygons = polygonsOf(level);
    ASSERT_EQ(polygons.size(), 6u);
    for (const Polygon* polygon : polygons) {
        EXPECT_EQ(polygon->vertices.size(), 4u);
        EXPECT_GT(dot(areaVectorOf(*polygon), middleOf(*polygon) - Vector3<double>(1, 1.5, 2)), 0);
    }
    EXPECT_NEAR(areaOn(level, {-1, 0, 0}, 0), 12, 1e-6);
    EXPECT_NEAR(areaOn(level, {1, 0, 0}, 2), 12, 1e-6);
    EXPECT_NEAR(areaOn(level, {0, -1, 0}, 0), 8, 1e-6);
    EXPECT_NEAR(areaOn(level, {0, 1, 0}, 3), 8, 1e-6);
    EXPECT_NEAR(areaOn(level, {0, 0, -1}, 0), 6, 1e-6);
    EXPECT_NEAR(areaOn(level, {0, 0, 1}, 4), 6, 1e-6);

    const MeshFacts facts = findFacts(*level.map->getBSPMeshes().getFirst());
    EXPECT_EQ(facts.nodes, 6u);
    EXPECT_EQ(facts.solidLeaves, 1u);
    EXPECT_EQ(facts.emptyLeaves, 6u);
    EXPECT_EQ(facts.references, 1u) << "only the leaf inside has the brush";
    EXPECT_TRUE(isSolidAt(level, {1, 1, 1}));
    for (const Vector3<float>& outside :
         {Vector3<float>(-0.01f, 1, 1), Vector3<float>(2.01f, 1, 1), Vector3<float>(1, -0.01f, 1),
          Vector3<float>(1, 3.01f, 1), Vector3<float>(1, 1, -0.01f), Vector3<float>(1, 1, 4.01f),
          Vector3<float>(1e6f, -1e6f, 1e6f)})
        EXPECT_FALSE(isSolidAt(level, outside));
}

TEST(MapCompiler, brushesGoIntoTheMapAsTheyWereDescribed)
{
    const CompiledLevel level =
        compileBrushes(boxBrush("-1 -1 -1 3 3 3", "<kind 7/>") + wedge + boxBrush("5 0 0 6 1 1"));
    const std::vector<Brush*>& one = treeOf(level).locatePoint({5.5f, 0.5f, 0.5f})->getLeaf()->brushes;
    ASSERT_EQ(one.size(), 1u);
    EXPECT_EQ(one[0], &level.brushes[2]);
    EXPECT_EQ(one[0]->kind, 0);
    const std::vector<Brush*>& both = treeOf(level).locatePoint({1, 1, 0.5f})->getLeaf()->brushes;
    ASSERT_EQ(both.size(), 2u);
    EXPECT_EQ(both[0], &level.brushes[0]);
    EXPECT_EQ(both[1], &level.brushes[1]);
    EXPECT_EQ(both[0]->kind, 7);
    EXPECT_EQ(both[1]->kind, 3);
    ASSERT_EQ(both[0]->planes.size(), 6u);
    EXPECT_EQ(both[0]->planes[1], Plane<float>({1, 0, 0}, 3));
}

TEST(MapCompiler, sidesThatTouchHideEachOther)
{
    const CompiledLevel level = compileBrushes(boxBrush("0 0 0 1 1 1") + boxBrush("1 0 0 2 1 1"));
    EXPECT_NEAR(areaOf(level), 10, 1e-5);
    EXPECT_EQ(areaOn(level, {1, 0, 0}, 1), 0);
    EXPECT_EQ(areaOn(level, {-1, 0, 0}, 1), 0);
    EXPECT_TRUE(isSolidAt(level, {0.999f, 0.5f, 0.5f}));
    EXPECT_TRUE(isSolidAt(level, {1.001f, 0.5f, 0.5f}));
}

TEST(MapCompiler, smallerSideHidesItsPartOfALargerOne)
{
    const CompiledLevel level = compileBrushes(boxBrush("0 0 0 4 4 4") + boxBrush("4 1 1 5 2 2"));
    EXPECT_NEAR(areaOn(level, {1, 0, 0}, 4), 15, 1e-5);
    EXPECT_EQ(areaOn(level, {-1, 0, 0}, 4), 0);
    EXPECT_NEAR(areaOf(level), 6 * 16 + 4, 1e-4);
}

TEST(MapCompiler, whatLiesInsideAnotherBrushIsHidden)
{
    const CompiledLevel overlapping = compileBrushes(boxBrush("0 0 0 2 2 2") + boxBrush("1 1 1 3 3 3"));
    EXPECT_NEAR(areaOf(overlapping), 2 * 6 * 4 - 2 * 3, 1e-4);
    const CompiledLevel nested = compileBrushes(boxBrush("1 1 1 2 2 2") + boxBrush("0 0 0 3 3 3", "<texture big/>"));
    EXPECT_NEAR(areaOf(nested), 54, 1e-4);
    EXPECT_EQ(texturesOf(nested), std::vector<std::string>{"big"});
    EXPECT_TRUE(isSolidAt(nested, {1.5f, 1.5f, 1.5f}));
    EXPECT_TRUE(isSolidAt(nested, {0.5f, 1.5f, 1.5f}));
    EXPECT_EQ(treeOf(nested).locatePoint({1.5f, 1.5f, 1.5f})->getLeaf()->brushes.size(), 2u);
}

TEST(MapCompiler, ofSidesThatFaceTheSameWayTheLaterOneCounts)
{
    const std::string big = boxBrush("0 0 0 4 4 1", "<texture big/>");
    const std::string small = boxBrush("1 1 0 2 2 1", "<texture small/>");
    const CompiledLevel later = compileBrushes(big + small);
    EXPECT_NEAR(areaOn(later, {0, 0, 1}, 1), 16, 1e-5);
    EXPECT_NEAR(areaWith(later, "small"), 2, 1e-5) << "above and below";
    EXPECT_NEAR(areaWith(later, "big"), 46, 1e-5);
    const CompiledLevel earlier = compileBrushes(small + big);
    EXPECT_NEAR(areaWith(earlier, "big"), 48, 1e-5);
    const CompiledLevel twice = compileBrushes(big + big);
    EXPECT_NEAR(areaOf(twice), 48, 1e-5);
}

TEST(MapCompiler, wedgeIsItsPlanes)
{
    const CompiledLevel level = compileBrushes(wedge);
    EXPECT_EQ(polygonsOf(level).size(), 5u);
    EXPECT_NEAR(areaOn(level, normalize(Vector3<double>(-1, 0, 1)), 0), 2 * std::sqrt(8.0), 1e-5);
    EXPECT_NEAR(areaOn(level, {0, 1, 0}, 2), 2, 1e-5);
    EXPECT_NEAR(areaOf(level), 2 * std::sqrt(8.0) + 2 + 2 + 4 + 4, 1e-5);
    EXPECT_TRUE(isSolidAt(level, {1, 1, 0.99f}));
    EXPECT_FALSE(isSolidAt(level, {1, 1, 1.01f}));
    EXPECT_FALSE(isSolidAt(level, {-0.01f, 1, -0.005f}));
}

TEST(MapCompiler, roomOfWallsIsSeenFromInsideAndOutside)
{
    // Walls of 1 around 8 by 8 by 4, which overlap in the corners in no place.
    const CompiledLevel level =
        compileBrushes(boxBrush("-1 -1 -1 9 9 0") + boxBrush("-1 -1 4 9 9 5") + boxBrush("-1 -1 0 0 9 4") +
                       boxBrush("8 -1 0 9 9 4") + boxBrush("0 -1 0 8 0 4") + boxBrush("0 8 0 8 9 4"));
    EXPECT_NEAR(areaOn(level, {0, 0, 1}, 0), 64, 1e-4);
    EXPECT_NEAR(areaOn(level, {0, 0, -1}, -4), 64, 1e-4);
    EXPECT_NEAR(areaOn(level, {1, 0, 0}, 0), 32, 1e-4);
    EXPECT_NEAR(areaOn(level, {0, -1, 0}, -8), 32, 1e-4);
    EXPECT_NEAR(areaOf(level), 2 * 64 + 4 * 32 + 2 * 100 + 4 * 60, 1e-3);
    EXPECT_FALSE(isSolidAt(level, {4, 4, 2}));
    EXPECT_TRUE(isSolidAt(level, {-0.5f, 4, 2}));
    EXPECT_FALSE(isSolidAt(level, {-1.5f, 4, 2}));
}

TEST(MapCompiler, brushThatIsNotSolidHidesNothing)
{
    const std::string water = boxBrush("0 0 0 4 4 1", "<texture water/><solid no/><kind 2/>");
    const std::string ground = boxBrush("0 0 -1 4 4 0", "<texture ground/>");
    for (const std::string& brushes : {water + ground, ground + water}) {
        const CompiledLevel level = compileBrushes(brushes);
        EXPECT_NEAR(areaWith(level, "ground"), 16 + 16 + 16, 1e-4);
        EXPECT_NEAR(areaWith(level, "water"), 16 + 16, 1e-4) << "its bottom lies on the ground";
        EXPECT_FALSE(isSolidAt(level, {2, 2, 0.5f}));
        EXPECT_TRUE(isSolidAt(level, {2, 2, -0.5f}));
        ASSERT_EQ(treeOf(level).locatePoint({2, 2, 0.5f})->getLeaf()->brushes.size(), 1u);
        EXPECT_EQ(treeOf(level).locatePoint({2, 2, 0.5f})->getLeaf()->brushes[0]->kind, 2);
        EXPECT_TRUE(treeOf(level).locatePoint({2, 2, 1.5f})->getLeaf()->brushes.empty());
    }
}

TEST(MapCompiler, solidSideWinsOverOneThatIsNotSolid)
{
    const std::string water = boxBrush("0 0 0 4 4 1", "<texture water/><solid no/>");
    const std::string stone = boxBrush("1 1 0 2 2 1", "<texture stone/>");
    for (const std::string& brushes : {water + stone, stone + water}) {
        const CompiledLevel level = compileBrushes(brushes);
        EXPECT_NEAR(areaOn(level, {0, 0, 1}, 1), 16, 1e-4) << "nothing is drawn twice";
        EXPECT_NEAR(areaWith(level, "stone"), 6, 1e-4);
    }
}

TEST(MapCompiler, sidesWithoutATexturePartSpaceButAreNotDrawn)
{
    const CompiledLevel level =
        compileBrushes(boxBrush("0 0 0 1 1 1", "") + boxBrush("3 0 0 4 1 1", "<texture none/>") +
                       boxBrush("6 0 0 7 1 1", "<texture a/><top none/>"));
    EXPECT_NEAR(areaOf(level), 5, 1e-5);
    EXPECT_EQ(areaOn(level, {0, 0, 1}, 1), 0);
    for (const float x : {0.f, 3.f, 6.f}) {
        EXPECT_TRUE(isSolidAt(level, {x + 0.5f, 0.5f, 0.99f}));
        EXPECT_FALSE(isSolidAt(level, {x + 0.5f, 0.5f, 1.01f}));
        EXPECT_FALSE(isSolidAt(level, {x + 1.01f, 0.5f, 0.5f}));
    }
}

TEST(MapCompiler, invisibleBrushThatIsNotSolidMakesNoLeaves)
{
    const CompiledLevel level = compileBrushes(boxBrush("0 0 0 1 1 1", "<solid no/><kind 9/>"));
    const BSPNode& root = *treeOf(level).getRoot();
    ASSERT_TRUE(root.isLeaf());
    EXPECT_FALSE(root.getLeaf()->kind);
    EXPECT_EQ(root.getLeaf()->brushes.size(), 1u);
}

TEST(MapCompiler, planesThatTouchNothingChangeNothing)
{
    const std::string more = "<plane><normal \"1 0 1\"/><distance 4/></plane>"    // along an edge
                             "<plane><normal \"1 1 1\"/><distance 100/></plane>"  // far away
                             "<plane><normal \"0 2 0\"/><distance 4/></plane>"    // one of the others
                             "<plane><normal \"0 1 1e-9\"/><distance 2/></plane>" // nearly so
                             "<plane><normal \"0 1 -1e-8\"/><distance 2/></plane>";
    const std::string start = wedge.substr(0, wedge.size() - std::string("</brush>").size());
    const std::string head = "<brush><texture ramp/>";
    const std::string body = start.substr(start.find("<plane>"));
    for (const std::string& planes : {body + more, more + body}) {
        const CompiledLevel level = compileBrushes(head + planes + "</brush>");
        EXPECT_EQ(polygonsOf(level).size(), 5u);
        EXPECT_NEAR(areaOf(level), 2 * std::sqrt(8.0) + 12, 1e-4);
        EXPECT_EQ(level.brushes[0].planes.size(), 10u) << "they stay in the map";
    }
}

TEST(MapCompiler, ofEqualPlanesTheFirstOneHasTheTexture)
{
    const std::string top = "<plane><normal \"0 0 1\"/><distance 1/><texture ";
    const CompiledLevel level = compileBrushes(
        "<brush><plane><normal \"0 0 -1\"/><distance 0/></plane>" + top + "first/></plane>" + top + "second/></plane>" +
        "<plane><normal \"1 0 0\"/><distance 1/></plane><plane><normal \"-1 0 0\"/><distance 0/></plane>"
        "<plane><normal \"0 1 0\"/><distance 1/></plane><plane><normal \"0 -1 0\"/><distance 0/></plane></brush>");
    EXPECT_EQ(texturesOf(level), std::vector<std::string>{"first"});
    EXPECT_NEAR(areaOf(level), 1, 1e-6);
}

TEST(MapCompiler, planesThatAreNearlyOneStillPartSpace)
{
    // Two ramps whose planes meet in a line and differ by a thousandth.
    const auto ramp = [](const std::string& y0, const std::string& y1, const std::string& slope) {
        return "<brush><texture a/><plane><normal \"0 -1 0\"/><distance " + y0 +
               "/></plane><plane><normal \"0 1 0\"/>" + "<distance " + y1 +
               "/></plane><plane><normal \"0 0 -1\"/><distance 0/></plane>" +
               "<plane><normal \"1 0 0\"/><distance 1000/></plane><plane><normal \"-1 0 0\"/><distance 0/></plane>" +
               "<plane><normal \"" + slope + " 0 1\"/><distance 10/></plane></brush>";
    };
    const CompiledLevel level = compileBrushes(ramp("0", "10", "-0.0001") + ramp("-10", "20", "-0.0002"));
    EXPECT_TRUE(isSolidAt(level, {900, 5, 10.08f}));
    EXPECT_FALSE(isSolidAt(level, {900, 5, 10.1f}));
    EXPECT_TRUE(isSolidAt(level, {900, 15, 10.17f}));
    EXPECT_FALSE(isSolidAt(level, {900, 15, 10.19f}));
}

TEST(MapCompiler, gapsAndStepsTooNarrowToCountDoNoHarm)
{
    for (const char* const start : {"1.00005", "1.00015", "1.0003", "0.99985"}) {
        const std::string x = start;
        const CompiledLevel level = compileBrushes(boxBrush("0 0 0 1 1 1") + boxBrush(x + " 0 0 2 1 " + x));
        EXPECT_NEAR(areaOf(level), 10, 2.01) << x;
        EXPECT_TRUE(isSolidAt(level, {0.5f, 0.5f, 0.999f}));
        EXPECT_TRUE(isSolidAt(level, {1.5f, 0.5f, 0.999f}));
        EXPECT_FALSE(isSolidAt(level, {0.5f, 0.5f, 1.001f}));
        EXPECT_FALSE(isSolidAt(level, {1.5f, 0.5f, 1.001f}));
        for (const BSPNode* leaf : treeOf(level).calculateLeafArray())
            EXPECT_TRUE(!leaf->getLeaf()->kind || leaf->getLeaf()->polygons.empty());
    }
}

// ---- texture coordinates ------------------------------------------------------------------------------------------

TEST(MapCompiler, texturesStandUprightOnWallsAndAreNotMirrored)
{
    const CompiledLevel level = compileBrushes(boxBrush("1 2 3 5 7 9", "<texture a/><scale 0.5/>"));
    EXPECT_EQ(coordinateAt(level, {1, 0, 0}, {5, 2, 3}), Vector2<float>(1, -1.5f));
    EXPECT_EQ(coordinateAt(level, {1, 0, 0}, {5, 7, 9}), Vector2<float>(3.5f, -4.5f));
    EXPECT_EQ(coordinateAt(level, {-1, 0, 0}, {1, 7, 3}), Vector2<float>(-3.5f, -1.5f));
    EXPECT_EQ(coordinateAt(level, {0, 1, 0}, {5, 7, 3}), Vector2<float>(-2.5f, -1.5f));
    EXPECT_EQ(coordinateAt(level, {0, -1, 0}, {5, 2, 3}), Vector2<float>(2.5f, -1.5f));
    EXPECT_EQ(coordinateAt(level, {0, 0, 1}, {5, 7, 9}), Vector2<float>(2.5f, -3.5f));
    EXPECT_EQ(coordinateAt(level, {0, 0, -1}, {5, 7, 3}), Vector2<float>(2.5f, 3.5f));
    for (const Polygon* polygon : polygonsOf(level)) {
        const std::vector<Vertex>& v = polygon->vertices;
        const Vector2<float> a = v[1].textureCoordinate - v[0].textureCoordinate;
        const Vector2<float> b = v[2].textureCoordinate - v[1].textureCoordinate;
        EXPECT_LT(a.x * b.y - a.y * b.x, 0) << "v points downwards";
    }
}

TEST(MapCompiler, slopeHasTheTextureOfTheAxisThatItFacesMost)
{
    EXPECT_EQ(coordinateAt(compileBrushes(wedge), {-1, 0, 1}, {2, 2, 2}), Vector2<float>(2, -2));
}

// ---- texts and files ----------------------------------------------------------------------------------------------

TEST(MapCompiler, secondTextHasEntitiesTexturesAndThoseOfThePolygons)
{
    const CompiledLevel level =
        compileText("<map><title \"My level\"/><entity><class start/><note \"a b\"/><empty /></entity><mesh>" +
                    boxBrush("0 0 0 1 1 1", "<texture \"my wall.png\"/><top roof/>") + "</mesh><mesh>" +
                    boxBrush("0 0 0 1 1 1", "<texture roof/>") + "</mesh><mesh>" + boxBrush("0 0 0 1 1 1", "") +
                    "</mesh><entity><class end/></entity></map>");
    EXPECT_EQ(level.map->getFirst(), "My level");
    std::string numbers;
    for (const Polygon* polygon : polygonsOf(level))
        numbers += (numbers.empty() ? "" : " ") + std::to_string(polygon->tag);
    const std::vector<std::string> textures = texturesOf(level);
    ASSERT_EQ(textures.size(), 2u);
    EXPECT_EQ(std::set<std::string>(textures.begin(), textures.end()), (std::set<std::string>{"my wall.png", "roof"}));
    const auto quoted = [](const std::string& text) {
        return text.find(' ') != std::string::npos ? "\"" + text + "\"" : text;
    };
    const std::string roof = std::to_string(std::find(textures.begin(), textures.end(), "roof") - textures.begin());
    const std::string roofs = roof + " " + roof + " " + roof + " " + roof + " " + roof + " " + roof;
    EXPECT_EQ(std::count(numbers.begin(), numbers.end(), roof[0]), 1);
    EXPECT_EQ(level.map->getSecond(),
              "<map>\r\n"
              "   <entity>\r\n      <class start/>\r\n      <note \"a b\"/>\r\n      <empty />\r\n"
              "   </entity>\r\n"
              "   <entity>\r\n      <class end/>\r\n   </entity>\r\n"
              "   <textures>\r\n      <0 " +
                  quoted(textures[0]) + "/>\r\n      <1 " + quoted(textures[1]) +
                  "/>\r\n   </textures>\r\n"
                  "   <mesh>\r\n      <polygons \"" +
                  numbers + "\"/>\r\n   </mesh>\r\n   <mesh>\r\n      <polygons \"" + roofs +
                  "\"/>\r\n   </mesh>\r\n   <mesh>\r\n      <polygons />\r\n   </mesh>\r\n</map>\r\n");
}

TEST(MapCompiler, meshesAreInTheirPlaces)
{
    const CompiledLevel level = compileText("<map><mesh><origin \"1 2 3\"/>" + boxBrush("0 0 0 1 1 1") +
                                            "</mesh><mesh>" + boxBrush("5 5 5 6 6 6") + "</mesh></map>");
    const BSPMesh* const mesh = level.map->getBSPMeshes().getFirst();
    EXPECT_EQ(mesh->getOrigin(), Vector3<float>(1, 2, 3));
    EXPECT_TRUE(mesh->getBSP()->locatePoint({0.5f, 0.5f, 0.5f})->getLeaf()->kind) << "seen from the origin";
    EXPECT_EQ(mesh->getNext()->getOrigin(), Vector3<float>());
    EXPECT_TRUE(mesh->getNext()->getBSP()->locatePoint({5.5f, 5.5f, 5.5f})->getLeaf()->kind);
}

TEST(MapCompiler, progressGoesFromNothingToAll)
{
    std::vector<std::string> stages;
    double last = 0;
    compileMap(readMapText("<map><mesh>" + wedge + boxBrush("0 0 0 1 1 1") + "</mesh></map>"),
               [&](const std::string& stage, double part) {
                   if (stages.empty() || stages.back() != stage) stages.push_back(stage);
                   EXPECT_GE(part, last);
                   last = part;
               });
    EXPECT_EQ(stages, (std::vector<std::string>{"mesh 1, solids", "mesh 1, surface", "mesh 1, tree"}));
    EXPECT_NEAR(last, 1, 1e-9);
}

TEST_F(MapFiles, levelComesBackFromItsFile)
{
    const CompiledLevel level = compileText("<map><title x/><mesh><origin \"1 2 3\"/>" + wedge +
                                            boxBrush("1 1 1 5 5 5") + "</mesh><mesh>" + wedge + "</mesh></map>");
    EXPECT_EQ(writeMapFile("a.map", *level.map), "");
    EXPECT_TRUE(level.map->writeToFile("engine.map"));
    EXPECT_EQ(fileContents("a.map"), fileContents("engine.map"));
    const std::unique_ptr<CompiledMap> read(CompiledMap::readFromFile("a.map"));
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->getFirst(), "x");
    EXPECT_EQ(read->getSecond(), level.map->getSecond());
    ASSERT_EQ(read->getBSPMeshes().getCount(), 2u);
    std::string problem;
    const std::unique_ptr<CompiledMap> again = readMapFile("a.map", problem);
    ASSERT_NE(again, nullptr) << problem;
    EXPECT_TRUE(again->writeToFile("again.map"));
    EXPECT_EQ(fileContents("again.map"), fileContents("a.map"));
}

TEST_F(MapFiles, everyShorterFileIsDamaged)
{
    const CompiledLevel level = compileText("<map><title x/><mesh>" + boxBrush("1 1 1 5 5 5") + "</mesh></map>");
    ASSERT_EQ(writeMapFile("a.map", *level.map), "");
    const std::string bytes = fileContents("a.map");
    for (std::size_t size = 0; size < bytes.size(); size += size < 64 ? 1 : 7) {
        writeFileContents("b.map", bytes.substr(0, size));
        std::string problem;
        EXPECT_EQ(readMapFile("b.map", problem), nullptr) << size;
        EXPECT_NE(problem, "");
    }
    writeFileContents("b.map", bytes + "x");
    std::string problem;
    EXPECT_EQ(readMapFile("b.map", problem), nullptr);
    EXPECT_EQ(problem, "is damaged: there are 1 bytes behind the last mesh");
}
