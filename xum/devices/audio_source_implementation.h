#pragma once

#include <xum/devices/audio_device.h>

/// A volume from 0 to 1 as the mixer counts it, 0 to 128; rounded down, clamped, and 0 for what is no number.
int toMixerVolume(float volume);

/// Rounded down; 0 for none and for what is no number.
int toMilliseconds(float seconds);

/// SDL_mixer crashes on calls that name a channel while it is closed.
bool isMixerOpen();

class AudioSourceImplementation final : public AudioSource {
public:
    /// Sets the channel to full volume.
    explicit AudioSourceImplementation(int channel);

    void setPosition(const Vector3<float>& position) override;
    void setDirection(const Vector3<float>& direction) override;
    void setRange(float range) override;
    void setVolume(float volume) override;
    void play(Sample* sample, float fadeSeconds) override;
    void stop(float fadeSeconds) override;

    bool isInUse() const { return inUse; }
    void acquire() { inUse = true; }

    /// Of a source in use: gives it back if it is silent, else makes it as loud as its distance wants.
    void update(const Vector3<float>& listenerPosition);

private:
    bool inUse = false;
    Vector3<float> position = {0, 0, 0};
    Vector3<float> direction = {0, 0, 0};
    float range = -1.0f;
    float volume = 1.0f;
    int channel;
};
