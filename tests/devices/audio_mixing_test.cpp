#include "audio_fixture.h"

#include <array>
#include <cmath>
#include <limits>
#include <set>
#include <string>
#include <utility>
#include <vector>

// What the mixer makes of a volume: the sample, times 0 to 128, divided by 128, towards zero.

namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();
const float noNumber = std::nanf("");
const Vector3<float> origin = {0, 0, 0};

/// The volume in the mixer, from 0 to 128, as it makes 12800 of 12800 at full volume.
constexpr short hundredfold = 12800;

class AudioMixing : public AudioFixture {
protected:
    /// The volume at which the next chunk is played, of sources that play `hundredfold`; -1 for more than one.
    int playedVolume()
    {
        const std::vector<Frame> frames = playChunks(1);
        for (const Frame& frame : frames)
            if (frame != frames.front() || frame.left != frame.right) return -1;
        return frames.front().left / 100;
    }

    /// Plays a sample of that many frames, all `hundredfold`, on a new source.
    AudioSource* playOnNewSource(int frames = 20 * 1024, float fadeSeconds = 0.0f)
    {
        AudioSource* source = audio->acquireSource();
        Sample* sample = constantSample(frames, hundredfold);
        EXPECT_NE(source, nullptr);
        EXPECT_NE(sample, nullptr);
        samples.push_back(sample);
        source->play(sample, fadeSeconds);
        return source;
    }

    void TearDown() override
    {
        for (Sample* sample : samples) audio->destroySample(sample);
        AudioFixture::TearDown();
    }

    std::vector<Sample*> samples;
};

} // namespace

TEST_F(AudioMixing, sampleIsPlayedOnceAndUnchanged)
{
    Sample* sample = audio->loadSampleFromMemory(constantWave(3000, 10000, -5000));
    ASSERT_NE(sample, nullptr);
    audio->acquireSource()->play(sample, 0.0f);
    const std::vector<Frame> frames = playChunks(20);
    EXPECT_EQ(heard(frames), "10000 -5000");
    EXPECT_EQ(loudFrames(frames), 3000);
    EXPECT_EQ(frames[0].left, 10000) << "begins at once";
    EXPECT_EQ(frames[2999].left, 10000);
    audio->destroySample(sample);
}

TEST_F(AudioMixing, volumesAreRoundedDownAndClamped)
{
    const std::vector<std::pair<float, int>> volumes = {
        {0.3f, 38},        {0.5f, 64},    {0.8f, 102},     {0.999f, 127},  {1.0f, 128}, {1.7f, 128},
        {1000000.0f, 128}, {1e30f, 128},  {0.0f, 0},       {-0.2f, 0},     {-1e30f, 0}, {0.0078f, 0},
        {0.0079f, 1},      {noNumber, 0}, {infinity, 128}, {-infinity, 0},
    };
    AudioSource* source = playOnNewSource();
    for (const auto& [volume, expected] : volumes) {
        source->setVolume(volume);
        EXPECT_EQ(playedVolume(), expected) << volume;
    }
}

TEST_F(AudioMixing, volumeSetBeforePlayingCounts)
{
    Sample* sample = constantSample(1024, 10000);
    AudioSource* source = audio->acquireSource();
    source->setVolume(0.4f);
    source->play(sample, 0.0f);
    EXPECT_EQ(heard(playChunks(3)), "3984 3984");
    audio->destroySample(sample);
}

TEST_F(AudioMixing, volumeFallsOffLinearlyUpToTheRange)
{
    struct Case {
        float volume;
        float distance;
        int expected;
    };
    const std::vector<Case> cases = {
        {1.0f, 0.0f, 128}, {1.0f, 2.5f, 96},  {1.0f, 5.0f, 64}, {1.0f, 9.9f, 1},     {1.0f, 9.99f, 0}, {1.0f, 10.0f, 0},
        {1.0f, 20.0f, 0},  {0.8f, 0.0f, 102}, {0.8f, 2.5f, 76}, {0.8f, 5.0f, 51},    {0.8f, 9.99f, 0}, {0.8f, 10.0f, 0},
        {0.8f, 20.0f, 0},  {0.0f, 0.0f, 0},   {1.0f, 1e30f, 0}, {1.0f, infinity, 0},
    };
    AudioSource* source = playOnNewSource();
    source->setRange(10.0f);
    for (const Case& test : cases) {
        source->setVolume(test.volume);
        source->setPosition({test.distance, 0, 0});
        audio->update(0.0f);
        EXPECT_EQ(playedVolume(), test.expected) << test.volume << " at " << test.distance;
    }
}

