#include "game_stage.h"

#include "file_contents.h"
#include "level.h"
#include "presentation_fixture.h"
#include "recording_audio_device.h"
#include "run_program.h"
#include "world.h"

#include <xum/geometry/terrain.h>

namespace {

/// On a floor of 40 by 40 under a board.
class StageTest : public PresentationTest {
protected:
    static constexpr Vector2<int> size = {64, 48};

    std::vector<Pixel> drawStage(GameStage& shown)
    {
        shown.show();
        return draw(presentation, size);
    }

    GameStage stage = GameStage(renderer, sounds, data);
};

} // namespace

TEST_F(StageTest, placesAreThoseOfTheMap)
{
    EXPECT_EQ(stage.countPlaces("item"), 0u);
    EXPECT_EQ(stage.getPlace("item", 0), (Vector3<float>{0, 0, 0}));
    EXPECT_EQ(stage.getTurn("item", 3), 0);
}

TEST_F(StageTest, thingsAreCountedAndNeverComeBack)
{
    EXPECT_EQ(stage.addThing("ember", {1, 0, 0}), 0);
    EXPECT_EQ(stage.addThing("dragon", {1, 0, 0}), -1);
    EXPECT_EQ(stage.addThing("watcher", {2, 0, 0}), 1);
    stage.removeThing(0);
    EXPECT_EQ(stage.addThing("ember", {3, 0, 0}), 2);
    EXPECT_GT(stage.getThingDistance(0), 1e30f);
    stage.clearThings();
    EXPECT_EQ(stage.addThing("ember", {3, 0, 0}), 0);
}

TEST_F(StageTest, distanceCountsFromThePlayersMiddle)
{
    stage.putPlayer({0, 0, 1}, 30);
    EXPECT_EQ(stage.getPlayer(), (Vector3<float>{0, 0, 1.9f}));
    const int ember = stage.addThing("ember", {0, 3, 1.9f});
    EXPECT_FLOAT_EQ(stage.getThingDistance(ember), 3);
    stage.moveThing(ember, {0, 0, 11.9f});
    EXPECT_FLOAT_EQ(stage.getThingDistance(ember), 10);
    for (const int number : {-1, 1, 1000000000}) {
        EXPECT_GT(stage.getThingDistance(number), 1e30f);
        stage.moveThing(number, {});
        stage.removeThing(number);
    }
}

TEST_F(StageTest, turnIsTakenOnce)
{
    EXPECT_FALSE(stage.takeTurn());
    stage.putPlayer({}, 30);
    EXPECT_EQ(stage.takeTurn(), 30.0f);
    EXPECT_FALSE(stage.takeTurn());
}

TEST_F(StageTest, thingsAreSeenWhereTheyAreUntilTheyAreRemoved)
{
    renderer.setLamp(false);
    const std::vector<Pixel> empty = drawStage(stage);
    const int ember = stage.addThing("ember", {0, 0, 3});
    const std::vector<Pixel> shown = drawStage(stage);
    EXPECT_NE(shown, empty);
    stage.moveThing(ember, {1, 0, 3});
    EXPECT_NE(drawStage(stage), shown);
    stage.removeThing(ember);
    EXPECT_EQ(drawStage(stage), empty);
}

TEST_F(StageTest, emberGlowsAroundItselfButNotThroughWhatStandsInFront)
{
    renderer.setLamp(false);
    presentation.getLayers() = {false, false, false};
    frame.camera = {{0, -8, 2}, 0, 0};
    const std::vector<Pixel> empty = drawStage(stage);
    stage.addThing("ember", {0, 0, 2});
    const std::vector<Pixel> shown = drawStage(stage);
    int glowing = 0;
    for (std::size_t i = 0; i < shown.size(); ++i) glowing += shown[i].red > empty[i].red ? 1 : 0;
    EXPECT_GT(glowing, 60); // the ball itself has 6 pixels
    EXPECT_LT(glowing, 300);
    stage.clearThings();
    stage.addThing("ember", {0, 0, -3}); // below the floor
    EXPECT_EQ(drawStage(stage), empty);
}

