#include "engine_fixtures.h"
#include "file_contents.h"
#include "own_directory.h"
#include "recorded_calls.h"

#include <xum/engine/game_engine.h>
#include <xum/engine/system_device.h>
#include <xum/engine/window.h>

#include <gtest/gtest.h>

#include <SDL.h>
#include <SDL_ttf.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <string>
#include <vector>

namespace {

using ::testing::ExitedWithCode;
using Lines = std::vector<std::string>;

std::string attribute(SDL_GLattr name, int value)
{
    return "SDL_GL_SetAttribute(" + std::to_string(name) + ", " + std::to_string(value) + ")";
}

class EngineStartup : public ::testing::Test {
protected:
    void SetUp() override
    {
        libraryAnswers() = {};
        recordedCalls().clear();
        linesBefore = logLines().size();
    }

    void TearDown() override { libraryAnswers() = {}; }

    /// The calls since the start of the test.
    static Lines calls() { return recordedCalls(); }

    /// The log lines since the start of the test.
    Lines newLines() const
    {
        Lines lines = logLines();
        lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(linesBefore));
        return lines;
    }

    /// A quit call made when `lines` lines had been logged since the start of the test.
    std::string quit(const std::string& library, std::size_t lines) const
    {
        return library + "_Quit() after " + std::to_string(linesBefore + lines) + " log lines";
    }

    static Lines shutdownCalls(const EngineStartup& test, std::size_t lines)
    {
        return {test.quit("TTF", lines), test.quit("SDLNet", lines), test.quit("SDL", lines)};
    }

private:
    std::size_t linesBefore = 0;
};

} // namespace

TEST_F(EngineStartup, startsTheLibrariesThenSetsTheContextAttributes)
{
    Engine* engine = initEngine(false);
    EXPECT_NE(engine, nullptr);
    EXPECT_EQ(
        calls(),
        (Lines{"SDL_Init(0x231)", "SDLNet_Init()", "IMG_Init(3)", "TTF_Init()", attribute(SDL_GL_RED_SIZE, 8),
               attribute(SDL_GL_GREEN_SIZE, 8), attribute(SDL_GL_BLUE_SIZE, 8), attribute(SDL_GL_ALPHA_SIZE, 8),
               attribute(SDL_GL_DEPTH_SIZE, 24), attribute(SDL_GL_STENCIL_SIZE, 8), attribute(SDL_GL_DOUBLEBUFFER, 1),
               attribute(SDL_GL_CONTEXT_MAJOR_VERSION, 3), attribute(SDL_GL_CONTEXT_MINOR_VERSION, 2),
               attribute(SDL_GL_CONTEXT_PROFILE_MASK, SDL_GL_CONTEXT_PROFILE_CORE)}));
    EXPECT_EQ(newLines(), Lines{"Engine initialized successfully."});
    shutdownEngine(engine);
}

TEST_F(EngineStartup, editorIsAnnouncedInTheLog)
{
    Engine* engine = initEngine(true);
    EXPECT_NE(engine, nullptr);
    EXPECT_EQ(newLines(), (Lines{"Running editor.", "Engine initialized successfully."}));
    shutdownEngine(engine);
}

TEST_F(EngineStartup, failureOfSDLIsNullAndNothingElseHappens)
{
    for (const int failure : {-1, -2}) {
        SetUp();
        libraryAnswers().sdlInit = {true, failure};
        EXPECT_EQ(initEngine(true), nullptr);
        EXPECT_EQ(calls(), Lines{"SDL_Init(0x231)"});
        EXPECT_EQ(newLines(), Lines{});
    }
}

TEST_F(EngineStartup, failureOfSDLDoesNotEvenCreateTheLog)
{
    const auto start = [] {
        enterOwnDirectory();
        setEnvironment("SDL_VIDEODRIVER", "nosuch");
        std::exit(initEngine(true) == nullptr && initGameEngine(true) == nullptr ? 0 : 1);
    };
    EXPECT_EXIT(start(), ExitedWithCode(0), "");
    EXPECT_FALSE(std::filesystem::exists(ownLogFile()));
}

TEST_F(EngineStartup, failureOfTheNetworkLibraryShutsSDLDownAndIsLogged)
{
    libraryAnswers().netInit = {true, -1};
    EXPECT_EQ(initEngine(true), nullptr);
    EXPECT_EQ(calls(), (Lines{"SDL_Init(0x231)", "SDLNet_Init()", quit("SDL", 0)}));
    EXPECT_EQ(newLines(), Lines{"Could not initialize SDL_Net!"});
    EXPECT_EQ(SDL_WasInit(0), 0u);
}

TEST_F(EngineStartup, anyResultOfTheImageLibraryButBothFormatsIsAFailure)
{
    for (const int formats : {0, 1, 2, 7, 11, 15, -1}) {
        SCOPED_TRACE(formats);
        SetUp();
        libraryAnswers().imageInit = {true, formats};
        EXPECT_EQ(initEngine(true), nullptr);
        EXPECT_EQ(calls(),
                  (Lines{"SDL_Init(0x231)", "SDLNet_Init()", "IMG_Init(3)", quit("SDLNet", 0), quit("SDL", 0)}));
        EXPECT_EQ(newLines(), Lines{"Could not initialize SDL_Image!"});
        EXPECT_EQ(SDL_WasInit(0), 0u);
    }
}

