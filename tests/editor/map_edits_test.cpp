#include "made_maps.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinite = std::numeric_limits<double>::infinity();
using Numbers = std::vector<double>;

} // namespace

// ---- boxes ----------------------------------------------------------------------------------------------------------

TEST(MapEdits, boxHasSixSidesWithItsTexture)
{
    const MapDocument document = documentWithBox({{1, 2, 3}, {4, 5, 6}});
    ASSERT_EQ(document.brushes.size(), 1u);
    EXPECT_EQ(boundsOf(document, 0), (Numbers{1, 2, 3, 4, 5, 6}));
    const BrushSource& brush = document.brushes[0]->brush;
    EXPECT_TRUE(asBox(brush));
    EXPECT_EQ(brush.scale, 0.5);
    EXPECT_TRUE(brush.isSolid);
    for (const SideSource& side : brush.sides) EXPECT_EQ(side.texture, "brick.png");
}

TEST(MapEdits, boxCountsFromTheFirstMesh)
{
    MapDocument document = makeEmptyDocument();
    document.meshOrigins[0] = {10, 20, 30};
    EXPECT_TRUE(addBox(document, {{1, 2, 3}, {4, 5, 6}}, "", 1));
    EXPECT_EQ(asBox(document.brushes[0]->brush)->first, Vector3<double>(-9, -18, -27));
    EXPECT_EQ(boundsOf(document, 0), (Numbers{1, 2, 3, 4, 5, 6}));
}

TEST(MapEdits, whatIsNoBoxIsNotAdded)
{
    MapDocument document = makeEmptyDocument();
    const Bounds refused[] = {{{0, 0, 0}, {0, 1, 1}},         {{0, 0, 0}, {1, 0.009, 1}},
                              {{1, 0, 0}, {0, 1, 1}},         {{0, 0, 0}, {1, 1, notANumber}},
                              {{0, 0, -infinite}, {1, 1, 1}}, {{0, 0, 0}, {1, 1, infinite}},
                              {{0, 0, 0}, {1, 1, 1000001}},   {{-1000001, 0, 0}, {1, 1, 1}}};
    for (const Bounds& box : refused)
        EXPECT_FALSE(addBox(document, box, "", 1)) << testing::PrintToString(numbersOf(box));
    const Bounds unit = {{0, 0, 0}, {1, 1, 1}};
    for (const double scale : {0.0, notANumber, infinite, 1000001.0}) EXPECT_FALSE(addBox(document, unit, "", scale));
    for (const char* texture : {"a\"b", "a<b", "a>b", "a\nb"}) EXPECT_FALSE(addBox(document, unit, texture, 1));
    EXPECT_TRUE(document.brushes.empty());
}

TEST(MapEdits, largestAndSmallestBoxesAreAdded)
{
    MapDocument document = makeEmptyDocument();
    EXPECT_TRUE(addBox(document, {{-1e6, -1e6, -1e6}, {1e6, 1e6, 1e6}}, "", 1));
    EXPECT_TRUE(addBox(document, {{0, 0, 0}, {0.01, 0.01, 0.01}}, "", -1e6));
}

TEST(MapEdits, textureNamedNoneIsNoTexture)
{
    MapDocument document = makeEmptyDocument();
    EXPECT_TRUE(addBox(document, {{0, 0, 0}, {1, 1, 1}}, "none", 1));
    EXPECT_EQ(document.brushes[0]->brush.sides[0].texture, "");
}

// ---- moving, resizing, copying --------------------------------------------------------------------------------------

TEST(MapEdits, brushMovesWithAllItsSides)
{
    MapDocument document = documentWithUnitBox();
    addBrush(document, makeWedge());
    EXPECT_TRUE(moveBrush(document, 0, {1, -2, 0.5}));
    EXPECT_TRUE(moveBrush(document, 1, {1, -2, 0.5}));
    EXPECT_EQ(boundsOf(document, 0), (Numbers{1, -2, 0.5, 2, -1, 1.5}));
    const Numbers wedge = boundsOf(document, 1);
    const Numbers expected = {1, -2, 0.5, 2, -1, 1.5};
    for (std::size_t i = 0; i < 6; ++i) EXPECT_NEAR(wedge[i], expected[i], 1e-6);
}