TEST_F(StageTest, lampSeesThePlayerInItsConeWithNothingInBetween)
{
    stage.putPlayer({0, 0, 0}, 0);
    stage.aimLamp(0, {0, 0, 6}, {0, 0, 0});
    EXPECT_TRUE(renderer.isLampShining(0));
    EXPECT_TRUE(stage.doesLampSeePlayer(0));
    EXPECT_FALSE(stage.doesLampSeePlayer(1));
    EXPECT_FALSE(stage.doesLampSeePlayer(7));
    stage.aimLamp(0, {0, 0, 6}, {0, 6, 0}); // elsewhere
    EXPECT_FALSE(stage.doesLampSeePlayer(0));
    stage.putPlayer({1.5f, 0, 0}, 0); // the board is above
    stage.aimLamp(0, {1.5f, 0, 6}, {1.5f, 0, 0});
    EXPECT_FALSE(stage.doesLampSeePlayer(0));
    stage.putPlayer({1.5f, 2, 0}, 0);
    EXPECT_TRUE(stage.doesLampSeePlayer(0));
}

TEST_F(StageTest, lampDoesNotSeeFarAndNotInTheDark)
{
    stage.putPlayer({0, 0, 0}, 0);
    stage.aimLamp(0, {0, -18, 2}, {0, 0, 0.9f});
    EXPECT_TRUE(stage.doesLampSeePlayer(0));
    stage.aimLamp(0, {0, -23, 2}, {0, 0, 0.9f});
    EXPECT_FALSE(stage.doesLampSeePlayer(0));
    stage.aimLamp(0, {0, 0, 6}, {0, 0, 0});
    stage.clearThings();
    EXPECT_FALSE(stage.doesLampSeePlayer(0));
}

TEST_F(StageTest, lampsThatAimNowhereOrDoNotExistStayAsTheyAre)
{
    stage.aimLamp(0, {0, 0, 6}, {0, 0, 0});
    const Vector3<float> before = renderer.getLamp(0).getLight().direction;
    stage.aimLamp(0, {1, 1, 1}, {1, 1, 1});
    stage.aimLamp(2, {1, 1, 1}, {0, 0, 0});
    EXPECT_EQ(renderer.getLamp(0).getLight().direction, before);
}

TEST_F(StageTest, textsVanishWhenTheyAreEmpty)
{
    stage.showText("message", "words");
    EXPECT_EQ(stage.getTexts(), (std::map<std::string, std::string>{{"message", "words"}}));
    stage.showText("message", "");
    EXPECT_TRUE(stage.getTexts().empty());
}

TEST_F(StageTest, clearedStageIsAsAtTheStart)
{
    renderer.setLamp(false);
    const std::vector<Pixel> before = drawStage(stage);
    stage.addThing("ember", {0, 0, 3});
    stage.aimLamp(1, {0, 0, 6}, {0, 0, 0});
    stage.showText("message", "words");
    stage.setDusk(1);
    EXPECT_NE(drawStage(stage), before);
    stage.clear();
    EXPECT_TRUE(stage.getTexts().empty());
    EXPECT_EQ(drawStage(stage), before);
}

TEST_F(StageTest, emberHumsForWhoIsNear)
{
    RecordingAudioDevice device(8);
    GameData heardData(application.getEngine(), {XUM_DATA_DIRECTORY "/", ""});
    Soundscape heard(&device, heardData, scene, 1);
    GameStage humming(renderer, heard, heardData);
    const int near = humming.addThing("ember", {0, 5, 0});
    humming.addThing("ember", {0, 50, 0});
    humming.addThing("watcher", {0, 1, 0});
    const auto countStarts = [&](uint64 milliseconds) {
        device.takeNotes();
        humming.show();
        heard.update({}, milliseconds);
        int count = 0;
        for (const std::string& note : device.takeNotes())
            if (note.find("at 0 5 0, range 14, volume 0.35") != std::string::npos) ++count;
        return count;
    };
    EXPECT_EQ(countStarts(0), 1);
    EXPECT_EQ(countStarts(1499), 0);
    EXPECT_EQ(countStarts(1500), 1);
    humming.removeThing(near);
    EXPECT_EQ(countStarts(9000), 0);
}

TEST_F(StageTest, placesInAHillLieOnIt)
{
    auto land = std::make_shared<Terrain>(4, 4, 8);
    land->modify([](int, int, const Vector3<float>& point) { return point + Vector3<float>(0, 0, 3); }, 0);
    Scene hill;
    hill.land = land;
    hill.level = loadLevel(data, "gatehouse.map");
    SceneRenderer hillRenderer(application.getRenderDevice(), assets, hill);
    GameStage onHill(hillRenderer, sounds, data);
    EXPECT_EQ(onHill.countPlaces("item"), 12u);
    EXPECT_EQ(onHill.getPlace("item", 9), (Vector3<float>{0, -34, 0})); // beyond the hill
    EXPECT_EQ(onHill.getPlace("item", 1), (Vector3<float>{-6, 6, 3}));
    EXPECT_NEAR(onHill.getPlace("item", 8).z, 8.7f, 1e-5f); // above it
}
