#include "engine_fixtures.h"

#include <xum/engine/window.h>

#include <string>

namespace {

class WindowImplementation : public EngineFixture {
protected:
    void TearDown() override
    {
        if (engine != nullptr) engine->destroyWindow(window);
        EngineFixture::TearDown();
    }

    void open(bool resizable, bool fullscreen)
    {
        window = engine->createWindow("A window", 320, 200, resizable, fullscreen);
        ASSERT_NE(window, nullptr);
        ASSERT_NE(window->getHandle(), nullptr) << SDL_GetError();
    }

    /// The flags that creation decides.
    Uint32 flags()
    {
        return SDL_GetWindowFlags(window->getHandle()) &
               (SDL_WINDOW_OPENGL | SDL_WINDOW_FULLSCREEN_DESKTOP | SDL_WINDOW_RESIZABLE | SDL_WINDOW_BORDERLESS |
                SDL_WINDOW_HIDDEN | SDL_WINDOW_ALLOW_HIGHDPI | SDL_WINDOW_ALWAYS_ON_TOP);
    }

    Window* window = nullptr;
};

/// Where the video driver knows no OpenGL, no window can be opened.
class WindowWithoutHandle : public EngineFixture {
protected:
    void SetUp() override
    {
        driver = SDL_getenv("SDL_VIDEODRIVER") != nullptr ? SDL_getenv("SDL_VIDEODRIVER") : "";
        setEnvironment("SDL_VIDEODRIVER", "dummy");
        EngineFixture::SetUp();
        ASSERT_FALSE(HasFatalFailure());
        window = engine->createWindow("A window", 320, 200, false, false);
        ASSERT_NE(window, nullptr);
    }

    void TearDown() override
    {
        if (engine != nullptr) engine->destroyWindow(window);
        EngineFixture::TearDown();
        setEnvironment("SDL_VIDEODRIVER", driver.c_str());
    }

    Window* window = nullptr;

private:
    std::string driver;
};

} // namespace

TEST_F(WindowImplementation, plainWindowHasAFixedSize)
{
    open(false, false);
    EXPECT_EQ(flags(), Uint32{SDL_WINDOW_OPENGL});
}

TEST_F(WindowImplementation, resizableWindowCanBeResized)
{
    open(true, false);
    EXPECT_EQ(flags(), Uint32{SDL_WINDOW_OPENGL | SDL_WINDOW_RESIZABLE});
}

TEST_F(WindowImplementation, fullscreenWindowHasTheResolutionOfTheDesktop)
{
    open(false, true);
    EXPECT_EQ(flags(), Uint32{SDL_WINDOW_OPENGL | SDL_WINDOW_FULLSCREEN_DESKTOP});
}

TEST_F(WindowImplementation, fullscreenWinsOverResizable)
{
    open(true, true);
    EXPECT_EQ(flags(), Uint32{SDL_WINDOW_OPENGL | SDL_WINDOW_FULLSCREEN_DESKTOP});
}

TEST_F(WindowImplementation, opensInTheMiddleOfTheScreen)
{
    open(false, false);
    SDL_Rect screen = {};
    ASSERT_EQ(SDL_GetDisplayBounds(0, &screen), 0);
    int x = -1;
    int y = -1;
    SDL_GetWindowPosition(window->getHandle(), &x, &y);
    EXPECT_EQ(x, screen.x + (screen.w - 320) / 2);
    EXPECT_EQ(y, screen.y + (screen.h - 200) / 2);
}

TEST_F(WindowImplementation, sizeIsTheDrawableSize)
{
    open(false, false);
    EXPECT_EQ(window->getSize(), Vector2<int>(320, 200));
    SDL_SetWindowSize(window->getHandle(), 400, 300);
    EXPECT_EQ(window->getSize(), Vector2<int>(400, 300));
}

TEST_F(WindowImplementation, titleCanBeReadAndChanged)
{
    open(false, false);
    EXPECT_EQ(window->getTitle(), "A window");
    window->setTitle("Gr\xC3\xB6\xC3\x9F"
                     "er");
    EXPECT_EQ(window->getTitle(), "Gr\xC3\xB6\xC3\x9F"
                                  "er");
    EXPECT_STREQ(SDL_GetWindowTitle(window->getHandle()), "Gr\xC3\xB6\xC3\x9F"
                                                          "er");
    window->setTitle("");
    EXPECT_EQ(window->getTitle(), "");
}

TEST_F(WindowImplementation, fullscreenCanBeSwitchedOnAndOff)
{
    open(true, false);
    window->setFullscreen(true);
    EXPECT_EQ(flags() & SDL_WINDOW_FULLSCREEN_DESKTOP, Uint32{SDL_WINDOW_FULLSCREEN_DESKTOP});
    window->setFullscreen(false);
    EXPECT_EQ(flags(), Uint32{SDL_WINDOW_OPENGL | SDL_WINDOW_RESIZABLE});
}

TEST_F(WindowImplementation, fullscreenWindowCanBecomeAWindow)
{
    open(false, true);
    window->setFullscreen(false);
    EXPECT_EQ(flags(), Uint32{SDL_WINDOW_OPENGL});
}

TEST_F(WindowImplementation, destroyingItDestroysTheWindowOfTheSystem)
{
    open(false, false);
    const Uint32 identifier = SDL_GetWindowID(window->getHandle());
    ASSERT_NE(SDL_GetWindowFromID(identifier), nullptr);
    engine->destroyWindow(window);
    window = nullptr;
    EXPECT_EQ(SDL_GetWindowFromID(identifier), nullptr);
}

TEST_F(WindowImplementation, opensAgainAfterTheEngineWasStartedAgain)
{
    for (int i = 0; i < 2; ++i) {
        open(false, false);
        engine->destroyWindow(window);
        window = nullptr;
        shutdownEngine(engine);
        engine = initEngine(false);
        ASSERT_NE(engine, nullptr);
    }
    open(false, false);
}

TEST_F(WindowWithoutHandle, hasNoSizeAndNoTitle)
{
    EXPECT_EQ(window->getHandle(), nullptr);
    EXPECT_EQ(window->getSize(), Vector2<int>(0, 0));
    EXPECT_EQ(window->getTitle(), "");
}

TEST_F(WindowWithoutHandle, ignoresEveryChange)
{
    window->setTitle("Another title");
    window->setFullscreen(true);
    window->setFullscreen(false);
    EXPECT_EQ(window->getHandle(), nullptr);
    EXPECT_EQ(window->getSize(), Vector2<int>(0, 0));
    EXPECT_EQ(window->getTitle(), "");
}
