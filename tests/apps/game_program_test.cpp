#include "data_archive.h"
#include "golden_picture.h"
#include "own_directory.h"
#include "run_program.h"

#include <xum/render/image.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>

// Runs the game as its players do, who are replaced by sessions.

namespace {

namespace fs = std::filesystem;

class GameProgram : public ::testing::Test {
protected:
    void SetUp() override { enterOwnDirectory(); }
    void TearDown() override { fs::current_path(testDirectory()); }

    static std::string session(const std::string& name) { return " --play \"" XUM_SESSION_DIRECTORY "/" + name + "\""; }

    static ProgramRun play(const std::string& name, const std::string& arguments = "--fast --size 64x40")
    {
        return runProgram(XUM_GAME_PROGRAM, arguments + session(name));
    }

    static void expectFailure(const std::string& arguments, const std::string& message)
    {
        const ProgramRun run = play("title.txt", "--size 64x40 " + arguments);
        EXPECT_EQ(run.status, 3) << arguments;
        EXPECT_EQ(run.errors, "xum-game: " + message + "\n");
    }
};

} // namespace

TEST_F(GameProgram, drawsTheGoldenPictureOfTheTitle)
{
    const ProgramRun run = play("title.txt", "--size 320x180 --screenshot title.bmp");
    ASSERT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.output, "clock -, -, end: -\n");
    const std::unique_ptr<Image> actual(loadImage("title.bmp"));
    ASSERT_TRUE(actual);
    EXPECT_TRUE(matchesGoldenPicture("game-title", *actual, otherRenderer));
}

#ifndef _WIN32 // where the arithmetic may differ in the last place, and so may the way
TEST_F(GameProgram, drawsTheGoldenPictureOfTheWonGame)
{
    const ProgramRun run = play("whole_game.txt", "--fast --size 320x180 --screenshot won.bmp");
    ASSERT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.output, "clock 4:15, score 003750  best 003750  lives 3  embers 12/12, "
                          "end: All embers are safe!  Score 3750, best 3750.\n");
    const std::unique_ptr<Image> actual(loadImage("won.bmp"));
    ASSERT_TRUE(actual);
    EXPECT_TRUE(matchesGoldenPicture("game-won", *actual, otherRenderer));
}
#endif

TEST_F(GameProgram, fastRunEndsAsADrawnOne)
{
    ASSERT_EQ(play("first_steps.txt", "--size 64x40 --screenshot a.bmp").status, 0);
    const std::string drawn = fileContents("run-output.txt");
    ASSERT_EQ(play("first_steps.txt", "--fast --size 64x40 --screenshot b.bmp").status, 0);
    EXPECT_EQ(fileContents("run-output.txt"), drawn);
    EXPECT_EQ(fileContents("a.bmp"), fileContents("b.bmp"));
}

#ifndef _WIN32
TEST_F(GameProgram, nothingIsKeptWhenASessionIsPlayed)
{
    const ProgramRun run =
        runProgram("/usr/bin/env",
                   "XDG_CONFIG_HOME=\"$PWD/user\" \"" XUM_GAME_PROGRAM "\" --fast --size 64x40" + session("title.txt"));
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_FALSE(fs::exists("user"));
}
#endif

TEST_F(GameProgram, settingsChooseTheWindowUnlessTheCommandLineDoes)
{
    writeFileContents("game.cfg", "<game><width 300/><height 200/></game>");
    EXPECT_EQ(play("title.txt", "--fast --settings game.cfg").status, 0);
    EXPECT_NE(fileContents("game.cfg").find("<width 300/>\r\n   <height 200/>"), std::string::npos);
    EXPECT_EQ(play("title.txt", "--fast --settings game.cfg --size 400x300 --volume 40").status, 0);
    EXPECT_NE(fileContents("game.cfg")
                  .find("<width 400/>\r\n   <height 300/>\r\n   <full-screen no/>\r\n"
                        "   <volume 40/>"),
              std::string::npos)
        << fileContents("game.cfg");
}

TEST_F(GameProgram, oneByOnePixelsAreEnough)
{
    EXPECT_EQ(play("first_steps.txt", "--size 1x1").status, 0);
}

#ifndef _WIN32
TEST_F(GameProgram, soundIsNotNeeded)
{
    const ProgramRun run =
        runProgram("/usr/bin/env",
                   "SDL_AUDIODRIVER=invalid \"" XUM_GAME_PROGRAM "\" --fast --size 64x40" + session("first_steps.txt"));
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "clock 4:56, score 000100  best 000100  lives 3  embers 1/12, end: -\n");
}
#endif

TEST_F(GameProgram, missingPartsOfTheGameAreNamed)
{
    fs::copy(XUM_DATA_DIRECTORY, "data", fs::copy_options::recursive);
    for (const char* name : {"samples/ember.wav", "samples/caught.wav", "samples/hum.wav", "lisp/game.lisp",
                             "lisp/engine.lisp", "lisp/editor.lisp", "programs/halo.cfg", "shaders/halo.frag"}) {
        fs::rename("data/" + std::string(name), "away");
        expectFailure("--data data", "cannot read the file data/" + std::string(name));
        fs::rename("away", "data/" + std::string(name));
    }
    writeFileContents("data/samples/hum.wav", "mmmm");
    expectFailure("--data data", "cannot decode the sound data/samples/hum.wav");
}

