#include "engine_fixtures.h"
#include "own_directory.h"

#include <cstdlib>
#include <limits>
#include <string>

// How the motion of an axis becomes key presses; part of the input state.

namespace {

constexpr int smallestInt = std::numeric_limits<int>::min();
constexpr int largestInt = std::numeric_limits<int>::max();

class JoystickAxis : public InputFixture {
protected:
    void SetUp() override
    {
        InputFixture::SetUp();
        ASSERT_FALSE(HasFatalFailure());
        input->startRecording();
    }

    /// The key changes that moving the first axis brings.
    std::string changesAtValue(int value, Uint8 axis = 0)
    {
        pushJoystickAxis(axis, static_cast<Sint16>(value));
        engine->update();
        return recordedKeys();
    }
};

} // namespace

TEST_F(JoystickAxis, valueEqualToTheDeadZoneCountsAsCentred)
{
    EXPECT_EQ(changesAtValue(20000), "");
    EXPECT_EQ(changesAtValue(-20000), "");
    EXPECT_EQ(changesAtValue(20001), "+522");
    EXPECT_EQ(changesAtValue(20000), "-522");
    EXPECT_EQ(changesAtValue(-20001), "+521");
    EXPECT_EQ(changesAtValue(-20000), "-521");
}

TEST_F(JoystickAxis, everyMotionOutsideTheDeadZonePressesAgain)
{
    EXPECT_EQ(changesAtValue(25000), "+522");
    EXPECT_EQ(changesAtValue(26000), "+522");
    EXPECT_TRUE(input->wasPressed(522));
    EXPECT_EQ(changesAtValue(32767), "+522");
    EXPECT_EQ(changesAtValue(0), "-522");
    EXPECT_EQ(changesAtValue(1), "");
    EXPECT_EQ(changesAtValue(-25000), "+521");
    EXPECT_EQ(changesAtValue(-32768), "+521");
    EXPECT_EQ(changesAtValue(0), "-521");
}

TEST_F(JoystickAxis, straightToTheOtherSideReleasesFirst)
{
    EXPECT_EQ(changesAtValue(-30000), "+521");
    EXPECT_EQ(changesAtValue(30000), "-521 +522");
    EXPECT_EQ(stateOf(521), "released");
    EXPECT_EQ(stateOf(522), "pressed down");
    EXPECT_EQ(changesAtValue(-30000), "-522 +521");
}

TEST_F(JoystickAxis, axesKeepTheirDirectionsApart)
{
    EXPECT_EQ(changesAtValue(-30000, 0), "+521");
    EXPECT_EQ(changesAtValue(30000, 1), "+524");
    EXPECT_EQ(changesAtValue(0, 0), "-521");
    EXPECT_EQ(changesAtValue(-30000, 1), "-524 +523");
    EXPECT_EQ(changesAtValue(0, 3), "-523") << "an odd axis acts as the second";
    EXPECT_EQ(changesAtValue(30000, 4), "+522") << "an even one as the first";
}

TEST_F(JoystickAxis, deadZoneCanBeChanged)
{
    input->setJoystickDeadZone(0);
    EXPECT_EQ(changesAtValue(1), "+522");
    EXPECT_EQ(changesAtValue(0), "-522");
    EXPECT_EQ(changesAtValue(-1), "+521");
    input->setJoystickDeadZone(32767);
    EXPECT_EQ(changesAtValue(-2), "-521") << "compared at the next motion";
    EXPECT_EQ(changesAtValue(32767), "");
    EXPECT_EQ(changesAtValue(-32768), "+521");
    input->setJoystickDeadZone(32768);
    EXPECT_EQ(changesAtValue(-32768), "-521");
}

TEST_F(JoystickAxis, largestDeadZoneIsNeverLeft)
{
    input->setJoystickDeadZone(largestInt);
    EXPECT_EQ(changesAtValue(32767), "");
    EXPECT_EQ(changesAtValue(-32768), "");
}

TEST_F(JoystickAxis, negativeDeadZoneHasNoCentreAndThePositiveSideGoesFirst)
{
    input->setJoystickDeadZone(-100);
    EXPECT_EQ(changesAtValue(0), "+522");
    EXPECT_EQ(changesAtValue(-99), "+522");
    EXPECT_EQ(changesAtValue(-100), "-522 +521");
    EXPECT_EQ(changesAtValue(100), "-521 +522");
}

TEST_F(JoystickAxis, smallestDeadZoneMakesEveryValuePositive)
{
    input->setJoystickDeadZone(smallestInt);
    EXPECT_EQ(changesAtValue(0), "+522");
    EXPECT_EQ(changesAtValue(-32768), "+522");
    EXPECT_EQ(changesAtValue(32767), "+522");
}

TEST_F(JoystickAxis, deadZoneIsSharedByAllInputDevices)
{
    input->setJoystickDeadZone(10);
    InputDevice* second = engine->createInputDevice(false);
    EXPECT_EQ(changesAtValue(11), "+522") << "a new device does not reset it";
    second->setJoystickDeadZone(1000);
    EXPECT_EQ(changesAtValue(11), "-522");
    engine->destroyInputDevice(second);
}

namespace {

/// In a process where nobody has set the dead zone.
[[noreturn]] void exitWithTheDefaultDeadZone()
{
    enterOwnDirectory();
    Engine* engine = initEngine(false);
    InputDevice* input = engine->createInputDevice(false);
    const auto isPressedAt = [&](Sint16 value) {
        pushJoystickAxis(0, value);
        engine->update();
        return input->isDown(KeyCode::JoystickAxis0Positive);
    };
    std::_Exit(!isPressedAt(20000) && isPressedAt(20001) ? 0 : 1);
}

} // namespace

TEST(JoystickDeadZone, is20000AtTheStart)
{
    EXPECT_EXIT(exitWithTheDefaultDeadZone(), ::testing::ExitedWithCode(0), "");
}
