#include "map_levels.h"

#include <xum/files/config_section.h>

#include <gtest/gtest.h>

// Land in descriptions of levels and in compiled maps, and what the tools write as a description.

namespace {

const std::string flat = "<size \"1 1\"/><heights \"0 0 0 0 0 0 0 0 0\"/>";

std::string problemOfTerrain(const std::string& content)
{
    return problemOf("<map><terrain>" + content + "</terrain></map>");
}

/// All that there is in a section, on one line.
std::string textOf(const ConfigSection& section)
{
    std::string text = "<" + section.getName() + ">";
    for (const ConfigSection* child : section.getAllSections()) text += textOf(*child);
    std::list<const ConfigEntry*> entries;
    section.getEntries(entries);
    for (const ConfigEntry* entry : entries) text += "<" + entry->getName() + " \"" + entry->getValue() + "\"/>";
    return text + "</" + section.getName() + ">";
}

std::string rewritten(const std::string& text)
{
    return textOf(*makeMapSection(readMapText(text)));
}

} // namespace

// ---- reading --------------------------------------------------------------------------------------------------------

TEST(MapTerrain, everythingIsRead)
{
    const MapSource map = readMapText(
        "<map><terrain><size \"1 2\"/><spacing 8/><origin \"1 -2.5 3e2\"/><texture \"wet grass\"/><scale -0.5/>"
        "<heights \"0 1 2\r\n 3 4 5\t6 7 8  9 -10 1.5e1 12 13 14 \"/></terrain><terrain>" +
        flat + "</terrain></map>");
    ASSERT_EQ(map.terrains.size(), 2u);
    const TerrainSource& first = map.terrains[0];
    EXPECT_EQ(first.width, 1);
    EXPECT_EQ(first.height, 2);
    EXPECT_EQ(first.countColumns(), 3);
    EXPECT_EQ(first.countRows(), 5);
    EXPECT_EQ(first.spacing, 8);
    EXPECT_EQ(first.origin, Vector3<float>(1, -2.5f, 300));
    EXPECT_EQ(first.texture, "wet grass");
    EXPECT_EQ(first.scale, -0.5);
    EXPECT_EQ(first.heights, (std::vector<float>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, -10, 15, 12, 13, 14}));

    const TerrainSource& plain = map.terrains[1];
    EXPECT_EQ(plain.spacing, 1);
    EXPECT_EQ(plain.origin, Vector3<float>());
    EXPECT_EQ(plain.texture, "");
    EXPECT_EQ(plain.scale, 1);
}

TEST(MapTerrain, sizeAndHeightsAreNeeded)
{
    EXPECT_EQ(problemOfTerrain(""), "terrain 1: needs <size> and <heights>");
    EXPECT_EQ(problemOfTerrain("<size \"1 1\"/>"), "terrain 1: needs <size> and <heights>");
    EXPECT_EQ(problemOfTerrain("<heights \"0 0\"/>"), "terrain 1: needs <size> and <heights>");
    EXPECT_EQ(problemOf("<map><terrain>" + flat + "</terrain><terrain></terrain></map>"),
              "terrain 2: needs <size> and <heights>");
    EXPECT_EQ(problemOfTerrain(flat), "");
}

TEST(MapTerrain, unknownNamesAreProblems)
{
    EXPECT_EQ(problemOfTerrain(flat + "<tecture x/>"), "terrain 1: <tecture> is not known here");
    EXPECT_EQ(problemOfTerrain(flat + "<brush></brush>"), "terrain 1: <brush> is not known here");
}

