#include "gl_fixture.h"
#include "made_files.h"
#include "message_boxes.h"
#include "sounds.h"
#include "test_directory.h"

#include <xum/devices/audio_device.h>
#include <xum/files/cache.h>
#include <xum/files/resource_manager.h>

#include <SDL_mixer.h>

#include <filesystem>

namespace {

namespace fs = std::filesystem;

constexpr int pictureWidth = 4;

/// No two alike, so that no pixel can be taken for another.
std::vector<Pixel> picture()
{
    std::vector<Pixel> pixels;
    for (int i = 0; i < 8; ++i) {
        const auto value = static_cast<unsigned char>(30 * i);
        pixels.push_back({value, static_cast<unsigned char>(255 - value), static_cast<unsigned char>(i), 255});
    }
    return pixels;
}

std::vector<std::int16_t> sound()
{
    std::vector<std::int16_t> values;
    for (int i = 0; i < 20000; ++i) values.push_back(static_cast<std::int16_t>(i * 37));
    return values;
}

const std::string colorSource = "#version 150\nvec4 chosenColor() { return vec4(0.0, 1.0, 0.0, 1.0); }\n";
const std::string mainSource = "#version 150\nvec4 chosenColor();\nout vec4 first;\nout vec4 second;\n"
                               "void main() { first = chosenColor(); second = chosenColor().yxzw; }\n";

/// One of each kind.
std::vector<archive::PackedFile> gameFiles()
{
    return {{"game/textures/picture.bmp", bitmapOf(pictureWidth, picture())},
            {"game/shaders/plain.vert", plainVertexSource},
            {"game/shaders/color.frag", colorSource},
            {"game/shaders/main.frag", mainSource},
            {"game/programs/plain", "<program>\n"
                                    "   <vertex-shaders plain.vert/>\n"
                                    "   <fragment-shaders \"main.frag, color.frag\"/>\n"
                                    "   <inputs position/>\n"
                                    "   <outputs first(1),second(0)/>\n"
                                    "</program>\n"},
            {"game/programs/broken",
             "<program><vertex-shaders plain.vert/><fragment-shaders main.frag,lost.frag/></program>"},
            {"game/samples/sound.wav", soundOf(sound())},
            {"game/samples/sound.ogg", fileContents(soundFileName("mono.ogg"))},
            {"game/streams/music.wav", soundOf(sound())},
            {"game/streams/music.ogg", fileContents(soundFileName("stereo.ogg"))}};
}

/// A test with a cache over a real resource manager and with real devices, in an empty working directory. The files of
/// the game are either plain ones or packed.
class CacheDevice : public GLTest, public testing::WithParamInterface<bool> {
protected:
    void SetUp() override
    {
        GLTest::SetUp();
        ASSERT_FALSE(HasFatalFailure());
        fs::remove_all(testDirectory() / "cache");
        fs::create_directory(testDirectory() / "cache");
        fs::current_path(testDirectory() / "cache");
        audio = engine->createAudioDevice();
        ASSERT_NE(audio, nullptr);
        resources = engine->createResourceManager();
        cache = engine->createCache(resources);
        cache->setDataRoot("game/");
        if (GetParam()) {
            writeFileContents("archive", archive::pack(gameFiles()));
            ASSERT_NE(resources->addResourceFile("archive"), nullptr);
        } else {
            for (const auto& [name, contents] : gameFiles()) {
                fs::create_directories(fs::path(name).parent_path());
                writeFileContents(name, contents);
            }
        }
    }

    void TearDown() override
    {
        fs::current_path(testDirectory());
        if (engine != nullptr) {
            engine->destroyCache(cache);
            engine->destroyResourceManager(resources);
            engine->destroyAudioDevice(audio);
        }
        GLTest::TearDown();
    }

    Texture* getTexture(bool mipmaps = false, bool transient = false)
    {
        return cache->getTexture(device, cache->getId("picture.bmp"), mipmaps, transient);
    }

    void expectThePicture(Texture* texture)
    {
        ASSERT_NE(texture, nullptr);
        EXPECT_EQ(texture->getWidth(), pictureWidth);
        EXPECT_EQ(texture->getHeight(), 2);
        const std::unique_ptr<Image> image = imageOf(texture, false);
        const std::vector<Pixel> pixels = picture();
        EXPECT_EQ(std::vector<Pixel>(image->getPixels(), image->getPixels() + pixels.size()), pixels);
    }

    /// Of the second level; 0 where there is none.
    int mipmapWidth(Texture* texture)
    {
        device->bindTexture(0, texture);
        GLint width = -1;
        glGetTexLevelParameteriv(GL_TEXTURE_2D, 1, GL_TEXTURE_WIDTH, &width);
        return width;
    }

