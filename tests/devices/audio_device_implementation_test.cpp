#include "disk_audio.h"
#include "file_contents.h"

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

// Played by a thread of SDL's into a file.

namespace {

class AudioDeviceImplementation : public DiskAudioFixture {
protected:
    /// What a sample sounds like, a chunk's silence around it left out.
    std::vector<Frame> playedFrames()
    {
        const std::vector<Frame> frames = endAndListen();
        const auto isLoud = [](const Frame& frame) { return frame != Frame(); };
        const auto first = std::find_if(frames.begin(), frames.end(), isLoud);
        const auto last = std::find_if(frames.rbegin(), frames.rend(), isLoud).base();
        return first < last ? std::vector<Frame>(first, last) : std::vector<Frame>();
    }
};

int loudest(const std::vector<Frame>& frames)
{
    int height = 0;
    for (const Frame& frame : frames) height = std::max({height, std::abs(frame.left), std::abs(frame.right)});
    return height;
}

bool areRising(std::vector<Frame>::const_iterator first, std::vector<Frame>::const_iterator last)
{
    return std::is_sorted(first, last, [](const Frame& a, const Frame& b) { return a.left < b.left; });
}

} // namespace

TEST_F(AudioDeviceImplementation, writesToTheLogHowManyChannelsItUses)
{
    const std::vector<std::string> lines = logLines();
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.back(), "Audio: using 64 channels.");
}

TEST_F(AudioDeviceImplementation, playsASampleOnceAndUnchanged)
{
    Sample* sample = constantSample(3000, 10000, -5000);
    playToTheEnd(sample);
    audio->destroySample(sample);
    const std::vector<Frame> frames = endAndListen();
    EXPECT_EQ(heard(frames), "10000 -5000");
    EXPECT_EQ(loudFrames(frames), 3000);
}

TEST_F(AudioDeviceImplementation, playsAtTheVolumeOfTheSource)
{
    Sample* sample = constantSample(2000, 10000, 10000);
    for (const float volume : {0.3f, 0.4f, 0.5f, 0.999f, -0.2f, 1.7f})
        playToTheEnd(sample, [&](AudioSource& source) { source.setVolume(volume); });
    audio->destroySample(sample);
    EXPECT_EQ(heard(endAndListen()), "2968 2968, 0 0, 3984 3984, 0 0, 5000 5000, 0 0, 9921 9921, 0 0, 10000 10000");
}

TEST_F(AudioDeviceImplementation, playsFartherSourcesLower)
{
    Sample* sample = constantSample(200 * 1024, 10000, 10000);
    AudioSource* source = audio->acquireSource();
    source->setRange(10.0f);
    source->setVolume(0.8f);
    source->play(sample, 0.0f);
    for (const float distance : {0.0f, 2.5f, 5.0f, 10.0f}) {
        source->setPosition({0, distance, 0});
        audio->update(0.0f);
        waitForChunks(3);
    }
    source->stop(0.0f);
    audio->destroySample(sample);
    // The first chunk may be played before the first update.
    EXPECT_EQ(heard(endAndListen()), "7968 7968, 5937 5937, 3984 3984");
}

TEST_F(AudioDeviceImplementation, fadesSamplesInAndOut)
{
    Sample* sample = constantSample(2000 * 1024, 10000, 10000);
    AudioSource* source = audio->acquireSource();
    source->play(sample, 0.05f);
    SDL_Delay(60);
    waitForChunks(3);
    source->stop(0.05f);
    EXPECT_TRUE(waitForSilence());
    audio->update(0.0f);
    EXPECT_EQ(audio->acquireSource(), source) << "back in the pool";
    audio->destroySample(sample);

    const std::vector<Frame> frames = playedFrames();
    ASSERT_FALSE(frames.empty());
    const auto full = std::find(frames.begin(), frames.end(), Frame{10000, 10000});
    ASSERT_NE(full, frames.end());
    const auto fading = std::find_if(full, frames.end(), [](const Frame& frame) { return frame.left != 10000; });
    EXPECT_TRUE(areRising(frames.begin(), full));
    const std::vector<Frame> reversed(frames.rbegin(), frames.rend());
    EXPECT_TRUE(areRising(reversed.begin(), reversed.begin() + (frames.end() - fading)));
}

// A fade of music goes by the chunks, of which each counts as 23 milliseconds.
TEST_F(AudioDeviceImplementation, fadesMusicInAndOut)
{
    Stream* stream = audio->loadStreamFromMemory(constantWave(30000, 12800, 12800));
    ASSERT_NE(stream, nullptr);
    audio->playStream(stream, true, 0.092f);
    waitForChunks(8);
    audio->stopMusic(0.092f);
    EXPECT_TRUE(waitForSilence());
    audio->destroyStream(stream);
    EXPECT_EQ(heard(endAndListen()), "3200 3200, 6400 6400, 9600 9600, 12800 12800, 9600 9600, 6400 6400, 3200 3200");
}

TEST_F(AudioDeviceImplementation, playsMusicOnceAndBesideSamples)
{
    Stream* stream = audio->loadStreamFromMemory(constantWave(5000, 10000, 10000));
    ASSERT_NE(stream, nullptr);
    audio->setMusicVolume(0.5f);
    audio->playStream(stream, false, 0.0f);
    EXPECT_TRUE(audio->isMusicPlaying());
    EXPECT_TRUE(waitForSilence());
    audio->destroyStream(stream);
    Sample* sample = constantSample(2000, 10000, 10000);
    playToTheEnd(sample);
    audio->destroySample(sample);
    audio->setMusicVolume(1.0f);
    const std::vector<Frame> frames = endAndListen();
    EXPECT_EQ(heard(frames), "5000 5000, 0 0, 10000 10000");
    EXPECT_EQ(loudFrames(frames), 7000);
}

