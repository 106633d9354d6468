#include <xum/devices/audio_header.h>

#include <SDL.h>
#include <SDL_mixer.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>

namespace {

constexpr std::int64_t largestSample = std::numeric_limits<int>::max(); // bytes: the mixer counts them in an int
constexpr std::int64_t formatSize = 40;                                 // of the longest format chunk
constexpr std::int64_t loopListSize = 36;                               // of a loop chunk without loops
constexpr std::int64_t loopSize = 24;

std::uint32_t littleEndian16(const unsigned char* p)
{
    return std::uint32_t{p[0]} | std::uint32_t{p[1]} << 8;
}

std::uint32_t littleEndian32(const unsigned char* p)
{
    return littleEndian16(p) | littleEndian16(p + 2) << 16;
}

/// In hertz. The mixer makes every sound one of its own rate, so that a second of one hertz costs as much as a second
/// of 44,100.
bool isUsualRate(std::uint32_t rate)
{
    return rate >= 100 && rate <= 1000000;
}

/// The first bytes of a source, by which the mixer chooses its decoder; it reads as many.
struct Start {
    explicit Start(SDL_RWops* source) : isWhole(SDL_RWread(source, bytes, sizeof bytes, 1) == 1) {}

    bool begins(const char* name) const { return std::memcmp(bytes, name, 4) == 0; }
    bool isWave() const { return isWhole && (begins("RIFF") || begins("WAVE")); }
    bool isOgg() const { return isWhole && begins("OggS"); }

    unsigned char bytes[12] = {};
    bool isWhole;
};

/// Goes from chunk to chunk of a WAV. One of an odd length is padded to an even one, which SDL knows and SDL_mixer does
/// not: what is dangerous must not be found in either walk.
class ChunkWalk {
public:
    ChunkWalk(SDL_RWops* source, bool isPadded) : source(source), isPadded(isPadded) {}

    /// False behind the last chunk.
    bool next()
    {
        unsigned char header[8];
        if (SDL_RWseek(source, nextPosition, RW_SEEK_SET) < 0) return false;
        if (SDL_RWread(source, header, sizeof header, 1) != 1) return false;
        std::memcpy(name, header, sizeof name);
        length = littleEndian32(header + 4);
        position = nextPosition + static_cast<std::int64_t>(sizeof header);
        nextPosition = position + length + (isPadded ? length % 2 : 0);
        return true;
    }

    bool isNamed(const char* wanted) const { return std::memcmp(name, wanted, sizeof name) == 0; }
    bool isText() const { return isNamed("LIST") || isNamed("id3 "); }
    std::int64_t getPosition() const { return position; }
    std::int64_t getLength() const { return length; }

    /// The first bytes of the chunk; what the file does not hold stays as it is.
    void read(unsigned char* out, std::int64_t size) const
    {
        SDL_RWread(source, out, 1, static_cast<std::size_t>(std::min(size, length)));
    }

private:
    SDL_RWops* source;
    bool isPadded;
    char name[4] = {};
    std::int64_t position = 0;
    std::int64_t length = 0;
    std::int64_t nextPosition = 12;
};

/// How a WAV says its samples are coded.
struct WaveFormat {
    explicit WaveFormat(const ChunkWalk& chunk) { chunk.read(bytes, formatSize); }

    std::uint32_t channels() const { return littleEndian16(bytes + 2); }
    std::uint32_t rate() const { return littleEndian32(bytes + 4); }
    std::uint32_t bits() const { return littleEndian16(bytes + 14); }

    /// PCM 1, floating point 3; of an extensible format the first number of its longer name.
    std::uint32_t encoding() const
    {
        constexpr std::uint32_t extensible = 0xFFFE;
        const std::uint32_t code = littleEndian16(bytes);
        return code == extensible ? littleEndian16(bytes + 24) : code;
    }

    unsigned char bytes[formatSize] = {};
};

/// What SDL makes of the samples before they are converted.
SDL_AudioFormat decodedFormat(const WaveFormat& format)
{
    constexpr std::uint32_t pcm = 1;
    constexpr std::uint32_t floatingPoint = 3;
    if (format.encoding() == floatingPoint) return AUDIO_F32SYS;
    if (format.encoding() != pcm) return AUDIO_S16SYS;
    if (format.bits() <= 8) return AUDIO_U8;
    return format.bits() <= 16 ? AUDIO_S16SYS : AUDIO_S32SYS;
}

/// How many bytes become of one at most before they are converted: of four or eight bits 16, of 24 bits 32.
std::int64_t growth(const WaveFormat& format)
{
    if (format.bits() < 8) return 4;
    return format.bits() % 16 == 0 ? 1 : 2;
}

/// Whether the buffer in which so many bytes are converted has a size that an int can hold.
bool isConvertible(const WaveFormat& format, std::int64_t size)
{
    int rate = 0;
    Uint16 mixerFormat = 0;
    int channels = 0;
    Mix_QuerySpec(&rate, &mixerFormat, &channels);
    SDL_AudioCVT conversion;
    if (SDL_BuildAudioCVT(&conversion, decodedFormat(format), static_cast<Uint8>(format.channels()),
                          static_cast<int>(format.rate()), mixerFormat, static_cast<Uint8>(channels), rate) < 0)
        return false; // as the mixer will find
    return size * growth(format) <= largestSample / std::max(conversion.len_mult, 1);
}

bool hasChannels(const WaveFormat& format)
{
    return static_cast<Uint8>(format.channels()) != 0; // as the mixer counts them
}

bool isWaveSampleBelievable(SDL_RWops* source, std::int64_t fileSize)
{
    for (const bool isPadded : {false, true})
        for (ChunkWalk chunk(source, isPadded); chunk.next();) {
            if (!chunk.isNamed("fmt ")) continue;
            const WaveFormat format(chunk);
            if (!isUsualRate(format.rate()) || !hasChannels(format) || !isConvertible(format, fileSize)) return false;
        }
    return true;
}

/// Whether the loops that the chunk counts are in it. One that the file ends in is not read at all.
bool areLoopsWhole(const ChunkWalk& chunk, std::int64_t fileSize)
{
    if (chunk.getLength() > fileSize - chunk.getPosition()) return true;
    unsigned char list[loopListSize] = {};
    chunk.read(list, loopListSize);
    return loopListSize + loopSize * littleEndian32(list + 28) <= chunk.getLength();
}

bool isWaveStreamBelievable(SDL_RWops* source, std::int64_t fileSize)
{
    for (const bool isPadded : {false, true})
        for (ChunkWalk chunk(source, isPadded); chunk.next();) {
            if (chunk.isNamed("smpl") && !areLoopsWhole(chunk, fileSize)) return false;
            if (!chunk.isNamed("fmt ")) continue;
            const WaveFormat format(chunk);
            if (!isUsualRate(format.rate()) || !hasChannels(format)) return false;
        }
    return true;
}

/// What the pages of an OGG say, wherever in the file they lie: the decoder finds every page that is whole.
struct OggPages {
    explicit OggPages(SDL_RWops* source);

