#include "soundscape.h"

#include "engine_fixtures.h"
#include "failure.h"
#include "file_contents.h"
#include "recording_audio_device.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <memory>

namespace {

namespace fs = std::filesystem;

/// A scene with few places, and data whose files hold their own names.
class Sounds : public EngineFixture {
protected:
    void SetUp() override
    {
        EngineFixture::SetUp();
        ASSERT_FALSE(HasFatalFailure());
        for (const char* directory : {"sounds/samples", "sounds/streams"}) fs::create_directories(directory);
        for (const char* name : {"fountain", "flame", "blackbird", "finch", "bell", "glass"})
            writeFileContents("sounds/samples/" + std::string(name) + ".wav", name);
        writeFileContents("sounds/streams/courtyard.ogg", "music");
        data = std::make_unique<GameData>(*engine, DataSource{"sounds/", ""});
        scene.hasCourtyard = true;
        scene.fountain = {1, 2, 3};
        scene.lamps = {Vector3<float>(10, 0, 4), Vector3<float>(20, 0, 4), Vector3<float>(30, 0, 4)};
        scene.treeTops = {{0, 40, 8}, {0, 50, 8}, {0, 60, 8}};
    }

    void TearDown() override
    {
        data.reset();
        EngineFixture::TearDown();
    }

    Soundscape makeSoundscape(float volume = 1)
    {
        Soundscape sounds(&device, *data, scene, volume);
        introduction = device.takeNotes();
        return sounds;
    }

    /// What an update starts.
    Notes startsAt(Soundscape& sounds, uint64 milliseconds)
    {
        sounds.update(Viewpoint(), milliseconds);
        Notes notes = device.takeNotes();
        EXPECT_GE(notes.size(), 2u);
        notes.resize(notes.size() - 2); // the listener and the update
        device.endSamples();
        return notes;
    }

    /// How often the lines of updates every 20 milliseconds begin with a text, and when.
    std::vector<uint64> timesOf(const std::string& start, uint64 duration)
    {
        Soundscape sounds = makeSoundscape();
        std::vector<uint64> times;
        for (uint64 time = 0; time < duration; time += 20)
            for (const std::string& note : startsAt(sounds, time))
                if (note.rfind(start, 0) == 0) times.push_back(time);
        return times;
    }

    RecordingAudioDevice device = RecordingAudioDevice(64);
    std::unique_ptr<GameData> data;
    Scene scene;
    Notes introduction;
};

} // namespace

TEST_F(Sounds, musicPlaysForEver)
{
    makeSoundscape();
    EXPECT_EQ(introduction, (Notes{"music volume 0.55", "music for ever, faded in over 0.5"}));
}

TEST_F(Sounds, fountainAndFirstLampStartAtOnceAtTheirPlaces)
{
    Soundscape sounds = makeSoundscape();
    EXPECT_EQ(startsAt(sounds, 0),
              (Notes{"fountain at 1 2 3, range 30, volume 0.5", "flame at 10 0 4, range 16, volume 0.8"}));
    EXPECT_EQ(startsAt(sounds, 832), Notes());
    EXPECT_EQ(startsAt(sounds, 833), (Notes{"flame at 20 0 4, range 16, volume 0.8"}));
    EXPECT_EQ(startsAt(sounds, 1666), (Notes{"flame at 30 0 4, range 16, volume 0.8"}));
}

TEST_F(Sounds, whatFellSilentStartsAgain)
{
    EXPECT_EQ(timesOf("fountain", 11000), (std::vector<uint64>{0, 3500, 7000, 10500}));
    EXPECT_EQ(timesOf("flame at 10 ", 8000), (std::vector<uint64>{0, 2500, 5000, 7500}));
}

TEST_F(Sounds, noiseStartsAgainHalfASecondBeforeItsEnd)
{
    const auto seconds = [](const char* name) { // 22050 frames of two bytes, behind a header of 44 bytes
        return static_cast<double>(fileContents(XUM_DATA_DIRECTORY "/samples/" + std::string(name)).size() - 44) /
               44100;
    };
    EXPECT_EQ(seconds("fountain.wav"), 3.5 + 0.5);
    EXPECT_EQ(seconds("flame.wav"), 2.5 + 0.5);
}

TEST_F(Sounds, birdsSingNowAndThen)
{
    for (const char* bird : {"blackbird", "finch"}) {
        const std::vector<uint64> times = timesOf(bird, 300000);
        EXPECT_GE(times.size(), 20u) << bird;
        std::vector<uint64> pauses;
        for (std::size_t i = 1; i < times.size(); ++i) pauses.push_back(times[i] - times[i - 1]);
        EXPECT_GE(*std::min_element(pauses.begin(), pauses.end()), 5000u) << bird;
        EXPECT_LE(*std::max_element(pauses.begin(), pauses.end()), 15020u) << bird;
        EXPECT_NE(*std::min_element(pauses.begin(), pauses.end()), *std::max_element(pauses.begin(), pauses.end()));
    }
}

TEST_F(Sounds, birdsSitOnAllTrees)
{
    for (const char* place :
         {"blackbird at 0 40 8, range 60, volume 0.35", "blackbird at 0 50 8, range 60, volume 0.35",
          "blackbird at 0 60 8, range 60, volume 0.35", "finch at 0 40 8, range 60, volume 0.3",
          "finch at 0 50 8, range 60, volume 0.3", "finch at 0 60 8, range 60, volume 0.3"})
        EXPECT_FALSE(timesOf(place, 300000).empty()) << place;
}

