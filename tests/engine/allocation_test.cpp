#include "allocation_counter.h"
#include "engine_fixtures.h"
#include "file_contents.h"

#include <xum/engine/game_engine.h>
#include <xum/engine/log.h>

#include <SDL.h>
#include <SDL_ttf.h>

#include <new>

namespace {

/// Events of every kind, as many in each frame.
void pushEventsOfEveryKind()
{
    for (int i = 0; i < 4; ++i) {
        pushKeyDown(SDLK_a);
        pushKeyUp(SDLK_a);
        pushText("text of some length");
        pushMouseButton(SDL_MOUSEBUTTONDOWN, SDL_BUTTON_LEFT);
        pushMouseButton(SDL_MOUSEBUTTONUP, SDL_BUTTON_LEFT);
        pushWheel(1, -1);
        pushJoystickAxis(0, 30000);
        pushJoystickAxis(0, 0);
        pushJoystickButton(SDL_JOYBUTTONDOWN, 0);
        pushJoystickButton(SDL_JOYBUTTONUP, 0);
        pushWindowEvent(SDL_WINDOWEVENT_RESTORED);
        pushWindowEvent(SDL_WINDOWEVENT_MINIMIZED);
        pushWindowEvent(SDL_WINDOWEVENT_CLOSE);
        pushEvent(SDL_USEREVENT);
    }
}

class Allocation : public InputFixture {};

} // namespace

TEST_F(Allocation, isCountedAndCanBeMadeToFail)
{
    const std::size_t before = allocationCount();
    ::operator delete(::operator new(8));
    EXPECT_EQ(allocationCount(), before + 1);
    FailingAllocations failing(1);
    void* memory = ::operator new(8, std::nothrow);
    void* refused = ::operator new(8, std::nothrow);
    EXPECT_NE(memory, nullptr);
    EXPECT_EQ(refused, nullptr);
    ::operator delete(memory);
}

TEST_F(Allocation, steadyFrameDoesWithout)
{
    int windowEvents = 0;
    std::vector<InputEvent> changes; // taken in each frame, in case an earlier test of the process started recording
    const auto frame = [&] {
        pushEventsOfEveryKind();
        engine->update();
        for (EngineEvent* event = engine->getEvents(); event != nullptr; event = event->getNext()) ++windowEvents;
        engine->getTime();
        input->getEvents(changes);
    };
    for (int i = 0; i < 10; ++i) frame();
    const std::size_t before = allocationCount();
    for (int i = 0; i < 1000; ++i) frame();
    EXPECT_EQ(allocationCount(), before);
    EXPECT_EQ(windowEvents, 1010 * 12);
}

TEST_F(Allocation, queryingTheInputDoesWithoutOnceTheListsHaveTheirSize)
{
    std::vector<InputEvent> changes;
    std::vector<unsigned int> text;
    input->startRecording();
    const auto frame = [&] {
        pushEventsOfEveryKind();
        engine->update();
        input->getEvents(changes);
        input->getText(text);
        input->wasPressed(SDLK_a);
        input->anyKeyPressed();
        input->getMousePosition();
        input->getMouseMovement();
    };
    for (int i = 0; i < 10; ++i) frame();
    const std::size_t before = allocationCount();
    for (int i = 0; i < 1000; ++i) frame();
    EXPECT_EQ(allocationCount(), before);
    EXPECT_EQ(changes.size(), 4u * 12u);
    EXPECT_EQ(text.size(), 32u);
}

TEST_F(Allocation, thatFailsInACreateOperationYieldsNullAndNoLogLine)
{
    const std::vector<std::string> linesBefore = logLines();
    const std::string title = "A window";
    const auto createAll = [&] {
        FailingAllocations failing;
        return engine->createWindow(title, 64, 64, false, false) != nullptr ||
               engine->createSystemDevice() != nullptr || engine->createInputDevice(false) != nullptr ||
               engine->createRenderDevice(nullptr, "Software") != nullptr;
    };
    EXPECT_FALSE(createAll());
    EXPECT_EQ(logLines(), linesBefore);
}

TEST_F(Allocation, thatFailsWhileADeviceIsBuiltYieldsNull)
{
    const int joystick = SDL_JoystickAttachVirtual(SDL_JOYSTICK_TYPE_GAMECONTROLLER, 2, 6, 0);
    ASSERT_GE(joystick, 0) << SDL_GetError();
    InputDevice* device = nullptr;
    {
        FailingAllocations failing(1); // the device itself, but not its list of joysticks
        device = engine->createInputDevice(false);
    }
    EXPECT_EQ(device, nullptr);
    SDL_JoystickDetachVirtual(joystick);
}

TEST(AllocationAtStartUp, thatFailsYieldsNullAndLeavesTheLibrariesUp)
{
    getLog(); // its own buffer is not what fails
    const auto start = [](auto function) {
        FailingAllocations failing;
        return function(false) != nullptr;
    };
    const char* setting = SDL_getenv("SDL_VIDEODRIVER");
    const std::string driver = setting != nullptr ? setting : "";
    setEnvironment("SDL_VIDEODRIVER", "dummy"); // of the video drivers, this one brings no C++ code into the process
    const std::size_t linesBefore = logLines().size();
    EXPECT_FALSE(start(initEngine));
    EXPECT_EQ(SDL_WasInit(SDL_INIT_VIDEO | SDL_INIT_AUDIO), Uint32{SDL_INIT_VIDEO | SDL_INIT_AUDIO});
    EXPECT_EQ(TTF_WasInit(), 1);
    EXPECT_EQ(logLines().size(), linesBefore + 1);
    EXPECT_EQ(logLines().back(), "Engine initialized successfully.");
    shutdownEngine(nullptr);

    EXPECT_FALSE(start(initGameEngine));
    shutdownEngine(nullptr);
    EXPECT_EQ(SDL_WasInit(0), 0u);
    setEnvironment("SDL_VIDEODRIVER", driver.c_str());
}