TEST_F(AudioMixing, distanceIsMeasuredInSpaceAndFromTheListener)
{
    AudioSource* source = playOnNewSource();
    source->setRange(26.0f);
    source->setPosition({3, 4, 12});
    audio->update(0.0f);
    EXPECT_EQ(playedVolume(), 64) << "13 units from the origin, where the listener is at the start";
    audio->setListener({3, 4, -14}, origin);
    audio->update(0.0f);
    EXPECT_EQ(playedVolume(), 0);
    audio->setListener({3, -2.5f, 12}, origin);
    audio->update(0.0f);
    EXPECT_EQ(playedVolume(), 96);
}

TEST_F(AudioMixing, distanceCountsFromTheNextUpdateOn)
{
    AudioSource* source = playOnNewSource();
    source->setRange(10.0f);
    source->setPosition({5, 0, 0});
    EXPECT_EQ(playedVolume(), 128);
    audio->update(0.0f);
    EXPECT_EQ(playedVolume(), 64);
    source->setVolume(0.5f);
    EXPECT_EQ(playedVolume(), 64) << "as setVolume says";
    audio->update(0.0f);
    EXPECT_EQ(playedVolume(), 32);
}

TEST_F(AudioMixing, withoutRangeDistanceDoesNotCount)
{
    AudioSource* source = playOnNewSource();
    source->setPosition({1000, 0, 0});
    source->setVolume(0.3f);
    audio->update(0.0f);
    EXPECT_EQ(playedVolume(), 38) << "as every source begins";
    for (const float range : {0.0f, -1.0f, -1000.0f, -infinity, noNumber}) {
        source->setRange(range);
        audio->update(0.0f);
        EXPECT_EQ(playedVolume(), 38) << range;
    }
}

TEST_F(AudioMixing, sourceThatLosesItsRangeStaysAsLoudAsItIs)
{
    AudioSource* source = playOnNewSource();
    source->setRange(10.0f);
    source->setPosition({5, 0, 0});
    audio->update(0.0f);
    source->setRange(-1.0f);
    audio->update(0.0f);
    EXPECT_EQ(playedVolume(), 64);
    source->setVolume(1.0f);
    audio->update(0.0f);
    EXPECT_EQ(playedVolume(), 128);
}

TEST_F(AudioMixing, placeThatIsNoNumberIsSilent)
{
    AudioSource* source = playOnNewSource();
    source->setRange(10.0f);
    source->setPosition({noNumber, 0, 0});
    audio->update(0.0f);
    EXPECT_EQ(playedVolume(), 0);
}

TEST_F(AudioMixing, directionsChangeNothing)
{
    AudioSource* source = playOnNewSource();
    source->setRange(10.0f);
    source->setPosition({5, 0, 0});
    source->setDirection({-1, 0, 0});
    audio->setListener(origin, {0, 1, 0});
    audio->update(0.0f);
    EXPECT_EQ(playedVolume(), 64);
}

TEST_F(AudioMixing, sourcesAreIndependent)
{
    AudioSource* first = playOnNewSource();
    AudioSource* second = playOnNewSource();
    AudioSource* third = playOnNewSource();
    first->setVolume(0.5f);
    second->setVolume(0.25f);
    third->setRange(10.0f);
    third->setPosition({9, 0, 0});
    audio->update(0.0f);
    EXPECT_EQ(playedVolume(), 64 + 32 + 12);
    second->stop(0.0f);
    EXPECT_EQ(playedVolume(), 64 + 12);
    first->stop(0.0f);
    EXPECT_EQ(playedVolume(), 12);
}

TEST_F(AudioMixing, sourceFadesIn)
{
    mixerAnswers().isClockDriven = true;
    mixerAnswers().ticks = 5000;
    playOnNewSource(20 * 1024, 1.0f);
    std::vector<int> volumes;
    for (const std::uint32_t ticks : {5000u, 5010u, 5250u, 5500u, 5999u, 6000u, 7000u}) {
        mixerAnswers().ticks = ticks;
        volumes.push_back(playedVolume());
    }
    EXPECT_EQ(volumes, (std::vector<int>{0, 1, 32, 64, 127, 128, 128}));
}

