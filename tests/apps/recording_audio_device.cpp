#include "recording_audio_device.h"

#include <sstream>

namespace {

template <class... Parts>
std::string line(const Parts&... parts)
{
    std::ostringstream text;
    (text << ... << parts);
    return text.str();
}

std::string toText(const Vector3<float>& v)
{
    return line(v.x, ' ', v.y, ' ', v.z);
}

std::string nameOf(const void* object)
{
    return object != nullptr ? *static_cast<const std::string*>(object) : "nothing";
}

} // namespace

void RecordingAudioSource::play(Sample* sample, float fadeSeconds)
{
    notes.push_back(line(nameOf(sample), " at ", toText(position), ", range ", range, ", volume ", volume,
                         fadeSeconds > 0 ? ", faded in" : ""));
}

RecordingAudioDevice::RecordingAudioDevice(std::size_t sourceCount)
{
    for (std::size_t i = 0; i < sourceCount; ++i) sources.emplace_back(notes);
    nextFree = sources.begin();
}

Notes RecordingAudioDevice::takeNotes()
{
    Notes taken;
    taken.swap(notes);
    return taken;
}

Sample* RecordingAudioDevice::loadSample(const std::string& /*fileName*/)
{
    return nullptr;
}

Sample* RecordingAudioDevice::loadSampleFromMemory(const std::vector<unsigned char>& data)
{
    return static_cast<Sample*>(load(data));
}

void RecordingAudioDevice::destroySample(Sample* sample)
{
    destroy(sample);
}

Stream* RecordingAudioDevice::loadStream(const std::string& /*fileName*/)
{
    return nullptr;
}

Stream* RecordingAudioDevice::loadStreamFromMemory(const std::vector<unsigned char>& data)
{
    return static_cast<Stream*>(load(data));
}

void RecordingAudioDevice::destroyStream(Stream* stream)
{
    destroy(stream);
}

void RecordingAudioDevice::setMusicVolume(float volume)
{
    notes.push_back(line("music volume ", volume));
}

void RecordingAudioDevice::playStream(Stream* stream, bool loop, float fadeSeconds)
{
    notes.push_back(line(nameOf(stream), loop ? " for ever" : " once", ", faded in over ", fadeSeconds));
}

AudioSource* RecordingAudioDevice::acquireSource()
{
    return nextFree != sources.end() ? &*nextFree++ : nullptr;
}

void RecordingAudioDevice::setListener(const Vector3<float>& position, const Vector3<float>& direction)
{
    listenerPosition = position;
    notes.push_back(line("listener at ", toText(position), " towards ", toText(direction)));
}

void RecordingAudioDevice::update(float /*seconds*/)
{
    if (samplesEnd) nextFree = sources.begin();
    samplesEnd = false;
    notes.emplace_back("update");
}

void* RecordingAudioDevice::load(const std::vector<unsigned char>& data)
{
    return &loaded.emplace_back(data.begin(), data.end());
}

void RecordingAudioDevice::destroy(const void* object)
{
    loaded.remove_if([&](const std::string& contents) { return &contents == object; });
}
