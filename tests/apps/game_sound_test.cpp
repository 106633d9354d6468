#include "file_contents.h"
#include "run_program.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <vector>

// Listens to the game: SDL's disk driver writes what the mixer plays into a file, 16 bits and two channels. It is told
// to be faster than a sound card, so that a short run is heard for several seconds.

#ifndef _WIN32
namespace {

namespace fs = std::filesystem;

struct Sound {
    std::vector<int> left;
    std::vector<int> right;
};

Sound readSound(const std::string& fileName)
{
    const std::string bytes = fileContents(fileName);
    Sound sound;
    for (std::size_t i = 0; i + 4 <= bytes.size(); i += 4) {
        std::int16_t frame[2];
        std::memcpy(frame, &bytes[i], sizeof frame);
        sound.left.push_back(frame[0]);
        sound.right.push_back(frame[1]);
    }
    return sound;
}

/// The root of the mean square.
double loudness(const std::vector<int>& samples)
{
    double sum = 0;
    for (const int sample : samples) sum += static_cast<double>(sample) * sample;
    return samples.empty() ? 0 : std::sqrt(sum / static_cast<double>(samples.size()));
}

int largest(const std::vector<int>& samples)
{
    return samples.empty() ? 0 : *std::max_element(samples.begin(), samples.end());
}

/// What half of the samples that are heard do not exceed.
int median(std::vector<int> samples)
{
    samples.erase(std::remove(samples.begin(), samples.end(), 0), samples.end());
    if (samples.empty()) return 0;
    const auto middle = samples.begin() + static_cast<std::ptrdiff_t>(samples.size() / 2);
    std::nth_element(samples.begin(), middle, samples.end());
    return *middle;
}

/// How much of a tone the samples hold, against their loudness: 1 for that tone alone, near 0 for noise.
double strengthOf(double frequency, const std::vector<int>& samples)
{
    double real = 0;
    double imaginary = 0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double angle = 2 * 3.14159265358979 * frequency * static_cast<double>(i) / 44100;
        real += samples[i] * std::cos(angle);
        imaginary += samples[i] * std::sin(angle);
    }
    return std::hypot(real, imaginary) * std::sqrt(2.0) / static_cast<double>(samples.size()) / loudness(samples);
}

void appendNumber(std::string& bytes, unsigned number, int size)
{
    for (int i = 0; i < size; ++i, number >>= 8) bytes += static_cast<char>(number & 0xFF);
}

/// A WAV file of two channels with the same value all the time.
void writeConstantSound(const std::string& fileName, int value, unsigned frameCount)
{
    std::string bytes = "RIFF";
    appendNumber(bytes, 36 + frameCount * 4, 4);
    bytes += "WAVEfmt ";
    appendNumber(bytes, 16, 4);
    appendNumber(bytes, 1, 2); // plain samples
    appendNumber(bytes, 2, 2);
    appendNumber(bytes, 44100, 4);
    appendNumber(bytes, 44100 * 4, 4);
    appendNumber(bytes, 4, 2);
    appendNumber(bytes, 16, 2);
    bytes += "data";
    appendNumber(bytes, frameCount * 4, 4);
    for (unsigned i = 0; i < frameCount * 2; ++i) appendNumber(bytes, static_cast<unsigned>(value), 2);
    writeFileContents(fileName, bytes);
}

/// A copy of the data whose sounds a test may silence.
class GameSound : public ::testing::Test {
protected:
    void SetUp() override
    {
        fs::remove_all("data");
        fs::copy(XUM_DATA_DIRECTORY, "data", fs::copy_options::recursive);
    }

    static void replaceMusic(int value) { writeConstantSound("data/streams/courtyard.ogg", value, 441000); }

    static void replaceSample(const std::string& name, int value)
    {
        writeConstantSound("data/samples/" + name + ".wav", value, 441000);
    }

    static void silenceSamples()
    {
        for (const char* name : {"fountain", "flame", "blackbird", "finch"}) replaceSample(name, 0);
    }

