#include "readings.h"

#include <gtest/gtest.h>

TEST(Readings, areFiveLines)
{
    Readings readings;
    readings.frameMilliseconds = 16.66f;
    readings.position = {-2.84f, -15.21f, 5.5f};
    readings.draws = 458;
    readings.drawn = 4403;
    readings.culled = 35;
    readings.hidden = 716;
    EXPECT_EQ(describe(readings), (std::vector<std::string>{"16.7 ms", "-2.8 -15.2 5.5", "outside", "458 draw calls",
                                                            "4403 drawn, 35 culled, 716 hidden"}));
}

TEST(Readings, leafIsGivenByItsNumber)
{
    Readings readings;
    readings.leaf = Level::Position{17, false};
    EXPECT_EQ(describe(readings)[2], "leaf 17");
    readings.leaf = Level::Position{0, true};
    EXPECT_EQ(describe(readings)[2], "leaf 0, solid");
}

TEST(Readings, anyNumberFitsOnALine)
{
    Readings readings;
    readings.frameMilliseconds = 3e38f;
    readings.position = {-3e38f, 3e38f, -3e38f};
    for (const std::string& line : describe(readings)) EXPECT_LT(line.size(), 160u);
}

TEST(Readings, placesWithoutALevelAreTheCourtyardAndTheMeadowAroundIt)
{
    const Scene scene;
    EXPECT_STREQ(nameOfPlace(scene, {0, 0, 2}), "Courtyard");
    EXPECT_STREQ(nameOfPlace(scene, {17.9f, -17.9f, 50}), "Courtyard");
    EXPECT_STREQ(nameOfPlace(scene, {18.1f, 0, 2}), "Meadow");
    EXPECT_STREQ(nameOfPlace(scene, {0, -18.1f, 2}), "Meadow");
}
