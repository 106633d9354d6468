#include "audio_fixture.h"
#include "file_contents.h"

#include <SDL.h>
#include <SDL_mixer.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace {

using Calls = std::vector<std::string>;

constexpr float infinity = std::numeric_limits<float>::infinity();
const float noNumber = std::nanf("");
const Vector3<float> origin = {0, 0, 0};
const std::string openAudio = "Mix_OpenAudio(44100, " + std::to_string(AUDIO_S16SYS) + ", 2, 1024)";

bool isMixerOpen()
{
    return Mix_QuerySpec(nullptr, nullptr, nullptr) > 0;
}

class AudioCreation : public EngineFixture {
protected:
    void SetUp() override
    {
        EngineFixture::SetUp();
        takeMixerCalls();
        linesBefore = logLines().size();
    }

    void TearDown() override
    {
        mixerAnswers() = {};
        EngineFixture::TearDown();
    }

    std::size_t linesBefore = 0;
};

class AudioCalls : public AudioFixture {};

} // namespace

TEST_F(AudioCreation, takesItsStepsInOrderAndSetsAllChannelsToFullVolume)
{
    AudioDevice* audio = engine->createAudioDevice();
    ASSERT_NE(audio, nullptr);
    Calls expected = {"Mix_Init(16)", openAudio, "Mix_AllocateChannels(64)"};
    for (int channel = 0; channel < 64; ++channel)
        expected.push_back("Mix_Volume(" + std::to_string(channel) + ", 128)");
    EXPECT_EQ(takeMixerCalls(), expected);
    ASSERT_EQ(logLines().size(), linesBefore + 1);
    EXPECT_EQ(logLines().back(), "Audio: using 64 channels.");
    engine->destroyAudioDevice(audio);
    EXPECT_EQ(takeMixerCalls(), (Calls{"Mix_CloseAudio()", "Mix_Quit()"}));
    EXPECT_EQ(logLines().size(), linesBefore + 1);
}

TEST_F(AudioCreation, isNullWithoutADecoder)
{
    mixerAnswers().init = {true, 0};
    EXPECT_EQ(engine->createAudioDevice(), nullptr);
    EXPECT_EQ(takeMixerCalls(), Calls{"Mix_Init(16)"});
    EXPECT_EQ(logLines().size(), linesBefore);
    EXPECT_FALSE(isMixerOpen());
}

TEST_F(AudioCreation, isNullWithoutASoundCard)
{
    mixerAnswers().openAudio = {true, -1};
    EXPECT_EQ(engine->createAudioDevice(), nullptr);
    EXPECT_EQ(takeMixerCalls(), (Calls{"Mix_Init(16)", openAudio}));
    EXPECT_EQ(logLines().size(), linesBefore);
    EXPECT_FALSE(isMixerOpen());
}

TEST_F(AudioCreation, goesOnWhenOtherDecodersThanTheWantedAreThere)
{
    mixerAnswers().init = {true, MIX_INIT_MP3};
    AudioDevice* audio = engine->createAudioDevice();
    EXPECT_NE(audio, nullptr);
    engine->destroyAudioDevice(audio);
}

TEST_F(AudioCreation, succeedsAfterItFailed)
{
    mixerAnswers().openAudio = {true, -1};
    EXPECT_EQ(engine->createAudioDevice(), nullptr);
    mixerAnswers() = {};
    AudioDevice* audio = engine->createAudioDevice();
    EXPECT_NE(audio, nullptr);
    engine->destroyAudioDevice(audio);
    EXPECT_FALSE(isMixerOpen());
}

