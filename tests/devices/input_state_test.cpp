#include "engine_fixtures.h"
#include "own_directory.h"

#include <limits>
#include <string>
#include <vector>

// The process-wide input state, fed by the frame pump and read through the input device.

namespace {

constexpr int smallestInt = std::numeric_limits<int>::min();
constexpr int largestInt = std::numeric_limits<int>::max();

class KeyState : public InputFixture {};

class Recording : public InputFixture {};

class TypedText : public InputFixture {};

} // namespace

TEST_F(KeyState, keyPressedAndReleasedInOneFrameShowsBoth)
{
    pushKeyDown(SDLK_a);
    pushKeyUp(SDLK_a);
    engine->update();
    EXPECT_EQ(stateOf(SDLK_a), "pressed released");
    engine->update();
    EXPECT_EQ(stateOf(SDLK_a), "");
}

TEST_F(KeyState, keyIsPressedInOneFrameAndDownUntilItsRelease)
{
    pushKeyDown(SDLK_a);
    engine->update();
    EXPECT_EQ(stateOf(SDLK_a), "pressed down");
    for (int frame = 0; frame < 3; ++frame) {
        engine->update();
        EXPECT_EQ(stateOf(SDLK_a), "down");
    }
    pushKeyUp(SDLK_a);
    engine->update();
    EXPECT_EQ(stateOf(SDLK_a), "released");
    engine->update();
    EXPECT_EQ(stateOf(SDLK_a), "");
}

TEST_F(KeyState, keyReleasedAndPressedInOneFrameStaysDown)
{
    pushKeyDown(SDLK_a);
    engine->update();
    pushKeyUp(SDLK_a);
    pushKeyDown(SDLK_a);
    engine->update();
    EXPECT_EQ(stateOf(SDLK_a), "pressed released down");
}

TEST_F(KeyState, releaseOfAKeyThatWasNotDownStillShows)
{
    pushKeyUp(SDLK_a);
    engine->update();
    EXPECT_EQ(stateOf(SDLK_a), "released");
}

TEST_F(KeyState, queriesTakeAnSDLKeycodeOrTheMaskedOne)
{
    pushKeyDown(SDLK_F1);
    engine->update();
    EXPECT_EQ(stateOf(SDLK_F1), "pressed down");
    EXPECT_EQ(stateOf(58), "pressed down");
    EXPECT_EQ(stateOf(':'), "pressed down");
    EXPECT_EQ(stateOf(SDLK_F2), "");
    EXPECT_EQ(stateOf(KeyCode::MouseLeft | KeyCode::ScancodeMask), "");
    pushMouseButton(SDL_MOUSEBUTTONDOWN, SDL_BUTTON_LEFT);
    engine->update();
    EXPECT_EQ(stateOf(KeyCode::MouseLeft | KeyCode::ScancodeMask), "pressed down");
}

TEST_F(KeyState, scancodeKeysShareTheirStateWithTheCharacterOfTheSameNumber)
{
    const struct {
        SDL_Keycode key;
        int folded;
    } keys[] = {{SDLK_F1, ':'},   {SDLK_CAPSLOCK, '9'}, {SDLK_KP_9, 'a'}, {SDLK_KP_0, 'b'},
                {SDLK_MENU, 'v'}, {SDLK_LCTRL, 0xE0},   {SDLK_UP, 82},    {SDLK_KP_PLUS, 'W'}};
    for (const auto& [key, folded] : keys) {
        SCOPED_TRACE(folded);
        pushKeyDown(key);
        engine->update();
        EXPECT_EQ(changedKeys(), std::to_string(folded) + ": pressed down\n");
        pushKeyUp(folded);
        engine->update();
        EXPECT_EQ(changedKeys(), std::to_string(folded) + ": released\n");
        engine->update();
    }
}

