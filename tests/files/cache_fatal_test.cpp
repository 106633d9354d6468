#include "engine_fixtures.h"
#include "made_files.h"
#include "own_directory.h"
#include "recording_devices.h"

#include <xum/files/cache.h>

#include <cstdlib>
#include <functional>

namespace {

using ::testing::ExitedWithCode;

/// What the process of a death test works with.
struct Scene {
    explicit Scene(bool hasResources = true)
    {
        enterOwnDirectory();
        engine = initEngine(false);
        cache = engine->createCache(hasResources ? &host : nullptr);
        cache->setDataRoot("root/");
    }

    Program* getProgram(const std::string& name) { return cache->getProgram(&gl, cache->getId(name), false); }
    Texture* getTexture(const std::string& name) { return cache->getTexture(&gl, cache->getId(name), false, false); }
    Sample* getSample(const std::string& name) { return cache->getSample(&mixer, cache->getId(name), false); }
    Stream* getStream(const std::string& name) { return cache->getStream(&mixer, cache->getId(name), false); }

    CallRecord record;
    HostResources host{record};
    RecordingRenderDevice gl{record, "gl"};
    RecordingAudioDevice mixer{record, "mixer"};
    Engine* engine;
    Cache* cache;
};

using Action = std::function<void(Scene&)>;

/// Expects the process to end with that message as the last thing that is logged.
void expectFatal(const Action& act, const std::string& message, const std::string& linesBefore = "",
                 bool hasResources = true)
{
    SCOPED_TRACE(message);
    const auto run = [&] {
        Scene scene(hasResources);
        act(scene);
        std::exit(0);
    };
    EXPECT_EXIT(run(), ExitedWithCode(fatalExitCode), "\\[\\[Error\\|");
    EXPECT_EQ(fileText(ownLogFile()), "Engine initialized successfully.\n" + linesBefore + "ERROR: " + message + "\n");
}

/// A picture of one pixel with a palette of two colours.
std::string paletteBitmap()
{
    using archive::littleEndian;
    const std::string colors = littleEndian(0x112233, 4) + littleEndian(0x445566, 4);
    const std::string row = littleEndian(1, 4);
    const std::string information = littleEndian(40, 4) + littleEndian(1, 4) + littleEndian(1, 4) + littleEndian(1, 2) +
                                    littleEndian(8, 2) + littleEndian(0, 4) + littleEndian(row.size(), 4) +
                                    littleEndian(2835, 4) + littleEndian(2835, 4) + littleEndian(2, 4) +
                                    littleEndian(0, 4);
    const std::size_t offset = 14 + information.size() + colors.size();
    return "BM" + littleEndian(offset + row.size(), 4) + littleEndian(0, 4) + littleEndian(offset, 4) + information +
           colors + row;
}

} // namespace

TEST(CacheFatal, missingFileIsToldByItsRegisteredName)
{
    expectFatal([](Scene& scene) { scene.getTexture("walls/a b.png"); }, "Could not load texture: walls/a b.png");
    expectFatal([](Scene& scene) { scene.getSample("walls/a b.wav"); }, "Could not load sample: walls/a b.wav");
    expectFatal([](Scene& scene) { scene.getStream("walls/a b.ogg"); }, "Could not load stream: walls/a b.ogg");
    expectFatal([](Scene& scene) { scene.getTexture(""); }, "Could not load texture: ");
}

TEST(CacheFatal, missingFileIsFatalWithAnyDeviceAndWithNone)
{
    const auto withInertDevice = [](Scene& scene) {
        scene.gl.isInert = true;
        scene.getTexture("a");
    };
    expectFatal(withInertDevice, "Could not load texture: a");
    expectFatal([](Scene& scene) { scene.cache->getTexture(nullptr, scene.cache->getId("a"), true, true); },
                "Could not load texture: a");
    expectFatal([](Scene& scene) { scene.cache->getSample(nullptr, scene.cache->getId("a"), true); },
                "Could not load sample: a");
    expectFatal([](Scene& scene) { scene.cache->getStream(nullptr, scene.cache->getId("a"), true); },
                "Could not load stream: a");
    expectFatal([](Scene& scene) { scene.cache->getProgram(nullptr, scene.cache->getId("a"), true); },
                "ConfigFile::ConfigFile() -> could not open config file (root/programs/a)!");
}

