#include "engine_fixtures.h"
#include "slots.h"

#include <limits>
#include <string>

namespace {

class InputDeviceImplementation : public InputFixture {};

} // namespace

TEST(InputDeviceSlots, areInTheirOrder)
{
    EXPECT_EQ(slotOf(&InputDevice::setRelativeMouseMode), 0);
    EXPECT_EQ(slotOf(&InputDevice::setJoystickDeadZone), 1);
    EXPECT_EQ(slotOf(&InputDevice::getMousePosition), 2);
    EXPECT_EQ(slotOf(&InputDevice::getMouseMovement), 3);
    EXPECT_EQ(slotOf(&InputDevice::wasPressed), 4);
    EXPECT_EQ(slotOf(&InputDevice::wasReleased), 5);
    EXPECT_EQ(slotOf(&InputDevice::isDown), 6);
    EXPECT_EQ(slotOf(&InputDevice::anyKeyPressed), 7);
    EXPECT_EQ(slotOf(&InputDevice::startRecording), 8);
    EXPECT_EQ(slotOf(&InputDevice::getEvents), 9);
    EXPECT_EQ(slotOf(&InputDevice::clearText), 10);
    EXPECT_EQ(slotOf(&InputDevice::getText), 11);
    EXPECT_EQ(slotOf(&InputDevice::getKeyName), 12);
    EXPECT_EQ(slotOf(&InputDevice::getKeyFromName), 13);
    EXPECT_EQ(placesOf<InputDevice>(), 14);
}

TEST(InputEventLayout, isTwoIntegers)
{
    EXPECT_EQ(sizeof(InputEvent), 8u);
    const InputEvent event = {97, 1};
    EXPECT_EQ(event.code, 97);
    EXPECT_EQ(event.released, 1);
}

TEST_F(InputDeviceImplementation, startsTextInput)
{
    SDL_StopTextInput();
    InputDevice* device = engine->createInputDevice(false);
    EXPECT_EQ(SDL_IsTextInputActive(), SDL_TRUE);
    engine->destroyInputDevice(device);
}

TEST_F(InputDeviceImplementation, keyNamesAreSDLsOwn)
{
    EXPECT_EQ(input->getKeyName(SDLK_SPACE), "Space");
    EXPECT_EQ(input->getKeyName(SDLK_F1), "F1");
    EXPECT_EQ(input->getKeyName(SDLK_a), "A");
    EXPECT_EQ(input->getKeyName(SDLK_KP_9), "Keypad 9");
}

TEST_F(InputDeviceImplementation, keyNamesAreNotMasked)
{
    EXPECT_EQ(input->getKeyName(58), ":");
    EXPECT_NE(input->getKeyName(KeyCode::MouseLeft), "") << "names a letter, not a mouse button";
}

TEST_F(InputDeviceImplementation, anyNumberHasASafeName)
{
    EXPECT_EQ(input->getKeyName(0), "");
    EXPECT_EQ(input->getKeyName(SDL_SCANCODE_TO_KEYCODE(511)), "");
    for (const int key : {-1, 528, 529, 1092, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
        EXPECT_EQ(input->getKeyName(key), SDL_GetKeyName(key)) << key;
}

TEST_F(InputDeviceImplementation, keysAreFoundByNameWhateverTheLetterCase)
{
    EXPECT_EQ(input->getKeyFromName("Space"), SDLK_SPACE);
    EXPECT_EQ(input->getKeyFromName("sPACE"), SDLK_SPACE);
    EXPECT_EQ(input->getKeyFromName("F1"), SDLK_F1);
    EXPECT_EQ(input->getKeyFromName("a"), SDLK_a);
    EXPECT_EQ(input->getKeyFromName("A"), SDLK_a);
    EXPECT_EQ(input->getKeyFromName("\xD1\x84"), 0x444);
}

TEST_F(InputDeviceImplementation, unknownNamesAreNoKey)
{
    EXPECT_EQ(input->getKeyFromName("no such key"), 0);
    EXPECT_EQ(input->getKeyFromName(""), 0);
}

TEST_F(InputDeviceImplementation, namesAndKeysLeadBackToEachOther)
{
    for (const SDL_Keycode key : {SDLK_SPACE, SDLK_RETURN, SDLK_F12, SDLK_LSHIFT, SDLK_KP_ENTER, SDLK_UP, SDLK_z})
        EXPECT_EQ(input->getKeyFromName(input->getKeyName(key)), key) << input->getKeyName(key);
}

TEST_F(InputDeviceImplementation, keyFoundByNameCanBeQueried)
{
    pushKeyDown(SDLK_F1);
    engine->update();
    EXPECT_TRUE(input->isDown(input->getKeyFromName("F1")));
}
