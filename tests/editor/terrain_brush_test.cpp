#include "made_maps.h"

#include <terrain_brush.h>

#include <gtest/gtest.h>

#include <cmath>

namespace {

float heightAt(const MapDocument& document, int column, int row)
{
    const TerrainSource& terrain = *document.terrains.at(0);
    return terrain.heights.at(static_cast<std::size_t>(row * terrain.countColumns() + column));
}

const Vector3<double> middle = {0, 0, 0};

} // namespace

TEST(TerrainBrush, raisesFullyInTheMiddleHalfwayInHalfAndNotAtTheEdge)
{
    MapDocument document = documentWithLand();
    EXPECT_TRUE(shapeTerrain(document, {TerrainChange::Raise, 2, 3}, middle, 0.5));
    EXPECT_FLOAT_EQ(heightAt(document, 2, 2), 1.5f);
    EXPECT_FLOAT_EQ(heightAt(document, 3, 2), 0.75f);
    EXPECT_FLOAT_EQ(heightAt(document, 2, 1), 0.75f);
    EXPECT_EQ(heightAt(document, 4, 2), 0);
    EXPECT_EQ(heightAt(document, 0, 0), 0);
}

TEST(TerrainBrush, lowersWhatItRaised)
{
    MapDocument document = documentWithLand();
    shapeTerrain(document, {TerrainChange::Raise, 2, 3}, middle, 0.5);
    shapeTerrain(document, {TerrainChange::Lower, 2, 3}, middle, 0.5);
    for (const float height : document.terrains[0]->heights) {
        EXPECT_NEAR(height, 0, 1e-6);
        EXPECT_FALSE(std::signbit(height) && height == 0) << "no -0";
    }
}

TEST(TerrainBrush, otherStatesOfTheDocumentKeepTheirLand)
{
    MapDocument document = documentWithLand();
    const MapDocument before = document;
    shapeTerrain(document, {TerrainChange::Raise, 2, 3}, middle, 1);
    EXPECT_EQ(heightAt(before, 2, 2), 0);
    EXPECT_FALSE(isSameState(document, before));
}

TEST(TerrainBrush, smoothingGoesTowardsTheMeanOfTheNeighbours)
{
    MapDocument document = documentWithLand();
    shapeTerrain(document, {TerrainChange::Raise, 0.5, 5}, middle, 1);
    EXPECT_EQ(heightAt(document, 2, 2), 5);
    shapeTerrain(document, {TerrainChange::Smooth, 1.5, 1}, middle, 1);
    EXPECT_FLOAT_EQ(heightAt(document, 2, 2), 1) << "the mean of 5, 0, 0, 0 and 0";
    EXPECT_GT(heightAt(document, 1, 2), 0);
    EXPECT_EQ(heightAt(document, 0, 2), 0);
}

TEST(TerrainBrush, smoothingIsMeasuredOnTheLandBefore)
{
    MapDocument document = documentWithLand();
    shapeTerrain(document, {TerrainChange::Raise, 0.5, 5}, middle, 1);
    shapeTerrain(document, {TerrainChange::Smooth, 1.5, 1}, middle, 1);
    EXPECT_EQ(heightAt(document, 1, 2), heightAt(document, 3, 2)) << "whatever the order";
    EXPECT_EQ(heightAt(document, 2, 1), heightAt(document, 2, 3));
}

TEST(TerrainBrush, flatteningGoesTowardsTheHeightOfThePoint)
{
    MapDocument document = documentWithLand();
    shapeTerrain(document, {TerrainChange::Flatten, 1, 1}, {0, 0, 4}, 0.1);
    EXPECT_FLOAT_EQ(heightAt(document, 2, 2), 1.2f) << "three tenths of the way";
    for (int i = 0; i < 100; ++i) shapeTerrain(document, {TerrainChange::Flatten, 1, 1}, {0, 0, 4}, 0.1);
    EXPECT_NEAR(heightAt(document, 2, 2), 4, 1e-4);
}