TEST_F(AudioMixing, sourceFadesInToItsVolume)
{
    mixerAnswers().isClockDriven = true;
    mixerAnswers().ticks = 5000;
    AudioSource* source = audio->acquireSource();
    Sample* sample = constantSample(20 * 1024, hundredfold);
    source->setVolume(0.5f);
    source->play(sample, 0.1f);
    std::vector<int> volumes;
    for (const std::uint32_t ticks : {5000u, 5050u, 5100u}) {
        mixerAnswers().ticks = ticks;
        volumes.push_back(playedVolume());
    }
    EXPECT_EQ(volumes, (std::vector<int>{0, 32, 64}));
    audio->destroySample(sample);
}

TEST_F(AudioMixing, sourceFadesOutAndGoesBackToThePool)
{
    mixerAnswers().isClockDriven = true;
    mixerAnswers().ticks = 5000;
    AudioSource* source = playOnNewSource();
    source->stop(0.5f);
    std::vector<int> volumes;
    for (const std::uint32_t ticks : {5000u, 5125u, 5250u, 5375u, 5499u}) {
        mixerAnswers().ticks = ticks;
        volumes.push_back(playedVolume());
        audio->update(0.0f);
        EXPECT_NE(audio->acquireSource(), source) << "still plays";
    }
    EXPECT_EQ(volumes, (std::vector<int>{128, 96, 64, 32, 0}));
    mixerAnswers().ticks = 5500;
    EXPECT_EQ(playedVolume(), 0);
    audio->update(0.0f);
    EXPECT_EQ(audio->acquireSource(), source);
    source->play(samples.front(), 0.0f);
    EXPECT_EQ(playedVolume(), 128) << "the fade has not changed its volume";
}

TEST_F(AudioMixing, stopWithoutFadeSilencesAtOnce)
{
    for (const float fade : {0.0f, -1.0f, noNumber}) {
        AudioSource* source = playOnNewSource();
        EXPECT_EQ(playedVolume(), 128);
        source->stop(fade);
        EXPECT_EQ(playedVolume(), 0) << fade;
    }
}

TEST_F(AudioMixing, stopOfASilentSourceDoesNothing)
{
    AudioSource* source = audio->acquireSource();
    source->stop(0.0f);
    source->stop(1.0f);
    EXPECT_EQ(playedVolume(), 0);
    source->play(nullptr, 0.0f);
    EXPECT_EQ(playedVolume(), 0);
}

TEST_F(AudioMixing, playReplacesWhatTheSourcePlays)
{
    AudioSource* source = playOnNewSource();
    Sample* other = constantSample(2000, 700);
    EXPECT_EQ(playedVolume(), 128);
    source->play(other, 0.0f);
    const std::vector<Frame> frames = playChunks(3);
    EXPECT_EQ(heard(frames), "700 700");
    EXPECT_EQ(loudFrames(frames), 2000);
    audio->destroySample(other);
}

TEST_F(AudioMixing, playOfNoSampleIsIgnored)
{
    AudioSource* source = playOnNewSource();
    source->play(nullptr, 0.0f);
    source->play(nullptr, 1.0f);
    EXPECT_EQ(playedVolume(), 128);
}

TEST_F(AudioMixing, oneSamplePlaysOnManySources)
{
    Sample* sample = constantSample(1024, 100);
    for (int i = 0; i < 64; ++i) audio->acquireSource()->play(sample, 0.0f);
    EXPECT_EQ(heard(playChunks(2)), "6400 6400");
    audio->destroySample(sample);
}

TEST_F(AudioMixing, destroyedSampleFallsSilentEverywhere)
{
    Sample* sample = constantSample(20 * 1024, 1000);
    audio->acquireSource()->play(sample, 0.0f);
    audio->acquireSource()->play(sample, 1.0f);
    playOnNewSource();
    playChunks(1);
    audio->destroySample(sample);
    EXPECT_EQ(playedVolume(), 128) << "another sample plays on";
}

TEST_F(AudioMixing, thereAre64Sources)
{
    std::set<AudioSource*> sources;
    for (int i = 0; i < 64; ++i) sources.insert(audio->acquireSource());
    EXPECT_EQ(sources.size(), 64u);
    EXPECT_EQ(sources.count(nullptr), 0u);
    EXPECT_EQ(audio->acquireSource(), nullptr);
    EXPECT_EQ(audio->acquireSource(), nullptr);
}

TEST_F(AudioMixing, sourcesAreLentInOrderAndKeepTheirPlaces)
{
    std::array<AudioSource*, 64> first = {};
    for (AudioSource*& source : first) source = audio->acquireSource();
    audio->update(0.0f);
    std::array<AudioSource*, 64> second = {};
    for (AudioSource*& source : second) source = audio->acquireSource();
    EXPECT_EQ(first, second);
}

