#pragma once

#include "viewpoint.h"
#include "game_data.h"
#include "scene.h"

#include <map>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

class AudioSource;
class Sample;

/// Where a sound comes from, and how far away it can be heard.
struct SoundPlace {
    Vector3<float> position;
    float range;
};

/// What is heard: music, and the fountain, the lamps and birds in the trees at their places.
class Soundscape {
public:
    /// Starts the music. Without a device (null), on a machine without sound, nothing is heard. Keeps the pointer.
    /// Throws Failure, naming the file, when a sound is missing or broken.
    Soundscape(AudioDevice* device, GameData& data, const Scene& scene, float volume);

    /// Once a frame, with the time of the engine clock: starts what is due, and makes the camera the listener.
    void update(const Viewpoint& listener, uint64 milliseconds);

    /// Throws Failure, naming the file, when a sample is missing or broken; after that it is at hand.
    void prepare(GameData& data, const std::string& name) { findSample(data, name); }

    /// A sample from some place. Throws Failure, naming the file, when it is missing or broken.
    void playOnce(GameData& data, const std::string& name, const Vector3<float>& position);

    /// A sample that is played again and again at places that move and end, by their numbers. Only those near the
    /// listener are heard.
    void setHums(GameData& data, const std::string& name, const std::map<int, Vector3<float>>& places);

    /// Of everything, 0 to 1; what already plays follows with the next update.
    void setVolume(float newVolume);

    float getVolume() const { return volume; }

    /// Of everything that may be heard, whether it is just now or not; also without a device.
    std::vector<SoundPlace> getPlaces() const;

private:
    /// Something that is heard again and again. A sample plays once and a source does not tell when it ends: the time
    /// of the next start is known instead.
    struct Emitter {
        Sample* sample;
        std::vector<Vector3<float>> places; ///< each time one of them
        float range;
        float volume;
        uint64 pause;  ///< milliseconds from one start to the next, at least
        uint64 spread; ///< and how much longer it may be; 0: never
        uint64 nextStart;
    };

    void addEmitters(GameData& data, const Scene& scene);
    void start(Emitter& emitter, uint64 milliseconds);
    void startHums(const Vector3<float>& listener, uint64 milliseconds);
    Sample* findSample(GameData& data, const std::string& name);
    void play(AudioSource* source, Sample* sample, const Vector3<float>& position, float range, float sourceVolume);
    uint64 chooseBelow(uint64 limit);

    AudioDevice* device;
    float volume;
    std::vector<Emitter> emitters;
    std::map<std::string, Sample*> samples; ///< those that were asked for by name; null without a device
    Sample* hum = nullptr;
    std::map<int, Vector3<float>> humPlaces;
    std::map<int, uint64> nextHums; ///< when each starts again
    std::unordered_map<AudioSource*, float>
        sourceVolumes;       ///< of all sources that ever played, before the common volume
    std::minstd_rand chance; ///< the same in each run
};