    void look(const unsigned char* at);

    /// Frames, of all packets: each makes half a block at most.
    double longestPlay() const { return static_cast<double>(packets) * largestBlock / 2; }

    std::int64_t packets = 0;
    int largestBlock = 0;
    std::uint32_t lowestRate = std::numeric_limits<std::uint32_t>::max();
    bool areRatesUsual = true;
};

OggPages::OggPages(SDL_RWops* source)
{
    constexpr std::size_t furthestLook = 27 + 255; // a page's header with the lengths of its segments
    unsigned char bytes[16384] = {};
    std::size_t held = 0;
    std::size_t read = 0;
    SDL_RWseek(source, 0, RW_SEEK_SET);
    do {
        read = SDL_RWread(source, bytes + held, 1, sizeof bytes - held);
        held += read;
        if (read == 0) std::fill(bytes + held, bytes + sizeof bytes, static_cast<unsigned char>(0));
        const std::size_t kept = read == 0 ? 0 : std::min(held, furthestLook);
        for (std::size_t i = 0; i < held - kept; ++i) look(bytes + i);
        std::memmove(bytes, bytes + held - kept, kept);
        held = kept;
    } while (read != 0);
}

void OggPages::look(const unsigned char* at)
{
    if (std::memcmp(at, "OggS", 4) == 0) {
        packets += std::count_if(at + 27, at + 27 + at[26], [](unsigned char length) { return length < 255; });
    } else if (std::memcmp(at, "\x01vorbis", 7) == 0) {
        const std::uint32_t rate = littleEndian32(at + 12);
        areRatesUsual = areRatesUsual && isUsualRate(rate);
        lowestRate = std::min(lowestRate, rate);
        largestBlock = std::max(largestBlock, 1 << (at[28] >> 4));
    }
}

bool isOggSampleBelievable(const OggPages& pages)
{
    int rate = 0;
    Uint16 format = 0;
    int channels = 0;
    Mix_QuerySpec(&rate, &format, &channels);
    const double frames = pages.longestPlay() * rate / pages.lowestRate;
    const double size = frames * channels * (SDL_AUDIO_BITSIZE(format) / 8);
    return pages.areRatesUsual && size < static_cast<double>(largestSample);
}

} // namespace

bool isSampleBelievable(SDL_RWops* source)
{
    const std::int64_t fileSize = SDL_RWsize(source);
    if (fileSize < 0) return true; // a pipe: reading it would take from the decoder
    const Start start(source);
    if (start.isWave()) return isWaveSampleBelievable(source, fileSize);
    if (start.isOgg()) return isOggSampleBelievable(OggPages(source));
    return start.isWhole;
}

bool isStreamBelievable(SDL_RWops* source)
{
    const std::int64_t fileSize = SDL_RWsize(source);
    if (fileSize < 0) return true;
    const Start start(source);
    if (start.isWave()) return isWaveStreamBelievable(source, fileSize);
    if (start.isOgg()) return OggPages(source).areRatesUsual;
    return start.isWhole;
}

bool hasTexts(SDL_RWops* source)
{
    if (SDL_RWseek(source, 0, RW_SEEK_SET) < 0 || !Start(source).isWave()) return false;
    for (const bool isPadded : {false, true})
        for (ChunkWalk chunk(source, isPadded); chunk.next();)
            if (chunk.isText()) return true;
    return false;
}

void hideTexts(std::vector<unsigned char>& wave)
{
    SDL_RWops* source = SDL_RWFromConstMem(wave.data(), static_cast<int>(wave.size()));
    if (source == nullptr) return;
    if (Start(source).isWave())
        for (const bool isPadded : {false, true})
            for (ChunkWalk chunk(source, isPadded); chunk.next();)
                if (chunk.isText()) std::memcpy(wave.data() + chunk.getPosition() - 8, "skip", 4);
    SDL_RWclose(source);
}
