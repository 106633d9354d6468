#include "sounds.h"

#include <xum/devices/audio_header.h>

#include <gtest/gtest.h>

#include <SDL.h>
#include <SDL_mixer.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;

/// With an open mixer.
class AudioHeader : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_EQ(SDL_Init(SDL_INIT_AUDIO), 0);
        ASSERT_EQ(Mix_OpenAudio(44100, AUDIO_S16SYS, 2, 1024), 0);
    }

    void TearDown() override
    {
        Mix_CloseAudio();
        SDL_Quit();
    }
};

bool judge(bool (*judgement)(SDL_RWops*), const Bytes& bytes)
{
    SDL_RWops* source = SDL_RWFromConstMem(bytes.data(), static_cast<int>(bytes.size()));
    const bool result = judgement(source);
    SDL_RWclose(source);
    return result;
}

bool isSample(const Bytes& bytes)
{
    return judge(isSampleBelievable, bytes);
}

bool isStream(const Bytes& bytes)
{
    return judge(isStreamBelievable, bytes);
}

Bytes waveOf(const std::string& format, const std::string& otherChunks = {}, int size = 100)
{
    return wave(waveChunk("fmt ", format) + otherChunks +
                waveChunk("data", std::string(static_cast<std::size_t>(size), '\x20')));
}

std::string loops(int counted, int present, int bytesMissing = 0)
{
    std::string list(36 + 24 * static_cast<std::size_t>(present), '\0');
    list[28] = static_cast<char>(counted);
    list.resize(list.size() - static_cast<std::size_t>(bytesMissing));
    return waveChunk("smpl", list);
}

/// The page with the header of a Vorbis stream, and so many packets of a block each.
Bytes ogg(std::uint32_t rate, int block, int pages = 0)
{
    std::string header(30, '\0');
    std::memcpy(header.data(), "\x01vorbis", 7);
    header[11] = 1;
    for (int i = 0; i < 4; ++i) header[12 + static_cast<std::size_t>(i)] = static_cast<char>(rate >> (8 * i));
    header[28] = static_cast<char>(block << 4 | 8);
    std::string text = std::string("OggS") + std::string(22, '\0') + '\1' + '\x1E' + header;
    for (int i = 0; i < pages; ++i)
        text += std::string("OggS") + std::string(22, '\0') + '\xFF' + std::string(510, '\1');
    return {text.begin(), text.end()};
}

} // namespace

TEST_F(AudioHeader, soundsOfUsualRatesPass)
{
    for (const std::uint32_t rate : {100u, 8000u, 11025u, 44100u, 48000u, 192000u, 1000000u}) {
        EXPECT_TRUE(isSample(waveOf(waveFormat(1, 1, rate, 16)))) << rate;
        EXPECT_TRUE(isStream(waveOf(waveFormat(1, 1, rate, 16)))) << rate;
        EXPECT_TRUE(isSample(ogg(rate, 11))) << rate;
        EXPECT_TRUE(isStream(ogg(rate, 11))) << rate;
    }
}

