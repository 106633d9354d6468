#include <xum/devices/audio_device_implementation.h>

#include <xum/devices/audio_data.h>
#include <xum/devices/audio_header.h>
#include <xum/engine/log.h>
#include <xum/files/read_file.h>
#include <xum/files/sdl_file_name.h>

#include <SDL.h>
#include <SDL_mixer.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <new>
#include <utility>

namespace {

constexpr int sampleRate = 44100; // hertz
constexpr int outputChannels = 2; // stereo
constexpr int chunkSize = 1024;   // samples that the mixer makes at once
constexpr int mixerChannels = 64;

bool isFileName(const std::string& fileName)
{
    return fileName.find('\0') == std::string::npos; // the system would open a file of another name
}

/// Null when SDL cannot count so many bytes, and for none at all.
SDL_RWops* openMemory(const std::vector<unsigned char>& data)
{
    if (data.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) return nullptr;
    return SDL_RWFromConstMem(data.data(), static_cast<int>(data.size()));
}

bool isBelievableStream(const std::vector<unsigned char>& data)
{
    SDL_RWops* source = openMemory(data);
    if (source == nullptr) return false;
    const bool isBelievable = isStreamBelievable(source);
    SDL_RWclose(source);
    return isBelievable;
}

/// Closes the source. Null, as without an open mixer, for what would not end well.
Sample* decodeSample(SDL_RWops* source)
{
    if (source == nullptr) return nullptr;
    if (!isMixerOpen() || !isSampleBelievable(source)) {
        SDL_RWclose(source);
        return nullptr;
    }
    SDL_RWseek(source, 0, RW_SEEK_SET);
    Mix_Chunk* chunk = Mix_LoadWAV_RW(source, 1);
    if (chunk == nullptr) return nullptr;
    Sample* sample = new (std::nothrow) Sample(chunk);
    if (sample == nullptr) Mix_FreeChunk(chunk);
    return sample;
}

} // namespace

AudioDeviceImplementation* AudioDeviceImplementation::create()
{
    if (Mix_Init(MIX_INIT_OGG) == 0) return nullptr;
    if (Mix_OpenAudio(sampleRate, AUDIO_S16SYS, outputChannels, chunkSize) == -1) return nullptr;
    const int channels = Mix_AllocateChannels(mixerChannels);
    getLog() << "Audio: using " << channels << " channels." << std::endl;
    try {
        return new AudioDeviceImplementation(channels);
    } catch (const std::bad_alloc&) {
        Mix_CloseAudio();
        return nullptr;
    }
}

AudioDeviceImplementation::AudioDeviceImplementation(int channels)
{
    sources.reserve(static_cast<std::size_t>(std::max(channels, 0)));
    for (int channel = 0; channel < channels; ++channel) sources.emplace_back(channel);
}

Sample* AudioDeviceImplementation::loadSample(const std::string& fileName)
{
    if (!isFileName(fileName)) return nullptr;
    return decodeSample(SDL_RWFromFile(SdlFileName(fileName).get(), "rb"));
}

Sample* AudioDeviceImplementation::loadSampleFromMemory(const std::vector<unsigned char>& data)
{
    return decodeSample(openMemory(data));
}

void AudioDeviceImplementation::destroySample(Sample* sample)
{
    delete sample;
}

Stream* AudioDeviceImplementation::loadStream(const std::string& fileName)
{
    if (!isFileName(fileName) || !isMixerOpen()) return nullptr;
    SDL_RWops* source = SDL_RWFromFile(SdlFileName(fileName).get(), "rb");
    if (source == nullptr) return nullptr;
    const bool isBelievable = isStreamBelievable(source);
    const bool hasBadChunks = isBelievable && hasTexts(source);
    SDL_RWclose(source);
    if (!isBelievable) return nullptr;
    try {
        if (hasBadChunks) {
            std::vector<char> data;
            return readFile(fileName, data) ? loadStreamFromMemory({data.begin(), data.end()}) : nullptr;
        }
        auto stream = std::make_unique<Stream>(std::vector<unsigned char>());
        stream->setMusic(Mix_LoadMUS(SdlFileName(fileName).get()));
        return stream->getMusic() != nullptr ? stream.release() : nullptr;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

Stream* AudioDeviceImplementation::loadStreamFromMemory(const std::vector<unsigned char>& data)
{
    try {
        if (!isMixerOpen() || !isBelievableStream(data)) return nullptr;
        std::vector<unsigned char> copy = data;
        hideTexts(copy);
        auto stream = std::make_unique<Stream>(std::move(copy));
        stream->setMusic(Mix_LoadMUS_RW(openMemory(stream->getData()), 1));
        return stream->getMusic() != nullptr ? stream.release() : nullptr;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void AudioDeviceImplementation::destroyStream(Stream* stream)
{
    delete stream;
}

bool AudioDeviceImplementation::isMusicPlaying()
{
    return Mix_PlayingMusic() > 0;
}

void AudioDeviceImplementation::setMusicVolume(float volume)
{
    Mix_VolumeMusic(toMixerVolume(volume));
}

void AudioDeviceImplementation::playStream(Stream* stream, bool loop, float fadeSeconds)
{
    if (stream == nullptr || !isMixerOpen()) return;
    const int loops = loop ? -1 : 1; // the mixer counts how often music plays, and how often a sample repeats
    if (fadeSeconds > 0.0f)
        Mix_FadeInMusic(stream->getMusic(), loops, toMilliseconds(fadeSeconds));
    else
        Mix_PlayMusic(stream->getMusic(), loops);
}

void AudioDeviceImplementation::stopMusic(float fadeSeconds)
{
    if (fadeSeconds > 0.0f)
        Mix_FadeOutMusic(toMilliseconds(fadeSeconds));
    else
        Mix_HaltMusic();
}

AudioSource* AudioDeviceImplementation::acquireSource()
{
    for (AudioSourceImplementation& source : sources) {
        if (source.isInUse()) continue;
        source.acquire();
        return &source;
    }
    return nullptr;
}

const Vector3<float>& AudioDeviceImplementation::getListenerPosition()
{
    return listenerPosition;
}

void AudioDeviceImplementation::setListener(const Vector3<float>& position, const Vector3<float>& direction)
{
    listenerPosition = position;
    listenerDirection = direction;
}

void AudioDeviceImplementation::update(float /*seconds*/)
{
    for (AudioSourceImplementation& source : sources)
        if (source.isInUse()) source.update(listenerPosition);
}