TEST_F(AudioCreation, usesAsManyChannelsAsThereAre)
{
    mixerAnswers().allocateChannels = {true, 3};
    AudioDevice* audio = engine->createAudioDevice();
    ASSERT_NE(audio, nullptr);
    EXPECT_EQ(logLines().back(), "Audio: using 3 channels.");
    EXPECT_EQ(takeMixerCalls(), (Calls{"Mix_Init(16)", openAudio, "Mix_AllocateChannels(64)", "Mix_Volume(0, 128)",
                                       "Mix_Volume(1, 128)", "Mix_Volume(2, 128)"}));
    for (int i = 0; i < 3; ++i) EXPECT_NE(audio->acquireSource(), nullptr);
    EXPECT_EQ(audio->acquireSource(), nullptr);
    engine->destroyAudioDevice(audio);
}

TEST_F(AudioCreation, worksWithoutAnyChannel)
{
    for (const int channels : {0, -1}) {
        mixerAnswers().allocateChannels = {true, channels};
        AudioDevice* audio = engine->createAudioDevice();
        ASSERT_NE(audio, nullptr);
        EXPECT_EQ(logLines().back(), "Audio: using " + std::to_string(channels) + " channels.");
        EXPECT_EQ(audio->acquireSource(), nullptr);
        audio->update(0.0f);
        engine->destroyAudioDevice(audio);
    }
}

TEST_F(AudioCreation, twoDevicesNeedTwoDestroys)
{
    AudioDevice* first = engine->createAudioDevice();
    AudioDevice* second = engine->createAudioDevice();
    ASSERT_NE(first, nullptr);
    ASSERT_NE(second, nullptr);
    engine->destroyAudioDevice(second);
    EXPECT_TRUE(isMixerOpen());
    Sample* sample = first->loadSampleFromMemory(constantWave(1000, 100, 100));
    ASSERT_NE(sample, nullptr);
    first->acquireSource()->play(sample, 0.0f);
    EXPECT_EQ(heard(playChunks(2)), "100 100");
    first->destroySample(sample);
    engine->destroyAudioDevice(first);
    EXPECT_FALSE(isMixerOpen());
}

// The mixer has lost its channels by then, and would crash.
TEST_F(AudioCreation, deviceThatOutlivesTheMixerIsInert)
{
    AudioDevice* audio = engine->createAudioDevice();
    ASSERT_NE(audio, nullptr);
    const std::vector<unsigned char> data = constantWave(1000, 100, 100);
    const std::string fileName = writeSound("sound.wav", data);
    Sample* sample = audio->loadSampleFromMemory(data);
    Stream* stream = audio->loadStreamFromMemory(data);
    AudioSource* source = audio->acquireSource();
    engine->destroyAudioDevice(nullptr);
    ASSERT_FALSE(isMixerOpen());
    takeMixerCalls();

    source->setRange(10.0f);
    source->setPosition({5, 0, 0});
    source->setDirection({1, 0, 0});
    source->setVolume(0.5f);
    source->play(sample, 0.0f);
    source->play(sample, 1.0f);
    source->stop(0.0f);
    source->stop(1.0f);
    audio->playStream(stream, true, 0.0f);
    audio->playStream(stream, true, 1.0f);
    audio->setListener({1, 2, 3}, origin);
    audio->update(0.0f);
    EXPECT_EQ(takeMixerCalls(), Calls());
    EXPECT_EQ(audio->acquireSource(), source) << "silent, so it went back";

    audio->setMusicVolume(0.5f);
    audio->stopMusic(0.0f);
    audio->stopMusic(1.0f);
    EXPECT_FALSE(audio->isMusicPlaying());
    EXPECT_EQ(audio->getListenerPosition(), Vector3<float>(1, 2, 3));
    EXPECT_EQ(audio->loadSample(fileName), nullptr);
    EXPECT_EQ(audio->loadSampleFromMemory(data), nullptr);
    EXPECT_EQ(audio->loadStream(fileName), nullptr);
    EXPECT_EQ(audio->loadStreamFromMemory(data), nullptr);
    audio->destroySample(sample);
    audio->destroyStream(stream);
    engine->destroyAudioDevice(audio);
    EXPECT_FALSE(isMixerOpen());

    AudioDevice* next = engine->createAudioDevice();
    ASSERT_NE(next, nullptr);
    next->setMusicVolume(1.0f);
    engine->destroyAudioDevice(next);
}