TEST_F(AudioHeader, soundsOfAbsurdRatesDoNot)
{
    for (const std::uint32_t rate : {0u, 1u, 99u, 1000001u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
        EXPECT_FALSE(isSample(waveOf(waveFormat(1, 1, rate, 16)))) << rate;
        EXPECT_FALSE(isStream(waveOf(waveFormat(1, 1, rate, 16)))) << rate;
        EXPECT_FALSE(isSample(ogg(rate, 11))) << rate;
        EXPECT_FALSE(isStream(ogg(rate, 11))) << rate;
    }
}

TEST_F(AudioHeader, everyFormatChunkIsLookedAt)
{
    const std::string good = waveFormat(1, 1, 8000, 16);
    const std::string bad = waveChunk("fmt ", waveFormat(1, 1, 1, 16));
    EXPECT_FALSE(isSample(waveOf(good, bad)));
    EXPECT_FALSE(isStream(waveOf(good, bad)));
    EXPECT_FALSE(isStream(waveOf(good, waveChunk("odd.", "x") + bad))) << "padded";
    std::string unpadded = waveChunk("odd.", "x");
    unpadded.pop_back();
    EXPECT_FALSE(isStream(waveOf(good, unpadded + bad))) << "as the mixer reads it";
}

TEST_F(AudioHeader, everyVorbisHeaderIsLookedAt)
{
    for (const std::size_t gap : {0u, 16000u, 16300u, 16383u, 40000u}) {
        Bytes chained = ogg(44100, 11);
        chained.resize(chained.size() + gap);
        const Bytes second = ogg(1, 11);
        chained.insert(chained.end(), second.begin(), second.end());
        EXPECT_FALSE(isStream(chained)) << gap;
        EXPECT_FALSE(isSample(chained)) << gap;
    }
}

TEST_F(AudioHeader, wavesWithoutChannelsDoNotPass)
{
    for (const int channels : {0, 256, 512}) { // of which the mixer looks at the lower byte
        EXPECT_FALSE(isSample(waveOf(waveFormat(1, channels, 8000, 16)))) << channels;
        EXPECT_FALSE(isStream(waveOf(waveFormat(1, channels, 8000, 16)))) << channels;
    }
}

TEST_F(AudioHeader, loopsMustBeThere)
{
    const std::string format = waveFormat(1, 1, 8000, 16);
    EXPECT_TRUE(isStream(waveOf(format, loops(0, 0))));
    EXPECT_TRUE(isStream(waveOf(format, loops(1, 1))));
    EXPECT_TRUE(isStream(waveOf(format, loops(1, 2))));
    EXPECT_TRUE(isStream(waveOf(format, loops(3, 3))));
    EXPECT_FALSE(isStream(waveOf(format, loops(1, 0))));
    EXPECT_FALSE(isStream(waveOf(format, loops(4, 3))));
    EXPECT_FALSE(isStream(waveOf(format, loops(-1, 3))));
    EXPECT_FALSE(isStream(waveOf(format, loops(1, 1, 1))));
    EXPECT_FALSE(isStream(waveOf(format, loops(0, 0, 2)))) << "too short for the count";
    EXPECT_TRUE(isSample(waveOf(format, loops(4, 3)))) << "samples have no loops";
}

TEST_F(AudioHeader, samplesMayNotGrowBeyondWhatTheMixerCounts)
{
    // 441 frames of two channels become of each, and of each byte two to four.
    EXPECT_TRUE(isSample(waveOf(waveFormat(1, 1, 100, 8), {}, 10000)));
    EXPECT_FALSE(isSample(waveOf(waveFormat(1, 1, 100, 8), {}, 1 << 20)));
    EXPECT_TRUE(isSample(waveOf(waveFormat(1, 2, 44100, 16), {}, 1 << 20)));
    EXPECT_TRUE(isSample(waveOf(waveFormat(1, 1, 11025, 8), {}, 1 << 20)));
    EXPECT_TRUE(isStream(waveOf(waveFormat(1, 1, 100, 8), {}, 1 << 20))) << "decoded bit by bit";
    EXPECT_TRUE(isSample(ogg(8000, 11, 100)));
    EXPECT_TRUE(isSample(ogg(44100, 13, 400)));
    EXPECT_FALSE(isSample(ogg(100, 13, 100)));
    EXPECT_TRUE(isStream(ogg(100, 13, 100)));
}

TEST_F(AudioHeader, filesTooShortForADecoderDoNotPass)
{
    for (std::size_t size = 1; size < 12; ++size) {
        EXPECT_FALSE(isSample(Bytes(size, 'O'))) << size;
        EXPECT_FALSE(isStream(Bytes(size, 'O'))) << size;
    }
}

TEST_F(AudioHeader, otherFormatsPass)
{
    for (const std::string start : {"fLaC", "ID3\4", "MThd", "FORM", "Crea", "text"}) {
        Bytes bytes(100);
        std::copy(start.begin(), start.end(), bytes.begin());
        EXPECT_TRUE(isSample(bytes)) << start;
        EXPECT_TRUE(isStream(bytes)) << start;
    }
}

TEST_F(AudioHeader, everyTruncatedFileIsJudged)
{
    const std::string format = waveFormat(1, 1, 8000, 16);
    for (const Bytes& whole : {waveOf(format, loops(2, 2) + waveChunk("LIST", "INFO")), ogg(44100, 11, 2)}) {
        EXPECT_TRUE(isSample(whole));
        EXPECT_TRUE(isStream(whole));
        for (std::size_t size = 1; size < whole.size(); ++size) {
            const Bytes part(whole.data(), whole.data() + size);
            isSample(part);
            isStream(part);
            judge(hasTexts, part);
            Bytes copy = part;
            hideTexts(copy);
        }
    }
}

TEST_F(AudioHeader, textsAreFoundAndHidden)
{
    const std::string format = waveFormat(1, 1, 8000, 16);
    const std::string texts = waveChunk("LIST", "INFO" + waveChunk("INAM", "a name"));
    const std::string tag = waveChunk("id3 ", "ID3......");
    EXPECT_FALSE(judge(hasTexts, waveOf(format)));
    EXPECT_FALSE(judge(hasTexts, waveOf(format, loops(1, 1))));
    EXPECT_FALSE(judge(hasTexts, ogg(44100, 11)));
    for (const std::string& chunks : {texts, tag, texts + tag, tag + texts, loops(1, 1) + tag}) {
        Bytes bytes = waveOf(format, chunks);
        EXPECT_TRUE(judge(hasTexts, bytes));
        hideTexts(bytes);
        EXPECT_FALSE(judge(hasTexts, bytes));
    }
}

TEST_F(AudioHeader, hidingTextsChangesTheirNamesAlone)
{
    const std::string format = waveFormat(1, 1, 8000, 16);
    Bytes bytes = waveOf(format, waveChunk("LIST", "LIST") + loops(1, 1));
    hideTexts(bytes);
    EXPECT_EQ(bytes, waveOf(format, waveChunk("skip", "LIST") + loops(1, 1)));

    Bytes plain = waveOf(format, loops(1, 1));
    const Bytes before = plain;
    hideTexts(plain);
    EXPECT_EQ(plain, before);

    Bytes vorbis = ogg(44100, 11, 1);
    const Bytes vorbisBefore = vorbis;
    hideTexts(vorbis);
    EXPECT_EQ(vorbis, vorbisBefore);

    Bytes none;
    hideTexts(none);
    EXPECT_TRUE(none.empty());
}
