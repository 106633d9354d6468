#include "engine_fixtures.h"
#include "file_contents.h"
#include "own_directory.h"

#include <xum/devices/audio_device.h>
#include <xum/devices/console.h>
#include <xum/devices/network_device.h>
#include <xum/engine/window.h>
#include <xum/files/cache.h>
#include <xum/files/resource_manager.h>
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

TEST_F(DeviceFactory, audioDeviceOpensTheMixerAndClosesIt)
{
    ASSERT_FALSE(isMixerOpen());
    AudioDevice* audio = engine->createAudioDevice();
    int frequency = 0;
    Uint16 format = 0;
    int channels = 0;
    EXPECT_EQ(Mix_QuerySpec(&frequency, &format, &channels), 1);
    EXPECT_EQ(frequency, 44100);
    EXPECT_EQ(format, AUDIO_S16SYS);
    EXPECT_EQ(channels, 2);
    EXPECT_EQ(Mix_AllocateChannels(-1), 64);
    EXPECT_EQ(logLines().back(), "Audio: using 64 channels.");
    engine->destroyAudioDevice(audio);
    EXPECT_FALSE(isMixerOpen());
}

TEST_F(DeviceFactory, audioDeviceIsMadeAnewAfterItWasDestroyed)
{
    for (int i = 0; i < 3; ++i) {
        AudioDevice* audio = engine->createAudioDevice();
        ASSERT_NE(audio, nullptr);
        EXPECT_NE(audio->acquireSource(), nullptr);
        engine->destroyAudioDevice(audio);
        EXPECT_FALSE(isMixerOpen());
    }
}

TEST_F(DeviceFactory, mixerOfTwoAudioDevicesIsOpenUntilBothAreDestroyed)
{
    AudioDevice* first = engine->createAudioDevice();
    AudioDevice* second = engine->createAudioDevice();
    EXPECT_NE(first, second);
    engine->destroyAudioDevice(first);
    EXPECT_TRUE(isMixerOpen());
    engine->destroyAudioDevice(second);
    EXPECT_FALSE(isMixerOpen());
}

TEST_F(DeviceFactory, consolesAndNetworkDevicesAreIndependent)
{
    Console* open = engine->createConsole();
    Console* closed = engine->createConsole();
    EXPECT_TRUE(open->toggle());
    EXPECT_TRUE(closed->toggle());
    EXPECT_FALSE(closed->toggle());
    EXPECT_FALSE(open->toggle());
    engine->destroyConsole(open);
    engine->destroyConsole(closed);

    NetworkDevice* network = engine->createNetworkDevice();
    EXPECT_EQ(network->create("localhost"), nullptr);
    engine->destroyNetworkDevice(network);
}

TEST_F(DeviceFactory, resourceManagerStartsWithoutArchivesAndReadsFiles)
{
    writeFileContents("file", "contents");
    ResourceManager* resources = engine->createResourceManager();
    std::vector<unsigned char> data;
    EXPECT_FALSE(resources->load(data, "missing"));
    EXPECT_TRUE(resources->load(data, "file"));
    EXPECT_EQ(std::string(data.begin(), data.end()), "contents");
    engine->destroyResourceManager(resources);
}

TEST_F(DeviceFactory, cacheReadsThroughTheResourceManagerThatItIsGiven)
{
    class Host final : public ResourceManager {
    public:
        ResourceFileImplementation* addResourceFile(const std::string& /*fileName*/) override { return nullptr; }
        bool load(std::vector<unsigned char>& data, const std::string& name) override
        {
            asked = name;
            data = {'x'};
            return true;
        }
        std::string asked;
    };
    Host host;
    Cache* cache = engine->createCache(&host);
    cache->setDataRoot("root/");
    EXPECT_EQ(cache->getSample(nullptr, cache->getId("name"), false), nullptr);
    EXPECT_EQ(host.asked, "root/samples/name");
    Cache* other = engine->createCache(&host);
    EXPECT_EQ(other->getId("another name"), 0) << "caches are independent";
    engine->destroyCache(other);
    engine->destroyCache(cache);
}

TEST(DeviceFactoryWithoutSound, audioDeviceIsNullAndNothingIsLogged)
{
    const auto tryIt = [] {
        enterOwnDirectory();
        setEnvironment("SDL_AUDIODRIVER", "disk"); // plays into a file, which cannot be opened
        setEnvironment("SDL_DISKAUDIOFILE", "missing/file");
        Engine* engine = initEngine(false);
        if (engine == nullptr) std::exit(1);
        const std::vector<std::string> linesBefore = logLines();
        AudioDevice* audio = engine->createAudioDevice();
        if (audio != nullptr || isMixerOpen()) std::exit(2);
        if (logLines() != linesBefore) std::exit(3);

        writeFileContents("sound", "whatever");
        ResourceManager* resources = engine->createResourceManager();
        Cache* cache = engine->createCache(resources);
        cache->setDataRoot("");
        cache->setSampleDirectory("");
        cache->setStreamDirectory("");
        const int id = cache->getId("sound");
        if (cache->getSample(audio, id, false) != nullptr || cache->getStream(audio, id, false) != nullptr)
            std::exit(4);
        cache->release(nullptr, audio, true);
        engine->destroyCache(cache);
        engine->destroyResourceManager(resources);
        engine->destroyAudioDevice(audio);
        if (logLines() != linesBefore) std::exit(5);
        shutdownEngine(engine);
        std::exit(0);
    };
    EXPECT_EXIT(tryIt(), ExitedWithCode(0), "");
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
        EXPECT_EXIT(askFor(name), ExitedWithCode(fatalExitCode), box);
        EXPECT_EQ(fileText(ownLogFile()), std::string("Engine initialized successfully.\n"
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
