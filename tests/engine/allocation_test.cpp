#include "allocation_counter.h"
#include "engine_fixtures.h"
#include "file_contents.h"
#include "resource_archive.h"

#include <xum/engine/game_engine.h>
#include <xum/engine/log.h>
#include <xum/files/cache.h>
#include <xum/files/resource_manager.h>

#include <SDL.h>
#include <SDL_mixer.h>
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

/// Tries with memory for no allocation, for one, for two and so on, until it succeeds, and returns for how many that
/// is.
template <class Operation>
int allocationsToSucceed(Operation succeeds)
{
    constexpr int limit = 100000;
    for (int count = 0; count < limit; ++count) {
        const FailingAllocations failing(count);
        if (succeeds()) return count;
    }
    return limit;
}

/// Expects null for every shorter memory, and nothing in the log.
template <class Create, class Destroy>
void expectNullUntilMemorySuffices(Create create, Destroy destroy)
{
    const std::vector<std::string> linesBefore = logLines();
    decltype(create()) device = nullptr;
    const int count = allocationsToSucceed([&] { return (device = create()) != nullptr; });
    EXPECT_GT(count, 0);
    ASSERT_NE(device, nullptr);
    destroy(device);
    EXPECT_EQ(logLines(), linesBefore);
}

bool isMixerOpen()
{
    return Mix_QuerySpec(nullptr, nullptr, nullptr) > 0;
}

/// Expects a load to be refused, with the vector as it was, for every shorter memory.
void expectRefusedUntilMemorySuffices(ResourceManager* resources, const std::string& name, const std::string& contents)
{
    const std::vector<unsigned char> before = {1, 2, 3};
    std::vector<unsigned char> data = before;
    bool isKept = true;
    const int count = allocationsToSucceed([&] {
        isKept = isKept && data == before;
        return resources->load(data, name);
    });
    EXPECT_TRUE(isKept) << name;
    EXPECT_GT(count, 0) << name;
    EXPECT_EQ(std::string(data.begin(), data.end()), contents) << name;
}

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

TEST_F(Allocation, ofDevicesIsTriedWithEveryShorterMemory)
{
    expectNullUntilMemorySuffices([&] { return engine->createNetworkDevice(); },
                                  [&](NetworkDevice* device) { engine->destroyNetworkDevice(device); });
    expectNullUntilMemorySuffices([&] { return engine->createConsole(); },
                                  [&](Console* console) { engine->destroyConsole(console); });
    expectNullUntilMemorySuffices([&] { return engine->createResourceManager(); },
                                  [&](ResourceManager* resources) { engine->destroyResourceManager(resources); });
    expectNullUntilMemorySuffices([&] { return engine->createCache(nullptr); },
                                  [&](Cache* cache) { engine->destroyCache(cache); });
    expectNullUntilMemorySuffices([&] { return engine->createScriptingDevice(); },
                                  [&](ScriptingDevice* device) { engine->destroyScriptingDevice(device); });
}

TEST_F(Allocation, thatFailsForTheAudioDeviceClosesTheMixerAgain)
{
    AudioDevice* audio = nullptr;
    const int count = allocationsToSucceed([&] {
        EXPECT_FALSE(isMixerOpen());
        audio = engine->createAudioDevice();
        return audio != nullptr;
    });
    EXPECT_GT(count, 1) << "the device and its sources";
    EXPECT_TRUE(isMixerOpen());
    engine->destroyAudioDevice(audio);
    EXPECT_FALSE(isMixerOpen());
}

TEST_F(Allocation, thatFailsWhileANameIsRegisteredRegistersNothing)
{
    Cache* cache = engine->createCache(nullptr);
    ASSERT_NE(cache, nullptr);
    for (int expected = 0; expected < 100; ++expected) {
        const std::string name = "a name that needs memory " + std::to_string(expected);
        int id = -1;
        EXPECT_GT(allocationsToSucceed([&] { return (id = cache->getId(name)) != -1; }), 0);
        ASSERT_EQ(id, expected);
        ASSERT_EQ(cache->getId(name), expected);
    }
    engine->destroyCache(cache);
}

TEST_F(Allocation, isNotNeededToReleaseOrDestroyACache)
{
    Cache* cache = engine->createCache(nullptr);
    ASSERT_NE(cache, nullptr);
    cache->getId("a name");
    const FailingAllocations failing;
    cache->release(nullptr, nullptr, false);
    cache->release(nullptr, nullptr, true);
    engine->destroyCache(cache);
}

TEST_F(Allocation, thatFailsWhileAnArchiveIsOpenedAddsNone)
{
    const std::string name = "a file with a name that needs memory";
    writeFileContents("archive", archive::pack({{name, "packed"}, {"second", ""}, {"third", ""}}));
    ResourceManager* resources = engine->createResourceManager();
    ASSERT_NE(resources, nullptr);
    std::vector<unsigned char> data;
    const int count = allocationsToSucceed([&] {
        EXPECT_FALSE(resources->load(data, name));
        return resources->addResourceFile("archive") != nullptr;
    });
    EXPECT_GT(count, 2);
    EXPECT_TRUE(resources->load(data, name));
    engine->destroyResourceManager(resources);
}

TEST_F(Allocation, thatFailsWhileAFileIsLoadedLeavesTheVectorAsItWas)
{
    const std::string packed = "a packed file with a name that needs memory";
    const std::string plain = "a plain file with a name that needs memory";
    const std::string contents(100000, 'c');
    writeFileContents(plain, contents);
    writeFileContents("archive", archive::pack({{packed, contents}}));
    ResourceManager* resources = engine->createResourceManager();
    ASSERT_NE(resources, nullptr);
    ASSERT_NE(resources->addResourceFile("archive"), nullptr);
    expectRefusedUntilMemorySuffices(resources, plain, contents);
    expectRefusedUntilMemorySuffices(resources, packed, contents);
    expectRefusedUntilMemorySuffices(resources, "a directory/../" + packed, contents);
    engine->destroyResourceManager(resources);
}

TEST_F(Allocation, forMoreThanThereIsIsRefusedByALoad)
{
    writeFileContents("archive",
                      archive::header(2) + archive::entry("huge", 0, 0xFFFFFFFFu) + archive::entry("tiny", 0, 1));
    ResourceManager* resources = engine->createResourceManager();
    ASSERT_NE(resources->addResourceFile("archive"), nullptr);
    std::vector<unsigned char> data = {1, 2, 3};
    const auto load = [&](const char* name) {
        const std::string text = name;
        const FailingAllocations failing;
        return resources->load(data, text);
    };
    EXPECT_FALSE(load("huge"));
    EXPECT_EQ(data, (std::vector<unsigned char>{1, 2, 3}));
    EXPECT_TRUE(load("tiny")) << "the vector has room";
    EXPECT_EQ(data, std::vector<unsigned char>{'!'});
    engine->destroyResourceManager(resources);
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
