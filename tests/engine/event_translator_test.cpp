#include "engine_fixtures.h"

#include <limits>
#include <string>

// The table that turns SDL's events into key codes and engine events, tested through the frame pump.

namespace {

constexpr Sint32 smallestAmount = std::numeric_limits<Sint32>::min();

class EventTranslator : public InputFixture {};

} // namespace

TEST_F(EventTranslator, keyDownPressesTheKeyAndKeyUpReleasesIt)
{
    pushKeyDown(SDLK_a);
    engine->update();
    EXPECT_EQ(changedKeys(), "97: pressed down\n");
    pushKeyUp(SDLK_a);
    engine->update();
    EXPECT_EQ(changedKeys(), "97: released\n");
}

TEST_F(EventTranslator, scancodeBitIsCleared)
{
    pushKeyDown(SDLK_F1);
    engine->update();
    EXPECT_EQ(changedKeys(), "58: pressed down\n");
    pushKeyUp(SDLK_COLON); // the same number without the bit: the same key
    engine->update();
    EXPECT_EQ(changedKeys(), "58: released\n");
}

TEST_F(EventTranslator, keyRepeatPressesAgain)
{
    pushKeyDown(SDLK_a);
    engine->update();
    engine->update();
    EXPECT_EQ(changedKeys(), "97: down\n");
    pushKey(SDL_KEYDOWN, SDLK_a, true);
    engine->update();
    EXPECT_EQ(changedKeys(), "97: pressed down\n");
}

TEST_F(EventTranslator, lastKeyOfTheTableWorks)
{
    pushKeyDown(528);
    engine->update();
    EXPECT_EQ(changedKeys(), "528: pressed down\n");
}

TEST_F(EventTranslator, keysOutsideTheTableAreIgnored)
{
    input->startRecording();
    constexpr int cyrillicEf = 0x444;
    for (const int key : {529, 0x40000000 + 529, cyrillicEf, std::numeric_limits<int>::max(), -1, -529,
                          std::numeric_limits<int>::min()}) {
        SCOPED_TRACE(key);
        pushKeyDown(key);
        engine->update();
        EXPECT_EQ(changedKeys(), "");
        EXPECT_FALSE(input->anyKeyPressed());
        pushKeyUp(key);
        engine->update();
        EXPECT_EQ(changedKeys(), "");
        EXPECT_EQ(recordedKeys(), "");
    }
}

TEST_F(EventTranslator, mouseButtonsHaveTheirCodesAndOthersShareCodeNone)
{
    const int codes[] = {0, 512, 514, 513, 515, 516, 0, 0, 0}; // by SDL's button number: left, middle, right, extra
    for (Uint8 button = 0; button <= 8; ++button) {
        SCOPED_TRACE(int{button});
        const std::string code = std::to_string(codes[button]);
        pushMouseButton(SDL_MOUSEBUTTONDOWN, button);
        engine->update();
        EXPECT_EQ(changedKeys(), code + ": pressed down\n");
        pushMouseButton(SDL_MOUSEBUTTONUP, button);
        engine->update();
        EXPECT_EQ(changedKeys(), code + ": released\n");
        engine->update();
    }
}

TEST_F(EventTranslator, mouseButtonsAreNamedByTheirCodes)
{
    EXPECT_EQ(KeyCode::MouseLeft, 512);
    EXPECT_EQ(KeyCode::MouseRight, 513);
    EXPECT_EQ(KeyCode::MouseMiddle, 514);
    EXPECT_EQ(KeyCode::MouseExtra1, 515);
    EXPECT_EQ(KeyCode::MouseExtra2, 516);
}

TEST_F(EventTranslator, wheelStepIsPressedAndReleasedInOneFrame)
{
    const struct {
        Sint32 horizontal;
        Sint32 vertical;
        const char* key;
    } steps[] = {{-1, 0, "517"}, {1, 0, "518"}, {0, -1, "519"}, {0, 1, "520"}, {0, 7, "520"}};
    for (const auto& step : steps) {
        SCOPED_TRACE(step.key);
        pushWheel(step.horizontal, step.vertical);
        engine->update();
        EXPECT_EQ(changedKeys(), std::string(step.key) + ": pressed released\n");
    }
}

TEST_F(EventTranslator, wheelWithoutAmountDoesNothing)
{
    pushWheel(0, 0);
    pushWheel(0, 0, SDL_MOUSEWHEEL_FLIPPED);
    engine->update();
    EXPECT_EQ(changedKeys(), "");
}

TEST_F(EventTranslator, flippedWheelTurnsBothAmountsRound)
{
    pushWheel(0, 1, SDL_MOUSEWHEEL_FLIPPED);
    engine->update();
    EXPECT_EQ(changedKeys(), "519: pressed released\n");
    pushWheel(0, -1, SDL_MOUSEWHEEL_FLIPPED);
    engine->update();
    EXPECT_EQ(changedKeys(), "520: pressed released\n");
    pushWheel(1, 0, SDL_MOUSEWHEEL_FLIPPED);
    engine->update();
    EXPECT_EQ(changedKeys(), "517: pressed released\n");
    pushWheel(-1, 0, SDL_MOUSEWHEEL_FLIPPED);
    engine->update();
    EXPECT_EQ(changedKeys(), "518: pressed released\n");
}

