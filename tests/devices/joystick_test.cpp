#include "engine_fixtures.h"
#include "file_contents.h"
#include "stand_ins.h"

#include <string>
#include <vector>

// Joysticks that SDL itself reports, here virtual ones.

namespace {

using Lines = std::vector<std::string>;

class Joystick : public InputFixture {
protected:
    void SetUp() override
    {
        InputFixture::SetUp();
        linesBefore = logLines().size();
    }

    void TearDown() override
    {
        refuseToOpenJoystick(-1);
        if (engine != nullptr)
            while (SDL_NumJoysticks() > 0 && SDL_JoystickDetachVirtual(0) == 0) continue;
        InputFixture::TearDown();
    }

    /// With six axes and six buttons. (A game controller's triggers would start at one end.)
    static void attach()
    {
        ASSERT_GE(SDL_JoystickAttachVirtual(SDL_JOYSTICK_TYPE_FLIGHT_STICK, 6, 6, 0), 0) << SDL_GetError();
    }

    Lines newLines() const
    {
        Lines lines = logLines();
        lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(linesBefore));
        return lines;
    }

private:
    std::size_t linesBefore = 0;
};

} // namespace

TEST_F(Joystick, noneIsFoundWithoutALineForEach)
{
    InputDevice* device = engine->createInputDevice(false);
    engine->destroyInputDevice(device);
    EXPECT_EQ(newLines(), Lines{"Input: found 0 joysticks/gamepads."});
}

TEST_F(Joystick, eachIsOpenedAndClosedWithALine)
{
    attach();
    attach();
    InputDevice* device = engine->createInputDevice(false);
    EXPECT_EQ(newLines(),
              (Lines{"Input: found 2 joysticks/gamepads.", "Input: joystick/gamepad 0 initialized successfully.",
                     "Input: joystick/gamepad 1 initialized successfully."}));
    SDL_Joystick* first = SDL_JoystickFromInstanceID(SDL_JoystickGetDeviceInstanceID(0));
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(SDL_JoystickGetAttached(first), SDL_TRUE);

    engine->destroyInputDevice(device);
    const Lines lines = newLines();
    ASSERT_EQ(lines.size(), 5u);
    EXPECT_EQ(lines[3], "Input: closing joystick/gamepad 0.");
    EXPECT_EQ(lines[4], "Input: closing joystick/gamepad 1.");
    EXPECT_EQ(SDL_JoystickFromInstanceID(SDL_JoystickGetDeviceInstanceID(0)), nullptr) << "it is closed";
    EXPECT_EQ(SDL_JoystickFromInstanceID(SDL_JoystickGetDeviceInstanceID(1)), nullptr);
}

TEST_F(Joystick, oneIsCountedInThePluralToo)
{
    attach();
    InputDevice* device = engine->createInputDevice(false);
    engine->destroyInputDevice(device);
    EXPECT_EQ(newLines().front(), "Input: found 1 joysticks/gamepads.");
}

TEST_F(Joystick, thatDoesNotOpenIsSkippedAndTheOthersAreClosedByTheirPlace)
{
    attach();
    attach();
    attach();
    refuseToOpenJoystick(1);
    InputDevice* device = engine->createInputDevice(false);
    ASSERT_NE(device, nullptr);
    engine->destroyInputDevice(device);
    EXPECT_EQ(newLines(),
              (Lines{"Input: found 3 joysticks/gamepads.", "Input: joystick/gamepad 0 initialized successfully.",
                     "Input: joystick/gamepad 2 initialized successfully.", "Input: closing joystick/gamepad 0.",
                     "Input: closing joystick/gamepad 1."}));
}

TEST_F(Joystick, isOpenUntilTheLastDeviceIsGone)
{
    attach();
    InputDevice* first = engine->createInputDevice(false);
    InputDevice* second = engine->createInputDevice(false);
    engine->destroyInputDevice(first);
    EXPECT_NE(SDL_JoystickFromInstanceID(SDL_JoystickGetDeviceInstanceID(0)), nullptr);
    engine->destroyInputDevice(second);
    EXPECT_EQ(SDL_JoystickFromInstanceID(SDL_JoystickGetDeviceInstanceID(0)), nullptr);
}

TEST_F(Joystick, buttonsReachTheKeyTable)
{
    attach();
    InputDevice* device = engine->createInputDevice(false);
    SDL_Joystick* joystick = SDL_JoystickFromInstanceID(SDL_JoystickGetDeviceInstanceID(0));
    ASSERT_NE(joystick, nullptr);
    engine->update();
    for (int button = 0; button < 6; ++button) {
        SCOPED_TRACE(button);
        const std::string key = button < 4 ? std::to_string(525 + button) : "0";
        SDL_JoystickSetVirtualButton(joystick, button, SDL_PRESSED);
        engine->update();
        EXPECT_EQ(changedKeys(), key + ": pressed down\n");
        SDL_JoystickSetVirtualButton(joystick, button, SDL_RELEASED);
        engine->update();
        EXPECT_EQ(changedKeys(), key + ": released\n");
        engine->update();
    }
    engine->destroyInputDevice(device);
}

TEST_F(Joystick, axesReachTheKeyTable)
{
    attach();
    InputDevice* device = engine->createInputDevice(false);
    SDL_Joystick* joystick = SDL_JoystickFromInstanceID(SDL_JoystickGetDeviceInstanceID(0));
    ASSERT_NE(joystick, nullptr);
    engine->update();
    for (int axis = 0; axis < 6; ++axis) {
        SCOPED_TRACE(axis);
        const std::string negative = axis % 2 == 0 ? "521" : "523";
        const std::string positive = axis % 2 == 0 ? "522" : "524";
        SDL_JoystickSetVirtualAxis(joystick, axis, 30000);
        engine->update();
        EXPECT_EQ(changedKeys(), positive + ": pressed down\n");
        SDL_JoystickSetVirtualAxis(joystick, axis, -30000);
        engine->update();
        EXPECT_EQ(changedKeys(), negative + ": pressed down\n" + positive + ": released\n");
        SDL_JoystickSetVirtualAxis(joystick, axis, 0);
        engine->update();
        EXPECT_EQ(changedKeys(), negative + ": released\n");
        engine->update();
    }
    engine->destroyInputDevice(device);
}