TEST_F(AudioMixing, sourceGoesBackWithTheFirstUpdateThatFindsItSilent)
{
    AudioSource* source = playOnNewSource(1500);
    playChunks(1);
    audio->update(0.0f);
    AudioSource* second = audio->acquireSource();
    EXPECT_NE(second, source) << "still plays";
    second->play(samples.front(), 0.0f);
    playChunks(1);
    AudioSource* third = audio->acquireSource();
    EXPECT_NE(third, source) << "silent, but not found so";
    audio->update(0.0f);
    EXPECT_EQ(audio->acquireSource(), source);
}

TEST_F(AudioMixing, sourceThatWasNotPlayedGoesBack)
{
    AudioSource* source = audio->acquireSource();
    EXPECT_NE(audio->acquireSource(), source);
    audio->update(0.0f);
    EXPECT_EQ(audio->acquireSource(), source);
}

TEST_F(AudioMixing, silentSourceOnlyGoesBack)
{
    AudioSource* source = playOnNewSource(100);
    source->setRange(10.0f);
    source->setPosition({5, 0, 0});
    playChunks(1);
    audio->update(0.0f); // leaves the volume alone
    ASSERT_EQ(audio->acquireSource(), source);
    source->play(samples.front(), 0.0f);
    EXPECT_EQ(playChunks(1)[0].left, hundredfold);
}

TEST_F(AudioMixing, sourceKeepsItsStateForTheNextWhoAcquiresIt)
{
    AudioSource* source = audio->acquireSource();
    source->setVolume(0.8f);
    source->setRange(10.0f);
    source->setPosition({5, 0, 0});
    audio->update(0.0f);
    ASSERT_EQ(playOnNewSource(), source);
    EXPECT_EQ(playedVolume(), 102);
    audio->update(0.0f);
    EXPECT_EQ(playedVolume(), 51);
}

TEST_F(AudioMixing, listenerBeginsAtTheOriginAndIsRemembered)
{
    const Vector3<float>& position = audio->getListenerPosition();
    EXPECT_EQ(position, origin);
    audio->setListener({1, 2, 3}, {4, 5, 6});
    EXPECT_EQ(position, Vector3<float>(1, 2, 3));
    EXPECT_EQ(&audio->getListenerPosition(), &position);
}

TEST_F(AudioMixing, streamPlaysOnce)
{
    Stream* stream = constantStream(3000, 10000);
    audio->playStream(stream, false, 0.0f);
    EXPECT_TRUE(audio->isMusicPlaying());
    const std::vector<Frame> frames = playChunks(20);
    EXPECT_EQ(heard(frames), "10000 10000");
    EXPECT_EQ(loudFrames(frames), 3000);
    EXPECT_EQ(frames[2999].left, 10000);
    EXPECT_FALSE(audio->isMusicPlaying());
    audio->destroyStream(stream);
}

TEST_F(AudioMixing, streamCanBePlayedAgain)
{
    Stream* stream = constantStream(3000, 10000);
    for (int i = 0; i < 3; ++i) {
        audio->playStream(stream, false, 0.0f);
        EXPECT_EQ(loudFrames(playChunks(6)), 3000);
    }
    audio->destroyStream(stream);
}

TEST_F(AudioMixing, loopingStreamPlaysForEver)
{
    Stream* stream = constantStream(3000, 10000);
    audio->playStream(stream, true, 0.0f);
    EXPECT_EQ(loudFrames(playChunks(200)), 200 * 1024);
    EXPECT_TRUE(audio->isMusicPlaying());
    audio->destroyStream(stream);
    EXPECT_FALSE(audio->isMusicPlaying());
}

TEST_F(AudioMixing, loopingStreamOfVorbisPlaysForEver)
{
    Stream* stream = audio->loadStreamFromMemory(soundFile("stereo.ogg"));
    ASSERT_NE(stream, nullptr);
    audio->playStream(stream, true, 0.0f);
    playChunks(200);
    EXPECT_TRUE(audio->isMusicPlaying());
    EXPECT_GT(loudFrames(playChunks(20)), 19 * 1024);
    audio->destroyStream(stream);
}

TEST_F(AudioMixing, playStreamReplacesWhatPlays)
{
    Stream* first = constantStream(30000, 10000);
    Stream* second = constantStream(2000, 500);
    audio->playStream(first, true, 0.0f);
    playChunks(2);
    audio->playStream(second, false, 0.0f);
    EXPECT_EQ(heard(playChunks(5)), "500 500");
    EXPECT_FALSE(audio->isMusicPlaying()) << "the first does not go on";
    audio->destroyStream(first);
    audio->destroyStream(second);
}

