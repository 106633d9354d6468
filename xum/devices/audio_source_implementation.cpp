#include <xum/devices/audio_source_implementation.h>

#include <xum/devices/audio_data.h>

#include <SDL_mixer.h>

#include <algorithm>
#include <limits>

namespace {

/// 0 for what is no number.
float clampVolume(float volume)
{
    return volume > 0.0f ? std::min(volume, 1.0f) : 0.0f;
}

} // namespace

int toMixerVolume(float volume)
{
    return static_cast<int>(clampVolume(volume) * static_cast<float>(MIX_MAX_VOLUME));
}

int toMilliseconds(float seconds)
{
    constexpr float limit = 2147483520.0f; // the largest float that an int can hold
    return seconds > 0.0f ? static_cast<int>(std::min(seconds * 1000.0f, limit)) : 0;
}

bool isMixerOpen()
{
    return Mix_QuerySpec(nullptr, nullptr, nullptr) > 0;
}

AudioSourceImplementation::AudioSourceImplementation(int channel) : channel(channel)
{
    if (isMixerOpen()) Mix_Volume(channel, MIX_MAX_VOLUME);
}

void AudioSourceImplementation::setPosition(const Vector3<float>& newPosition)
{
    position = newPosition;
}

void AudioSourceImplementation::setDirection(const Vector3<float>& newDirection)
{
    direction = newDirection;
}

void AudioSourceImplementation::setRange(float newRange)
{
    range = newRange;
}

void AudioSourceImplementation::setVolume(float newVolume)
{
    volume = clampVolume(newVolume);
    if (isMixerOpen()) Mix_Volume(channel, toMixerVolume(volume));
}

void AudioSourceImplementation::play(Sample* sample, float fadeSeconds)
{
    if (sample == nullptr || !isMixerOpen()) return;
    if (fadeSeconds > 0.0f)
        Mix_FadeInChannelTimed(channel, sample->getChunk(), 0, toMilliseconds(fadeSeconds), -1);
    else
        Mix_PlayChannelTimed(channel, sample->getChunk(), 0, -1);
}

void AudioSourceImplementation::stop(float fadeSeconds)
{
    if (!isMixerOpen()) return;
    if (fadeSeconds > 0.0f)
        Mix_FadeOutChannel(channel, toMilliseconds(fadeSeconds));
    else
        Mix_HaltChannel(channel);
}

void AudioSourceImplementation::update(const Vector3<float>& listenerPosition)
{
    if (!isMixerOpen() || Mix_Playing(channel) == 0) {
        inUse = false;
    } else if (range > 0.0f) {
        const float part = length(position - listenerPosition) / range;
        Mix_Volume(channel, part >= 1.0f ? 0 : toMixerVolume(volume * (1.0f - part)));
    }
}
