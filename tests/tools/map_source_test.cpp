#include "map_levels.h"

#include <gtest/gtest.h>

// What a description of a level says, and each of its problems.

namespace {

const std::string box = "<box \"0 0 0 1 1 1\"/>";

std::string planeText(const std::string& normal, const std::string& distance, const std::string& more = "")
{
    return "<plane><normal \"" + normal + "\"/><distance " + distance + "/>" + more + "</plane>";
}

/// A box of 2 by 2 by 2 around the origin, as planes.
const std::string cube = planeText("1 0 0", "1") + planeText("-1 0 0", "1") + planeText("0 1 0", "1") +
                         planeText("0 -1 0", "1") + planeText("0 0 1", "1") + planeText("0 0 -1", "1");

std::string problemOfBrush(const std::string& content)
{
    return problemOf("<map><mesh><brush>" + content + "</brush></mesh></map>");
}

std::string problemOfEntity(const std::string& content)
{
    return problemOf("<map><entity>" + content + "</entity></map>");
}

BrushSource readBrushText(const std::string& content)
{
    return readMapText("<map><mesh><brush>" + content + "</brush></mesh></map>").meshes.at(0).brushes.at(0);
}

} // namespace

TEST(MapSource, everythingIsRead)
{
    const MapSource map =
        readMapText("<level><title \"My level\"/>"
                    "<mesh><origin \"1 -2.5 3e2\"/><brush>" +
                    box + "<texture a/><top b/><left none/><kind 255/><scale -0.5/><solid no/></brush><brush>" + box +
                    "</brush></mesh><mesh><brush><texture a/>" + planeText("0 0 2", "6", "<texture b/>") +
                    planeText("1 0 0", "1") + planeText("0 1 0", "1") + planeText("-1 -1 -1", "0", "<texture none/>") +
                    "</brush></mesh>"
                    "<entity><class start/><note \"a b\"/></entity><entity><class end/></entity></level>");
    EXPECT_EQ(map.title, "My level");
    ASSERT_EQ(map.meshes.size(), 2u);
    EXPECT_EQ(map.meshes[0].origin, Vector3<float>(1, -2.5f, 300));
    ASSERT_EQ(map.meshes[0].brushes.size(), 2u);
    const BrushSource& first = map.meshes[0].brushes[0];
    EXPECT_EQ(first.kind, 255);
    EXPECT_EQ(first.scale, -0.5);
    EXPECT_FALSE(first.isSolid);
    EXPECT_EQ(first.name, "mesh 1, brush 1");
    ASSERT_EQ(first.sides.size(), 6u);
    EXPECT_EQ(first.sides[0].texture, "");
    EXPECT_EQ(first.sides[1].texture, "a");
    EXPECT_EQ(first.sides[5].texture, "b");

    const BrushSource& plain = map.meshes[0].brushes[1];
    EXPECT_EQ(plain.kind, 0);
    EXPECT_EQ(plain.scale, 1);
    EXPECT_TRUE(plain.isSolid);
    EXPECT_EQ(plain.sides[3].texture, "");

    const BrushSource& planes = map.meshes[1].brushes[0];
    EXPECT_EQ(map.meshes[1].origin, Vector3<float>());
    ASSERT_EQ(planes.sides.size(), 4u);
    EXPECT_EQ(planes.sides[0].normal, Vector3<double>(0, 0, 1));
    EXPECT_EQ(planes.sides[0].distance, 3) << "in world units, whatever the length of the normal was";
    EXPECT_EQ(planes.sides[0].texture, "b");
    EXPECT_EQ(planes.sides[1].texture, "a");
    EXPECT_EQ(planes.sides[3].texture, "");

    ASSERT_EQ(map.entities.size(), 2u);
    EXPECT_EQ(map.entities[0], (EntitySource{{"class", "start"}, {"note", "a b"}}));
    EXPECT_EQ(map.entities[1], (EntitySource{{"class", "end"}}));
}

TEST(MapSource, sidesOfABoxHaveTheirNames)
{
    const std::string names[] = {"left", "right", "front", "back", "bottom", "top"};
    const Vector3<double> normals[] = {{-1, 0, 0}, {1, 0, 0}, {0, -1, 0}, {0, 1, 0}, {0, 0, -1}, {0, 0, 1}};
    const double distances[] = {-1, 4, -2, 5, -3, 6};
    for (std::size_t i = 0; i < 6; ++i) {
        const BrushSource brush = readBrushText("<box \"1 2 3 4 5 6\"/><" + names[i] + " x/>");
        for (std::size_t k = 0; k < 6; ++k) {
            EXPECT_EQ(brush.sides.at(k).normal, normals[k]);
            EXPECT_EQ(brush.sides[k].distance, distances[k]);
            EXPECT_EQ(brush.sides[k].texture, k == i ? "x" : "") << names[i];
        }
    }
}

TEST(MapSource, emptyMapIsALevel)
{
    EXPECT_EQ(problemOf("<map></map>"), "");
}

