#pragma once

#include <xum/engine/export.h>
#include <xum/geometry/vector.h>

#include <string>
#include <vector>

/// @class Sample
/// A decoded sound for AudioSource::play. Made by AudioDevice::loadSample and loadSampleFromMemory, given back to
/// AudioDevice::destroySample.
class Sample;

/// @class Stream
/// A piece of music that is decoded while it plays. Made by AudioDevice::loadStream and loadStreamFromMemory, given
/// back to AudioDevice::destroyStream.
class Stream;

/// One channel of the mixer, at a place in the world. Lent by AudioDevice::acquireSource and owned by the device. It
/// keeps position, range and volume for whoever acquires it next. Slot order is ABI.
class XUM_API AudioSource {
public:
    /// Where it is heard from, in world units; counts with a range only, as of the next AudioDevice::update.
    virtual void setPosition(const Vector3<float>& position) = 0;

    /// Only remembered.
    virtual void setDirection(const Vector3<float>& direction) = 0;

    /// The distance from the listener, in world units, at which the source falls silent; up to there its volume falls
    /// off linearly, as of the next AudioDevice::update. With 0 and below, -1 at the start, distance does not count.
    virtual void setRange(float range) = 0;

    /// 0, silent, to 1, which it is at the start; clamped.
    virtual void setVolume(float volume) = 0;

    /// Plays the sample once, faded in over so many seconds, instead of what the source plays. Null is ignored.
    virtual void play(Sample* sample, float fadeSeconds) = 0;

    /// Ends what plays, faded out over so many seconds.
    virtual void stop(float fadeSeconds) = 0;

protected:
    ~AudioSource() = default;
};

/// Plays samples on 64 sources and one stream of music. File names are narrow ones, as those of File. Made by
/// Engine::createAudioDevice, which returns null on a machine without sound; given back to Engine::destroyAudioDevice,
/// after its samples and streams. Slot order is ABI.
class XUM_API AudioDevice {
public:
    /// Decodes a sound file (WAV, OGG and what else SDL_mixer reads); null, without a message, when that fails.
    virtual Sample* loadSample(const std::string& fileName) = 0;

    /// loadSample from the bytes of a file, which are not needed any more afterwards.
    virtual Sample* loadSampleFromMemory(const std::vector<unsigned char>& data) = 0;

    /// Silences the sources that play it. Null is accepted.
    virtual void destroySample(Sample* sample) = 0;

    /// Opens a piece of music (OGG, WAV and what else SDL_mixer reads); null, without a message, when that fails.
    virtual Stream* loadStream(const std::string& fileName) = 0;

    /// loadStream from the bytes of a file, which the stream copies.
    virtual Stream* loadStreamFromMemory(const std::vector<unsigned char>& data) = 0;

    /// Ends it if it plays, waiting for a fade-out to end. Null is accepted.
    virtual void destroyStream(Stream* stream) = 0;

    /// Also true while the music fades out.
    virtual bool isMusicPlaying() = 0;

    /// 0, silent, to 1, which it is at the start; clamped. Independent of the sources.
    virtual void setMusicVolume(float volume) = 0;

    /// Plays a stream, once or for ever, faded in over so many seconds, instead of what plays. Null is ignored.
    virtual void playStream(Stream* stream, bool loop, float fadeSeconds) = 0;

    /// Ends the music, faded out over so many seconds.
    virtual void stopMusic(float fadeSeconds) = 0;

    /// A source that nobody uses, now in use; null when there is none. It goes back to the pool with the first update
    /// that finds it silent: play something before the next one.
    virtual AudioSource* acquireSource() = 0;

    /// In world units, as setListener got it; (0, 0, 0) at the start.
    virtual const Vector3<float>& getListenerPosition() = 0;

    /// Where the sources are heard from; the direction is only remembered.
    virtual void setListener(const Vector3<float>& position, const Vector3<float>& direction) = 0;

    /// Once a frame: takes silent sources back and sets the volume of the others that have a range. The argument, the
    /// seconds since the last frame, is not used yet.
    virtual void update(float seconds) = 0;

protected:
    ~AudioDevice() = default;
};
