#include "flight.h"

#include "engine_fixtures.h"

#include <cmath>

namespace {

class Flight : public InputFixture {
protected:
    /// Where one second takes a camera that looks along +y from (0, 0, 10).
    Viewpoint flyOneSecond()
    {
        engine->update();
        Viewpoint camera;
        camera.position = {0, 0, 10};
        PilotedFlight(*input).move(camera, 1.0f);
        return camera;
    }

    void expectPosition(const Viewpoint& camera, const Vector3<float>& expected)
    {
        EXPECT_NEAR(camera.position.x, expected.x, 1e-4f);
        EXPECT_NEAR(camera.position.y, expected.y, 1e-4f);
        EXPECT_NEAR(camera.position.z, expected.z, 1e-4f);
    }
};

} // namespace

TEST_F(Flight, withoutInputTheCameraStays)
{
    expectPosition(flyOneSecond(), {0, 0, 10});
}

TEST_F(Flight, lettersMoveInAllSixDirections)
{
    const std::pair<SDL_Keycode, Vector3<float>> moves[] = {{'w', {0, 5, 10}}, {'s', {0, -5, 10}}, {'a', {-5, 0, 10}},
                                                            {'d', {5, 0, 10}}, {'e', {0, 0, 15}},  {'q', {0, 0, 5}}};
    for (const auto& [key, expected] : moves) {
        pushKeyDown(key);
        expectPosition(flyOneSecond(), expected);
        pushKeyUp(key);
    }
}

TEST_F(Flight, walkersGoLevelWhereTheCameraLooks)
{
    Viewpoint camera;
    camera.yaw = 90;
    camera.pitch = 80;
    pushKeyDown('w');
    engine->update();
    PilotedFlight flight(*input);
    const Vector3<float> slow = flight.getWalkingVelocity(camera);
    EXPECT_NEAR(slow.x, -2.5f, 1e-4f);
    EXPECT_NEAR(slow.y, 0, 1e-4f);
    EXPECT_NEAR(slow.z, 0, 1e-4f);
    EXPECT_FALSE(flight.wantsToJump());
    pushKeyDown(SDLK_LSHIFT);
    pushKeyDown('d');
    pushKeyDown('e');
    engine->update();
    EXPECT_NEAR(length(flight.getWalkingVelocity(camera)), 6, 1e-4f);
    EXPECT_TRUE(flight.wantsToJump());
}

TEST_F(Flight, diagonalFlightIsNotFaster)
{
    pushKeyDown('w');
    pushKeyDown('d');
    expectPosition(flyOneSecond(), {5 * std::sqrt(0.5f), 5 * std::sqrt(0.5f), 10});
}

TEST_F(Flight, oppositeKeysCancelOut)
{
    pushKeyDown('w');
    pushKeyDown('s');
    expectPosition(flyOneSecond(), {0, 0, 10});
}

TEST_F(Flight, eitherShiftIsFourTimesAsFast)
{
    for (const SDL_Keycode shift : {SDLK_LSHIFT, SDLK_RSHIFT}) {
        pushKeyDown('w');
        pushKeyDown(shift);
        expectPosition(flyOneSecond(), {0, 20, 10});
        pushKeyUp(shift);
    }
}

TEST_F(Flight, theGroundStopsTheCamera)
{
    pushKeyDown('q');
    pushKeyDown(SDLK_LSHIFT);
    expectPosition(flyOneSecond(), {0, 0, 0.5f});
}

TEST_F(Flight, arrowsLookAround)
{
    pushKeyDown(SDLK_LEFT);
    EXPECT_NEAR(flyOneSecond().yaw, 70, 1e-3f);
    pushKeyUp(SDLK_LEFT);
    pushKeyDown(SDLK_RIGHT);
    EXPECT_NEAR(flyOneSecond().yaw, -70, 1e-3f);
    pushKeyUp(SDLK_RIGHT);
    pushKeyDown(SDLK_UP);
    EXPECT_NEAR(flyOneSecond().pitch, 70, 1e-3f);
    pushKeyUp(SDLK_UP);
    pushKeyDown(SDLK_DOWN);
    EXPECT_NEAR(flyOneSecond().pitch, -70, 1e-3f);
}

TEST_F(Flight, lookingUpStopsBeforeTheZenith)
{
    pushKeyDown(SDLK_UP);
    engine->update();
    Viewpoint camera;
    PilotedFlight(*input).move(camera, 10.0f);
    EXPECT_NEAR(camera.pitch, 89, 1e-3f);
}

TEST_F(Flight, joystickAxesMove)
{
    pushJoystickAxis(0, 30000);
    expectPosition(flyOneSecond(), {5, 0, 10});
    pushJoystickAxis(0, -30000);
    expectPosition(flyOneSecond(), {-5, 0, 10});
    pushJoystickAxis(0, 0);
    pushJoystickAxis(1, -30000); // pushed away from the player
    expectPosition(flyOneSecond(), {0, 5, 10});
    pushJoystickAxis(1, 30000);
    expectPosition(flyOneSecond(), {0, -5, 10});
}

TEST_F(Flight, joystickButtonsRiseSinkAndHurry)
{
    pushJoystickButton(SDL_JOYBUTTONDOWN, 0);
    expectPosition(flyOneSecond(), {0, 0, 15});
    pushJoystickButton(SDL_JOYBUTTONUP, 0);
    pushJoystickButton(SDL_JOYBUTTONDOWN, 1);
    expectPosition(flyOneSecond(), {0, 0, 5});
    pushJoystickButton(SDL_JOYBUTTONUP, 1);
    pushJoystickButton(SDL_JOYBUTTONDOWN, 2);
    pushJoystickAxis(0, 30000);
    expectPosition(flyOneSecond(), {20, 0, 10});
}

TEST_F(Flight, fixedPathMovesAndKeepsTheFountainInView)
{
    const Viewpoint start = cameraOnFixedPath(0);
    const Viewpoint later = cameraOnFixedPath(2);
    EXPECT_NE(start.position, later.position);
    for (const Viewpoint& camera : {start, later})
        EXPECT_GT(dot(camera.getForward(), normalize(Vector3<float>(0, 0, 1.5f) - camera.position)), 0.95f);
}