TEST_F(Sounds, placesAreThoseOfAllThatIsHeard)
{
    const auto expectPlaces = [&](const Soundscape& sounds) {
        const std::vector<SoundPlace> places = sounds.getPlaces();
        ASSERT_EQ(places.size(), 10u); // the fountain, three lamps, and two kinds of birds in three trees
        EXPECT_EQ(places[0].position, scene.fountain);
        EXPECT_EQ(places[0].range, 30);
        EXPECT_EQ(places[3].position, scene.lamps[2]);
        EXPECT_EQ(places[3].range, 16);
        EXPECT_EQ(places[9].position, scene.treeTops[2]);
        EXPECT_EQ(places[9].range, 60);
    };
    expectPlaces(makeSoundscape());
    expectPlaces(Soundscape(nullptr, *data, scene, 1)); // also on a machine without sound
}

TEST_F(Sounds, eachRunSoundsTheSame)
{
    EXPECT_EQ(timesOf("blackbird at 0 50 8", 100000), timesOf("blackbird at 0 50 8", 100000));
}

TEST_F(Sounds, nothingIsMadeUpForAfterALongPause)
{
    Soundscape sounds = makeSoundscape();
    startsAt(sounds, 0);
    EXPECT_EQ(startsAt(sounds, 1000000).size(), 6u); // each once
    EXPECT_EQ(startsAt(sounds, 1000020), Notes());
}

TEST_F(Sounds, cameraListens)
{
    Soundscape sounds = makeSoundscape();
    startsAt(sounds, 0);
    Viewpoint camera;
    camera.position = {7, 8, 9};
    camera.yaw = 180;
    camera.pitch = 90;
    sounds.update(camera, 20);
    const Notes notes = device.takeNotes();
    ASSERT_EQ(notes.size(), 2u);
    EXPECT_EQ(notes[0].rfind("listener at 7 8 9 towards ", 0), 0u) << notes[0];
    EXPECT_EQ(notes[1], "update");
    EXPECT_EQ(device.getListenerPosition(), camera.position);
}

TEST_F(Sounds, deviceIsUpdatedAfterWhatStarts)
{
    Soundscape sounds = makeSoundscape();
    sounds.update(Viewpoint(), 0);
    const Notes notes = device.takeNotes();
    ASSERT_EQ(notes.size(), 4u);
    EXPECT_EQ(notes[2], "listener at 0 0 0 towards -0 1 0");
    EXPECT_EQ(notes[3], "update");
}

TEST_F(Sounds, volumeIsThatOfEverything)
{
    Soundscape sounds = makeSoundscape(0.5f);
    EXPECT_EQ(introduction[0], "music volume 0.275");
    EXPECT_EQ(startsAt(sounds, 0)[0], "fountain at 1 2 3, range 30, volume 0.25");
    EXPECT_EQ(sounds.getVolume(), 0.5f);
}

TEST_F(Sounds, newVolumeReachesWhatPlaysAlready)
{
    Soundscape sounds = makeSoundscape();
    startsAt(sounds, 0);
    sounds.setVolume(0.5f);
    EXPECT_EQ(device.takeNotes(), (Notes{"music volume 0.275"}));
    EXPECT_EQ(device.getSources().front().getVolume(), 0.25f);               // the fountain
    EXPECT_EQ(std::next(device.getSources().begin())->getVolume(), 0.4f);    // a lamp
    EXPECT_EQ(std::next(device.getSources().begin(), 2)->getVolume(), 1.0f); // nobody's
    sounds.setVolume(0.5f);
    EXPECT_EQ(device.takeNotes(), Notes());
    sounds.setVolume(0);
    EXPECT_EQ(device.getSources().front().getVolume(), 0);
}

TEST_F(Sounds, withoutAFreeSourceASoundIsLeftOut)
{
    for (std::size_t i = 0; i < 63; ++i) device.acquireSource();
    Soundscape sounds = makeSoundscape();
    EXPECT_EQ(startsAt(sounds, 0), (Notes{"fountain at 1 2 3, range 30, volume 0.5"})); // and no lamp
    startsAt(sounds, 20);                                                               // the sources come back
    EXPECT_EQ(startsAt(sounds, 2500)[0], "flame at 10 0 4, range 16, volume 0.8");
}

TEST_F(Sounds, withoutADeviceNothingHappens)
{
    Soundscape sounds(nullptr, *data, scene, 1);
    sounds.update(Viewpoint(), 0);
    sounds.setVolume(0.5f);
    EXPECT_EQ(sounds.getVolume(), 0.5f);
}

TEST_F(Sounds, missingFileIsNamedEvenWithoutADevice)
{
    for (const char* name : {"samples/finch.wav", "streams/courtyard.ogg"}) {
        fs::rename("sounds/" + std::string(name), "away");
        for (AudioDevice* used : {static_cast<AudioDevice*>(&device), static_cast<AudioDevice*>(nullptr)}) {
            try {
                Soundscape(used, *data, scene, 1);
                ADD_FAILURE() << name;
            } catch (const Failure& failure) {
                EXPECT_EQ(failure.what(), "cannot read the file sounds/" + std::string(name));
                EXPECT_EQ(failure.getStatus(), ExitStatus::BrokenData);
            }
        }
        fs::rename("away", "sounds/" + std::string(name));
    }
}

TEST_F(Sounds, goBackToTheDeviceWithTheData)
{
    makeSoundscape();
    EXPECT_EQ(device.countLoaded(), 5u); // what was decoded to see whether it can be is gone
    data.reset();
    EXPECT_EQ(device.countLoaded(), 0u);
}