TEST_F(GameProgram, mapsAndSessionsThatAreNoneAreNamed)
{
    writeFileContents("text.map", "a drawing");
    expectFailure("--map nowhere.map", "cannot read the map nowhere.map");
    expectFailure("--map .", "cannot read the map .");
    expectFailure("--map text.map", "the map text.map is no compiled map");
    writeFileContents("back.txt", "5 wheel 1\n4 wheel 1\n");
    const ProgramRun run = runProgram(XUM_GAME_PROGRAM, "--size 64x40 --play back.txt");
    EXPECT_EQ(run.status, 3);
    EXPECT_EQ(run.errors, "xum-game: back.txt:2: frames do not go back\n");
    EXPECT_EQ(runProgram(XUM_GAME_PROGRAM, "--size 64x40 --play nowhere.txt").errors,
              "xum-game: nowhere.txt: cannot be read\n");
    EXPECT_EQ(runProgram(XUM_GAME_PROGRAM, "--size 64x40 --play nowhere.txt").status, 3);
}

TEST_F(GameProgram, optionsThatExcludeEachOtherAreRefused)
{
    for (const char* arguments : {"--fast", "--play a.txt --frames 1", "--record a.txt --frames 1",
                                  "--record a.txt --play b.txt", "--map \"\"", "--settings \"\"", "--play", "--record"})
        EXPECT_EQ(runProgram(XUM_GAME_PROGRAM, arguments).status, 2) << arguments;
}

TEST_F(GameProgram, helpTellsHowToPlay)
{
    const std::string help = runProgram(XUM_GAME_PROGRAM, "--help").output;
    for (const char* part :
         {"Twelve Embers", "gather the embers", "--play", "--record", "--fast", "--map", "--settings", "--explore",
          "Left Shift", "Space", "Return", "F5", "joystick", "xum-engine/game.cfg"})
        EXPECT_NE(help.find(part), std::string::npos) << part;
}

TEST_F(GameProgram, archiveAloneIsPlayed)
{
    writeDataArchive("game.xum", XUM_DATA_DIRECTORY);
    const ProgramRun run = play("first_steps.txt", "--fast --size 64x40 --archive game.xum");
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(run.output, "clock 4:56, score 000100  best 000100  lives 3  embers 1/12, end: -\n");
}

#ifdef XUM_PROGRAM // it compiles the maps
namespace {

class OwnMap : public GameProgram {
protected:
    void SetUp() override
    {
        GameProgram::SetUp();
        for (const char* name : {"yard", "guarded_yard"}) {
            const ProgramRun run = runProgram(XUM_PROGRAM, "map compile \"" XUM_SESSION_DIRECTORY "/" +
                                                               std::string(name) + ".cfg\" " + name + ".map");
            ASSERT_EQ(run.status, 0) << run.errors;
        }
    }

    static void expectEnd(const std::string& map, const std::string& name, const std::string& end)
    {
        const ProgramRun run = play(name, "--fast --size 64x40 --map " + map);
        EXPECT_EQ(run.status, 0) << run.errors;
        EXPECT_EQ(run.errors, "");
        EXPECT_EQ(run.output, end + "\n");
    }
};

} // namespace

TEST_F(OwnMap, gameIsWon)
{
    expectEnd("yard.map", "yard_won.txt",
              "clock 4:58, score 003180  best 003180  lives 3  embers 2/2, end: All embers are safe!  Score 3180, "
              "best 3180.");
}

TEST_F(OwnMap, gameIsLostWhenNightFalls)
{
    expectEnd("yard.map", "wait.txt",
              "clock 0:00, score 000000  best 000000  lives 3  embers 0/2, end: Night has fallen.  Score 0, best 0.");
}

TEST_F(OwnMap, gameIsLostByWhoIsCaughtThreeTimes)
{
    expectEnd("guarded_yard.map", "wait.txt",
              "clock 4:07, score 000000  best 000000  lives 0  embers 0/2, end: Caught once too often.  Score 0, "
              "best 0.");
}

TEST_F(OwnMap, newGameForgetsAllButTheBestScore)
{
    expectEnd("yard.map", "yard_again.txt", "clock 4:57, score 000000  best 000100  lives 3  embers 0/2, end: -");
}

TEST_F(OwnMap, newRulesKeepTheGameAsItIs)
{
    expectEnd("yard.map", "yard_reload.txt", "clock 4:57, score 000100  best 000100  lives 3  embers 1/2, end: -");
}

TEST_F(OwnMap, drawsTheGoldenPictureOfTheLostGame)
{
    const ProgramRun run = play("wait.txt", "--fast --size 320x180 --screenshot lost.bmp --map guarded_yard.map");
    ASSERT_EQ(run.status, 0) << run.errors;
    const std::unique_ptr<Image> actual(loadImage("lost.bmp"));
    ASSERT_TRUE(actual);
    EXPECT_TRUE(matchesGoldenPicture("game-lost", *actual, otherRenderer));
}
#endif
