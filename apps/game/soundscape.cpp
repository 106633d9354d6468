#include "soundscape.h"

#include "failure.h"

#include <xum/devices/audio_device.h>
#include <xum/files/cache.h>

#include <iterator>
#include <string>

namespace {

constexpr float musicVolume = 0.55f;
constexpr float musicRise = 0.5f; // seconds

// A sample of noise rises and falls during half a second, and is started again that much before its end.
constexpr uint64 fountainPause = 3500; // milliseconds, like all that follow
constexpr uint64 flamePause = 2500;
constexpr uint64 humPause = 1500;
constexpr float humRange = 14.0f;
constexpr float humVolume = 0.35f;

using OwnedSample = Owned<AudioDevice, Sample, &AudioDevice::destroySample>;
using OwnedStream = Owned<AudioDevice, Stream, &AudioDevice::destroyStream>;

Failure undecodable(const std::string& fileName)
{
    return {ExitStatus::BrokenData, "cannot decode the sound " + fileName};
}

Sample* loadSample(AudioDevice* device, GameData& data, const std::string& name)
{
    Cache& cache = data.getCache();
    const std::string fileName = data.getFileName(cache.getSampleDirectory(), name);
    const std::vector<unsigned char> bytes = data.read(fileName);
    if (device == nullptr) return nullptr;
    if (!OwnedSample(device->loadSampleFromMemory(bytes), {device})) throw undecodable(fileName);
    return cache.getSample(device, cache.getId(name), false);
}

Stream* loadStream(AudioDevice* device, GameData& data, const std::string& name)
{
    Cache& cache = data.getCache();
    const std::string fileName = data.getFileName(cache.getStreamDirectory(), name);
    const std::vector<unsigned char> bytes = data.read(fileName);
    if (device == nullptr) return nullptr;
    if (!OwnedStream(device->loadStreamFromMemory(bytes), {device})) throw undecodable(fileName);
    return cache.getStream(device, cache.getId(name), false);
}

} // namespace

Soundscape::Soundscape(AudioDevice* device, GameData& data, const Scene& scene, float volume)
    : device(device), volume(volume)
{
    addEmitters(data, scene);
    Stream* music = loadStream(device, data, "courtyard.ogg");
    if (device == nullptr) return;
    device->setMusicVolume(musicVolume * volume);
    device->playStream(music, true, musicRise);
}

void Soundscape::addEmitters(GameData& data, const Scene& scene)
{
    if (!scene.hasCourtyard) return;
    emitters.push_back({loadSample(device, data, "fountain.wav"), {scene.fountain}, 30.0f, 0.5f, fountainPause, 0, 0});
    Sample* flame = loadSample(device, data, "flame.wav");
    uint64 firstStart = 0; // one after the other, or they would all crack at the same time
    for (const Vector3<float>& lamp : scene.lamps) {
        emitters.push_back({flame, {lamp}, 16.0f, 0.8f, flamePause, 0, firstStart});
        firstStart += flamePause / Scene::lampCount;
    }
    emitters.push_back({loadSample(device, data, "blackbird.wav"), scene.treeTops, 60.0f, 0.35f, 6000, 9000, 2500});
    emitters.push_back({loadSample(device, data, "finch.wav"), scene.treeTops, 60.0f, 0.3f, 5000, 8000, 6000});
}

std::vector<SoundPlace> Soundscape::getPlaces() const
{
    std::vector<SoundPlace> places;
    for (const Emitter& emitter : emitters)
        for (const Vector3<float>& place : emitter.places) places.push_back({place, emitter.range});
    return places;
}

void Soundscape::update(const Viewpoint& listener, uint64 milliseconds)
{
    if (device == nullptr) return;
    for (Emitter& emitter : emitters)
        if (milliseconds >= emitter.nextStart) start(emitter, milliseconds);
    startHums(listener.position, milliseconds);
    device->setListener(listener.position, listener.getForward());
    // At once, so that what has just begun does not sound as if it were near.
    device->update(0.0f);
}

Sample* Soundscape::findSample(GameData& data, const std::string& name)
{
    const auto known = samples.find(name);
    if (known != samples.end()) return known->second;
    return samples.emplace(name, loadSample(device, data, name)).first->second;
}

void Soundscape::playOnce(GameData& data, const std::string& name, const Vector3<float>& position)
{
    constexpr float range = 40;
    Sample* const sample = findSample(data, name);
    if (device != nullptr) play(device->acquireSource(), sample, position, range, 1);
}

void Soundscape::setHums(GameData& data, const std::string& name, const std::map<int, Vector3<float>>& places)
{
    hum = findSample(data, name);
    humPlaces = places;
    for (auto next = nextHums.begin(); next != nextHums.end();)
        next = places.count(next->first) == 0 ? nextHums.erase(next) : std::next(next);
}

// Who comes near hears it at once; far away nothing is started.
void Soundscape::startHums(const Vector3<float>& listener, uint64 milliseconds)
{
    for (const auto& [number, place] : humPlaces) {
        if (length(place - listener) > humRange) continue;
        uint64& next = nextHums[number];
        if (milliseconds < next) continue;
        next = milliseconds + humPause;
        play(device->acquireSource(), hum, place, humRange, humVolume);
    }
}

void Soundscape::start(Emitter& emitter, uint64 milliseconds)
{
    // Counted from now: after a long pause nothing has to be made up for.
    emitter.nextStart = milliseconds + emitter.pause + chooseBelow(emitter.spread);
    AudioSource* const source = device->acquireSource();
    if (source == nullptr) return;
    const auto place = static_cast<std::size_t>(chooseBelow(emitter.places.size()));
    play(source, emitter.sample, emitter.places[place], emitter.range, emitter.volume);
}

// When all sources are in use, this time is left out.
void Soundscape::play(AudioSource* source, Sample* sample, const Vector3<float>& position, float range,
                      float sourceVolume)
{
    if (source == nullptr) return;
    sourceVolumes[source] = sourceVolume;
    source->setPosition(position);
    source->setRange(range);
    source->setVolume(sourceVolume * volume);
    source->play(sample, 0.0f);
}

uint64 Soundscape::chooseBelow(uint64 limit)
{
    return limit > 1 ? chance() % limit : 0;
}

// A source that is back in the pool is set as well: it does no harm, whoever gets it next sets it anew.
void Soundscape::setVolume(float newVolume)
{
    if (newVolume == volume) return;
    volume = newVolume;
    if (device == nullptr) return;
    device->setMusicVolume(musicVolume * volume);
    for (const auto& [source, sourceVolume] : sourceVolumes) source->setVolume(sourceVolume * volume);
}
