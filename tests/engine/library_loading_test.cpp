#include "file_contents.h"
#include "pushed_events.h"

#include <xum/devices/input_device.h>
#include <xum/engine/engine.h>
#include <xum/engine/game_engine.h>

#include <gtest/gtest.h>

#include <dlfcn.h>

#include <string>
#include <vector>

// A host that is not linked with the library but loads it at run time.

namespace {

class LoadedLibrary {
public:
    LoadedLibrary() : handle(dlopen(XUM_LIBRARY_FILE, RTLD_NOW | RTLD_LOCAL)) {}

    ~LoadedLibrary()
    {
        if (handle != nullptr) dlclose(handle);
    }

    LoadedLibrary(const LoadedLibrary&) = delete;
    LoadedLibrary& operator=(const LoadedLibrary&) = delete;

    bool isLoaded() const { return handle != nullptr; }
    void* find(const char* name) const { return dlsym(handle, name); }

    template <class Function>
    Function* find(Function* /*declared*/, const char* name) const
    {
        return reinterpret_cast<Function*>(find(name));
    }

private:
    void* handle;
};

bool isLibraryInMemory()
{
    void* handle = dlopen(XUM_LIBRARY_FILE, RTLD_NOW | RTLD_NOLOAD);
    if (handle != nullptr) dlclose(handle);
    return handle != nullptr;
}

using InitEngine = decltype(initEngine);
using ShutdownEngine = decltype(shutdownEngine);

} // namespace

TEST(LibraryLoading, entryPointsAreFoundByName)
{
    const LoadedLibrary library;
    ASSERT_TRUE(library.isLoaded()) << dlerror();
    for (const char* name : {"initEngine", "shutdownEngine", "initGameEngine", "shutdownGameEngine"})
        EXPECT_NE(library.find(name), nullptr) << name;
}

TEST(LibraryLoading, reportingFunctionsDoNotTakeThePlaceOfTheSystemsOwn)
{
    const LoadedLibrary library;
    ASSERT_TRUE(library.isLoaded()) << dlerror();
    EXPECT_EQ(library.find("getLog"), nullptr);
    EXPECT_EQ(library.find("warning"), nullptr);
    EXPECT_EQ(library.find("error"), dlsym(RTLD_DEFAULT, "error"));
}

TEST(LibraryLoading, engineRunsThroughItsInterface)
{
    const LoadedLibrary library;
    ASSERT_TRUE(library.isLoaded()) << dlerror();
    Engine* engine = library.find<InitEngine>(nullptr, "initEngine")(false);
    ASSERT_NE(engine, nullptr);
    EXPECT_EQ(engine->getVersion(), "xum-engine 0.1 (build 0001)");
    EXPECT_TRUE(engine->update());
    library.find<ShutdownEngine>(nullptr, "shutdownEngine")(engine);
}

TEST(LibraryLoading, gameRunsThroughItsInterface)
{
    const LoadedLibrary library;
    ASSERT_TRUE(library.isLoaded()) << dlerror();
    GameEngine* game = library.find<decltype(initGameEngine)>(nullptr, "initGameEngine")(false);
    ASSERT_NE(game, nullptr);
    EXPECT_TRUE(game->update());
    game->getEngine()->destroyInputDevice(game->getInputDevice());
    game->getEngine()->destroySystemDevice(game->getSystemDevice());
    game->getEngine()->destroyWindow(game->getWindow());
    library.find<decltype(shutdownGameEngine)>(nullptr, "shutdownGameEngine")(game);
}

TEST(LibraryLoading, libraryThatWasUnloadedStartsAfresh)
{
    for (int i = 0; i < 2; ++i) {
        SCOPED_TRACE(i);
        EXPECT_FALSE(isLibraryInMemory());
        const LoadedLibrary library;
        ASSERT_TRUE(library.isLoaded()) << dlerror();
        Engine* engine = library.find<InitEngine>(nullptr, "initEngine")(false);
        ASSERT_NE(engine, nullptr);
        InputDevice* input = engine->createInputDevice(false);
        EXPECT_FALSE(input->isDown(SDLK_a));
        pushKeyDown(SDLK_a);
        engine->update();
        EXPECT_TRUE(input->isDown(SDLK_a));
        engine->destroyInputDevice(input);
        library.find<ShutdownEngine>(nullptr, "shutdownEngine")(engine);
        EXPECT_EQ(logLines(),
                  (std::vector<std::string>{"Engine initialized successfully.", "Input: found 0 joysticks/gamepads."}))
            << "a fresh log";
    }
    EXPECT_FALSE(isLibraryInMemory());
}