TEST_F(KeyState, codesOutsideTheTableAreNeverDown)
{
    for (int key = 0; key < KeyCode::Count; ++key) pushKeyDown(key);
    engine->update();
    EXPECT_EQ(stateOf(0), "pressed down");
    EXPECT_EQ(stateOf(528), "pressed down");
    for (const int key : {529, 529 | KeyCode::ScancodeMask, 1092, largestInt, -1, -529, smallestInt}) {
        SCOPED_TRACE(key);
        EXPECT_EQ(stateOf(key), "");
    }
}

TEST_F(KeyState, anyKeyPressedIsAboutThisFrameAndTheWholeTable)
{
    EXPECT_FALSE(input->anyKeyPressed());
    for (const int key : {0, 97, 511, 528}) {
        SCOPED_TRACE(key);
        pushKeyDown(key);
        engine->update();
        EXPECT_TRUE(input->anyKeyPressed());
        engine->update();
        EXPECT_FALSE(input->anyKeyPressed()) << "held is not pressed";
        pushKeyUp(key);
        engine->update();
        EXPECT_FALSE(input->anyKeyPressed()) << "nor is released";
    }
}

TEST_F(KeyState, everyKeyOfTheTableIsItsOwn)
{
    for (int key = 0; key < KeyCode::Count; ++key) {
        SCOPED_TRACE(key);
        pushKeyDown(key);
        engine->update();
        ASSERT_EQ(changedKeys(), std::to_string(key) + ": pressed down\n");
        pushKeyUp(key);
        engine->update();
        engine->update();
    }
}

TEST_F(KeyState, isSharedByAllInputDevicesAndOutlivesThem)
{
    InputDevice* second = engine->createInputDevice(false);
    pushKeyDown(SDLK_a);
    engine->update();
    EXPECT_TRUE(second->isDown(SDLK_a));
    engine->destroyInputDevice(second);
    EXPECT_TRUE(input->isDown(SDLK_a));
    second = engine->createInputDevice(false);
    EXPECT_TRUE(second->isDown(SDLK_a));
    engine->destroyInputDevice(second);
}

TEST_F(Recording, doesNotHappenUnlessItWasStarted)
{
    const auto play = [] { // in a process of its own: nothing ends a recording
        enterOwnDirectory();
        Engine* engine = initEngine(false);
        InputDevice* input = engine->createInputDevice(false);
        pushKeyDown(SDLK_a);
        engine->update();
        std::vector<InputEvent> events(3);
        input->getEvents(events);
        const bool isNothingRecorded = events.empty();
        input->startRecording();
        input->getEvents(events);
        const bool isStillNothingRecorded = events.empty();
        pushKeyUp(SDLK_a);
        engine->update();
        input->getEvents(events);
        const bool isOneRecorded = events.size() == 1 && events[0].code == 97 && events[0].released == 1;
        engine->destroyInputDevice(input);
        shutdownEngine(engine);
        std::exit(isNothingRecorded && isStillNothingRecorded && isOneRecorded ? 0 : 1);
    };
    EXPECT_EXIT(play(), ::testing::ExitedWithCode(0), "");
}

TEST_F(Recording, keepsPressesAndReleasesInOrderOfArrival)
{
    input->startRecording();
    pushKeyDown(SDLK_a);
    pushMouseButton(SDL_MOUSEBUTTONDOWN, SDL_BUTTON_RIGHT);
    pushKeyUp(SDLK_a);
    pushKey(SDL_KEYDOWN, SDLK_a, true);
    pushWheel(0, 1);
    pushJoystickButton(SDL_JOYBUTTONDOWN, 3);
    engine->update();
    EXPECT_EQ(recordedKeys(), "+97 +513 -97 +97 +520 -520 +528");
}

TEST_F(Recording, holdsMaskedCodes)
{
    input->startRecording();
    pushKeyDown(SDLK_F1);
    pushKeyUp(SDLK_F1);
    engine->update();
    EXPECT_EQ(recordedKeys(), "+58 -58");
}