TEST(MapEdits, movingLeavesNoNoiseInCoordinates)
{
    MapDocument document = documentWithUnitBox();
    for (int i = 0; i < 1000; ++i) ASSERT_TRUE(moveBrush(document, 0, {0.1, 0.3, -0.7}));
    EXPECT_EQ(boundsOf(document, 0), (Numbers{100, 300, -700, 101, 301, -699}));
}

TEST(MapEdits, movesThatCannotBeAreRefused)
{
    MapDocument document = documentWithUnitBox();
    const MapDocument before = document;
    EXPECT_FALSE(moveBrush(document, 1, {1, 0, 0}));
    EXPECT_FALSE(moveBrush(document, ~std::size_t{0}, {1, 0, 0}));
    EXPECT_FALSE(moveBrush(document, 0, {1e6, 0, 0}));
    EXPECT_FALSE(moveBrush(document, 0, {notANumber, 0, 0}));
    EXPECT_TRUE(isSameState(document, before));
}

TEST(MapEdits, moveByNothingIsNoChange)
{
    MapDocument document = documentWithUnitBox();
    const MapDocument before = document;
    EXPECT_TRUE(moveBrush(document, 0, {0, 0, 0}));
    EXPECT_TRUE(setTexture(document, 0, "brick.png"));
    EXPECT_TRUE(setSolid(document, 0, true));
    EXPECT_TRUE(isSameState(document, before));
}

TEST(MapEdits, boxIsResizedAndKeepsItsTextures)
{
    MapDocument document = documentWithUnitBox();
    setSideTexture(document, 0, 5, "top.png");
    EXPECT_TRUE(resizeBrush(document, 0, {{-1, -2, -3}, {3, 2, 1}}));
    EXPECT_EQ(boundsOf(document, 0), (Numbers{-1, -2, -3, 3, 2, 1}));
    EXPECT_EQ(document.brushes[0]->brush.sides[5].texture, "top.png");
}

TEST(MapEdits, resizingCountsFromTheBrushsOwnMesh)
{
    MapDocument document = documentWithUnitBox();
    document.meshOrigins.push_back({5, 0, 0});
    addBrush(document, document.brushes[0]->brush, 1);
    EXPECT_TRUE(resizeBrush(document, 1, {{0, 0, 0}, {2, 2, 2}}));
    EXPECT_EQ(asBox(document.brushes[1]->brush)->first, Vector3<double>(-5, 0, 0));
    EXPECT_EQ(boundsOf(document, 1), (Numbers{0, 0, 0, 2, 2, 2}));
}

TEST(MapEdits, onlyBoxesOfSomeSizeCanBeResizedTo)
{
    MapDocument document = documentWithUnitBox();
    addBrush(document, makeWedge());
    const MapDocument before = document;
    EXPECT_FALSE(resizeBrush(document, 1, {{0, 0, 0}, {2, 2, 2}})) << "no box";
    EXPECT_FALSE(resizeBrush(document, 0, {{0, 0, 0}, {2, 2, 0.001}}));
    EXPECT_FALSE(resizeBrush(document, 2, {{0, 0, 0}, {2, 2, 2}}));
    EXPECT_TRUE(isSameState(document, before));
}

TEST(MapEdits, copyOfABrushIsTheLastOne)
{
    MapDocument document = documentWithUnitBox();
    EXPECT_TRUE(duplicateBrush(document, 0, {2, 0, 0}));
    ASSERT_EQ(document.brushes.size(), 2u);
    EXPECT_EQ(boundsOf(document, 0), (Numbers{0, 0, 0, 1, 1, 1}));
    EXPECT_EQ(boundsOf(document, 1), (Numbers{2, 0, 0, 3, 1, 1}));
    EXPECT_FALSE(duplicateBrush(document, 2, {0, 0, 0}));
    EXPECT_FALSE(duplicateBrush(document, 0, {1e6, 0, 0}));
    EXPECT_EQ(document.brushes.size(), 2u);
}

TEST(MapEdits, removingABrushMovesTheOthersUp)
{
    MapDocument document = documentWithUnitBox();
    duplicateBrush(document, 0, {2, 0, 0});
    EXPECT_FALSE(removeBrush(document, 2));
    EXPECT_TRUE(removeBrush(document, 0));
    ASSERT_EQ(document.brushes.size(), 1u);
    EXPECT_EQ(boundsOf(document, 0), (Numbers{2, 0, 0, 3, 1, 1}));
}

