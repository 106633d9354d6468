#include "game_session.h"

#include "engine_fixtures.h"
#include "failure.h"
#include "file_contents.h"
#include "own_directory.h"
#include "run_program.h"
#include "script_data.h"
#include "world.h"

#include <xum/engine/window.h>

#include <gtest/gtest.h>

#include <functional>

// The loop of the game inside of the test's own process: what happens to the player, the window and the scripts while a
// session is played.

#ifdef XUM_PROGRAM // it compiles the map
namespace {

namespace fs = std::filesystem;

Uint32 quitLater(Uint32 /*interval*/, void* /*nothing*/)
{
    pushEvent(SDL_QUIT);
    return 0;
}

/// On a floor with two embers ahead of the start.
class GameLoop : public ::testing::Test {
protected:
    void SetUp() override
    {
        for (const int key : {SDLK_w, SDLK_e, SDLK_RETURN, SDLK_ESCAPE, SDLK_LSHIFT}) pushKeyUp(key);
        application.getEngine().update();
        application.getEngine().update();
    }

    static Options makeOptions()
    {
        Options options;
        options.size = {160, 120};
        options.settingsFile = "own-game.cfg";
        return options;
    }

    static Scene makeYard(GameData& data)
    {
        Scene scene = makeEmptyScene();
        if (runProgram(XUM_PROGRAM, "map compile \"" XUM_SESSION_DIRECTORY "/yard.cfg\" yard.map").status == 0)
            addOwnMap(scene, data, "yard.map");
        return scene;
    }

    static std::string makeData()
    {
        fs::remove_all("own-data");
        fs::copy(XUM_DATA_DIRECTORY, "own-data", fs::copy_options::recursive);
        fs::remove("own-game.cfg");
        return "own-data/";
    }

    /// Plays a session; what is to be done when a key of it goes down may be given by its name.
    std::string play(const std::string& session, int key = 0, const std::function<void()>& action = {})
    {
        writeFileContents("session.txt", session);
        options.sessionFile = "session.txt";
        options.pictureFile.clear();
        KeyAction keyAction = {key, action};
        if (action) SDL_AddEventWatch(watch, &keyAction);
        const std::string output = run();
        if (action) SDL_DelEventWatch(watch, &keyAction);
        return output;
    }

    /// What it writes to standard output; what goes to standard error is in `errors`.
    std::string run()
    {
        ::testing::internal::CaptureStdout();
        ::testing::internal::CaptureStderr();
        playGame(application, presentation, sounds, data, options);
        errors = ::testing::internal::GetCapturedStderr();
        return ::testing::internal::GetCapturedStdout();
    }

    struct KeyAction {
        int key;
        std::function<void()> action;
    };

    static int watch(void* user, SDL_Event* event)
    {
        const auto& wanted = *static_cast<KeyAction*>(user);
        if (event->type == SDL_KEYDOWN && event->key.keysym.sym == wanted.key) wanted.action();
        return 0;
    }

    Options options = makeOptions();
    std::string errors;
    Application application = Application("game", options.size);
    GameData data = GameData(application.getEngine(), {makeData(), ""});
    Assets assets = Assets(application.getRenderDevice(), data);
    Scene scene = makeYard(data);
    Soundscape sounds = Soundscape(application.getAudioDevice(), data, scene, 1);
    SceneRenderer renderer = SceneRenderer(application.getRenderDevice(), assets, scene);
    Presentation presentation = Presentation(application.getRenderDevice(), assets, data, renderer, sounds);
};

const std::string begin = "1 key down Return\n2 key up Return\n";
const std::string runOn = "2 key down W\n2 key down Left Shift\n";
const std::string stop = " key up W\n150 key up Left Shift\n";

} // namespace

TEST_F(GameLoop, changedRulesHaveAnEffectAtOnceAndNothingIsForgotten)
{
    const std::string session = begin + runOn + "60 key up W\n60 key up Left Shift\n70 key down F5\n71 key up F5\n";
    EXPECT_EQ(play(session + "130 wheel 0\n", SDLK_F5,
                   [] {
                       std::string rules = fileContents("own-data/lisp/game.lisp");
                       const std::string points = "(add-score 100)";
                       rules.replace(rules.find(points), points.size(), "(add-score 7000)");
                       writeFileContents("own-data/lisp/game.lisp", rules);
                   }),
              "clock 4:57, score 000100  best 000100  lives 3  embers 1/2, end: -\n");
    EXPECT_EQ(errors, "");
}