TEST_F(EventTranslator, smallestWheelAmountKeepsItsSign)
{
    pushWheel(smallestAmount, smallestAmount);
    engine->update();
    EXPECT_EQ(changedKeys(), "517: pressed released\n519: pressed released\n");
    pushWheel(smallestAmount, smallestAmount, SDL_MOUSEWHEEL_FLIPPED);
    engine->update();
    EXPECT_EQ(changedKeys(), "518: pressed released\n520: pressed released\n");
}

TEST_F(EventTranslator, slantedWheelStepIsHorizontalFirstThenVertical)
{
    input->startRecording();
    pushWheel(-2, 3);
    engine->update();
    EXPECT_EQ(changedKeys(), "517: pressed released\n520: pressed released\n");
    EXPECT_EQ(recordedKeys(), "+517 -517 +520 -520");
}

TEST_F(EventTranslator, joystickButtonsHaveTheirCodesAndHigherOnesShareCodeNone)
{
    const struct {
        Uint8 button;
        const char* key;
    } buttons[] = {{0, "525"}, {1, "526"}, {2, "527"}, {3, "528"}, {4, "0"}, {5, "0"}, {255, "0"}};
    for (const auto& [button, key] : buttons) {
        SCOPED_TRACE(int{button});
        pushJoystickButton(SDL_JOYBUTTONDOWN, button);
        engine->update();
        EXPECT_EQ(changedKeys(), std::string(key) + ": pressed down\n");
        pushJoystickButton(SDL_JOYBUTTONUP, button);
        engine->update();
        EXPECT_EQ(changedKeys(), std::string(key) + ": released\n");
        engine->update();
    }
}

TEST_F(EventTranslator, evenAxesActAsTheFirstAndOddOnesAsTheSecond)
{
    for (const int axis : {0, 1, 2, 3, 4, 5, 254, 255}) {
        SCOPED_TRACE(axis);
        const bool isSecond = axis % 2 == 1;
        const std::string negative = isSecond ? "523" : "521";
        const std::string positive = isSecond ? "524" : "522";
        pushJoystickAxis(static_cast<Uint8>(axis), -30000);
        engine->update();
        EXPECT_EQ(changedKeys(), negative + ": pressed down\n");
        pushJoystickAxis(static_cast<Uint8>(axis), 0);
        engine->update();
        EXPECT_EQ(changedKeys(), negative + ": released\n");
        pushJoystickAxis(static_cast<Uint8>(axis), 30000);
        engine->update();
        EXPECT_EQ(changedKeys(), positive + ": pressed down\n");
        pushJoystickAxis(static_cast<Uint8>(axis), 0);
        engine->update();
        EXPECT_EQ(changedKeys(), positive + ": released\n");
        engine->update();
    }
}

TEST_F(EventTranslator, textInputAppendsItsAsciiBytes)
{
    pushText("Hi");
    pushText("\xC3\xA4!");         // two bytes and one
    pushText("\xF0\x9F\x98\x80~"); // four bytes and one
    pushText("\x7F\x01");          // the ends of what is taken
    pushText("");
    engine->update();
    EXPECT_EQ(typedText(), "Hi!~\x7F\x01");
    EXPECT_EQ(changedKeys(), ""); // text presses no key
}

TEST_F(EventTranslator, threeWindowChangesBecomeEngineEventsAndAllOthersNone)
{
    for (Uint8 change = SDL_WINDOWEVENT_NONE; change <= SDL_WINDOWEVENT_DISPLAY_CHANGED; ++change) {
        SCOPED_TRACE(int{change});
        pushWindowEvent(change);
        engine->update();
        EngineEvent* event = engine->getEvents();
        if (change == SDL_WINDOWEVENT_RESTORED || change == SDL_WINDOWEVENT_MINIMIZED ||
            change == SDL_WINDOWEVENT_CLOSE) {
            ASSERT_NE(event, nullptr);
            const unsigned expected = change == SDL_WINDOWEVENT_RESTORED ? 0 : change == SDL_WINDOWEVENT_CLOSE ? 2 : 1;
            EXPECT_EQ(event->getType(), expected);
            EXPECT_EQ(event->getNext(), nullptr);
        } else {
            EXPECT_EQ(event, nullptr);
        }
    }
}

TEST_F(EventTranslator, otherEventsAreTakenFromTheQueueAndIgnored)
{
    const Uint32 others[] = {SDL_TEXTEDITING,          SDL_MOUSEMOTION,    SDL_JOYHATMOTION,
                             SDL_JOYBALLMOTION,        SDL_JOYDEVICEADDED, SDL_CONTROLLERAXISMOTION,
                             SDL_CONTROLLERBUTTONDOWN, SDL_FINGERDOWN,     SDL_DROPBEGIN,
                             SDL_CLIPBOARDUPDATE,      SDL_KEYMAPCHANGED,  SDL_DISPLAYEVENT,
                             SDL_RENDER_TARGETS_RESET, SDL_APP_LOWMEMORY,  SDL_USEREVENT,
                             SDL_LASTEVENT - 1};
    input->startRecording();
    for (const Uint32 type : others) pushEvent(type);
    EXPECT_TRUE(engine->update());
    EXPECT_EQ(engine->getEvents(), nullptr);
    EXPECT_EQ(changedKeys(), "");
    EXPECT_EQ(recordedKeys(), "");
    EXPECT_EQ(typedText(), "");
    for (const Uint32 type : others) EXPECT_FALSE(SDL_HasEvent(type)) << type;
}