TEST(MapSource, unknownNamesAreProblems)
{
    EXPECT_EQ(problemOf("<map><titel x/></map>"), "the map: <titel> is not known here");
    EXPECT_EQ(problemOf("<map><brush></brush></map>"), "the map: <brush> is not known here");
    EXPECT_EQ(problemOf("<map><mesh><scale 1/></mesh></map>"), "mesh 1: <scale> is not known here");
    EXPECT_EQ(problemOf("<map><mesh><box></box></mesh></map>"), "mesh 1: <box> is not known here");
    EXPECT_EQ(problemOfBrush(box + "<tecture x/>"), "mesh 1, brush 1: <tecture> is not known here");
    EXPECT_EQ(problemOfBrush(box + "<side></side>"), "mesh 1, brush 1: <side> is not known here");
    EXPECT_EQ(problemOfBrush(cube + "<top x/>"), "mesh 1, brush 1: <top> is not known here");
    EXPECT_EQ(problemOfBrush(cube + planeText("0 0 1", "1", "<scale 1/>")),
              "mesh 1, brush 1: <scale> is not known here");
    EXPECT_EQ(problemOfBrush(cube + planeText("0 0 1", "1", "<x></x>")), "mesh 1, brush 1: <x> is not known here");
}

TEST(MapSource, numbersAreCheckedOneByOne)
{
    const auto problemOfBox = [](const std::string& numbers) { return problemOfBrush("<box \"" + numbers + "\"/>"); };
    const std::string wrong = "mesh 1, brush 1: <box> needs 6 numbers from -1000000 to 1000000";
    for (const char* const numbers :
         {"", "1 2 3 4 5", "0 0 0 1 1 nan", "0 0 0 1 1 inf", "0 0 0 1 1 1e400", "0 0 0 1 1 1000001", "-1e7 0 0 1 1 1",
          "0,0,0,1,1,1", "0 0 0 1 1 1x", "0 0 0 1 1-1", "0 0 0 1 1 0x1", "0 0 0 1 1 --1", "+0 0 0 1 1 1"})
        EXPECT_EQ(problemOfBox(numbers), wrong) << numbers;
    EXPECT_EQ(problemOfBox("0 0 0 1 1 1 1"), "mesh 1, brush 1: <box> has more than 6 numbers");
    EXPECT_EQ(problemOfBox("0 0 0 1 1 1 x"), "mesh 1, brush 1: <box> has more than 6 numbers");
    EXPECT_EQ(problemOfBox(" 0\t0 0\r\n1  1 1.5e0 "), "");
    EXPECT_EQ(problemOfBox("-1000000 -1e6 -1e6 1e6 1e6 1e6"), "");
    EXPECT_EQ(problemOf("<map><mesh><origin \"1 2\"/></mesh></map>"),
              "mesh 1: <origin> needs 3 numbers from -1000000 to 1000000");
    EXPECT_EQ(problemOfBrush(box + "<scale x/>"), "mesh 1, brush 1: <scale> needs a number from -1000000 to 1000000");
    EXPECT_EQ(problemOfBrush(box + "<scale \"1 2\"/>"), "mesh 1, brush 1: <scale> has more than 1 number");
    EXPECT_EQ(problemOfBrush(box + "<scale 0/>"), "mesh 1, brush 1: <scale> is not 0");
}

TEST(MapSource, lowerCornerOfABoxComesFirst)
{
    for (const char* const numbers : {"1 0 0 0 1 1", "0 1 0 1 0 1", "0 0 1 1 1 0", "0 0 0 0 1 1"})
        EXPECT_EQ(problemOfBrush("<box \"" + std::string(numbers) + "\"/>"),
                  "mesh 1, brush 1: <box> needs its lower corner first, then its upper one");
}

TEST(MapSource, kindIsAByte)
{
    EXPECT_EQ(problemOfBrush(box + "<kind 0/>"), "");
    for (const char* const kind : {"256", "-1", "1.5"})
        EXPECT_EQ(problemOfBrush(box + "<kind " + kind + "/>"),
                  "mesh 1, brush 1: <kind> is a whole number from 0 to 255");
}

TEST(MapSource, switchesAreYesOrNo)
{
    EXPECT_EQ(problemOfBrush(box + "<solid yes/>"), "");
    EXPECT_EQ(problemOfBrush(box + "<solid true/>"), "mesh 1, brush 1: <solid> is yes or no");
}

TEST(MapSource, brushHasOneShape)
{
    const std::string none = "mesh 1, brush 1: needs a <box> or at least four <plane> sections";
    EXPECT_EQ(problemOfBrush(""), none);
    EXPECT_EQ(problemOfBrush(planeText("1 0 0", "1") + planeText("0 1 0", "1") + planeText("0 0 1", "1")), none);
    EXPECT_EQ(problemOfBrush(box + planeText("1 0 0", "1")), "mesh 1, brush 1: has both <box> and <plane>");
    EXPECT_EQ(problemOf("<map><mesh></mesh></map>"), "mesh 1: has no <brush>");
    EXPECT_EQ(problemOf("<map><mesh><brush>" + box + "</brush></mesh><mesh><brush>" + box +
                        "</brush><brush></brush></mesh></map>"),
              "mesh 2, brush 2: needs a <box> or at least four <plane> sections");
}