TEST(MapTerrain, sizesAreWholeNumbersWithinLimits)
{
    const std::string wrong = "terrain 1: <size> needs whole numbers from 1 to 256";
    for (const char* size : {"0 1", "1 0", "-1 1", "1.5 1", "257 1", "1 257", "1000000 1000000"})
        EXPECT_EQ(problemOfTerrain("<size \"" + std::string(size) + "\"/><heights 0/>"), wrong) << size;
    EXPECT_EQ(problemOfTerrain("<size 1/><heights 0/>"), "terrain 1: <size> needs 2 numbers from -1000000 to 1000000");
    EXPECT_EQ(problemOfTerrain("<size \"1 1 1\"/><heights 0/>"), "terrain 1: <size> has more than 2 numbers");
    for (const char* spacing : {"0", "-1", "0.5", "1001"})
        EXPECT_EQ(problemOfTerrain(flat + "<spacing " + spacing + "/>"),
                  "terrain 1: <spacing> needs whole numbers from 1 to 1000");
    EXPECT_EQ(problemOfTerrain(flat + "<spacing 1000/>"), "");
    EXPECT_EQ(problemOfTerrain(flat + "<scale 0/>"), "terrain 1: <scale> is not 0");
    EXPECT_EQ(problemOfTerrain(flat + "<texture a\"b\"/>"), "terrain 1: <texture> has a quote inside");
}

TEST(MapTerrain, thereAreAsManyHeightsAsPlaces)
{
    const auto problemOfHeights = [](const std::string& heights) {
        return problemOfTerrain("<size \"1 1\"/><heights \"" + heights + "\"/>");
    };
    const std::string count = "terrain 1: <heights> needs 9 numbers, a row after the other";
    const std::string number = "terrain 1: <heights> needs numbers from -1000000 to 1000000";
    EXPECT_EQ(problemOfHeights(""), count);
    EXPECT_EQ(problemOfHeights("1 2 3 4 5 6 7 8"), count);
    EXPECT_EQ(problemOfHeights("1 2 3 4 5 6 7 8 9 10"), count);
    EXPECT_EQ(problemOfHeights("1 2 3 4 5 6 7 8 9 "), "");
    EXPECT_EQ(problemOfHeights("1 2 3 4 x 6 7 8 9"), number);
    EXPECT_EQ(problemOfHeights("1 2 3 4 5 6 7 8 nan"), number);
    EXPECT_EQ(problemOfHeights("1 2 3 4 5 6 7 8 inf"), number);
    EXPECT_EQ(problemOfHeights("1 2 3 4 5 6 7 8 1000001"), number);
    EXPECT_EQ(problemOfHeights("1 2 3 4 5 6 7 8 1e99"), number);
}

TEST(MapTerrain, largestLandIsRead)
{
    std::string heights;
    for (int i = 0; i < 513 * 513; ++i) heights += "1 ";
    EXPECT_EQ(problemOfTerrain("<size \"256 256\"/><heights \"" + heights + "\"/>"), "");
}

// ---- in compiled maps -----------------------------------------------------------------------------------------------

TEST(MapTerrain, secondTextHasItInFrontAndAsItWas)
{
    const CompiledLevel level = compileText("<map><entity><class a/></entity><terrain><size \"1 1\"/><spacing 4/>"
                                            "<texture \"wet grass\"/><heights \"0 0.1 -2.5 0 1e3 0 0 0 3\"/></terrain>"
                                            "</map>");
    EXPECT_EQ(level.map->getSecond(), "<map>\r\n"
                                      "   <terrain>\r\n"
                                      "      <size \"1 1\"/>\r\n"
                                      "      <spacing 4/>\r\n"
                                      "      <origin \"0 0 0\"/>\r\n"
                                      "      <texture \"wet grass\"/>\r\n"
                                      "      <heights \"0 0.1 -2.5 0 1000 0 0 0 3\"/>\r\n"
                                      "   </terrain>\r\n"
                                      "   <entity>\r\n      <class a/>\r\n   </entity>\r\n"
                                      "   <textures>\r\n   </textures>\r\n"
                                      "</map>\r\n");
}

TEST(MapTerrain, compiledLandIsReadAsTheSame)
{
    const CompiledLevel level = compileText("<map><terrain><size \"1 1\"/><origin \"0.1 0.2 0.3\"/><scale 0.3/>"
                                            "<heights \"0 0.1 0.2 0.3 1e-7 123456.789 0 0 3\"/></terrain></map>");
    const std::unique_ptr<ConfigSection> root = ConfigReader(level.map->getSecond()).read();
    const TerrainSource terrain = readTerrain(*root->getAllSections().front(), "terrain");
    EXPECT_EQ(terrain.heights, (std::vector<float>{0, 0.1f, 0.2f, 0.3f, 1e-7f, 123456.789f, 0, 0, 3}));
    EXPECT_EQ(terrain.origin, Vector3<float>(0.1f, 0.2f, 0.3f));
    EXPECT_EQ(terrain.scale, 0.3);
}