    /// At least half a second of it.
    static Sound listen(const std::string& arguments = "", const std::string& fileName = "sound.raw")
    {
        const std::string game = "\"" XUM_GAME_PROGRAM "\" --data data --frames 200 --size 16x16 ";
        const ProgramRun run =
            runProgram("/usr/bin/env", "SDL_AUDIODRIVER=disk SDL_DISKAUDIODELAY=2 SDL_DISKAUDIOFILE=\"" + fileName +
                                           "\" " + game + arguments);
        EXPECT_EQ(run.status, 0) << run.errors;
        const Sound sound = readSound(fileName);
        EXPECT_GT(sound.left.size(), 22050u);
        return sound;
    }
};

} // namespace

TEST_F(GameSound, musicAndSoundsAreHeardOnBothSides)
{
    const Sound sound = listen("", XUM_RESULT_DIRECTORY "/game-sound.raw");
    EXPECT_GT(loudness(sound.left), 1000);
    EXPECT_GT(loudness(sound.right), 1000);
    EXPECT_LT(largest(sound.left), 32767) << "too loud";
    EXPECT_LT(largest(sound.right), 32767) << "too loud";
}

TEST_F(GameSound, musicAloneIsHeard)
{
    silenceSamples();
    const Sound sound = listen();
    EXPECT_GT(loudness(sound.left), 700);
    EXPECT_GT(loudness(sound.right), 700);
    EXPECT_NE(sound.left, sound.right);
}

TEST_F(GameSound, musicBeginsWithItsFirstNote)
{
    silenceSamples();
    const std::vector<int> right = listen().right;
    const auto start = std::find_if(right.begin(), right.end(), [](int sample) { return sample != 0; });
    ASSERT_GT(right.end() - start, 22050);
    const std::vector<int> firstNote(start, start + 22050);
    EXPECT_GT(strengthOf(440.0, firstNote), 10 * strengthOf(415.3, firstNote));
    EXPECT_GT(strengthOf(440.0, firstNote), 10 * strengthOf(466.2, firstNote));
}

TEST_F(GameSound, placedSoundsAloneAreHeard)
{
    replaceMusic(0);
    const Sound sound = listen();
    EXPECT_GT(loudness(sound.left), 300);
    EXPECT_EQ(sound.left, sound.right); // they come from no side
}

TEST_F(GameSound, nothingElseIsHeard)
{
    replaceMusic(0);
    silenceSamples();
    EXPECT_EQ(loudness(listen().left), 0);
}

TEST_F(GameSound, musicIsSofterThanItWasRecorded)
{
    silenceSamples();
    replaceMusic(10000);
    EXPECT_EQ(largest(listen().left), 10000 * 70 / 128); // 0.55 of 128
    EXPECT_EQ(largest(listen("--volume 50").right), 10000 * 35 / 128);
}

// The path begins 15.9 from the fountain, which is heard up to 30, and hardly changes its distance.
TEST_F(GameSound, fountainIsHeardFromItsDistance)
{
    silenceSamples();
    replaceMusic(0);
    replaceSample("fountain", 10000);
    const Sound sound = listen();
    // 0.5 * (1 - 15.9 / 30) of 128 is 30. On a busy machine the mixer may come between the start of a sound and the
    // update that looks at its distance, so the first frames may be louder.
    EXPECT_GE(median(sound.left), 10000 * 29 / 128);
    EXPECT_LE(median(sound.left), 10000 * 31 / 128);
}

// The path begins 2.7 from a lamp, which is heard up to 16, and leads away from it.
TEST_F(GameSound, lampsAreHeardFromTheirDistance)
{
    silenceSamples();
    replaceMusic(0);
    replaceSample("flame", 3000);
    const Sound sound = listen();
    EXPECT_GE(largest(sound.left), 3000 * 70 / 128); // 0.8 * (1 - 2.7 / 16) of 128 is 85
}

TEST_F(GameSound, muteAndVolumeZeroAreSilent)
{
    EXPECT_EQ(loudness(listen("--mute").left), 0);
    EXPECT_EQ(loudness(listen("--volume 0").right), 0);
}

TEST_F(GameSound, pictureIsTheSameWithSoundAndWithout)
{
    listen("--screenshot loud.bmp");
    listen("--screenshot mute.bmp --mute");
    EXPECT_EQ(fileContents("loud.bmp"), fileContents("mute.bmp"));
    EXPECT_FALSE(fileContents("loud.bmp").empty());
}
#endif