TEST(MapSource, planeHasADirectionAndADistance)
{
    const std::string none = "mesh 1, brush 1: <plane> needs <normal> and <distance>";
    EXPECT_EQ(problemOfBrush("<plane><normal \"1 0 0\"/></plane>"), none);
    EXPECT_EQ(problemOfBrush("<plane><distance 1/></plane>"), none);
    EXPECT_EQ(problemOfBrush(planeText("0 0 0", "1")), "mesh 1, brush 1: a <normal> has no direction");
    EXPECT_EQ(problemOfBrush(planeText("0 0 1e-300", "1")), "mesh 1, brush 1: a <normal> has no direction");
    EXPECT_EQ(problemOfBrush(planeText("0 0 x", "1")),
              "mesh 1, brush 1: <normal> needs 3 numbers from -1000000 to 1000000");
    EXPECT_EQ(problemOfBrush(planeText("0 0 1", "nan")),
              "mesh 1, brush 1: <distance> needs a number from -1000000 to 1000000");
}

TEST(MapSource, entitiesAreEntriesWithAClass)
{
    EXPECT_EQ(problemOfEntity("<class x/>"), "");
    EXPECT_EQ(problemOfEntity("<x y/>"), "entity 1: has no <class>");
    EXPECT_EQ(problemOfEntity("<class x/><y></y>"), "entity 1: has a section; entities have entries only");
}

TEST(MapSource, quotesAreRefusedWhereTheyWouldNotComeBack)
{
    EXPECT_EQ(problemOfEntity("<class x/><note a\"b c\"/>"), "entity 1: <note> has a quote inside");
    EXPECT_EQ(problemOfBrush(box + "<texture a\"b c\"/>"), "mesh 1, brush 1: <texture> has a quote inside");
    EXPECT_EQ(problemOfBrush(box + "<top a\"b\"/>"), "mesh 1, brush 1: <top> has a quote inside");
    EXPECT_EQ(problemOfBrush(cube + planeText("0 0 1", "1", "<texture a\"b\"/>")),
              "mesh 1, brush 1: <texture> has a quote inside");
}

// ---- shapes -------------------------------------------------------------------------------------------------------

TEST(MapSource, openBrushesAreProblems)
{
    const std::string open = "mesh 1, brush 1: its planes leave it open";
    const std::string sides = planeText("1 0 0", "1") + planeText("-1 0 0", "1") + planeText("0 1 0", "1");
    EXPECT_EQ(problemOfBrush(sides + planeText("0 -1 0", "1")), open);
    EXPECT_EQ(problemOfBrush(sides + planeText("0 -1 0", "1") + planeText("0 0 1", "1")), open);
    EXPECT_EQ(problemOfBrush(sides + planeText("1 0 0", "1")), open);
    const std::string same = planeText("0 0 1", "1");
    EXPECT_EQ(problemOfBrush(same + same + same + same), open);
    EXPECT_EQ(problemOfBrush(planeText("0 0 1", "1") + planeText("0 0 -1", "1") + planeText("0 0 -1", "2") +
                             planeText("0 0 -1", "3")),
              open);
}

TEST(MapSource, emptyBrushesAreProblems)
{
    const std::string empty = "mesh 1, brush 1: there is no room behind all its planes";
    EXPECT_EQ(problemOfBrush(cube + planeText("1 0 0", "-1")), empty);
    EXPECT_EQ(problemOfBrush(cube + planeText("1 0 0", "-5")), empty);
    EXPECT_EQ(problemOfBrush(cube + planeText("1 0 0", "-0.9999")), empty) << "too thin";
    EXPECT_EQ(problemOfBrush(cube + planeText("1 1 1", "-3")), empty) << "a corner only";
    EXPECT_EQ(problemOfBrush("<box \"0 0 0 1 1 0.0001\"/>"), empty);
    EXPECT_EQ(problemOfBrush("<box \"0 0 0 1 1 0.001\"/>"), "");
}

TEST(MapSource, thousandPlanesAreABrush)
{
    std::string planes;
    for (int i = 0; i < 1000; ++i) {
        const double z = (i + 0.5) / 500 - 1; // spread over a ball
        const double radius = std::sqrt(1 - z * z);
        const double angle = 2.399963 * i;
        std::ostringstream normal;
        normal << radius * std::cos(angle) << ' ' << radius * std::sin(angle) << ' ' << z;
        planes += planeText(normal.str(), "100", "<texture a/>");
    }
    const CompiledLevel level = compileBrushes("<brush>" + planes + "</brush>");
    EXPECT_EQ(level.brushes.at(0).planes.size(), 1000u);
    EXPECT_GT(polygonsOf(level).size(), 900u);
    EXPECT_TRUE(isSolidAt(level, {0, 0, 0}));
    EXPECT_TRUE(isSolidAt(level, {0, 0, 99}));
    EXPECT_FALSE(isSolidAt(level, {0, 0, 103}));
    EXPECT_NEAR(areaOf(level), 4 * 3.14159265 * 100 * 100, 1000);
}
