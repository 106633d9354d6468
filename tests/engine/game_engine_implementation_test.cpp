#include "engine_fixtures.h"
#include "own_directory.h"

#include <xum/engine/game_engine.h>
#include <xum/engine/system_device.h>
#include <xum/engine/window.h>

namespace {

/// A game that hands all its devices back, so that nothing is left over for the next test.
class GameEngineImplementation : public ::testing::Test {
protected:
    void start(bool editor)
    {
        game = initGameEngine(editor);
        ASSERT_NE(game, nullptr);
        ASSERT_NE(game->getEngine(), nullptr);
        ASSERT_NE(game->getWindow(), nullptr);
        ASSERT_NE(game->getWindow()->getHandle(), nullptr) << SDL_GetError();
        ASSERT_NE(game->getSystemDevice(), nullptr);
        ASSERT_NE(game->getInputDevice(), nullptr);
    }

    void TearDown() override
    {
        if (game == nullptr) return;
        Engine* engine = game->getEngine();
        engine->destroyInputDevice(game->getInputDevice());
        engine->destroySystemDevice(game->getSystemDevice());
        engine->destroyWindow(game->getWindow());
        shutdownGameEngine(game);
    }

    bool isWindow(Uint32 flag) { return (SDL_GetWindowFlags(game->getWindow()->getHandle()) & flag) != 0; }

    GameEngine* game = nullptr;
};

} // namespace

TEST_F(GameEngineImplementation, gameHasAFixedWindow)
{
    start(false);
    EXPECT_EQ(game->getWindow()->getTitle(), "Game");
    EXPECT_EQ(game->getWindow()->getSize(), Vector2<int>(1024, 768));
    EXPECT_FALSE(isWindow(SDL_WINDOW_RESIZABLE));
    EXPECT_FALSE(isWindow(SDL_WINDOW_FULLSCREEN));
}

TEST_F(GameEngineImplementation, editorHasAResizableWindow)
{
    start(true);
    EXPECT_EQ(game->getWindow()->getTitle(), "Game");
    EXPECT_EQ(game->getWindow()->getSize(), Vector2<int>(1024, 768));
    EXPECT_TRUE(isWindow(SDL_WINDOW_RESIZABLE));
    EXPECT_FALSE(isWindow(SDL_WINDOW_FULLSCREEN));
}

TEST_F(GameEngineImplementation, handsOutTheSameDevicesEachTime)
{
    start(false);
    EXPECT_EQ(game->getEngine(), game->getEngine());
    EXPECT_EQ(game->getWindow(), game->getWindow());
    EXPECT_EQ(game->getSystemDevice(), game->getSystemDevice());
    EXPECT_EQ(game->getInputDevice(), game->getInputDevice());
    EXPECT_EQ(game->getEngine()->getVersion(), "xum-engine 0.1 (build 0001)");
    game->getSystemDevice()->setClipboardText("text");
    EXPECT_EQ(game->getSystemDevice()->getClipboardText(), "text");
}

TEST_F(GameEngineImplementation, cursorIsShownAndTextInputIsOn)
{
    start(false);
    EXPECT_EQ(SDL_GetRelativeMouseMode(), SDL_FALSE);
    EXPECT_EQ(SDL_ShowCursor(SDL_QUERY), SDL_ENABLE);
    EXPECT_EQ(SDL_IsTextInputActive(), SDL_TRUE);
}

TEST_F(GameEngineImplementation, updateForwardsToTheEngine)
{
    start(false);
    pushKeyDown(SDLK_a);
    pushWindowEvent(SDL_WINDOWEVENT_CLOSE);
    EXPECT_TRUE(game->update());
    EXPECT_TRUE(game->getInputDevice()->wasPressed(SDLK_a));
    EXPECT_NE(game->getEngine()->getEvents(), nullptr);
    pushEvent(SDL_QUIT);
    EXPECT_FALSE(game->update());
    pushKeyUp(SDLK_a);
    EXPECT_TRUE(game->update());
}

TEST(GameEngineThatDoesNotStart, isNull)
{
    const auto tryIt = [] {
        enterOwnDirectory();
        setEnvironment("SDL_VIDEODRIVER", "nosuch");
        std::exit(initGameEngine(false) == nullptr ? 0 : 1);
    };
    EXPECT_EXIT(tryIt(), ::testing::ExitedWithCode(0), "");
}
