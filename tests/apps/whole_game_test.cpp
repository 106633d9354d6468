#include "compare_pictures.h"
#include "game_tour.h"
#include "golden_picture.h"
#include "run_program.h"

#include <xum/render/image.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

// The whole game, from the title to the end.

namespace {

const std::string sessionFile = XUM_SESSION_DIRECTORY "/whole_game.txt";
const std::string wonLine = "clock 4:15, score 003750  best 003750  lives 3  embers 12/12, "
                            "end: All embers are safe!  Score 3750, best 3750.\n";

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

#ifndef _WIN32 // its arithmetic may differ in the last place, and so may the way
TEST(WholeGame, sessionIsPlayedToItsWonEnd)
{
    const ProgramRun run =
        runProgram(XUM_GAME_PROGRAM, "--fast --size 480x270 --screenshot end.bmp --play \"" + sessionFile + "\"");
    ASSERT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.output, wonLine);
    const std::unique_ptr<Image> actual(loadImage("end.bmp"));
    ASSERT_TRUE(actual);
    EXPECT_TRUE(matchesGoldenPicture("game-won", *actual, otherRenderer));
}
#endif