TEST_F(AudioCalls, volumesGoToTheChannelOfTheSource)
{
    AudioSource* first = audio->acquireSource();
    AudioSource* second = audio->acquireSource();
    first->setVolume(0.3f);
    second->setVolume(1.7f);
    first->setVolume(-0.2f);
    first->setVolume(noNumber);
    EXPECT_EQ(takeMixerCalls(),
              (Calls{"Mix_Volume(0, 38)", "Mix_Volume(1, 128)", "Mix_Volume(0, 0)", "Mix_Volume(0, 0)"}));
    audio->setMusicVolume(0.3f);
    audio->setMusicVolume(-0.2f);
    audio->setMusicVolume(1.7f);
    EXPECT_EQ(takeMixerCalls(), (Calls{"Mix_VolumeMusic(38)", "Mix_VolumeMusic(0)", "Mix_VolumeMusic(128)"}));
}

TEST_F(AudioCalls, placesAndRangesAreOnlyRemembered)
{
    AudioSource* source = audio->acquireSource();
    source->setPosition({1, 2, 3});
    source->setDirection({1, 2, 3});
    source->setRange(10.0f);
    audio->setListener({1, 2, 3}, {4, 5, 6});
    EXPECT_EQ(takeMixerCalls(), Calls());
}

TEST_F(AudioCalls, updateSetsOnlyPlayingSourcesWithARange)
{
    Sample* sample = constantSample(20 * 1024, 100);
    AudioSource* silent = audio->acquireSource();
    AudioSource* plain = audio->acquireSource();
    AudioSource* ranged = audio->acquireSource();
    silent->setRange(10.0f);
    ranged->setRange(10.0f);
    ranged->setVolume(0.8f);
    ranged->setPosition({5, 0, 0});
    plain->play(sample, 0.0f);
    ranged->play(sample, 0.0f);
    takeMixerCalls();
    audio->update(0.0f);
    EXPECT_EQ(takeMixerCalls(), Calls{"Mix_Volume(2, 51)"});
    audio->update(1000.0f);
    EXPECT_EQ(takeMixerCalls(), Calls{"Mix_Volume(2, 51)"}) << "the argument says nothing";
    audio->destroySample(sample);
    takeMixerCalls();
    audio->update(0.0f);
    EXPECT_EQ(takeMixerCalls(), Calls());
}

TEST_F(AudioCalls, samplesPlayWithoutRepeatAndLimit)
{
    Sample* sample = constantSample(1024, 100);
    audio->acquireSource();
    AudioSource* source = audio->acquireSource();
    for (const float fade : {0.0f, -1.0f, -infinity, noNumber}) {
        source->play(sample, fade);
        EXPECT_EQ(takeMixerCalls().back(), "Mix_PlayChannelTimed(1, 0, -1)") << fade;
        source->stop(fade);
        EXPECT_EQ(takeMixerCalls(), Calls{"Mix_HaltChannel(1)"}) << fade;
    }
    source->play(sample, 0.5f);
    EXPECT_EQ(takeMixerCalls(), Calls{"Mix_FadeInChannelTimed(1, 0, 500, -1)"});
    source->stop(0.25f);
    EXPECT_EQ(takeMixerCalls(), Calls{"Mix_FadeOutChannel(1, 250)"});
    audio->destroySample(sample);
}

