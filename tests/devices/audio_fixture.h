#pragma once

#include "audio_stand_ins.h"
#include "engine_fixtures.h"

#include <xum/devices/audio_device.h>

/// A test with a running engine and an audio device whose mixer plays when it is asked to.
class AudioFixture : public EngineFixture {
protected:
    void SetUp() override
    {
        EngineFixture::SetUp();
        ASSERT_FALSE(HasFatalFailure());
        audio = engine->createAudioDevice();
        ASSERT_NE(audio, nullptr);
        takeMixerCalls();
    }

    void TearDown() override
    {
        mixerAnswers() = {};
        if (audio != nullptr) engine->destroyAudioDevice(audio);
        EngineFixture::TearDown();
    }

    Sample* constantSample(int frames, short value)
    {
        return audio->loadSampleFromMemory(constantWave(frames, value, value));
    }

    Stream* constantStream(int frames, short value)
    {
        return audio->loadStreamFromMemory(constantWave(frames, value, value));
    }

    AudioDevice* audio = nullptr;
};