TEST(TerrainBrush, countsFromTheTerrainsOrigin)
{
    MapDocument document = documentWithLand();
    TerrainSource moved = *document.terrains[0];
    moved.origin = {10, 20, 30};
    document.terrains[0] = std::make_shared<const TerrainSource>(moved);
    EXPECT_TRUE(shapeTerrain(document, {TerrainChange::Raise, 0.5, 5}, {11, 20, 0}, 1));
    EXPECT_EQ(heightAt(document, 3, 2), 5);
    EXPECT_EQ(findHeight(document, 11, 20), 35);
    shapeTerrain(document, {TerrainChange::Flatten, 0.5, 5}, {11, 20, 32}, 1);
    EXPECT_EQ(heightAt(document, 3, 2), 2);
}

TEST(TerrainBrush, nothingIsDoneWithoutLandInReach)
{
    MapDocument none = makeEmptyDocument();
    EXPECT_FALSE(shapeTerrain(none, {}, middle, 1));
    MapDocument document = documentWithLand();
    const MapDocument before = document;
    EXPECT_FALSE(shapeTerrain(document, {TerrainChange::Raise, 1, 1}, {3.5, 0, 0}, 1));
    EXPECT_FALSE(shapeTerrain(document, {TerrainChange::Raise, 1, 1}, {1e300, -1e300, 0}, 1));
    EXPECT_FALSE(shapeTerrain(document, {TerrainChange::Raise, 0, 1}, middle, 1));
    EXPECT_FALSE(shapeTerrain(document, {TerrainChange::Raise, -1, 1}, middle, 1));
    EXPECT_TRUE(isSameState(document, before));
}

TEST(TerrainBrush, reachesOverTheRim)
{
    MapDocument document = documentWithLand();
    EXPECT_TRUE(shapeTerrain(document, {TerrainChange::Raise, 2, 1}, {-3, -2, 0}, 1));
    EXPECT_FLOAT_EQ(heightAt(document, 0, 0), 0.5f);
    EXPECT_EQ(heightAt(document, 1, 0), 0);
}

TEST(TerrainBrush, heightsHaveLimits)
{
    MapDocument document = documentWithLand();
    shapeTerrain(document, {TerrainChange::Raise, 2, 1e30}, middle, 1e30);
    EXPECT_EQ(heightAt(document, 2, 2), 10000);
    shapeTerrain(document, {TerrainChange::Lower, 2, 1e30}, middle, 1e30);
    EXPECT_EQ(heightAt(document, 2, 2), -10000);
}

TEST(TerrainBrush, heightBetweenPlacesIsThatOfTheTwoTriangles)
{
    MapDocument document = documentWithLand();
    TerrainSource land = *document.terrains[0];
    land.heights[2 * 5 + 2] = 1; // at (0, 0)
    land.heights[2 * 5 + 3] = 3; // at (1, 0)
    land.heights[3 * 5 + 3] = 7; // at (1, 1)
    document.terrains[0] = std::make_shared<const TerrainSource>(land);
    EXPECT_EQ(findHeight(document, 0.5, 0), 2);
    EXPECT_EQ(findHeight(document, 0.5, 0.5), 4) << "on the edge that parts the cell";
    EXPECT_EQ(findHeight(document, 0.75, 0.25), 3.5) << "below it: 1 + 2 * 0.75 + 4 * 0.25";
    EXPECT_EQ(findHeight(document, 0.25, 0.75), 2) << "above it: 1 - 1 * 0.75 + 7 * 0.25";
}

TEST(TerrainBrush, heightEndsAtTheRim)
{
    const MapDocument document = documentWithLand();
    EXPECT_EQ(findHeight(document, -2, -2), 0);
    EXPECT_EQ(findHeight(document, 2, 2), 0);
    EXPECT_EQ(findHeight(document, 2.001, 0), std::nullopt);
    EXPECT_EQ(findHeight(document, 0, -2.001), std::nullopt);
    EXPECT_EQ(findHeight(makeEmptyDocument(), 0, 0), std::nullopt);
}
