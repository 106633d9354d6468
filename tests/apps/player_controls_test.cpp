#include "player_controls.h"

#include "engine_fixtures.h"

namespace {

class Controls : public InputFixture {
protected:
    void SetUp() override
    {
        InputFixture::SetUp();
        keys = std::make_unique<KeyBindings>(*input);
        controls = std::make_unique<PlayerControls>(*input, *keys);
    }

    void hold(std::initializer_list<SDL_Keycode> held)
    {
        for (const SDL_Keycode key :
             {SDLK_w, SDLK_a, SDLK_s, SDLK_d, SDLK_LSHIFT, SDLK_LEFT, SDLK_RIGHT, SDLK_UP, SDLK_DOWN, SDLK_SPACE})
            pushKeyUp(key);
        for (const SDL_Keycode key : held) pushKeyDown(key);
        engine->update();
    }

    void expectVelocity(const Viewpoint& camera, const Vector3<float>& expected)
    {
        const Vector3<float> velocity = controls->getVelocity(camera);
        EXPECT_NEAR(velocity.x, expected.x, 1e-4f);
        EXPECT_NEAR(velocity.y, expected.y, 1e-4f);
        EXPECT_EQ(velocity.z, 0);
    }

    std::unique_ptr<KeyBindings> keys;
    std::unique_ptr<PlayerControls> controls;
};

} // namespace

TEST_F(Controls, nobodyMovesWithoutAKey)
{
    hold({});
    expectVelocity({}, {0, 0, 0});
    EXPECT_FALSE(controls->wantsToJump());
    hold({SDLK_w, SDLK_s, SDLK_a, SDLK_d}); // each takes another's place
    expectVelocity({}, {0, 0, 0});
}

TEST_F(Controls, keysWalkAndShiftRuns)
{
    hold({SDLK_w});
    expectVelocity({}, {0, 3.2f, 0});
    hold({SDLK_s});
    expectVelocity({}, {0, -3.2f, 0});
    hold({SDLK_a});
    expectVelocity({}, {-3.2f, 0, 0});
    hold({SDLK_d, SDLK_LSHIFT});
    expectVelocity({}, {6.5f, 0, 0});
    hold({SDLK_w, SDLK_d}); // no faster aslant
    expectVelocity({}, {3.2f * std::sqrt(0.5f), 3.2f * std::sqrt(0.5f), 0});
}

TEST_F(Controls, wayIsLevelWhereverOneLooks)
{
    hold({SDLK_w});
    expectVelocity({{}, 90, 80}, {-3.2f, 0, 0});
}

TEST_F(Controls, arrowsTurnTheView)
{
    Viewpoint camera;
    hold({SDLK_LEFT, SDLK_UP});
    controls->look(camera, {}, 0.1f);
    EXPECT_NEAR(camera.yaw, 11, 1e-4f);
    EXPECT_NEAR(camera.pitch, 11, 1e-4f);
    hold({SDLK_RIGHT, SDLK_DOWN});
    controls->look(camera, {}, 0.2f);
    EXPECT_NEAR(camera.yaw, -11, 1e-4f);
    EXPECT_NEAR(camera.pitch, -11, 1e-4f);
}

TEST_F(Controls, mouseTurnsTheViewWhenItIsCaught)
{
    hold({});
    Viewpoint camera;
    controls->look(camera, {100, 50}, 0.1f);
    EXPECT_EQ(camera.yaw, 0);
    EXPECT_EQ(camera.pitch, 0);
    controls->setMouseCaught(true);
    EXPECT_TRUE(controls->isMouseCaught());
    controls->look(camera, {100, 50}, 0.1f);
    EXPECT_NEAR(camera.yaw, -12, 1e-4f);
    EXPECT_NEAR(camera.pitch, -6, 1e-4f);
    controls->setMouseCaught(false);
    controls->look(camera, {100, 50}, 0.1f);
    EXPECT_NEAR(camera.yaw, -12, 1e-4f);
}

TEST_F(Controls, nobodyLooksOverTheirHeadAndTurnsStaySmall)
{
    hold({});
    controls->setMouseCaught(true);
    Viewpoint camera;
    controls->look(camera, {2000, -2000}, 0.1f);
    EXPECT_EQ(camera.pitch, 89);
    EXPECT_NEAR(camera.yaw, 120, 1e-3f); // 240 to the right
    controls->look(camera, {0, 5000}, 0.1f);
    EXPECT_EQ(camera.pitch, -89);
    controls->setMouseCaught(false);
}

TEST_F(Controls, spaceJumps)
{
    hold({SDLK_SPACE});
    EXPECT_TRUE(controls->wantsToJump());
    hold({});
    EXPECT_FALSE(controls->wantsToJump());
}