    AudioDevice* audio = nullptr;
    ResourceManager* resources = nullptr;
    Cache* cache = nullptr;
};

std::string nameOf(const testing::TestParamInfo<bool>& isPacked)
{
    return isPacked.param ? "packed" : "plain";
}

} // namespace

INSTANTIATE_TEST_SUITE_P(Files, CacheDevice, testing::Bool(), nameOf);

TEST_P(CacheDevice, textureHasThePixelsOfItsPicture)
{
    Texture* texture = getTexture();
    expectThePicture(texture);
    EXPECT_EQ(getTexture(), texture);
}

TEST_P(CacheDevice, textureHasMipmapsIfItIsAskedFor)
{
    EXPECT_EQ(mipmapWidth(getTexture(false)), 0);
    EXPECT_EQ(mipmapWidth(getTexture(true)), 0) << "it is loaded already";
    cache->release(device, audio, true);
    Texture* texture = getTexture(true);
    EXPECT_EQ(mipmapWidth(texture), pictureWidth / 2);
    expectThePicture(texture);
}

TEST_P(CacheDevice, programDrawsWithItsShadersToItsOutputs)
{
    Program* program = cache->getProgram(device, cache->getId("plain"), false);
    ASSERT_NE(program, nullptr);
    EXPECT_TRUE(shownMessageBoxes().empty());
    EXPECT_EQ(program->getAttributes(), std::list<std::string>{"position"});
    EXPECT_EQ(program->getOutputs(), (std::list<std::string>{"first(1)", "second(0)"}));

    RenderTarget* target = makeTarget({rgba8, rgba8});
    device->useProgram(program);
    device->setUniform("offset", Vector3<float>());
    makeSquare()->drawTriangleFan();
    glReadBuffer(GL_COLOR_ATTACHMENT1);
    EXPECT_EQ(countPixels(green), size * size);
    glReadBuffer(GL_COLOR_ATTACHMENT0);
    EXPECT_EQ(countPixels(red), size * size);
    EXPECT_NE(target, nullptr);
}

TEST_P(CacheDevice, missingShaderShowsWhenTheProgramIsLinked)
{
    EXPECT_NE(cache->getProgram(device, cache->getId("broken"), false), nullptr);
    EXPECT_EQ(glGetError(), GLenum{GL_INVALID_OPERATION}) << "it cannot be used";
    ASSERT_EQ(shownMessageBoxes().size(), 1u);
    EXPECT_EQ(shownMessageBoxes()[0].title, "Warning");
}

TEST_P(CacheDevice, sampleIsWhatTheMixerPlays)
{
    const int id = cache->getId("sound.wav");
    Sample* sample = cache->getSample(audio, id, false);
    ASSERT_NE(sample, nullptr);
    EXPECT_EQ(cache->getSample(audio, id, false), sample);
    AudioSource* source = audio->acquireSource(); // the first one: channel 0
    source->play(sample, 0);
    const Mix_Chunk* chunk = Mix_GetChunk(0);
    ASSERT_NE(chunk, nullptr);
    const std::string bytes = soundOf(sound()).substr(44);
    EXPECT_TRUE(std::string(reinterpret_cast<const char*>(chunk->abuf), chunk->alen) == bytes);
    EXPECT_EQ(Mix_Playing(0), 1);
    cache->release(device, audio, true);
    EXPECT_EQ(Mix_Playing(0), 0);
}

TEST_P(CacheDevice, streamIsWhatTheMixerPlays)
{
    const int id = cache->getId("music.wav");
    Stream* stream = cache->getStream(audio, id, false);
    ASSERT_NE(stream, nullptr);
    EXPECT_EQ(cache->getStream(audio, id, false), stream);
    audio->playStream(stream, true, 0);
    EXPECT_TRUE(audio->isMusicPlaying());
    EXPECT_EQ(Mix_GetMusicType(nullptr), MUS_WAV);
    EXPECT_NEAR(Mix_MusicDuration(nullptr), 10000 / 44100.0, 1e-6);
    cache->release(device, audio, true);
    EXPECT_FALSE(audio->isMusicPlaying());
}

