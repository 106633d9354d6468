#include "engine_fixtures.h"
#include "stand_ins.h"

#include <string>
#include <vector>

namespace {

using Calls = std::vector<std::string>;

/// Of the video drivers without a display, only this one has a relative mouse mode.
class Mouse : public InputFixture {
protected:
    void SetUp() override
    {
        const char* setting = SDL_getenv("SDL_VIDEODRIVER");
        driver = setting != nullptr ? setting : "";
        setEnvironment("SDL_VIDEODRIVER", "dummy");
        InputFixture::SetUp();
        ASSERT_FALSE(HasFatalFailure());
        input->getMouseMovement();
        mouseCalls().clear();
    }

    void TearDown() override
    {
        if (input != nullptr) input->setRelativeMouseMode(false);
        InputFixture::TearDown();
        setEnvironment("SDL_VIDEODRIVER", driver.c_str());
    }

private:
    std::string driver;
};

} // namespace

TEST_F(Mouse, relativeModeHidesTheCursorThenConfinesItThenDropsTheMotionSoFar)
{
    moveMouseBy(10, 20);
    input->setRelativeMouseMode(true);
    EXPECT_EQ(mouseCalls(), (Calls{"SDL_ShowCursor(0)", "SDL_SetRelativeMouseMode(1)", "SDL_GetRelativeMouseState()"}));
    EXPECT_EQ(SDL_GetRelativeMouseMode(), SDL_TRUE);
    EXPECT_EQ(SDL_ShowCursor(SDL_QUERY), SDL_DISABLE);
    EXPECT_EQ(input->getMouseMovement(), Vector2<int>(0, 0));
}

TEST_F(Mouse, leavingTheRelativeModeShowsTheCursorLastAndKeepsTheMotion)
{
    input->setRelativeMouseMode(true);
    mouseCalls().clear();
    moveMouseBy(10, 20);
    input->setRelativeMouseMode(false);
    EXPECT_EQ(mouseCalls(), (Calls{"SDL_SetRelativeMouseMode(0)", "SDL_ShowCursor(1)"}));
    EXPECT_EQ(SDL_GetRelativeMouseMode(), SDL_FALSE);
    EXPECT_EQ(SDL_ShowCursor(SDL_QUERY), SDL_ENABLE);
    EXPECT_EQ(input->getMouseMovement(), Vector2<int>(10, 20));
}

TEST_F(Mouse, deviceIsCreatedInTheModeItIsAskedFor)
{
    InputDevice* second = engine->createInputDevice(true);
    EXPECT_EQ(SDL_GetRelativeMouseMode(), SDL_TRUE);
    InputDevice* third = engine->createInputDevice(false);
    EXPECT_EQ(SDL_GetRelativeMouseMode(), SDL_FALSE);
    engine->destroyInputDevice(third);
    engine->destroyInputDevice(second);
}

TEST_F(Mouse, destroyingADeviceLeavesTheModeAsItIs)
{
    InputDevice* second = engine->createInputDevice(true);
    engine->destroyInputDevice(second);
    EXPECT_EQ(SDL_GetRelativeMouseMode(), SDL_TRUE);
}

TEST_F(Mouse, movementIsCountedSinceThePreviousQuery)
{
    EXPECT_EQ(input->getMouseMovement(), Vector2<int>(0, 0));
    moveMouseBy(10, -5);
    moveMouseBy(1, -5);
    EXPECT_EQ(input->getMouseMovement(), Vector2<int>(11, -10));
    EXPECT_EQ(input->getMouseMovement(), Vector2<int>(0, 0));
}

TEST_F(Mouse, positionIsInPixelsOfTheWindow)
{
    SDL_Window* window = SDL_CreateWindow("A window", 0, 0, 300, 200, 0);
    ASSERT_NE(window, nullptr) << SDL_GetError();
    engine->update();
    SDL_WarpMouseInWindow(window, 120, 80);
    EXPECT_EQ(input->getMousePosition(), Vector2<int>(120, 80));
    SDL_WarpMouseInWindow(window, 7, 9);
    EXPECT_EQ(input->getMousePosition(), Vector2<int>(7, 9));
    EXPECT_EQ(input->getMousePosition(), Vector2<int>(7, 9));
    SDL_DestroyWindow(window);
}