TEST(MapEdits, boundsOfAnImpossibleBrushAreAPoint)
{
    MapDocument document = makeEmptyDocument();
    BrushSource brush = makeWedge();
    brush.sides[0].distance = -5;
    addBrush(document, brush);
    EXPECT_EQ(boundsOf(document, 0), (Numbers{0, 0, 0, 0, 0, 0}));
    EXPECT_FALSE(moveBrush(document, 0, {1, 0, 0}));
}

// ---- what brushes look like -----------------------------------------------------------------------------------------

TEST(MapEdits, textureGoesOnAllSidesOrOnOne)
{
    MapDocument document = documentWithUnitBox();
    EXPECT_TRUE(setTexture(document, 0, "wood.png"));
    for (const SideSource& side : document.brushes[0]->brush.sides) EXPECT_EQ(side.texture, "wood.png");
    EXPECT_TRUE(setSideTexture(document, 0, 2, "none"));
    EXPECT_EQ(document.brushes[0]->brush.sides[2].texture, "");
    EXPECT_EQ(document.brushes[0]->brush.sides[3].texture, "wood.png");
    EXPECT_FALSE(setTexture(document, 1, "wood.png"));
    EXPECT_FALSE(setSideTexture(document, 0, 6, "wood.png"));
    EXPECT_FALSE(setSideTexture(document, 1, 0, "wood.png"));
    EXPECT_FALSE(setTexture(document, 0, "\""));
    EXPECT_FALSE(setSideTexture(document, 0, 0, "<"));
}

TEST(MapEdits, scaleAndSolidityAreSet)
{
    MapDocument document = documentWithUnitBox();
    EXPECT_TRUE(setTextureScale(document, 0, -2));
    EXPECT_TRUE(setSolid(document, 0, false));
    EXPECT_EQ(document.brushes[0]->brush.scale, -2);
    EXPECT_FALSE(document.brushes[0]->brush.isSolid);
    for (const double scale : {0.0, notANumber, infinite, -1000001.0})
        EXPECT_FALSE(setTextureScale(document, 0, scale));
    EXPECT_FALSE(setTextureScale(document, 1, 1));
    EXPECT_FALSE(setSolid(document, 1, true));
}

TEST(MapEdits, titleIsWhatAFileCanHold)
{
    MapDocument document = makeEmptyDocument();
    EXPECT_TRUE(setTitle(document, "The castle & its moat"));
    for (const std::string title : {"a\"b", "a<b", "a>b", "a\rb", "a\nb"}) EXPECT_FALSE(setTitle(document, title));
    EXPECT_FALSE(setTitle(document, std::string("a\0b", 3)));
    EXPECT_EQ(document.title, "The castle & its moat");
}

// ---- entities -------------------------------------------------------------------------------------------------------

TEST(MapEdits, entityIsAClassAtAPlace)
{
    MapDocument document = makeEmptyDocument();
    document.meshOrigins[0] = {10, 0, 0};
    EXPECT_TRUE(addEntity(document, "lamp", {1, 2, 3}));
    EXPECT_EQ(*document.entities[0], (EntitySource{{"class", "lamp"}, {"position", "-9 2 3"}}));
    EXPECT_EQ(getPosition(document, *document.entities[0]), Vector3<double>(1, 2, 3));
    EXPECT_FALSE(addEntity(document, "", {1, 2, 3}));
    EXPECT_FALSE(addEntity(document, "a\"b", {1, 2, 3}));
    EXPECT_FALSE(addEntity(document, "lamp", {1e7, 2, 3}));
    EXPECT_FALSE(addEntity(document, "lamp", {notANumber, 2, 3}));
    EXPECT_EQ(document.entities.size(), 1u);
}

TEST(MapEdits, entityMoves)
{
    MapDocument document = makeEmptyDocument();
    addEntity(document, "lamp", {1, 2, 3});
    EXPECT_TRUE(moveEntity(document, 0, {0.1, 0.2, -3}));
    EXPECT_EQ(getEntry(*document.entities[0], "position"), "1.1 2.2 0");
    EXPECT_FALSE(moveEntity(document, 1, {1, 0, 0}));
    EXPECT_FALSE(moveEntity(document, 0, {1e6, 0, 0}));
}

TEST(MapEdits, entityWithoutAGoodPositionIsAtTheOriginUntilItMoves)
{
    MapDocument document = makeEmptyDocument();
    document.entities.push_back(std::make_shared<const EntitySource>(EntitySource{{"class", "x"}, {"position", "?"}}));
    EXPECT_EQ(getPosition(document, *document.entities[0]), Vector3<double>());
    EXPECT_TRUE(moveEntity(document, 0, {1, 0, 0}));
    EXPECT_EQ(*document.entities[0], (EntitySource{{"class", "x"}, {"position", "1 0 0"}}));
}

