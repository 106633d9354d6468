#include "level_surface.h"

#include "failure.h"

#include <xum/geometry/bsp.h>
#include <xum/geometry/bsp_mesh.h>
#include <xum/geometry/bsp_node.h>

#include <gtest/gtest.h>

#include <filesystem>

namespace {

/// A map with one mesh at (10, 0, 0): two leaves parted by x = 0, with one polygon in front and two behind.
class SmallLevel : public ::testing::Test {
protected:
    Polygon square(float x)
    {
        return Polygon({Vertex({x, 0, 0}, {0, 1}), Vertex({x + 1, 0, 0}, {1, 1}), Vertex({x + 1, 1, 0}, {1, 0}),
                        Vertex({x, 1, 0}, {0, 0})});
    }

    Polygon right = square(5);
    Polygon left = square(-5);
    Polygon farLeft = square(-9);

    Level make(const std::string& text)
    {
        auto map = std::make_unique<CompiledMap>("small", text);
        auto* front = new BSPNode(false, {}, {&right});
        auto* back = new BSPNode(true, {}, {&left, &farLeft});
        map->getBSPMeshes().append(
            new BSPMesh({10, 0, 0}, new BSP(new BSPNode(Plane<float>({1, 0, 0}, 0), front, back))));
        return Level(std::move(map), "small.map");
    }

    void expectFailure(const std::string& text, const std::string& message)
    {
        try {
            make(text);
            ADD_FAILURE() << text;
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.what(), message);
            EXPECT_EQ(failure.getStatus(), ExitStatus::BrokenData);
        }
    }

    const std::string goodText = "<map><entity><class lamp/><position \"1 2 3\"/></entity>"
                                 "<entity><class door/><position \"4 5 6\"/></entity>"
                                 "<textures><0 wood.png/><1 brick.png/></textures>"
                                 "<mesh><polygons \"1 0 1\"/></mesh></map>";
    const std::string doesNotFit = "the map small.map has a text that does not fit its polygons";
};

} // namespace

TEST_F(SmallLevel, facesLieInTheWorldWithTheTexturesOfTheText)
{
    const Level level = make(goodText);
    ASSERT_EQ(level.getLeaves().size(), 2u);
    const Level::Leaf& front = level.getLeaves()[0];
    const Level::Leaf& back = level.getLeaves()[1];
    ASSERT_EQ(front.faces.size(), 1u);
    ASSERT_EQ(back.faces.size(), 2u);
    EXPECT_EQ(front.faces[0].texture, TextureName::Brick);
    EXPECT_EQ(back.faces[0].texture, TextureName::Wood);
    EXPECT_EQ(back.faces[1].texture, TextureName::Brick);
    EXPECT_EQ(front.faces[0].polygon.vertices[0].position, (Vector3<float>{15, 0, 0}));
    EXPECT_EQ(front.bounds, Box({15, 0, 0}, {16, 1, 0}));
    EXPECT_EQ(back.bounds, Box({1, 0, 0}, {6, 1, 0}));
}

TEST_F(SmallLevel, pointsLieInLeavesInsideOfTheBoxOfAllFaces)
{
    const Level level = make(goodText); // from (1, 0, 0) to (16, 1, 0), parted at x = 10
    ASSERT_TRUE(level.locate({12, 0.5f, 0}));
    EXPECT_EQ(level.locate({12, 0.5f, 0})->leaf, 0u);
    EXPECT_FALSE(level.locate({12, 0.5f, 0})->isSolid);
    ASSERT_TRUE(level.locate({9.9f, 0.5f, 0}));
    EXPECT_EQ(level.locate({9.9f, 0.5f, 0})->leaf, 1u);
    EXPECT_TRUE(level.locate({9.9f, 0.5f, 0})->isSolid);
    EXPECT_TRUE(level.locate({16, 1, 0}));
    for (const Vector3<float>& outside :
         {Vector3<float>(0.9f, 0.5f, 0), Vector3<float>(16.1f, 0.5f, 0), Vector3<float>(12, -0.1f, 0),
          Vector3<float>(12, 1.1f, 0), Vector3<float>(12, 0.5f, 0.1f), Vector3<float>(12, 0.5f, -0.1f)})
        EXPECT_FALSE(level.locate(outside)) << outside.x << " " << outside.y << " " << outside.z;
}

TEST_F(SmallLevel, leavesWithNothingToSeeCountAsWell)
{
    auto map =
        std::make_unique<CompiledMap>("small", "<map><textures><0 wood.png/></textures>"
                                               "<mesh><polygons \"\"/></mesh><mesh><polygons \"0\"/></mesh></map>");
    map->getBSPMeshes().append(new BSPMesh({0, 0, 0}, new BSP(new BSPNode(false, {}, {}))));
    map->getBSPMeshes().append(new BSPMesh({0, 0, 0}, new BSP(new BSPNode(false, {}, {&right}))));
    const Level level(std::move(map), "small.map");
    ASSERT_TRUE(level.locate({5.5f, 0.5f, 0}));
    EXPECT_EQ(level.locate({5.5f, 0.5f, 0})->leaf, 1u);
}