TEST_F(AudioMixing, playStreamOfNoneIsIgnored)
{
    audio->playStream(nullptr, true, 0.0f);
    EXPECT_FALSE(audio->isMusicPlaying());
    Stream* stream = constantStream(3000, 10000);
    audio->playStream(stream, true, 0.0f);
    audio->playStream(nullptr, false, 0.0f);
    audio->playStream(nullptr, false, 1.0f);
    EXPECT_EQ(heard(playChunks(3)), "10000 10000");
    audio->destroyStream(stream);
}

TEST_F(AudioMixing, musicVolumeIsRoundedDownAndClamped)
{
    Stream* stream = constantStream(3000, hundredfold);
    audio->playStream(stream, true, 0.0f);
    const std::vector<std::pair<float, int>> volumes = {
        {0.3f, 38},  {0.5f, 64},    {0.999f, 127},   {1.7f, 128},    {-0.2f, 0},
        {1.0f, 128}, {noNumber, 0}, {infinity, 128}, {-infinity, 0},
    };
    for (const auto& [volume, expected] : volumes) {
        audio->setMusicVolume(volume);
        EXPECT_EQ(playedVolume(), expected) << volume;
    }
    audio->destroyStream(stream);
    audio->setMusicVolume(1.0f);
}

TEST_F(AudioMixing, musicVolumeHoldsForTheNextStream)
{
    audio->setMusicVolume(0.5f);
    Stream* stream = constantStream(1024, 10000);
    audio->playStream(stream, false, 0.0f);
    EXPECT_EQ(heard(playChunks(3)), "5000 5000");
    audio->destroyStream(stream);
    audio->setMusicVolume(1.0f);
}

TEST_F(AudioMixing, musicAndSourcesHaveTheirOwnVolumes)
{
    Stream* stream = constantStream(3000, hundredfold);
    audio->playStream(stream, true, 0.0f);
    AudioSource* source = playOnNewSource();
    audio->setMusicVolume(0.5f);
    EXPECT_EQ(playedVolume(), 64 + 128);
    source->setVolume(0.25f);
    EXPECT_EQ(playedVolume(), 64 + 32);
    audio->stopMusic(0.0f);
    EXPECT_EQ(playedVolume(), 32);
    audio->destroyStream(stream);
    audio->setMusicVolume(1.0f);
}

// A chunk counts as 23 milliseconds in a fade of music.

TEST_F(AudioMixing, musicFadesIn)
{
    Stream* stream = constantStream(30000, hundredfold);
    audio->playStream(stream, true, 0.184f);
    std::vector<int> volumes(10);
    for (int& volume : volumes) volume = playedVolume();
    EXPECT_EQ(volumes, (std::vector<int>{16, 32, 48, 64, 80, 96, 112, 128, 128, 128}));
    audio->destroyStream(stream);
}

TEST_F(AudioMixing, musicFadesOut)
{
    Stream* stream = constantStream(30000, hundredfold);
    audio->playStream(stream, true, 0.0f);
    EXPECT_EQ(playedVolume(), 128);
    audio->stopMusic(0.184f);
    EXPECT_TRUE(audio->isMusicPlaying());
    std::vector<int> volumes(9);
    for (int& volume : volumes) volume = playedVolume();
    EXPECT_EQ(volumes, (std::vector<int>{112, 96, 80, 64, 48, 32, 16, 0, 0}));
    EXPECT_FALSE(audio->isMusicPlaying());
    audio->destroyStream(stream);
}

TEST_F(AudioMixing, musicStopsAtOnceWithoutFade)
{
    Stream* stream = constantStream(30000, hundredfold);
    for (const float fade : {0.0f, -1.0f, noNumber}) {
        audio->playStream(stream, true, 0.0f);
        EXPECT_EQ(playedVolume(), 128);
        audio->stopMusic(fade);
        EXPECT_FALSE(audio->isMusicPlaying()) << fade;
        EXPECT_EQ(playedVolume(), 0) << fade;
    }
    audio->stopMusic(0.0f);
    audio->stopMusic(1.0f);
    EXPECT_FALSE(audio->isMusicPlaying());
    audio->destroyStream(stream);
}

