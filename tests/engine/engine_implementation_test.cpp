#include "engine_fixtures.h"

#include <csignal>
#include <string>
#include <vector>

namespace {

class EngineImplementation : public InputFixture {
protected:
    std::vector<unsigned> eventTypes()
    {
        std::vector<unsigned> types;
        for (EngineEvent* event = engine->getEvents(); event != nullptr; event = event->getNext())
            types.push_back(event->getType());
        return types;
    }
};

using Types = std::vector<unsigned>;

} // namespace

TEST_F(EngineImplementation, versionNamesTheLibraryAndItsBuild)
{
    EXPECT_EQ(engine->getVersion(), "xum-engine 0.1 (build 0001)");
}

TEST_F(EngineImplementation, frameWithoutWindowEventsHasNoEvents)
{
    EXPECT_EQ(engine->getEvents(), nullptr);
    pushKeyDown(SDLK_a);
    engine->update();
    EXPECT_EQ(engine->getEvents(), nullptr);
}

TEST_F(EngineImplementation, windowEventsAreLinkedInOrderOfArrival)
{
    pushWindowEvent(SDL_WINDOWEVENT_CLOSE);
    pushWindowEvent(SDL_WINDOWEVENT_RESTORED);
    pushWindowEvent(SDL_WINDOWEVENT_MINIMIZED);
    engine->update();
    EXPECT_EQ(eventTypes(), (Types{EngineEventType::WindowClosed, EngineEventType::WindowRestored,
                                   EngineEventType::WindowMinimized}));
}

TEST_F(EngineImplementation, askingForTheEventsTwiceGivesTheSameOnes)
{
    pushWindowEvent(SDL_WINDOWEVENT_MINIMIZED);
    pushWindowEvent(SDL_WINDOWEVENT_RESTORED);
    engine->update();
    EngineEvent* first = engine->getEvents();
    EXPECT_EQ(engine->getEvents(), first);
    EXPECT_EQ(eventTypes(), (Types{1, 0}));
}

TEST_F(EngineImplementation, eventsOfAnyWindowAndOfOneKindAreAllReported)
{
    for (Uint32 window = 1; window <= 100; ++window) pushWindowEvent(SDL_WINDOWEVENT_CLOSE, window);
    engine->update();
    EXPECT_EQ(eventTypes(), Types(100, EngineEventType::WindowClosed));
}

TEST_F(EngineImplementation, eventsLastOneFrame)
{
    pushWindowEvent(SDL_WINDOWEVENT_CLOSE);
    pushWindowEvent(SDL_WINDOWEVENT_MINIMIZED);
    engine->update();
    pushWindowEvent(SDL_WINDOWEVENT_RESTORED);
    engine->update();
    EXPECT_EQ(eventTypes(), Types{EngineEventType::WindowRestored});
    engine->update();
    EXPECT_EQ(engine->getEvents(), nullptr);
}

TEST_F(EngineImplementation, quitEndsTheFrameAtOnceAndLeavesTheRestQueued)
{
    pushWindowEvent(SDL_WINDOWEVENT_MINIMIZED);
    pushKeyDown(SDLK_a);
    pushEvent(SDL_QUIT);
    pushWindowEvent(SDL_WINDOWEVENT_RESTORED);
    pushKeyDown(SDLK_b);
    EXPECT_FALSE(engine->update());
    EXPECT_EQ(eventTypes(), Types{EngineEventType::WindowMinimized}) << "what came before the quit is still there";
    EXPECT_EQ(changedKeys(), "97: pressed down\n");

    EXPECT_TRUE(engine->update());
    EXPECT_EQ(eventTypes(), Types{EngineEventType::WindowRestored});
    EXPECT_EQ(changedKeys(), "97: down\n98: pressed down\n");
}

#ifndef _WIN32
TEST_F(EngineImplementation, frameAfterAQuitFromTheSystemIsAWholeOne)
{
    std::raise(SIGTERM); // becomes a quit while the frame polls, not before
    EXPECT_FALSE(engine->update());
    pushKeyDown(SDLK_a);
    pushWindowEvent(SDL_WINDOWEVENT_MINIMIZED);
    EXPECT_TRUE(engine->update());
    EXPECT_EQ(changedKeys(), "97: pressed down\n");
    EXPECT_EQ(eventTypes(), Types{EngineEventType::WindowMinimized});
}
#endif

TEST_F(EngineImplementation, closingAndQuittingInOneFrameYieldsBoth)
{
    pushWindowEvent(SDL_WINDOWEVENT_CLOSE);
    pushEvent(SDL_QUIT);
    EXPECT_FALSE(engine->update());
    EXPECT_EQ(eventTypes(), Types{EngineEventType::WindowClosed});
}

TEST_F(EngineImplementation, frameTakesEverythingThatIsQueued)
{
    for (int i = 0; i < 5000; ++i) pushKeyDown(SDLK_a);
    pushKeyDown(SDLK_b);
    EXPECT_TRUE(engine->update());
    EXPECT_EQ(changedKeys(), "97: pressed down\n98: pressed down\n");
    EXPECT_EQ(SDL_HasEvent(SDL_KEYDOWN), SDL_FALSE);
}

TEST_F(EngineImplementation, framePumpsWithoutAnyDevice)
{
    engine->destroyInputDevice(input);
    pushKeyDown(SDLK_a);
    EXPECT_TRUE(engine->update());
    input = engine->createInputDevice(false);
    EXPECT_EQ(changedKeys(), "97: pressed down\n") << "the state is fed whether or not a device reads it";
}
