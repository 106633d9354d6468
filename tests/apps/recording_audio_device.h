#pragma once

#include <xum/devices/audio_device.h>

#include <cstddef>
#include <list>
#include <string>
#include <vector>

using Notes = std::vector<std::string>;

/// Notes what becomes of it when it is told to play.
class RecordingAudioSource final : public AudioSource {
public:
    explicit RecordingAudioSource(Notes& notes) : notes(notes) {}

    void setPosition(const Vector3<float>& newPosition) override { position = newPosition; }
    void setDirection(const Vector3<float>& /*direction*/) override {}
    void setRange(float newRange) override { range = newRange; }
    void setVolume(float newVolume) override { volume = newVolume; }
    void play(Sample* sample, float fadeSeconds) override;
    void stop(float /*fadeSeconds*/) override { notes.emplace_back("stop"); }

    float getVolume() const { return volume; }

private:
    Notes& notes;
    Vector3<float> position;
    float range = -1;
    float volume = 1;
};

/// An audio device that plays nothing and notes as lines of text what it is told to. It decodes everything: the name
/// that the notes give a sample or a stream is its file's contents.
class RecordingAudioDevice final : public AudioDevice {
public:
    explicit RecordingAudioDevice(std::size_t sourceCount);

    /// The notes since the last call.
    Notes takeNotes();

    /// What plays ends with the next update.
    void endSamples() { samplesEnd = true; }

    std::size_t countLoaded() const { return loaded.size(); }
    const std::list<RecordingAudioSource>& getSources() const { return sources; }

    Sample* loadSample(const std::string& fileName) override;
    Sample* loadSampleFromMemory(const std::vector<unsigned char>& data) override;
    void destroySample(Sample* sample) override;
    Stream* loadStream(const std::string& fileName) override;
    Stream* loadStreamFromMemory(const std::vector<unsigned char>& data) override;
    void destroyStream(Stream* stream) override;
    bool isMusicPlaying() override { return false; }
    void setMusicVolume(float volume) override;
    void playStream(Stream* stream, bool loop, float fadeSeconds) override;
    void stopMusic(float /*fadeSeconds*/) override { notes.emplace_back("stop music"); }
    AudioSource* acquireSource() override;
    const Vector3<float>& getListenerPosition() override { return listenerPosition; }
    void setListener(const Vector3<float>& position, const Vector3<float>& direction) override;
    void update(float seconds) override;

private:
    void* load(const std::vector<unsigned char>& data);
    void destroy(const void* object);

    Notes notes;
    std::list<std::string> loaded;
    std::list<RecordingAudioSource> sources;
    std::list<RecordingAudioSource>::iterator nextFree;
    bool samplesEnd = false;
    Vector3<float> listenerPosition;
};