TEST_F(AudioMixing, destroyedStreamFallsSilent)
{
    Stream* stream = constantStream(30000, 10000);
    audio->playStream(stream, true, 0.0f);
    playChunks(2);
    audio->destroyStream(stream);
    EXPECT_FALSE(audio->isMusicPlaying());
    EXPECT_EQ(loudFrames(playChunks(2)), 0);
}

TEST_F(AudioMixing, destroyedStreamLeavesAnotherAlone)
{
    Stream* playing = constantStream(3000, 10000);
    Stream* other = constantStream(3000, 500);
    audio->playStream(playing, true, 0.0f);
    audio->destroyStream(other);
    EXPECT_EQ(heard(playChunks(2)), "10000 10000");
    audio->destroyStream(playing);
}

TEST_F(AudioMixing, streamFromMemoryKeepsItsOwnBytes)
{
    for (std::vector<unsigned char> data : {constantWave(50000, 10000, 10000), soundFile("stereo.ogg")}) {
        Stream* kept = audio->loadStreamFromMemory(data);
        audio->playStream(kept, false, 0.0f);
        const std::vector<Frame> expected = playChunks(60);
        audio->destroyStream(kept);

        Stream* stream = audio->loadStreamFromMemory(data);
        data.assign(data.size(), 0xFF);
        audio->playStream(stream, false, 0.0f);
        EXPECT_EQ(playChunks(60), expected);
        EXPECT_GT(loudFrames(expected), 10000);
        audio->destroyStream(stream);
    }
}

TEST_F(AudioMixing, sampleFromMemoryNeedsItsBytesNoMore)
{
    std::vector<unsigned char> data = constantWave(2000, 10000, 10000);
    Sample* sample = audio->loadSampleFromMemory(data);
    data.assign(data.size(), 0xFF);
    audio->acquireSource()->play(sample, 0.0f);
    EXPECT_EQ(heard(playChunks(3)), "10000 10000");
    audio->destroySample(sample);
}

TEST_F(AudioMixing, soundsOfOneChannelAreHeardOnBothSides)
{
    const std::string frames(2000, '\x40');
    const std::string format = waveChunk("fmt ", waveFormat(1, 1, 44100, 16));
    Sample* sample = audio->loadSampleFromMemory(wave(format + waveChunk("data", frames)));
    ASSERT_NE(sample, nullptr);
    audio->acquireSource()->play(sample, 0.0f);
    const std::vector<Frame> played = playChunks(2);
    EXPECT_EQ(loudFrames(played), 1000);
    EXPECT_NEAR(played[500].left, 0x4040, 1) << "one is lost on the way through floating point";
    EXPECT_EQ(played[500].left, played[500].right);
    audio->destroySample(sample);
}

TEST_F(AudioMixing, textsInAWaveDoNotChangeWhatIsHeard)
{
    const std::string format = waveChunk("fmt ", waveFormat(1, 2, 44100, 16));
    const std::string texts = waveChunk("LIST", "INFO" + waveChunk("INAM", "a name without an end.."));
    const std::string tag = waveChunk("id3 ", std::string("ID3\4\0\0\0\0\0\x11TIT2\0\0\0\7\0\0\3a name\0", 28));
    const std::string data = waveChunk("data", std::string(4000, '\x20'));
    const std::vector<unsigned char> bytes = wave(format + tag + data + texts);
    const std::string fileName = writeSound("texts.wav", bytes);
    for (Stream* stream : {audio->loadStreamFromMemory(bytes), audio->loadStream(fileName)}) {
        ASSERT_NE(stream, nullptr);
        audio->playStream(stream, false, 0.0f);
        const std::vector<Frame> played = playChunks(3);
        EXPECT_EQ(heard(played), "8224 8224");
        EXPECT_EQ(loudFrames(played), 1000);
        audio->destroyStream(stream);
    }
}

// Every shorter part of a file: whatever can be loaded of it can also be played.
TEST_F(AudioMixing, truncatedFilesAreSafe)
{
    for (const std::vector<unsigned char>& whole : {constantWave(300, 10000, 10000), soundFile("mono.ogg")}) {
        for (std::size_t size = 0; size < whole.size(); size += 7) {
            const std::vector<unsigned char> part(whole.data(), whole.data() + size);
            Sample* sample = audio->loadSampleFromMemory(part);
            Stream* stream = audio->loadStreamFromMemory(part);
            audio->acquireSource()->play(sample, 0.0f);
            audio->playStream(stream, true, 0.0f);
            playChunks(2);
            audio->destroySample(sample);
            audio->destroyStream(stream);
            audio->update(0.0f);
        }
    }
}
