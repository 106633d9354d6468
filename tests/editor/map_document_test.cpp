#include "made_maps.h"

#include <gtest/gtest.h>

namespace {

MapSource sourceWithTwoMeshes()
{
    MapSource source;
    source.title = "Two";
    source.meshes.push_back({{10, 0, 0}, {makeWedge()}});
    source.meshes.push_back({{0, 5, 0}, {makeWedge(), makeWedge()}});
    source.entities.push_back({{"class", "lamp"}, {"position", "1 2 3"}});
    source.terrains.resize(1);
    return source;
}

} // namespace

TEST(MapDocument, emptyOneHasOneMeshAtTheOrigin)
{
    const MapDocument document = makeEmptyDocument();
    EXPECT_EQ(document.meshOrigins, (std::vector<Vector3<float>>{{0, 0, 0}}));
    EXPECT_TRUE(document.brushes.empty());
    EXPECT_TRUE(toSource(document).meshes.empty()) << "a mesh without brushes is no mesh of a map";
}

TEST(MapDocument, sourceComesBackAsItWas)
{
    const MapSource source = toSource(toDocument(sourceWithTwoMeshes()));
    EXPECT_EQ(source.title, "Two");
    ASSERT_EQ(source.meshes.size(), 2u);
    EXPECT_EQ(source.meshes[0].origin, Vector3<float>(10, 0, 0));
    EXPECT_EQ(source.meshes[0].brushes.size(), 1u);
    EXPECT_EQ(source.meshes[1].origin, Vector3<float>(0, 5, 0));
    EXPECT_EQ(source.meshes[1].brushes.size(), 2u);
    EXPECT_EQ(source.entities, (std::vector<EntitySource>{{{"class", "lamp"}, {"position", "1 2 3"}}}));
    EXPECT_EQ(source.terrains.size(), 1u);
}

TEST(MapDocument, sourceWithoutMeshesHasAPlaceForBrushes)
{
    MapDocument document = toDocument({});
    EXPECT_EQ(document.meshOrigins.size(), 1u);
    EXPECT_TRUE(addBox(document, {{0, 0, 0}, {1, 1, 1}}, "", 1));
    EXPECT_EQ(toSource(document).meshes.size(), 1u);
}

TEST(MapDocument, entitiesStayWhereTheyAreWhenTheFirstMeshGoes)
{
    MapDocument document = toDocument(sourceWithTwoMeshes());
    EXPECT_EQ(getPosition(document, *document.entities[0]), Vector3<double>(11, 2, 3));
    removeBrush(document, 0);
    const MapDocument again = toDocument(toSource(document));
    EXPECT_EQ(getEntry(*again.entities[0], "position"), "11 -3 3");
    EXPECT_EQ(getPosition(again, *again.entities[0]), Vector3<double>(11, 2, 3));
}

TEST(MapDocument, entitiesStayWhereTheyAreWhenAllBrushesGo)
{
    MapDocument document = toDocument(sourceWithTwoMeshes());
    document.brushes.clear();
    const MapDocument again = toDocument(toSource(document));
    EXPECT_EQ(getPosition(again, *again.entities[0]), Vector3<double>(11, 2, 3));
}

TEST(MapDocument, copiesShareTheirParts)
{
    const MapDocument document = toDocument(sourceWithTwoMeshes());
    const MapDocument copy = document;
    EXPECT_TRUE(isSameState(document, copy));
    EXPECT_FALSE(isSameState(document, toDocument(sourceWithTwoMeshes()))) << "equal parts are not the same ones";
}

TEST(MapDocument, eachPartCountsForTheState)
{
    const MapDocument document = toDocument(sourceWithTwoMeshes());
    std::vector<MapDocument> changed(5, document);
    changed[0].title = "Three";
    changed[1].meshOrigins[1].x = 1;
    changed[2].brushes.pop_back();
    changed[3].entities.clear();
    changed[4].terrains.clear();
    for (const MapDocument& other : changed) EXPECT_FALSE(isSameState(document, other));
}

TEST(MapDocument, originOfAMeshThatIsNotThereIsTheWorlds)
{
    EXPECT_EQ(makeEmptyDocument().getOrigin(7), Vector3<double>());
}

TEST(MapDocument, positionsAreThreeNumbers)
{
    EXPECT_EQ(readPosition("1 -2.5 3e1"), Vector3<double>(1, -2.5, 30));
    EXPECT_EQ(readPosition("  1\t2  3 "), Vector3<double>(1, 2, 3));
    for (const char* text : {"", "1", "1 2", "1 2 3 4", "1 2 x", "nan 0 0", "inf 0 0", "1,2,3", "1e999 0 0"})
        EXPECT_EQ(readPosition(text), std::nullopt) << text;
}

TEST(MapDocument, positionsAreWrittenShort)
{
    EXPECT_EQ(formatPosition({1, -2.5, 0.1}), "1 -2.5 0.1");
    EXPECT_EQ(formatPosition({-0.0, 0.1 + 0.2, 1e6}), "0 0.3 1000000");
}

TEST(MapDocument, entryOfAnEntityIsFoundByItsName)
{
    const EntitySource entity = {{"class", "lamp"}, {"color", "red"}};
    EXPECT_EQ(getEntry(entity, "color"), "red");
    EXPECT_EQ(getEntry(entity, "Color"), "");
}
