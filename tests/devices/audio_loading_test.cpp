#include "engine_fixtures.h"
#include "file_contents.h"
#include "sounds.h"

#include <xum/devices/audio_device.h>

#include <filesystem>
#include <random>
#include <string>
#include <vector>

namespace {

class AudioLoading : public EngineFixture {
protected:
    void SetUp() override
    {
        EngineFixture::SetUp();
        ASSERT_FALSE(HasFatalFailure());
        audio = engine->createAudioDevice();
        ASSERT_NE(audio, nullptr);
        linesBefore = logLines().size();
    }

    void TearDown() override
    {
        EXPECT_EQ(logLines().size(), linesBefore) << "loading writes no messages";
        engine->destroyAudioDevice(audio);
        EngineFixture::TearDown();
    }

    void expectNull(const std::string& fileName)
    {
        EXPECT_EQ(audio->loadSample(fileName), nullptr) << fileName;
        EXPECT_EQ(audio->loadStream(fileName), nullptr) << fileName;
    }

    void expectNull(const std::vector<unsigned char>& data)
    {
        EXPECT_EQ(audio->loadSampleFromMemory(data), nullptr);
        EXPECT_EQ(audio->loadStreamFromMemory(data), nullptr);
        expectNull(writeSound("bad.wav", data));
        expectNull(writeSound("bad.ogg", data));
    }

    /// Whatever it is, it is destroyed.
    void load(const std::vector<unsigned char>& data)
    {
        audio->destroySample(audio->loadSampleFromMemory(data));
        audio->destroyStream(audio->loadStreamFromMemory(data));
    }

    AudioDevice* audio = nullptr;
    std::size_t linesBefore = 0;
};

std::vector<unsigned char> bytesOf(const std::string& text)
{
    return {text.begin(), text.end()};
}

} // namespace

TEST_F(AudioLoading, noBytesAreNoSound)
{
    expectNull(std::vector<unsigned char>());
}

TEST_F(AudioLoading, fewBytesAreNoSound)
{
    for (const std::string& start :
         {std::string("RIFF\0\0\0\0WAVE", 12), std::string("OggS\0\2\0\0\0\0\0\0", 12), std::string("WAVE"),
          std::string("FORM"), std::string("Crea"), std::string("fLaC")})
        for (std::size_t size = 1; size <= start.size(); ++size) expectNull(bytesOf(start.substr(0, size)));
}

TEST_F(AudioLoading, textIsNoSound)
{
    expectNull(bytesOf("This is a text, long enough to be looked at by every decoder that there is."));
}

TEST_F(AudioLoading, noiseIsSafe)
{
    std::mt19937 random(1);
    for (int i = 0; i < 20; ++i) {
        std::vector<unsigned char> data(4000);
        for (unsigned char& byte : data) byte = static_cast<unsigned char>(random());
        for (const std::string start : {"", "RIFF....WAVE", "RIFF....WAVEfmt ", "OggS"}) {
            std::copy(start.begin(), start.end(), data.begin());
            load(data);
        }
    }
}

TEST_F(AudioLoading, truncatedFilesAreSafe)
{
    for (const std::vector<unsigned char>& whole :
         {constantWave(300, 10000, 10000), soundFile("mono.ogg"), soundFile("stereo.ogg")})
        for (std::size_t size = 0; size < whole.size(); size += 7) load({whole.data(), whole.data() + size});
}

TEST_F(AudioLoading, wholeFilesAreSounds)
{
    for (const std::vector<unsigned char>& data :
         {constantWave(300, 10000, 10000), soundFile("mono.ogg"), soundFile("stereo.ogg")}) {
        Sample* sample = audio->loadSampleFromMemory(data);
        Stream* stream = audio->loadStreamFromMemory(data);
        EXPECT_NE(sample, nullptr);
        EXPECT_NE(stream, nullptr);
        audio->destroySample(sample);
        audio->destroyStream(stream);
    }
}

// SDL_mixer would divide by zero, and make a buffer of an overflown size.
TEST_F(AudioLoading, wavesWithoutChannelsOrOfAbsurdRatesAreNull)
{
    const std::string data = waveChunk("data", std::string(100000, '\x20'));
    expectNull(wave(waveChunk("fmt ", waveFormat(1, 0, 44100, 16)) + data));
    expectNull(wave(waveChunk("fmt ", waveFormat(1, 256, 44100, 16)) + data));
    expectNull(wave(waveChunk("fmt ", waveFormat(1, 1, 1, 8)) + data));
    expectNull(wave(waveChunk("fmt ", waveFormat(1, 1, 0, 8)) + data));
}

// SDL_mixer would read beyond the chunk.
TEST_F(AudioLoading, streamsWhoseLoopsAreMissingAreNull)
{
    std::string loops(36, '\0');
    loops[28] = '\x7F';
    const std::vector<unsigned char> bytes = wave(waveChunk("fmt ", waveFormat(1, 2, 44100, 16)) +
                                                  waveChunk("smpl", loops) + waveChunk("data", std::string(400, ' ')));
    const std::string fileName = writeSound("loops.wav", bytes);
    EXPECT_EQ(audio->loadStreamFromMemory(bytes), nullptr);
    EXPECT_EQ(audio->loadStream(fileName), nullptr);
    Sample* sample = audio->loadSample(fileName);
    EXPECT_NE(sample, nullptr) << "has no loops";
    audio->destroySample(sample);
}

TEST_F(AudioLoading, missingFilesAreNull)
{
    expectNull("missing.wav");
    expectNull("missing/sound.ogg");
    expectNull("");
}

TEST_F(AudioLoading, directoriesAreNull)
{
    std::filesystem::create_directory("directory.wav");
    expectNull("directory.wav");
    expectNull(".");
}

TEST_F(AudioLoading, namesWithANulAreNull)
{
    writeSound("sound.wav", constantWave(300, 100, 100));
    Sample* sample = audio->loadSample("sound.wav");
    EXPECT_NE(sample, nullptr);
    audio->destroySample(sample);
    expectNull(std::string("sound.wav\0", 10));
    expectNull(std::string("sound.wav\0.ogg", 14));
}

TEST_F(AudioLoading, nullIsDestroyed)
{
    audio->destroySample(nullptr);
    audio->destroyStream(nullptr);
}