TEST_F(GameLoop, pointsOfChangedRulesCount)
{
    EXPECT_EQ(play(begin + runOn + "60 key down F5\n61 key up F5\n120" + stop, SDLK_F5,
                   [] {
                       std::string rules = fileContents("own-data/lisp/game.lisp");
                       const std::string points = "(add-score 100)";
                       rules.replace(rules.find(points), points.size(), "(add-score 7000)");
                       writeFileContents("own-data/lisp/game.lisp", rules);
                   }),
              "clock 4:58, score 010080  best 010080  lives 3  embers 2/2, end: All embers are safe!  "
              "Score 10080, best 10080.\n");
}

TEST_F(GameLoop, brokenRulesAreToldAndTheGameGoesOn)
{
    EXPECT_EQ(play(begin + runOn + "60 key down F5\n61 key up F5\n120" + stop, SDLK_F5,
                   [] { writeFileContents("own-data/lisp/game.lisp", "(define tick nowhere)"); }),
              "error: symbol 'nowhere' has no binding!\n"
              "clock 4:58, score 003180  best 003180  lives 3  embers 2/2, end: All embers are safe!  "
              "Score 3180, best 3180.\n");
    EXPECT_EQ(errors, "xum-game: error: symbol 'nowhere' has no binding!\n");
}

TEST_F(GameLoop, rulesThatFailInEachFrameAreToldOnce)
{
    const auto fail = [] {
        std::string rules = fileContents("own-data/lisp/game.lisp");
        const std::string place = "(forget-message elapsed)";
        rules.replace(rules.find(place), place.size(), place + " (print (/ 1 0))");
        writeFileContents("own-data/lisp/game.lisp", rules);
    };
    EXPECT_EQ(play(begin + runOn + "60 key down F5\n61 key up F5\n120" + stop, SDLK_F5, fail),
              "clock 4:58, score 003180  best 003180  lives 3  embers 2/2, end: All embers are safe!  "
              "Score 3180, best 3180.\n");
    EXPECT_EQ(errors, "xum-game: error: division by zero!\n");
}

TEST_F(GameLoop, rulesMayAskForNewOnes)
{
    const auto ask = [] {
        std::string rules = fileContents("own-data/lisp/game.lisp");
        const std::string place = "(forget-message elapsed)";
        std::string asking = rules;
        asking.replace(rules.find(place), place.size(), place + " (reload-rules)");
        writeFileContents("own-data/lisp/game.lisp", asking);
    };
    EXPECT_EQ(play(begin + runOn + "60 key down F5\n61 key up F5\n120" + stop, SDLK_F5, ask),
              "clock 4:58, score 003180  best 003180  lives 3  embers 2/2, end: All embers are safe!  "
              "Score 3180, best 3180.\n");
}

TEST_F(GameLoop, rulesThatCannotBeginLeadBackToTheTitle)
{
    std::string rules = fileContents("own-data/lisp/game.lisp");
    const std::string place = "(start-game)\n";
    rules.replace(rules.find(place), place.size(), "(nowhere)\n");
    writeFileContents("own-data/lisp/game.lisp", rules);
    EXPECT_EQ(play(begin + "10 wheel 0\n"), "clock -, -, end: -\n");
    EXPECT_EQ(errors, "xum-game: error: symbol 'nowhere' has no binding!\n");
}

TEST_F(GameLoop, windowMayChangeItsSizeWhileAGameIsPlayed)
{
    EXPECT_EQ(play(begin + runOn + "20 window 1 1\n30 window 300 20\n40 window 20 300\n50 window 400 300\n120" + stop),
              "clock 4:58, score 003180  best 003180  lives 3  embers 2/2, end: All embers are safe!  "
              "Score 3180, best 3180.\n");
    EXPECT_EQ(application.getWindow().getSize(), (Vector2<int>{400, 300}));
    EXPECT_NE(fileContents("own-game.cfg").find("<width 400/>\r\n   <height 300/>"), std::string::npos);
}

TEST_F(GameLoop, sizeThatIsTooSmallToPlayIsNotKept)
{
    play(begin + "20 window 30 30\n30 wheel 0\n");
    EXPECT_NE(fileContents("own-game.cfg").find("<width 1024/>\r\n   <height 768/>"), std::string::npos);
}

TEST_F(GameLoop, escapeLeadsToTheTitleAndThenOut)
{
    EXPECT_EQ(play(begin + "5 key down Escape\n6 key up Escape\n20 wheel 0\n"), "clock -, -, end: -\n");
    EXPECT_EQ(play("1 key down Escape\n2 key up Escape\n3 key down Return\n500 wheel 0\n"), "clock -, -, end: -\n");
}

TEST_F(GameLoop, closedWindowEndsTheGame)
{
    EXPECT_EQ(play(begin + runOn + "60 quit\n100000 wheel 0\n"),
              "clock 4:59, score 000100  best 000100  lives 3  embers 1/2, end: -\n");
}

