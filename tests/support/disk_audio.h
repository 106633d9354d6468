#pragma once

#include "engine_fixtures.h"
#include "sounds.h"

#include <xum/devices/audio_device.h>

#include <functional>
#include <string>
#include <vector>

/// A test with a running engine and an audio device that plays into a file instead of a sound card, much faster than in
/// real time.
class DiskAudioFixture : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    /// Waits until the mixer has made so many more chunks of 1024 frames.
    void waitForChunks(int count);

    /// Waits until nothing plays any more; false when that takes longer than it may.
    bool waitForSilence();

    /// Plays the sample on a new source, set up by `prepare`, and waits for its end.
    void playToTheEnd(Sample* sample, const std::function<void(AudioSource&)>& prepare = {});

    /// A sample of so many frames that are all the same.
    Sample* constantSample(int frames, short left, short right);

    /// Destroys the device and returns all that was played, also by earlier devices of the test.
    std::vector<Frame> endAndListen();

    Engine* engine = nullptr;
    AudioDevice* audio = nullptr;

private:
    std::string driver;
    std::string fileName;
};