TEST_F(EngineStartup, failureOfTheFontLibraryLeavesTheImageLibraryUp)
{
    libraryAnswers().fontInit = {true, -1};
    EXPECT_EQ(initEngine(true), nullptr);
    EXPECT_EQ(calls(), (Lines{"SDL_Init(0x231)", "SDLNet_Init()", "IMG_Init(3)", "TTF_Init()", quit("SDLNet", 0),
                              quit("SDL", 0)}));
    EXPECT_EQ(newLines(), Lines{"Could not initialize SDL_TTF!"});
    EXPECT_EQ(SDL_WasInit(0), 0u);
}

TEST_F(EngineStartup, positiveResultsAreNoFailures)
{
    libraryAnswers().sdlInit = {true, 1};
    libraryAnswers().netInit = {true, 1};
    libraryAnswers().fontInit = {true, 1};
    Engine* engine = initEngine(false);
    EXPECT_NE(engine, nullptr);
    EXPECT_EQ(newLines(), Lines{"Engine initialized successfully."});
    shutdownEngine(engine);
}

TEST_F(EngineStartup, canBeTriedAgainAfterAFailure)
{
    libraryAnswers().fontInit = {true, -1};
    EXPECT_EQ(initEngine(false), nullptr);
    libraryAnswers() = {};
    Engine* engine = initEngine(false);
    ASSERT_NE(engine, nullptr);
    EXPECT_TRUE(engine->update());
    shutdownEngine(engine);
}

TEST_F(EngineStartup, shutdownEndsTheLibrariesInOrderAndNeverTheImageLibrary)
{
    Engine* engine = initEngine(false);
    recordedCalls().clear();
    shutdownEngine(engine);
    EXPECT_EQ(calls(), shutdownCalls(*this, 1));
    EXPECT_EQ(newLines(), Lines{"Engine initialized successfully."});
    EXPECT_EQ(SDL_WasInit(0), 0u);
    EXPECT_EQ(TTF_WasInit(), 0);
}

TEST_F(EngineStartup, shutdownOfNoEngineStillEndsTheLibraries)
{
    ASSERT_EQ(SDL_Init(SDL_INIT_VIDEO), 0);
    recordedCalls().clear();
    shutdownEngine(nullptr);
    EXPECT_EQ(calls(), shutdownCalls(*this, 0));
    EXPECT_EQ(SDL_WasInit(0), 0u);
    EXPECT_EQ(newLines(), Lines{});
}

TEST_F(EngineStartup, engineCanBeStartedAgainAfterAShutdown)
{
    for (int i = 0; i < 3; ++i) {
        Engine* engine = initEngine(false);
        ASSERT_NE(engine, nullptr);
        EXPECT_TRUE(engine->update());
        EXPECT_EQ(engine->getTime(), 0u) << "the clock is the engine's own";
        shutdownEngine(engine);
    }
}

TEST_F(EngineStartup, inputStateOutlivesTheEngine)
{
    Engine* engine = initEngine(false);
    pushKeyDown(SDLK_a);
    engine->update();
    shutdownEngine(engine);

    engine = initEngine(false);
    InputDevice* input = engine->createInputDevice(false);
    EXPECT_TRUE(input->isDown(SDLK_a));
    EXPECT_TRUE(input->wasPressed(SDLK_a)) << "no frame has begun since";
    pushKeyUp(SDLK_a);
    engine->update();
    EXPECT_FALSE(input->isDown(SDLK_a));
    engine->destroyInputDevice(input);
    shutdownEngine(engine);
}

TEST_F(EngineStartup, gameThatDoesNotStartIsNull)
{
    libraryAnswers().netInit = {true, -1};
    EXPECT_EQ(initGameEngine(false), nullptr);
    EXPECT_EQ(newLines(), Lines{"Could not initialize SDL_Net!"});
}

TEST_F(EngineStartup, gameIsAnEngineAWindowAndTheInputDevice)
{
    const char* setting = SDL_getenv("SDL_VIDEODRIVER");
    const std::string driver = setting != nullptr ? setting : "";
    setEnvironment("SDL_VIDEODRIVER", "dummy"); // no OpenGL driver that a leak checker would complain of
    GameEngine* game = initGameEngine(true);
    setEnvironment("SDL_VIDEODRIVER", driver.c_str());
    ASSERT_NE(game, nullptr);
    // What shutdown deliberately leaves over stays reachable for leak checkers.
    static const void* leftOver[3];
    leftOver[0] = game->getWindow();
    leftOver[1] = game->getSystemDevice();
    leftOver[2] = game->getInputDevice();
    EXPECT_EQ(std::count(std::begin(leftOver), std::end(leftOver), nullptr), 0);
    EXPECT_EQ(newLines(),
              (Lines{"Running editor.", "Engine initialized successfully.", "Input: found 0 joysticks/gamepads."}));

    recordedCalls().clear();
    shutdownGameEngine(game);
    EXPECT_EQ(calls(), shutdownCalls(*this, 3)) << "its devices are not destroyed";
    EXPECT_EQ(newLines().size(), 3u);
    EXPECT_EQ(SDL_WasInit(0), 0u);
}

TEST_F(EngineStartup, shutdownOfNoGameDoesNothing)
{
    ASSERT_EQ(SDL_Init(SDL_INIT_VIDEO), 0);
    recordedCalls().clear();
    shutdownGameEngine(nullptr);
    EXPECT_EQ(calls(), Lines{});
    EXPECT_NE(SDL_WasInit(SDL_INIT_VIDEO), 0u);
    SDL_Quit();
}
