#include "engine_fixtures.h"
#include "game_script.h"
#include "recording_stage.h"
#include "script_data.h"

#include <memory>

// The rules in lisp/game.lisp, by what they do to a stage with two embers.

namespace {

class Rules : public EngineFixture {
protected:
    void SetUp() override
    {
        EngineFixture::SetUp();
        ASSERT_FALSE(HasFatalFailure());
        stage.places["item"] = {{10, 0, 0}, {20, 0, 0}};
        stage.places["guard"] = {{0, 50, 6}};
        stage.places["start"] = {{0, -5, 1}};
        stage.turns["start"] = 90;
        data = std::make_unique<GameData>(*engine, DataSource{XUM_DATA_DIRECTORY "/", ""});
        script = std::make_unique<GameScript>(*engine, *data, stage);
    }

    void TearDown() override
    {
        script.reset();
        data.reset();
        EngineFixture::TearDown();
    }

    /// A game whose first words have vanished, and in which the truce is over.
    void begin()
    {
        EXPECT_TRUE(script->begin()) << script->getProblem();
        pass(5000);
        stage.takeNotes();
    }

    /// Time, in steps as frames take them.
    void pass(int milliseconds)
    {
        for (; milliseconds > 0; milliseconds -= 100) tick(static_cast<std::uint32_t>(std::min(milliseconds, 100)));
    }

    void tick(std::uint32_t milliseconds) { EXPECT_TRUE(script->tick(milliseconds)) << script->getProblem(); }

    /// The notes without those of the clock.
    std::string takeNotes()
    {
        std::istringstream lines(stage.takeNotes());
        std::string notes;
        for (std::string line; std::getline(lines, line);)
            if (line.rfind("clock: ", 0) != 0) notes += line + "\n";
        return notes;
    }

    /// At one of the embers, which float a metre above the ground.
    void goToEmber(int number) { stage.player = {number == 0 ? 10.0f : 20.0f, 1, 0.9f}; }

    RecordingStage stage;
    std::unique_ptr<GameData> data;
    std::unique_ptr<GameScript> script;
};

} // namespace

TEST_F(Rules, gameBeginsWithEmbersWatchersAndThePlayerAtTheStart)
{
    EXPECT_FALSE(script->isPlaying());
    EXPECT_TRUE(script->begin());
    EXPECT_TRUE(script->isPlaying());
    EXPECT_EQ(stage.takeNotes(), "clear\n"
                                 "add ember 10 0 0\n"
                                 "add ember 20 0 0\n"
                                 "add watcher 0 50 6\n"
                                 "put 0 -5 1 turned 90\n"
                                 "score: score 000000  best 000000  lives 3  embers 0/2\n"
                                 "message: Gather the embers before night falls. Stay out of the light!\n");
}

TEST_F(Rules, nothingHappensBeforeTheGameBegins)
{
    tick(1000);
    EXPECT_EQ(stage.takeNotes(), "");
}

TEST_F(Rules, startIsInTheMiddleWhenTheMapHasNone)
{
    stage.places.erase("start");
    EXPECT_TRUE(script->begin());
    EXPECT_NE(stage.takeNotes().find("put 0 0 1 turned 0\n"), std::string::npos);
}

TEST_F(Rules, mapWithoutEmbersSaysSo)
{
    stage.places.erase("item");
    EXPECT_TRUE(script->begin());
    EXPECT_NE(stage.takeNotes().find("message: There are no embers in this map.\n"), std::string::npos);
}

TEST_F(Rules, mapMayHaveMoreThanThereIsRoomFor)
{
    stage.places["item"].resize(70);
    stage.places["guard"].resize(5);
    EXPECT_TRUE(script->begin()) << script->getProblem();
    const std::string notes = stage.takeNotes();
    EXPECT_NE(notes.find("embers 0/64"), std::string::npos);
    EXPECT_EQ(stage.things.size(), 66u);
    tick(16);
}

TEST_F(Rules, firstWordsVanishAfterFourSeconds)
{
    EXPECT_TRUE(script->begin());
    takeNotes();
    pass(3900);
    EXPECT_EQ(takeNotes(), "");
    pass(100);
    EXPECT_EQ(takeNotes(), "message: \n");
    pass(5000);
    EXPECT_EQ(takeNotes(), "");
}

TEST_F(Rules, emberWithinReachIsTaken)
{
    begin();
    stage.player = {10, 1.7f, 0.9f};
    tick(16);
    EXPECT_EQ(takeNotes(), "");
    stage.player = {10, 1.5f, 0.9f};
    tick(16);
    EXPECT_EQ(takeNotes(), "sound ember.wav 10 0 0\n"
                           "remove 0\n"
                           "score: score 000100  best 000100  lives 3  embers 1/2\n"
                           "message: 1 ember is left\n");
    tick(16);
    EXPECT_EQ(takeNotes(), "");
}

TEST_F(Rules, lastEmberWinsWithTenPointsForEachSecondLeft)
{
    begin();
    goToEmber(0);
    pass(5000);
    takeNotes();
    goToEmber(1);
    tick(100); // 10.1 seconds are over
    EXPECT_EQ(takeNotes(), "sound ember.wav 20 0 0\n"
                           "remove 1\n"
                           "score: score 000200  best 000200  lives 3  embers 2/2\n"
                           "score: score 003090  best 003090  lives 3  embers 2/2\n"
                           "message: \n"
                           "end: All embers are safe!  Score 3090, best 3090.\n");
    EXPECT_FALSE(script->isPlaying());
    tick(16);
    EXPECT_EQ(takeNotes(), "");
}