TEST_F(AudioCalls, streamsPlayOnceOrForEver)
{
    Stream* stream = constantStream(1024, 100);
    takeMixerCalls();
    for (const float fade : {0.0f, -1.0f, -infinity, noNumber}) {
        audio->playStream(stream, false, fade);
        audio->playStream(stream, true, fade);
        audio->stopMusic(fade);
        EXPECT_EQ(takeMixerCalls(), (Calls{"Mix_PlayMusic(1)", "Mix_PlayMusic(-1)", "Mix_HaltMusic()"})) << fade;
    }
    audio->playStream(stream, false, 0.5f);
    audio->playStream(stream, true, 0.5f);
    audio->stopMusic(0.25f);
    EXPECT_EQ(takeMixerCalls(),
              (Calls{"Mix_FadeInMusic(1, 500)", "Mix_FadeInMusic(-1, 500)", "Mix_FadeOutMusic(250)"}));
    audio->stopMusic(0.0f);
    audio->destroyStream(stream);
}

// 0.29 seconds are 290 milliseconds in float, 289 in double.
TEST_F(AudioCalls, fadesAreCountedInWholeMilliseconds)
{
    struct Case {
        float seconds;
        std::string milliseconds;
    };
    const std::vector<Case> cases = {
        {0.29f, "290"},
        {0.57f, "570"},
        {1.0f, "1000"},
        {0.0019f, "1"},
        {0.001f, "1"},
        {0.0009f, "0"},
        {1e-30f, "0"},
        {60.0f, "60000"},
        {2147483.0f, "2147483008"},
        {2147484.0f, "2147483520"},
        {1e30f, "2147483520"},
        {infinity, "2147483520"},
    };
    Sample* sample = constantSample(1024, 100);
    Stream* stream = constantStream(1024, 100);
    AudioSource* source = audio->acquireSource();
    for (const Case& test : cases) {
        takeMixerCalls();
        source->play(sample, test.seconds);
        source->stop(test.seconds);
        audio->playStream(stream, false, test.seconds);
        audio->stopMusic(test.seconds);
        EXPECT_EQ(takeMixerCalls(), (Calls{"Mix_FadeInChannelTimed(0, 0, " + test.milliseconds + ", -1)",
                                           "Mix_FadeOutChannel(0, " + test.milliseconds + ")",
                                           "Mix_FadeInMusic(1, " + test.milliseconds + ")",
                                           "Mix_FadeOutMusic(" + test.milliseconds + ")"}))
            << test.seconds;
        source->stop(0.0f);
        audio->stopMusic(0.0f);
    }
    audio->destroySample(sample);
    audio->destroyStream(stream);
}

TEST_F(AudioCalls, nothingIsPlayedWithoutASound)
{
    AudioSource* source = audio->acquireSource();
    source->play(nullptr, 0.0f);
    source->play(nullptr, 1.0f);
    audio->playStream(nullptr, true, 0.0f);
    audio->playStream(nullptr, true, 1.0f);
    audio->destroySample(nullptr);
    audio->destroyStream(nullptr);
    EXPECT_EQ(takeMixerCalls(), Calls());
}

TEST_F(AudioCalls, soundsComeFromTheMixerAndGoBackToIt)
{
    const std::vector<unsigned char> data = constantWave(100, 100, 100);
    const std::string fileName = writeSound("sound.wav", data);
    Sample* sample = audio->loadSample(fileName);
    audio->destroySample(sample);
    EXPECT_EQ(takeMixerCalls(), (Calls{"Mix_LoadWAV_RW(1)", "Mix_FreeChunk()"}));
    sample = audio->loadSampleFromMemory(data);
    audio->destroySample(sample);
    EXPECT_EQ(takeMixerCalls(), (Calls{"Mix_LoadWAV_RW(1)", "Mix_FreeChunk()"}));
    Stream* stream = audio->loadStream(fileName);
    audio->destroyStream(stream);
    EXPECT_EQ(takeMixerCalls(), (Calls{"Mix_LoadMUS()", "Mix_FreeMusic()"}));
    stream = audio->loadStreamFromMemory(data);
    audio->destroyStream(stream);
    EXPECT_EQ(takeMixerCalls(), (Calls{"Mix_LoadMUS_RW(1)", "Mix_FreeMusic()"}));
}
