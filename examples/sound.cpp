// Four sounds at their places and a piece of music, heard by somebody who walks around among them. Arrow up and down
// change the volume, the space bar turns the music off and on. Without a sound card it is a silent picture.
#include "canvas.h"
#include "example_run.h"

#include <algorithm>
#include <cmath>

namespace {

struct Place {
    const char* file;
    Vector3<float> position; // metres
    float range;             // where it falls silent
    float pause;             // seconds from one start to the next
    Sample* sample = nullptr;
    AudioSource* source = nullptr;
    float nextStart = 0;
};

const Vector4<float> pale(0.75f, 0.80f, 0.88f, 1);

// A source plays its sample once and is taken back when it is silent, so each start asks for one. Its range keeps the
// volume right until then.
void play(AudioDevice* audio, Place& place, float volume)
{
    place.source = audio->acquireSource();
    if (place.source == nullptr) return; // all 64 are busy
    place.source->setPosition(place.position);
    place.source->setRange(place.range);
    place.source->setVolume(volume);
    place.source->play(place.sample, 0);
}

// Pixels of a map that is 48 metres wide.
Vector3<float> onMap(const Vector3<float>& position)
{
    return {480 + position.x * 20, 270 - position.y * 20, 0};
}

void drawMap(Canvas& canvas, RenderDevice* device, const std::vector<Place>& places, const Vector3<float>& listener)
{
    for (const Place& place : places) {
        const Vector3<float> at = onMap(place.position);
        const float loudness = std::max(0.0f, 1 - length(place.position - listener) / place.range);
        canvas.use({0.35f, 0.75f, 0.85f, 0.25f + 0.75f * loudness});
        for (int ring = 1; ring <= 4; ++ring)
            DebugSphere(at, place.range * 20 * static_cast<float>(ring) / 4, 64).draw(device);
        canvas.fill(at.x - 6, at.y - 6, 12, 12, {0.98f, 0.72f, 0.25f, 1});
        const std::string percent = std::to_string(static_cast<int>(std::lround(loudness * 100)));
        canvas.write(static_cast<int>(at.x) + 12, static_cast<int>(at.y) + 6,
                     std::string(place.file) + " " + percent + "%", pale, 1.3f);
    }
    const Vector3<float> at = onMap(listener);
    canvas.fill(at.x - 9, at.y - 9, 18, 18, {0.95f, 0.35f, 0.30f, 1});
    canvas.write(static_cast<int>(at.x) + 14, static_cast<int>(at.y) - 10, "you", pale, 1.3f);
}

} // namespace

int main(int argc, char** argv)
{
    ExampleRun run(argc, argv);
    Engine* engine = initEngine(false);
    Window* window = engine != nullptr ? engine->createWindow("Sound", 960, 540, false, false) : nullptr;
    RenderDevice* device = window != nullptr ? engine->createRenderDevice(window, "OpenGL") : nullptr;
    if (device == nullptr) return fail("No window with OpenGL 3.2 here"); // log.txt may say more
    InputDevice* input = engine->createInputDevice(false);
    AudioDevice* audio = engine->createAudioDevice(); // null on a machine without sound
    std::cout << (audio != nullptr ? "playing\n" : "there is no sound device: playing silently\n");

    std::vector<Place> places = {{"fountain", {-11, 5, 0}, 9, 4},
                                 {"flame", {12, 6, 0}, 8, 3},
                                 {"finch", {-6, -7, 0}, 7, 6},
                                 {"blackbird", {9, -6, 0}, 10, 7}};
    Stream* music = nullptr;
    if (audio != nullptr) {
        for (Place& place : places)
            place.sample = audio->loadSample(defaultDataRoot() + "samples/" + place.file + ".wav");
        music = audio->loadStream(defaultDataRoot() + "streams/courtyard.ogg");
        audio->playStream(music, true, 2); // for ever, faded in over two seconds
    }

    float volume = 0.8f;
    {
        Canvas canvas(device);
        while (run.update(engine)) {
            const float angle = run.getSeconds() * 0.4f + 2.05f;
            const Vector3<float> listener(12 * std::cos(angle), 7 * std::sin(angle), 0);
            if (input->wasPressed(input->getKeyFromName("Up"))) volume = std::min(volume + 0.1f, 1.0f);
            if (input->wasPressed(input->getKeyFromName("Down"))) volume = std::max(volume - 0.1f, 0.0f);
            if (audio != nullptr) {
                if (input->wasPressed(' '))
                    audio->isMusicPlaying() ? audio->stopMusic(1) : audio->playStream(music, true, 1);
                audio->setMusicVolume(volume * 0.5f);
                audio->setListener(listener, {0, 1, 0});
                for (Place& place : places) {
                    if (run.getSeconds() < place.nextStart) continue;
                    place.nextStart = run.getSeconds() + place.pause;
                    play(audio, place, volume);
                }
                audio->update(1.0f / 60); // sets the volumes by distance
            }
            canvas.begin(window->getSize());
            drawMap(canvas, device, places, listener);
            canvas.write(20, 505, "volume " + std::to_string(std::lround(volume * 100)) + "%", pale, 1.3f);
            run.swap(device, window);
        }
    }
    if (audio != nullptr) {
        for (const Place& place : places) audio->destroySample(place.sample);
        audio->destroyStream(music);
    }
    engine->destroyRenderDevice(device);
    engine->destroyAudioDevice(audio); // also for null
    engine->destroyInputDevice(input);
    engine->destroyWindow(window);
    shutdownEngine(engine);
}