// ---- writing descriptions -------------------------------------------------------------------------------------------

TEST(MapWriter, everythingIsWrittenInOneOrder)
{
    EXPECT_EQ(rewritten("<level><mesh><brush><box \"0 0 0 1 2 3\"/><texture a/><top b/><left none/><scale 0.5/>"
                        "<kind 7/><solid no/></brush></mesh><entity><note \"x y\"/><class c/></entity>"
                        "<title \"My level\"/><terrain><texture g/><scale 2/>" +
                        flat + "</terrain></level>"),
              "<map>"
              "<terrain><size \"1 1\"/><spacing \"1\"/><origin \"0 0 0\"/><texture \"g\"/><scale \"2\"/>"
              "<heights \"0 0 0 0 0 0 0 0 0\"/></terrain>"
              "<entity><note \"x y\"/><class \"c\"/></entity>"
              "<mesh><brush><box \"0 0 0 1 2 3\"/><texture \"a\"/><left \"none\"/><top \"b\"/><scale \"0.5\"/>"
              "<kind \"7\"/><solid \"no\"/></brush></mesh>"
              "<title \"My level\"/></map>");
}

TEST(MapWriter, planesKeepTheirDigits)
{
    const std::string wedge = "<map><mesh><brush><plane><normal \"1 1 1\"/><distance 1/><texture t/></plane>"
                              "<plane><normal \"-1 0 0\"/><distance 0/></plane>"
                              "<plane><normal \"0 -1 0\"/><distance 0/></plane>"
                              "<plane><normal \"0 0 -1\"/><distance 0/></plane></brush></mesh></map>";
    const std::string once = rewritten(wedge);
    EXPECT_NE(once.find("0.5773502691896258"), std::string::npos) << once;
    std::string again = once;
    for (int i = 0; i < 5; ++i) again = rewritten(again);
    EXPECT_EQ(again, once);
}

TEST(MapWriter, boxesInAnotherOrderOfSidesStayPlanes)
{
    const std::string cube = "<map><mesh><brush><plane><normal \"1 0 0\"/><distance \"1\"/></plane>"
                             "<plane><normal \"-1 0 0\"/><distance \"1\"/></plane>"
                             "<plane><normal \"0 -1 0\"/><distance \"1\"/></plane>"
                             "<plane><normal \"0 1 0\"/><distance \"1\"/></plane>"
                             "<plane><normal \"0 0 -1\"/><distance \"1\"/></plane>"
                             "<plane><normal \"0 0 1\"/><distance \"1\"/></plane></brush></mesh></map>";
    EXPECT_EQ(rewritten(cube), cube);
    EXPECT_FALSE(asBox(readMapText(cube).meshes[0].brushes[0]));
}

TEST(MapWriter, textureOfMostSidesIsTheBrushs)
{
    EXPECT_EQ(rewritten("<map><mesh><brush><box \"0 0 0 1 1 1\"/><left a/><right a/><top a/><front b/></brush></mesh>"
                        "</map>"),
              "<map><mesh><brush><box \"0 0 0 1 1 1\"/><texture \"a\"/><front \"b\"/><back \"none\"/>"
              "<bottom \"none\"/></brush></mesh></map>");
    EXPECT_EQ(rewritten("<map><mesh><brush><box \"0 0 0 1 1 1\"/></brush></mesh></map>"),
              "<map><mesh><brush><box \"0 0 0 1 1 1\"/></brush></mesh></map>");
}

TEST(MapWriter, originsOfMeshesAreKept)
{
    EXPECT_EQ(rewritten("<map><mesh><origin \"0.1 -2 1e6\"/><brush><box \"0 0 0 1 1 1\"/></brush></mesh></map>"),
              "<map><mesh><brush><box \"0 0 0 1 1 1\"/></brush><origin \"0.1 -2 1e+06\"/></mesh></map>");
}
