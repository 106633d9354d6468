#include "engine_fixtures.h"
#include "file_contents.h"
#include "own_directory.h"

#include <xum/engine/window.h>
#include <xum/render/render_device.h>

#include <SDL_mixer.h>

#include <string>
#include <vector>

namespace {

using ::testing::ExitedWithCode;

const std::string noContext = "OpenGLRenderDevice::OpenGLRenderDevice() -> could not create an OpenGL 3.2 context!";

class DeviceFactory : public EngineFixture {};

bool isMixerOpen()
{
    return Mix_QuerySpec(nullptr, nullptr, nullptr) > 0;
}

void openMixer()
{
    ASSERT_EQ(Mix_OpenAudio(44100, AUDIO_S16SYS, 2, 1024), 0) << SDL_GetError();
}

} // namespace

TEST_F(DeviceFactory, everyDestroyOperationAcceptsNull)
{
    engine->destroyWindow(nullptr);
    engine->destroySystemDevice(nullptr);
    engine->destroyInputDevice(nullptr);
    engine->destroyRenderDevice(nullptr);
    engine->destroyAudioDevice(nullptr);
    engine->destroyNetworkDevice(nullptr);
    engine->destroyScriptingDevice(nullptr);
    engine->destroyConsole(nullptr);
    engine->destroyResourceManager(nullptr);
    engine->destroyCache(nullptr);
    EXPECT_TRUE(engine->update());
}

TEST_F(DeviceFactory, everyCreateOperationMakesItsDevice)
{
    AudioDevice* audio = engine->createAudioDevice();
    EXPECT_NE(audio, nullptr);
    NetworkDevice* network = engine->createNetworkDevice();
    EXPECT_NE(network, nullptr);
    Console* console = engine->createConsole();
    EXPECT_NE(console, nullptr);
    ResourceManager* resources = engine->createResourceManager();
    EXPECT_NE(resources, nullptr);
    Cache* cache = engine->createCache(resources);
    EXPECT_NE(cache, nullptr);
    ScriptingDevice* scripting = engine->createScriptingDevice();
    EXPECT_NE(scripting, nullptr);
    engine->destroyScriptingDevice(scripting);
    engine->destroyCache(cache);
    engine->destroyResourceManager(resources);
    engine->destroyConsole(console);
    engine->destroyNetworkDevice(network);
    engine->destroyAudioDevice(audio);
}

TEST_F(DeviceFactory, devicesOfOneKindAreIndependent)
{
    SystemDevice* first = engine->createSystemDevice();
    SystemDevice* second = engine->createSystemDevice();
    EXPECT_NE(first, nullptr);
    EXPECT_NE(second, nullptr);
    EXPECT_NE(first, second);
    engine->destroySystemDevice(first);
    engine->destroySystemDevice(second);
}

TEST_F(DeviceFactory, inputDeviceSetsTheMouseModeItIsAskedFor)
{
    InputDevice* confining = engine->createInputDevice(true);
    EXPECT_EQ(SDL_ShowCursor(SDL_QUERY), SDL_DISABLE);
    InputDevice* releasing = engine->createInputDevice(false);
    EXPECT_EQ(SDL_ShowCursor(SDL_QUERY), SDL_ENABLE);
    engine->destroyInputDevice(releasing);
    engine->destroyInputDevice(confining);
}

TEST_F(DeviceFactory, softwareRenderDeviceNeedsNoWindow)
{
    RenderDevice* device = engine->createRenderDevice(nullptr, "Software");
    ASSERT_NE(device, nullptr);
    EXPECT_EQ(device->createTexture(4, 4, false), nullptr);
    engine->destroyRenderDevice(device);
}

TEST_F(DeviceFactory, openGLRenderDeviceIsBuiltOnAWindow)
{
    Window* window = engine->createWindow("A window", 64, 64, false, false);
    RenderDevice* device = engine->createRenderDevice(window, "OpenGL");
    ASSERT_NE(device, nullptr);
    Texture* texture = device->createTexture(4, 4, false);
    EXPECT_NE(texture, nullptr);
    device->destroyTexture(texture);
    engine->destroyRenderDevice(device);
    EXPECT_EQ(SDL_GL_GetCurrentContext(), nullptr) << "the device's context is gone";
    engine->destroyWindow(window);
}

TEST_F(DeviceFactory, openGLRenderDeviceWithoutAWindowIsNullWithALogLine)
{
    EXPECT_EQ(engine->createRenderDevice(nullptr, "OpenGL"), nullptr);
    EXPECT_EQ(logLines().back(), noContext);
}

TEST(DeviceFactoryWithoutOpenGL, renderDeviceOnAWindowWithoutHandleIsNullWithALogLine)
{
    const auto tryIt = [] {
        enterOwnDirectory();
        setEnvironment("SDL_VIDEODRIVER", "dummy");
        Engine* engine = initEngine(false);
        Window* window = engine->createWindow("A window", 64, 64, false, false);
        if (window == nullptr || window->getHandle() != nullptr) std::exit(1);
        const std::size_t linesBefore = logLines().size();
        if (engine->createRenderDevice(window, "OpenGL") != nullptr) std::exit(2);
        if (logLines().size() != linesBefore + 1 || logLines().back() != noContext) std::exit(3);
        RenderDevice* software = engine->createRenderDevice(window, "Software");
        if (software == nullptr) std::exit(4);
        engine->destroyRenderDevice(software);
        engine->destroyWindow(window);
        shutdownEngine(engine);
        std::exit(0);
    };
    EXPECT_EXIT(tryIt(), ExitedWithCode(0), "");
}

TEST(RenderDeviceName, ofAnyOtherDeviceIsFatal)
{
    const auto askFor = [](const char* name) {
        enterOwnDirectory();
        initEngine(false)->createRenderDevice(nullptr, name);
    };
    const struct {
        const char* name;
        const char* shown;
    } names[] = {{"Direct3D", "Direct3D"},
                 {"opengl", "opengl"},
                 {"OPENGL", "OPENGL"},
                 {"software", "software"},
                 {"OpenGL ", "OpenGL "},
                 {" OpenGL", " OpenGL"},
                 {"Software2", "Software2"},
                 {"", ""},
                 {nullptr, ""}};
    for (const auto& [name, shown] : names) {
        SCOPED_TRACE(shown);
        const std::string box = std::string("\\[\\[Error\\|Invalid render device \\(") + shown + "\\)!\\]\\]";
        EXPECT_EXIT(askFor(name), ExitedWithCode(255), box);
        EXPECT_EQ(fileContents(ownLogFile()), std::string("Engine initialized successfully.\n"
                                                          "ERROR: Invalid render device (") +
                                                  shown + ")!\n");
    }
}

TEST_F(DeviceFactory, destroyingNoAudioDeviceStillClosesTheMixer)
{
    openMixer();
    ASSERT_TRUE(isMixerOpen());
    engine->destroyAudioDevice(nullptr);
    EXPECT_FALSE(isMixerOpen());
}

TEST_F(DeviceFactory, mixerThatWasOpenedTwiceNeedsTwoDestroys)
{
    openMixer();
    openMixer();
    engine->destroyAudioDevice(nullptr);
    EXPECT_TRUE(isMixerOpen());
    engine->destroyAudioDevice(nullptr);
    EXPECT_FALSE(isMixerOpen());
}
