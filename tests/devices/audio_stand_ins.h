#pragma once

#include "sounds.h"

#include <cstdint>
#include <string>
#include <vector>

/// Functions of SDL_mixer and SDL that the test program defines itself, which the dynamic linker prefers. Each passes
/// its call on to the real one, unless it is told what to answer. The mixer never gets a sound card: it is asked for
/// samples by playChunks, so that the same is played in every run.

/// The calls that the library makes, in order, as "NAME(ARGUMENTS)", pointers left out; not those that SDL_mixer makes
/// of its own.
std::vector<std::string>& mixerCalls();

/// The calls since the last time.
std::vector<std::string> takeMixerCalls();

/// What the functions answer without passing the call on, when `isForced`.
struct ForcedAnswer {
    bool isForced = false;
    int answer = 0;
};

struct MixerAnswers {
    ForcedAnswer init;
    ForcedAnswer openAudio;
    ForcedAnswer allocateChannels;
    bool isClockDriven = false;
    std::uint32_t ticks = 0; ///< what SDL_GetTicks says when the clock is driven
};

MixerAnswers& mixerAnswers();

/// What the mixer makes of its next chunks, 1024 frames each.
std::vector<Frame> playChunks(int count);