TEST_F(Recording, goesOnOverFramesUntilItIsTaken)
{
    input->startRecording();
    pushKeyDown(SDLK_a);
    engine->update();
    engine->update();
    pushKeyUp(SDLK_a);
    engine->update();
    EXPECT_EQ(recordedKeys(), "+97 -97");
    EXPECT_EQ(recordedKeys(), "") << "taking empties it";
}

TEST_F(Recording, replacesWhatTheListHeld)
{
    input->startRecording();
    pushKeyDown(SDLK_a);
    engine->update();
    std::vector<InputEvent> events(5, InputEvent{1, 1});
    input->getEvents(events);
    ASSERT_EQ(events.size(), 1u);
    EXPECT_EQ(events[0].code, 97);
    EXPECT_EQ(events[0].released, 0);
    input->getEvents(events);
    EXPECT_TRUE(events.empty());
}

TEST_F(Recording, isNotEndedByAnotherDeviceOrASecondStart)
{
    input->startRecording();
    pushKeyDown(SDLK_a);
    engine->update();
    InputDevice* second = engine->createInputDevice(false);
    second->startRecording();
    engine->destroyInputDevice(second);
    pushKeyUp(SDLK_a);
    engine->update();
    EXPECT_EQ(recordedKeys(), "+97 -97");
}

TEST_F(TypedText, isTakenOnce)
{
    pushText("abc");
    engine->update();
    EXPECT_EQ(typedText(), "abc");
    EXPECT_EQ(typedText(), "");
}

TEST_F(TypedText, replacesWhatTheListHeld)
{
    pushText("a");
    engine->update();
    std::vector<unsigned int> characters(40, 7);
    input->getText(characters);
    EXPECT_EQ(characters, std::vector<unsigned int>{'a'});
    input->getText(characters);
    EXPECT_TRUE(characters.empty());
}

TEST_F(TypedText, isKeptOverFrames)
{
    pushText("a");
    engine->update();
    engine->update();
    pushText("b");
    engine->update();
    EXPECT_EQ(typedText(), "ab");
}

TEST_F(TypedText, canBeDiscarded)
{
    pushText("abc");
    engine->update();
    input->clearText();
    EXPECT_EQ(typedText(), "");
    pushText("d");
    engine->update();
    EXPECT_EQ(typedText(), "d");
}

TEST_F(TypedText, holdsThirtyTwoCharactersAndDropsTheOldest)
{
    const std::string first = "abcdefghijklmnopqrstuvwxyz012345";
    ASSERT_EQ(first.size(), 32u);
    const auto type = [this](const std::string& text) { // SDL sends at most 31 bytes at once
        for (const char character : text) pushText(std::string(1, character).c_str());
        engine->update();
    };
    type(first);
    EXPECT_EQ(typedText(), first);
    type(first + "6");
    EXPECT_EQ(typedText(), first.substr(1) + "6");
    type(first + first + "789");
    EXPECT_EQ(typedText(), first.substr(3) + "789");
}

TEST_F(TypedText, outsideAsciiAddsNothing)
{
    pushText("\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80"); // of two, three and four bytes
    engine->update();
    EXPECT_EQ(typedText(), "");
    pushText("\xFF\x80x"); // not even UTF-8
    engine->update();
    EXPECT_EQ(typedText(), "x");
}

TEST_F(TypedText, outsideAsciiTakesNoPlaceInFullText)
{
    for (int i = 0; i < 32; ++i) pushText(i == 0 ? "a" : "b");
    for (int i = 0; i < 10; ++i) pushText("\xC3\xA4");
    engine->update();
    EXPECT_EQ(typedText(), "a" + std::string(31, 'b'));
}

TEST_F(TypedText, isSharedByAllInputDevicesAndOutlivesThem)
{
    InputDevice* second = engine->createInputDevice(false);
    pushText("a");
    engine->update();
    engine->destroyInputDevice(second);
    EXPECT_EQ(typedText(), "a");
}