TEST_F(AudioDeviceImplementation, loopsMusicUntilItIsStopped)
{
    Stream* stream = audio->loadStreamFromMemory(constantWave(700, 10000, 10000));
    ASSERT_NE(stream, nullptr);
    audio->playStream(stream, true, 0.0f);
    waitForChunks(50);
    EXPECT_TRUE(audio->isMusicPlaying());
    audio->stopMusic(0.0f);
    EXPECT_FALSE(audio->isMusicPlaying());
    waitForChunks(2);
    audio->destroyStream(stream);
    const std::vector<Frame> frames = endAndListen();
    EXPECT_EQ(heard(frames), "10000 10000");
    EXPECT_GE(loudFrames(frames), 48 * 1024);
}

TEST_F(AudioDeviceImplementation, destroysSoundsWhileTheyPlay)
{
    for (int i = 0; i < 20; ++i) {
        Sample* sample = constantSample(20000, 10000, 10000);
        Stream* stream = audio->loadStreamFromMemory(constantWave(20000, 10000, 10000));
        audio->acquireSource()->play(sample, 0.0f);
        audio->playStream(stream, true, 0.0f);
        waitForChunks(1);
        audio->destroySample(sample);
        audio->destroyStream(stream);
    }
    EXPECT_FALSE(audio->isMusicPlaying());
}

TEST_F(AudioDeviceImplementation, waitsForAFadeOutBeforeItDestroysTheMusic)
{
    Stream* stream = audio->loadStreamFromMemory(constantWave(30000, 12800, 12800));
    audio->playStream(stream, true, 0.0f);
    waitForChunks(2);
    audio->stopMusic(0.092f);
    audio->destroyStream(stream);
    EXPECT_FALSE(audio->isMusicPlaying());
    EXPECT_EQ(heard(endAndListen()), "12800 12800, 9600 9600, 6400 6400, 3200 3200");
}

TEST_F(AudioDeviceImplementation, waitsForAFadeOutBeforeItPlaysOtherMusic)
{
    Stream* first = audio->loadStreamFromMemory(constantWave(30000, 12800, 12800));
    Stream* second = audio->loadStreamFromMemory(constantWave(3000, 500, 500));
    audio->playStream(first, true, 0.0f);
    waitForChunks(2);
    audio->stopMusic(0.046f);
    audio->playStream(second, false, 0.0f);
    EXPECT_TRUE(waitForSilence());
    audio->destroyStream(first);
    audio->destroyStream(second);
    const std::vector<Frame> frames = endAndListen();
    EXPECT_EQ(heard(frames), "12800 12800, 6400 6400, 0 0, 500 500");
}

TEST_F(AudioDeviceImplementation, decodesVorbisFromFilesAndFromMemory)
{
    Sample* fromFile = audio->loadSample(soundFileName("mono.ogg"));
    Sample* fromMemory = audio->loadSampleFromMemory(soundFile("mono.ogg"));
    ASSERT_NE(fromFile, nullptr);
    ASSERT_NE(fromMemory, nullptr);
    playToTheEnd(fromFile);
    playToTheEnd(fromMemory);
    audio->destroySample(fromFile);
    audio->destroySample(fromMemory);
    const std::vector<Frame> frames = playedFrames();
    EXPECT_NEAR(loudest(frames), 12000, 1500);
    EXPECT_NEAR(static_cast<double>(loudFrames(frames)), 2 * 11024, 200) << "a quarter of a second each";
    for (const Frame& frame : frames) ASSERT_EQ(frame.left, frame.right);
}

TEST_F(AudioDeviceImplementation, streamsVorbisFromFilesAndFromMemory)
{
    std::vector<Stream*> streams = {audio->loadStream(soundFileName("stereo.ogg")),
                                    audio->loadStreamFromMemory(soundFile("stereo.ogg"))};
    for (Stream* stream : streams) {
        ASSERT_NE(stream, nullptr);
        audio->playStream(stream, false, 0.0f);
        EXPECT_TRUE(waitForSilence());
        audio->destroyStream(stream);
    }
    const std::vector<Frame> frames = playedFrames();
    EXPECT_NEAR(loudest(frames), 12000, 1500);
    EXPECT_NEAR(static_cast<double>(loudFrames(frames)), 2 * 11025, 200);
}

TEST_F(AudioDeviceImplementation, readsWavesFromFilesWhateverTheirName)
{
    const std::vector<unsigned char> data = constantWave(2000, 1000, 1000);
    for (const std::string name : {"sound.wav", "sound", "\xC3\xA9\xE6\x97\xA5.wav", "a name.WAV"}) {
        writeFileContents(name, {data.begin(), data.end()}); // narrow names are the same to streams and to devices
        Sample* sample = audio->loadSample(name);
        Stream* stream = audio->loadStream(name);
        EXPECT_NE(sample, nullptr) << name;
        EXPECT_NE(stream, nullptr) << name;
        audio->destroySample(sample);
        audio->destroyStream(stream);
    }
}