TEST_F(SmallLevel, entitiesAreFoundByTheirClass)
{
    const Level level = make(goodText);
    EXPECT_EQ(level.findPositions("lamp"), (std::vector<Vector3<float>>{{11, 2, 3}}));
    EXPECT_TRUE(level.findPositions("dragon").empty());
}

TEST_F(SmallLevel, entityWithoutAPlaceIsNowhere)
{
    const Level level = make("<map><entity><class lamp/></entity><entity><class lamp/><position high/></entity>"
                             "<textures><0 wood.png/></textures><mesh><polygons \"0 0 0\"/></mesh></map>");
    EXPECT_TRUE(level.findPositions("lamp").empty());
}

TEST_F(SmallLevel, textMustFitThePolygons)
{
    const std::string textures = "<textures><0 wood.png/></textures>";
    expectFailure("<map>" + textures + "<mesh><polygons \"0 0\"/></mesh></map>", doesNotFit);
    expectFailure("<map>" + textures + "<mesh><polygons \"0 0 0 0\"/></mesh></map>", doesNotFit);
    expectFailure("<map>" + textures + "<mesh><polygons \"0 0 1\"/></mesh></map>", doesNotFit);
    expectFailure("<map>" + textures + "<mesh><polygons \"0 0 -1\"/></mesh></map>", doesNotFit);
    expectFailure("<map>" + textures + "<mesh><polygons \"0 0 x\"/></mesh></map>", doesNotFit);
    expectFailure("<map>" + textures + "<mesh><title x/></mesh></map>", doesNotFit);
    expectFailure("<map>" + textures + "</map>", doesNotFit);
    const std::string mesh = "<mesh><polygons \"0 0 0\"/></mesh>";
    expectFailure("<map>" + textures + mesh + mesh + "</map>", doesNotFit);
}

TEST_F(SmallLevel, unknownTextureAndMissingTextAreNamed)
{
    expectFailure("<map><textures><0 gold.png/></textures></map>",
                  "the map small.map needs the unknown texture gold.png");
    expectFailure("", "the map small.map has a text that is broken: 1:1: the text is empty");
}

TEST_F(SmallLevel, placesHaveTurns)
{
    const Level level = make("<map><entity><class start/><position \"1 2 3\"/><turn 90/></entity>"
                             "<entity><class start/><position \"4 5 6\"/><turn around/></entity>"
                             "<textures><0 wood.png/></textures><mesh><polygons \"0 0 0\"/></mesh></map>");
    const std::vector<Place> places = level.findPlaces("start");
    ASSERT_EQ(places.size(), 2u);
    EXPECT_EQ(places[0].position, (Vector3<float>{11, 2, 3}));
    EXPECT_EQ(places[0].turn, 90);
    EXPECT_EQ(places[1].turn, 0);
}

TEST_F(SmallLevel, oneTerrainIsTheLand)
{
    const std::string land = "<terrain><size \"1 1\"/><heights \"0 0 0 0 5 0 0 0 0\"/></terrain>";
    const std::string rest = "<textures><0 wood.png/></textures><mesh><polygons \"0 0 0\"/></mesh></map>";
    EXPECT_FALSE(make("<map>" + rest).getLand());
    EXPECT_TRUE(make("<map>" + land + rest).getLand());
    expectFailure("<map><terrain></terrain>" + rest, "the map small.map has a terrain that makes no sense");
    expectFailure("<map>" + land + land + rest, "the map small.map has more than one terrain, and one is walked on");
}

TEST_F(SmallLevel, surfacesHoldTheFacesOfEachTextureInTheOrderOfTheLeaves)
{
    const std::vector<LevelSurface> surfaces = makeSurfaces(make(goodText));
    ASSERT_EQ(surfaces.size(), 2u);
    EXPECT_EQ(surfaces[0].texture, TextureName::Brick);
    EXPECT_EQ(surfaces[1].texture, TextureName::Wood);
    ASSERT_EQ(surfaces[0].ranges.size(), 2u);
    EXPECT_EQ(surfaces[0].ranges[0].face, 0u);
    EXPECT_EQ(surfaces[0].ranges[0].first, 0);
    EXPECT_EQ(surfaces[0].ranges[0].count, 6);
    EXPECT_EQ(surfaces[0].ranges[1].face, 2u);
    EXPECT_EQ(surfaces[0].ranges[1].first, 6);
    EXPECT_EQ(surfaces[0].solid.triangles, (std::vector<unsigned int>{0, 1, 2, 0, 2, 3, 4, 5, 6, 4, 6, 7}));
    EXPECT_EQ(surfaces[0].solid.positions[4], (Vector3<float>{1, 0, 0}));
    EXPECT_EQ(surfaces[0].solid.textureCoordinates[1], (Vector2<float>{1, 1}));
    EXPECT_EQ(surfaces[0].solid.normals, std::vector<Vector3<float>>(8, {0, 0, 1}));
}