TEST(CacheFatal, fileThatCannotBeDecodedIsFatal)
{
    for (const std::string contents : {"", "nonsense", "BM"})
        expectFatal(
            [&](Scene& scene) {
                scene.host.files["root/textures/a"] = contents;
                scene.getTexture("a");
            },
            "Could not load texture: a");
    expectFatal(
        [](Scene& scene) {
            scene.host.files["root/textures/a"] = "nonsense";
            scene.cache->getTexture(nullptr, scene.cache->getId("a"), false, false);
        },
        "Could not load texture: a");
    expectFatal(
        [](Scene& scene) {
            scene.host.files["root/samples/a"] = "broken";
            scene.getSample("a");
        },
        "Could not load sample: a");
    expectFatal(
        [](Scene& scene) {
            scene.host.files["root/streams/a"] = "broken";
            scene.getStream("a");
        },
        "Could not load stream: a");
}

TEST(CacheFatal, pictureWithAPaletteHasTheMessageOfTheImageLoader)
{
    expectFatal(
        [](Scene& scene) {
            scene.host.files["root/textures/a"] = paletteBitmap();
            scene.getTexture("a");
        },
        "Only 24 and 32 bit images are supported!");
}

TEST(CacheFatal, nothingIsFoundWithoutAResourceManager)
{
    const auto expectFatalWithout = [](const Action& act, const std::string& message) {
        expectFatal(act, message, "", false);
    };
    expectFatalWithout([](Scene& scene) { scene.getTexture("a"); }, "Could not load texture: a");
    expectFatalWithout([](Scene& scene) { scene.getSample("a"); }, "Could not load sample: a");
    expectFatalWithout([](Scene& scene) { scene.getStream("a"); }, "Could not load stream: a");
    expectFatalWithout([](Scene& scene) { scene.getProgram("a"); },
                       "ConfigFile::ConfigFile() -> could not open config file (root/programs/a)!");
}

TEST(CacheFatal, descriptionThatIsMissingEmptyOrBrokenHasTheMessageOfItsReader)
{
    const auto describedBy = [](const std::string& description) {
        return [description](Scene& scene) {
            scene.host.files["root/programs/a"] = description;
            scene.getProgram("a");
        };
    };
    expectFatal([](Scene& scene) { scene.getProgram("a"); },
                "ConfigFile::ConfigFile() -> could not open config file (root/programs/a)!");
    expectFatal(describedBy(""), "ConfigFile::getEntry() -> config file has no root section!",
                "WARNING: empty config file (root/programs/a)!\n");
    expectFatal(describedBy("vertex-shaders v"), "tokenize() -> expecting '<' got 'v'!");
    expectFatal(describedBy("<program"), "tokenize() -> end of file reached before finding a closing tag!");
}

TEST(CacheFatal, nameThatIsLoadedAsAnotherKindIsRefused)
{
    const struct {
        const char* name;
        Action get;
    } kinds[] = {{"Program", [](Scene& scene) { scene.getProgram("a name"); }},
                 {"Texture", [](Scene& scene) { scene.getTexture("a name"); }},
                 {"Sample", [](Scene& scene) { scene.getSample("a name"); }},
                 {"Stream", [](Scene& scene) { scene.getStream("a name"); }}};
    for (const auto& loaded : kinds)
        for (const auto& asked : kinds) {
            if (&loaded == &asked) continue;
            SCOPED_TRACE(loaded.name);
            const auto loadThenAsk = [&](Scene& scene) {
                scene.host.files = {{"root/programs/a name", "<program></program>"},
                                    {"root/textures/a name", bitmapOf(1, {Pixel()})},
                                    {"root/samples/a name", "sound"},
                                    {"root/streams/a name", "music"}};
                loaded.get(scene);
                asked.get(scene);
            };
            expectFatal(loadThenAsk,
                        std::string("Cache::get") + asked.name + "() -> data of another kind is loaded (a name)!");
        }
}