TEST(MapEdits, entriesAreSetAddedAndRemoved)
{
    MapDocument document = makeEmptyDocument();
    addEntity(document, "lamp", {0, 0, 0});
    EXPECT_TRUE(setEntityEntry(document, 0, "color", "bright red"));
    EXPECT_TRUE(setEntityEntry(document, 0, "class", "torch"));
    EXPECT_EQ(*document.entities[0],
              (EntitySource{{"class", "torch"}, {"position", "0 0 0"}, {"color", "bright red"}}));
    EXPECT_TRUE(setEntityEntry(document, 0, "position", ""));
    EXPECT_EQ(*document.entities[0], (EntitySource{{"class", "torch"}, {"color", "bright red"}}));
    EXPECT_TRUE(setEntityEntry(document, 0, "nothing", ""));
    EXPECT_FALSE(setEntityEntry(document, 0, "class", "")) << "an entity keeps a class";
    EXPECT_FALSE(setEntityEntry(document, 1, "color", "red"));
    for (const char* name : {"", "a b", "a\tb", "a/b", "a<", "a>", "\"a"})
        EXPECT_FALSE(setEntityEntry(document, 0, name, "x")) << name;
    for (const char* value : {"\"", "<", ">", "\n"}) EXPECT_FALSE(setEntityEntry(document, 0, "color", value)) << value;
}

TEST(MapEdits, removingAnEntityMovesTheOthersUp)
{
    MapDocument document = makeEmptyDocument();
    addEntity(document, "a", {});
    addEntity(document, "b", {});
    EXPECT_FALSE(removeEntity(document, 2));
    EXPECT_TRUE(removeEntity(document, 0));
    ASSERT_EQ(document.entities.size(), 1u);
    EXPECT_EQ(getEntry(*document.entities[0], "class"), "b");
}

// ---- terrain and grid -----------------------------------------------------------------------------------------------

TEST(MapEdits, flatTerrainTakesThePlaceOfTheOldOne)
{
    MapDocument document = documentWithLand();
    EXPECT_TRUE(setFlatTerrain(document, 3, 1, 4, "none"));
    ASSERT_EQ(document.terrains.size(), 1u);
    EXPECT_EQ(document.terrains[0]->countColumns(), 7);
    EXPECT_EQ(document.terrains[0]->heights, std::vector<float>(21, 0.0f));
    EXPECT_EQ(document.terrains[0]->spacing, 4);
    EXPECT_EQ(document.terrains[0]->texture, "");
}

TEST(MapEdits, sizesOfTerrainAreBroughtWithinLimits)
{
    MapDocument document = makeEmptyDocument();
    EXPECT_TRUE(setFlatTerrain(document, 0, -5, 0, ""));
    EXPECT_EQ(document.terrains[0]->heights.size(), 9u);
    EXPECT_EQ(document.terrains[0]->spacing, 1);
    EXPECT_TRUE(setFlatTerrain(document, 257, 1, 1001, ""));
    EXPECT_EQ(document.terrains[0]->width, 256);
    EXPECT_EQ(document.terrains[0]->spacing, 1000);
    EXPECT_FALSE(setFlatTerrain(document, 1, 1, 1, "a\"b"));
}

TEST(MapEdits, snappingGoesToTheNearestMultiple)
{
    EXPECT_EQ(snap(0.74, 0.5), 0.5);
    EXPECT_EQ(snap(0.75, 0.5), 1.0);
    EXPECT_EQ(snap(-0.75, 0.5), -0.5) << "the upper one of two";
    EXPECT_EQ(snap(-0.76, 0.5), -1.0);
    EXPECT_EQ(snap(0.26, 0.1), 0.3) << "exactly: no 0.30000000000000004";
    EXPECT_EQ(snap(7.3, 16), 0);
    EXPECT_EQ(snap(1.2345, 0), 1.2345) << "no grid";
    EXPECT_FALSE(std::signbit(snap(-0.1, 0.5))) << "no -0";
    EXPECT_EQ(snap(Vector3<double>(0.3, 0.6, -0.3), 0.5), Vector3<double>(0.5, 0.5, -0.5));
}
