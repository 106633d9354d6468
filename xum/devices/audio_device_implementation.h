#pragma once

#include <xum/devices/audio_source_implementation.h>

#include <vector>

class AudioDeviceImplementation final : public AudioDevice {
public:
    /// Opens the mixer; null, without a message, when that fails or memory runs out.
    static AudioDeviceImplementation* create();

    /// On an open mixer with so many channels.
    explicit AudioDeviceImplementation(int channels);

    AudioDeviceImplementation(const AudioDeviceImplementation&) = delete;
    AudioDeviceImplementation& operator=(const AudioDeviceImplementation&) = delete;

    Sample* loadSample(const std::string& fileName) override;
    Sample* loadSampleFromMemory(const std::vector<unsigned char>& data) override;
    void destroySample(Sample* sample) override;
    Stream* loadStream(const std::string& fileName) override;
    Stream* loadStreamFromMemory(const std::vector<unsigned char>& data) override;
    void destroyStream(Stream* stream) override;
    bool isMusicPlaying() override;
    void setMusicVolume(float volume) override;
    void playStream(Stream* stream, bool loop, float fadeSeconds) override;
    void stopMusic(float fadeSeconds) override;
    AudioSource* acquireSource() override;
    const Vector3<float>& getListenerPosition() override;
    void setListener(const Vector3<float>& position, const Vector3<float>& direction) override;
    void update(float seconds) override;

private:
    std::vector<AudioSourceImplementation> sources; // never resized: the host has pointers to them
    Vector3<float> listenerPosition = {0, 0, 0};
    Vector3<float> listenerDirection = {0, 0, 0};
};
