#include "game_tour.h"
#include "file_contents.h"

#include <gtest/gtest.h>

#include <cstdlib>

// The whole game on foot. With XUM_UPDATE_GOLDEN=1 in the environment it becomes the session whole_game.txt: to be done
// when the map or the rules have changed.

namespace {

const std::string sessionFile = XUM_SESSION_DIRECTORY "/whole_game.txt";

} // namespace

TEST(WholeGame, everyEmberIsReachedOnFoot)
{
    GameTour tour;
    const auto run = [&](float x, float y) {
        ASSERT_TRUE(tour.runTo(x, y)) << x << " " << y << ": " << tour.describe();
    };
    run(0, -34);                                                // on the path
    run(-14, -34), run(-19, -12);                               // the meadow in the west
    run(-15, -16.5f), run(15, -16.5f), run(19, -6);             // and in the east
    run(15, -16.5f), run(0, -16.5f), run(0, -9);                // through the gate
    run(7, -9.5f), run(11.5f, -11), run(11, -6), run(7.5f, -6); // east of the columns, and behind the stores
    run(11, -6), run(11, 12.3f), run(0, 12.3f);                 // to the pavilion
    run(-11.5f, 11.8f), run(-11, 6), run(-6.5f, 6);             // west of the columns
    run(-6, 12.3f), run(0, 12.3f), run(0, 25);                  // through the north gate
    run(-6.5f, 25), run(0, 25), run(5, 25), run(8.6f, 25);      // into both towers
    run(8.6f, 22.1f), run(10.2f, 22.1f), run(10.2f, 28);        // up the stairs
    run(8.6f, 28), run(7.5f, 26.5f), run(8.6f, 25), run(0, 25); // over the bridge
    run(-8.8f, 25), run(-9, 23.35f), run(-10.4f, 23.35f), run(-10.4f, 22.25f);
    run(-4.4f, 22.25f), run(-4.6f, 26), run(-6.9f, 26); // up to the platform
    EXPECT_TRUE(tour.isOver()) << tour.describe();
    EXPECT_NE(tour.getText("score").find("lives 3  embers 12/12"), std::string::npos) << tour.describe();
    EXPECT_EQ(tour.getText("end").find("All embers are safe!  Score "), 0u) << tour.describe();
    writeFileContents("whole_game.txt", tour.getSession());
    const char* const isUpdate = std::getenv("XUM_UPDATE_GOLDEN");
    if (!HasFailure() && isUpdate != nullptr && *isUpdate == '1') writeFileContents(sessionFile, tour.getSession());
}
