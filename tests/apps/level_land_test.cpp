#include "level_land.h"

#include "text_as_file.h"

#include <xum/files/config_file.h>
#include <xum/geometry/terrain.h>

#include <gtest/gtest.h>

namespace {

std::optional<LevelLand> readText(const std::string& entries)
{
    const std::string text = "<terrain>" + entries + "</terrain>";
    TextAsFile source(text);
    const ConfigFile file(&source, "land.cfg");
    return readLand(*file.getRootSection());
}

const std::string size = "<size \"1 1\"/>";
const std::string heights = "<heights \"0 1 2 3 4 5 6 7 8\"/>";

} // namespace

TEST(LevelLand, pointsLieRowByRowAroundTheOrigin)
{
    const auto land =
        readText(size + "<spacing 8/><origin \"100 50 -1\"/><texture paving.png/><scale 0.25/>" + heights);
    ASSERT_TRUE(land);
    const auto& points = land->terrain->getPositions();
    ASSERT_EQ(points.size(), 9u);
    EXPECT_EQ(points[0], (Vector3<float>{92, 42, -1}));
    EXPECT_EQ(points[1], (Vector3<float>{100, 42, 0}));
    EXPECT_EQ(points[3], (Vector3<float>{92, 50, 2}));
    EXPECT_EQ(points[8], (Vector3<float>{108, 58, 7}));
    EXPECT_EQ(land->texture, TextureName::Paving);
    EXPECT_EQ(land->repeats, 0.25f * 16);
}

TEST(LevelLand, onlySizeAndHeightsAreNeeded)
{
    const auto land = readText(size + heights);
    ASSERT_TRUE(land);
    EXPECT_EQ(land->terrain->getPositions()[4], (Vector3<float>{0, 0, 4}));
    EXPECT_EQ(land->texture, TextureName::Grass);
    EXPECT_EQ(land->repeats, 2);
}

TEST(LevelLand, sidesMayDiffer)
{
    const auto land = readText("<size \"2 1\"/><heights \"0 0 0 0 0 0 0 0 0 0 0 0 0 0 9\"/>");
    ASSERT_TRUE(land);
    EXPECT_EQ(land->terrain->getPositions()[14], (Vector3<float>{2, 1, 9}));
    EXPECT_EQ(land->repeats, 4);
}

TEST(LevelLand, whatMakesNoSenseIsNone)
{
    for (const std::string& entries : {std::string(),
                                       heights,
                                       size,
                                       "<size 1/>" + heights,
                                       "<size \"1 1 1\"/>" + heights,
                                       "<size \"0 1\"/>" + heights,
                                       "<size \"1 -1\"/>" + heights,
                                       "<size \"257 1\"/>" + heights,
                                       "<size \"1 x\"/>" + heights,
                                       "<size \"2 1\"/>" + heights,
                                       size + "<heights \"0 1 2 3 4 5 6 7\"/>",
                                       size + "<heights \"0 1 2 3 4 5 6 7 8 9\"/>",
                                       size + "<heights \"0 1 2 3 4 5 6 7 x\"/>",
                                       size + "<heights \"0 1 2 3 4 5 6 7 2000000\"/>",
                                       size + heights + "<spacing 0/>",
                                       size + heights + "<spacing 1001/>",
                                       size + heights + "<spacing \"1 1\"/>",
                                       size + heights + "<origin \"0 0\"/>",
                                       size + heights + "<origin \"0 0 1e7\"/>",
                                       size + heights + "<scale much/>",
                                       size + heights + "<texture gold.png/>",
                                       size + "<heights \"0 1 2 3 4 5 6 7 nan\"/>"})
        EXPECT_FALSE(readText(entries)) << entries;
}