TEST_P(CacheDevice, soundsMayBeVorbis)
{
    Sample* sample = cache->getSample(audio, cache->getId("sound.ogg"), false);
    Stream* stream = cache->getStream(audio, cache->getId("music.ogg"), false);
    ASSERT_NE(sample, nullptr);
    ASSERT_NE(stream, nullptr);
    EXPECT_EQ(cache->getSample(audio, cache->getId("sound.ogg"), false), sample);
    EXPECT_EQ(cache->getStream(audio, cache->getId("music.ogg"), false), stream);
    audio->acquireSource()->play(sample, 0); // on channel 0
    const Mix_Chunk* chunk = Mix_GetChunk(0);
    ASSERT_NE(chunk, nullptr);
    EXPECT_NEAR(chunk->alen / 4.0, 11025, 100) << "a quarter of a second, as the mixer plays it";
    audio->playStream(stream, true, 0);
    EXPECT_TRUE(audio->isMusicPlaying());
    EXPECT_EQ(Mix_GetMusicType(nullptr), MUS_OGG);
    EXPECT_NEAR(Mix_MusicDuration(nullptr), 0.25, 1e-3);
}

TEST_P(CacheDevice, releasedTexturesAndProgramsAreGone)
{
    const unsigned texture = getTexture(false, true)->getHandle();
    device->useProgram(cache->getProgram(device, cache->getId("plain"), false));
    const auto program = static_cast<GLuint>(getInteger(GL_CURRENT_PROGRAM));
    EXPECT_TRUE(glIsTexture(texture));
    EXPECT_TRUE(glIsProgram(program));
    cache->release(nullptr, nullptr, false);
    EXPECT_FALSE(glIsTexture(texture));
    EXPECT_TRUE(glIsProgram(program)) << "it is not transient";
    cache->release(nullptr, nullptr, true);
    usePlainProgram({1, 1, 1, 1}); // what is current lives on
    EXPECT_FALSE(glIsProgram(program));
    expectThePicture(getTexture());
}

TEST_P(CacheDevice, everythingGoesWithTheCache)
{
    const unsigned texture = getTexture()->getHandle();
    EXPECT_NE(cache->getProgram(device, cache->getId("plain"), false), nullptr);
    Stream* stream = cache->getStream(audio, cache->getId("music.wav"), false);
    audio->playStream(stream, true, 0);
    EXPECT_TRUE(audio->isMusicPlaying());
    EXPECT_TRUE(glIsTexture(texture));
    engine->destroyCache(cache);
    cache = nullptr;
    EXPECT_FALSE(glIsTexture(texture));
    EXPECT_FALSE(audio->isMusicPlaying());
}

TEST_P(CacheDevice, softwareDeviceLoadsNothingAndARealOneLoadsLater)
{
    RenderDevice* software = engine->createRenderDevice(nullptr, "Software");
    const int texture = cache->getId("picture.bmp");
    const int program = cache->getId("plain");
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(cache->getTexture(software, texture, true, true), nullptr);
        EXPECT_EQ(cache->getProgram(software, program, true), nullptr);
    }
    cache->release(software, nullptr, true);
    EXPECT_EQ(cache->getProgram(software, program, true), nullptr);
    expectThePicture(cache->getTexture(device, texture, false, false));
    EXPECT_NE(cache->getProgram(device, program, false), nullptr);
    EXPECT_TRUE(shownMessageBoxes().empty()) << "it has all its shaders";
    engine->destroyRenderDevice(software);
}

TEST_P(CacheDevice, machineWithoutSoundLoadsNoSounds)
{
    const int sample = cache->getId("sound.wav");
    const int stream = cache->getId("music.wav");
    EXPECT_EQ(cache->getSample(nullptr, sample, true), nullptr);
    EXPECT_EQ(cache->getStream(nullptr, stream, true), nullptr);
    cache->release(device, nullptr, true);
    EXPECT_NE(cache->getSample(audio, sample, true), nullptr);
    EXPECT_NE(cache->getStream(audio, stream, true), nullptr);
}

TEST_P(CacheDevice, plainFileOverridesWhatIsPacked)
{
    const std::vector<Pixel> other(8, Pixel{7, 6, 5, 255});
    fs::create_directories("game/textures");
    writeFileContents("game/textures/picture.bmp", bitmapOf(pictureWidth, other));
    const std::unique_ptr<Image> image = imageOf(getTexture(), false);
    EXPECT_EQ(std::vector<Pixel>(image->getPixels(), image->getPixels() + 8), other);
}

TEST_P(CacheDevice, readsFromAnotherDirectoryOnceItIsSet)
{
    Texture* texture = getTexture();
    fs::create_directories("elsewhere");
    writeFileContents("elsewhere/red.bmp", bitmapOf(1, {red}));
    cache->setDataRoot("");
    cache->setTextureDirectory("elsewhere/");
    Texture* added = cache->getTexture(device, cache->getId("red.bmp"), false, false);
    ASSERT_NE(added, nullptr);
    EXPECT_EQ(imageOf(added, false)->getPixel(0, 0), red);
    EXPECT_EQ(getTexture(), texture);
    expectThePicture(texture);
}