TEST_F(Rules, watcherIsPatientAndForgets)
{
    begin();
    stage.isSeen[0] = true;
    tick(100);
    EXPECT_EQ(takeNotes(), "message: You are in the light!\n");
    pass(1300);
    EXPECT_EQ(takeNotes(), "");
    stage.isSeen[0] = false;
    pass(1000);
    stage.isSeen[0] = true;
    pass(1000);
    EXPECT_EQ(takeNotes(), ""); // 1.4 seconds again
    pass(100);
    EXPECT_EQ(takeNotes(), "sound caught.wav 0 -5 1\n"
                           "score: score 000000  best 000000  lives 2  embers 0/2\n"
                           "put 0 -5 1 turned 90\n"
                           "message: Caught! Back to the start.\n");
}

TEST_F(Rules, eitherWatcherSees)
{
    stage.places["guard"] = {{0, 50, 6}, {0, 90, 6}};
    begin();
    stage.isSeen[1] = true;
    tick(16);
    EXPECT_EQ(takeNotes(), "message: You are in the light!\n");
}

TEST_F(Rules, nobodyIsSeenInTheThreeSecondsAfterTheStart)
{
    EXPECT_TRUE(script->begin());
    takeNotes();
    stage.isSeen[0] = true;
    pass(2900);
    EXPECT_EQ(takeNotes(), "");
    pass(200);
    EXPECT_EQ(takeNotes(), "message: You are in the light!\n");
    pass(1300); // caught
    takeNotes();
    pass(2900);
    EXPECT_EQ(takeNotes(), "");
}

TEST_F(Rules, whoIsCaughtThreeTimesLoses)
{
    begin();
    stage.isSeen[0] = true;
    for (int i = 0; i < 2; ++i) pass(1500 + 3000);
    takeNotes();
    pass(1500);
    EXPECT_EQ(takeNotes(), "sound caught.wav 0 -5 1\n"
                           "score: score 000000  best 000000  lives 0  embers 0/2\n"
                           "score: score 000000  best 000000  lives 0  embers 0/2\n"
                           "message: \n"
                           "end: Caught once too often.  Score 0, best 0.\n");
    EXPECT_FALSE(script->isPlaying());
}

TEST_F(Rules, clockIsShownOnceASecondAndNightEndsTheGame)
{
    EXPECT_TRUE(script->begin());
    stage.takeNotes();
    tick(16);
    EXPECT_EQ(stage.takeNotes(), "clock: 4:59\n");
    pass(900);
    EXPECT_EQ(stage.takeNotes(), "");
    pass(100);
    EXPECT_EQ(stage.takeNotes(), "clock: 4:58\n");
    EXPECT_NEAR(stage.dusk, 2.0f / 300, 1e-5f);
    pass(148984);
    EXPECT_NEAR(stage.dusk, 0.5f, 0.01f);
    pass(149000);
    EXPECT_TRUE(script->isPlaying());
    stage.takeNotes();
    pass(1000);
    EXPECT_EQ(stage.takeNotes(), "clock: 0:00\n"
                                 "score: score 000000  best 000000  lives 3  embers 0/2\n"
                                 "message: \n"
                                 "end: Night has fallen.  Score 0, best 0.\n");
    EXPECT_EQ(stage.dusk, 1);
    EXPECT_FALSE(script->isPlaying());
}

TEST_F(Rules, whoFallsOutOfTheWorldIsBackAtTheStart)
{
    begin();
    stage.player.z = 1 - 39.5f;
    tick(16);
    EXPECT_EQ(takeNotes(), "");
    stage.player.z = 1 - 40.5f;
    tick(16);
    EXPECT_EQ(takeNotes(), "put 0 -5 1 turned 90\n"
                           "message: There is nothing down there. Back to the start.\n");
}

TEST_F(Rules, bestScoreOutlivesTheGame)
{
    begin();
    goToEmber(0);
    tick(16);
    EXPECT_TRUE(script->begin());
    EXPECT_NE(stage.takeNotes().find("score: score 000000  best 000100  lives 3  embers 0/2\n"), std::string::npos);
}

TEST_F(Rules, watcherGoesAroundItsPlaceAndLooksAtTheGroundAhead)
{
    begin();
    const auto isNear = [&] {
        const Vector3<float> way = stage.things[2] - stage.places["guard"][0];
        return std::fabs(length(way) - 6) < 0.01f && way.z == 0;
    };
    const Vector3<float> before = stage.things[2];
    EXPECT_TRUE(isNear());
    EXPECT_EQ(stage.lastAim.rfind("aim 0 ", 0), 0u) << stage.lastAim;
    pass(2000);
    EXPECT_TRUE(isNear());
    EXPECT_NEAR(length(stage.things[2] - before), 2 * 6 * std::sin(0.35f), 0.05f);
}

TEST_F(Rules, embersBobAboveTheirPlaces)
{
    begin();
    float lowest = 100;
    float highest = 0;
    for (int i = 0; i < 60; ++i) {
        tick(100);
        lowest = std::min(lowest, stage.things[0].z);
        highest = std::max(highest, stage.things[0].z);
        EXPECT_EQ(stage.things[0].x, 10);
    }
    EXPECT_NEAR(lowest, 0.75f, 0.01f);
    EXPECT_NEAR(highest, 1.05f, 0.01f);
}

TEST_F(Rules, minuteTakesNoMoreMemoryThanSixHundredOfThemLeaveRoomFor)
{
    begin();
    const std::int64_t before = script->countBytes();
    for (int i = 0; i < 600; ++i) tick(i % 3 == 2 ? 16 : 17); // ten seconds
    EXPECT_LT((script->countBytes() - before) * 6, 512LL * 1024 * 1024 / 600);
}
