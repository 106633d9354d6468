#include <xum/devices/audio_data.h>
#include <xum/devices/audio_device_implementation.h>
#include <xum/engine/log.h>

#include <SDL.h>
#include <SDL_mixer.h>

#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

namespace {

SDL_AudioSpec mixerOutput = {};
AudioDevice* device = nullptr;

/// Whether the bytes begin as a WAV or an OGG with Vorbis does. Other formats go straight to decoders that are not
/// ours: what they do wrong would hide what we do.
bool isJudgedByTheLibrary(std::string_view bytes)
{
    const auto holds = [&](std::size_t place, std::string_view name) {
        return bytes.size() >= place && bytes.substr(place, name.size()) == name;
    };
    if (holds(0, "OggS")) return !holds(28, "OpusHead");
    return bytes.size() < 12 || (holds(0, "RIFF") && holds(8, "WAVE"));
}

/// What the sound card would fetch, and as much as it would take of that.
void playSomeChunks(int count)
{
    std::vector<Uint8> chunk(mixerOutput.size);
    for (int i = 0; i < count; ++i)
        mixerOutput.callback(mixerOutput.userdata, chunk.data(), static_cast<int>(chunk.size()));
}

/// Reads every byte, so that a sanitizer sees any that was not made.
void check(const Mix_Chunk& chunk)
{
    Uint8 all = 0;
    for (Uint32 i = 0; i < chunk.alen; ++i) all |= chunk.abuf[i];
    if (all == 0) return;
    volatile Uint8 seen = all;
    static_cast<void>(seen);
}

void trySample(const std::vector<unsigned char>& data)
{
    Sample* sample = device->loadSampleFromMemory(data);
    if (sample == nullptr) return;
    check(*sample->getChunk());
    device->destroySample(sample);
}

void tryStream(const std::vector<unsigned char>& data, bool loop, float volume)
{
    Stream* stream = device->loadStreamFromMemory(data);
    if (stream == nullptr) return;
    device->setMusicVolume(volume);
    device->playStream(stream, loop, 0.0f);
    playSomeChunks(8);
    device->destroyStream(stream);
}

} // namespace

/// In place of SDL's: keeps what the mixer wants to be asked for samples, so that no thread asks and every run is the
/// same. The other functions of SDL ignore a device that SDL does not know.
extern "C" DECLSPEC SDL_AudioDeviceID SDLCALL SDL_OpenAudioDevice(const char* /*device*/, int /*isCapture*/,
                                                                  const SDL_AudioSpec* desired, SDL_AudioSpec* obtained,
                                                                  int /*allowedChanges*/)
{
    mixerOutput = *desired;
    mixerOutput.size = mixerOutput.samples * mixerOutput.channels * 2u;
    mixerOutput.silence = 0;
    *obtained = mixerOutput;
    return 2;
}

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    getLog().setstate(std::ios::badbit); // nobody reads it, and millions of lines would fill the disk
    SDL_setenv("SDL_AUDIODRIVER", "dummy", 1);
    if (SDL_Init(SDL_INIT_AUDIO) != 0) std::abort();
    device = AudioDeviceImplementation::create();
    if (device == nullptr) std::abort();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (!isJudgedByTheLibrary({reinterpret_cast<const char*>(data), size})) return 0;
    const std::vector<unsigned char> bytes(data, data + size);
    trySample(bytes);
    tryStream(bytes, false, 1.0f);
    tryStream(bytes, true, 0.5f); // the decoders take another way through a lower volume
    return 0;
}