TEST_F(GameLoop, afterTheEndReturnLeadsToTheTitle)
{
    const std::string won = begin + runOn + "120 key up W\n120 key up Left Shift\n";
    EXPECT_EQ(play(won + "150 key down Return\n151 key up Return\n160 wheel 0\n"), "clock -, -, end: -\n");
}

TEST_F(GameLoop, mouseTurnsThePlayer)
{
    // To the right by 90 degrees: no ember is there.
    EXPECT_EQ(play(begin + "2 motion 80 60 750 0\n" + runOn + "120" + stop),
              "clock 4:57, score 000000  best 000000  lives 3  embers 0/2, end: -\n");
    // And back.
    EXPECT_EQ(
        play(begin + "2 motion 80 60 750 0\n3 motion 80 60 -750 0\n4 key down W\n4 key down Left Shift\n120" + stop),
        "clock 4:58, score 003180  best 003180  lives 3  embers 2/2, end: All embers are safe!  "
        "Score 3180, best 3180.\n");
}

TEST_F(GameLoop, reboundKeyIsTheOnlyOneForItsAction)
{
    const std::string settings = "<game><keys><forwards E/></keys></game>";
    writeFileContents("own-game.cfg", settings);
    EXPECT_EQ(play(begin + runOn + "120" + stop), "clock 4:57, score 000000  best 000000  lives 3  embers 0/2, "
                                                  "end: -\n");
    EXPECT_EQ(play(begin + "2 key down E\n2 key down Left Shift\n120 key up E\n150 key up Left Shift\n"),
              "clock 4:58, score 003180  best 003180  lives 3  embers 2/2, end: All embers are safe!  "
              "Score 3180, best 3180.\n");
    EXPECT_NE(fileContents("own-game.cfg").find("<forwards E/>"), std::string::npos);
}

TEST_F(GameLoop, keysOfTheVolumeAreKept)
{
    play("1 key down PageDown\n2 key up PageDown\n3 key down PageDown\n4 key up PageDown\n5 key down N\n6 key up N\n");
    EXPECT_NE(fileContents("own-game.cfg").find("<volume 80/>\r\n   <mute yes/>"), std::string::npos)
        << fileContents("own-game.cfg");
    EXPECT_EQ(sounds.getVolume(), 0);
}

TEST_F(GameLoop, brokenSettingsAreToldAndStayAsTheyAre)
{
    writeFileContents("own-game.cfg", "<game><volume 30/>");
    play("1 wheel 0\n");
    EXPECT_EQ(errors.rfind("xum-game: the settings in own-game.cfg are broken: 1:", 0), 0u) << errors;
    EXPECT_EQ(fileContents("own-game.cfg"), "<game><volume 30/>");
}

TEST_F(GameLoop, settingsThatCannotBeWrittenAreTold)
{
    options.settingsFile = "nowhere/own-game.cfg";
    play("1 wheel 0\n");
    EXPECT_EQ(errors, "xum-game: the settings are not kept: cannot write nowhere/own-game.cfg: there is no directory "
                      "nowhere\n");
}

TEST_F(GameLoop, recordedSessionIsWhatWasDone)
{
    options.recordFile = "recorded.txt";
    const std::string done = begin + "3 motion 80 60 25 -5\n4 key down Left Shift\n5 key up Left Shift\n9 quit\n";
    const std::string end = play(done);
    EXPECT_EQ(fileContents("recorded.txt"), done);
    options.recordFile.clear();
    EXPECT_EQ(play(fileContents("recorded.txt")), end);
}

TEST_F(GameLoop, sessionThatIsNoneIsNamed)
{
    try {
        play("1 key sideways W\n");
        ADD_FAILURE();
    } catch (const Failure& failure) {
        ::testing::internal::GetCapturedStdout();
        ::testing::internal::GetCapturedStderr();
        EXPECT_STREQ(failure.what(), "session.txt:1: 'key sideways W' is not known");
        EXPECT_EQ(failure.getStatus(), ExitStatus::BrokenData);
    }
}

TEST_F(GameLoop, minimisedWindowWaitsUntilItIsRestored)
{
    options.settingsFile = "own-game.cfg";
    pushKeyDown(SDLK_RETURN);
    pushWindowEvent(SDL_WINDOWEVENT_MINIMIZED);
    SDL_AddTimer(300, quitLater, nullptr);
    run();
    EXPECT_FALSE(renderer.isLampShining(1));
    EXPECT_EQ(presentation.countDraws(), 0u); // nothing was drawn
    pushWindowEvent(SDL_WINDOWEVENT_MINIMIZED);
    pushWindowEvent(SDL_WINDOWEVENT_RESTORED);
    SDL_AddTimer(300, quitLater, nullptr);
    run();
    EXPECT_GT(presentation.countDraws(), 0u);
}
#endif
