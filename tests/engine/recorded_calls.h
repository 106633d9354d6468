#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// The start-up and shutdown calls that the library makes, in order, as "NAME(ARGUMENTS)". The test program defines
/// these functions itself, which the dynamic linker prefers, and passes each call on to the real one.
std::vector<std::string>& recordedCalls();

/// What the functions answer instead of the real result, when `isForced`. A forced start is not passed on.
struct ForcedResult {
    bool isForced = false;
    int result = 0;
};

/// How the libraries answer from now on.
struct LibraryAnswers {
    ForcedResult sdlInit;
    ForcedResult netInit;
    ForcedResult imageInit;
    ForcedResult fontInit;
    bool isClockDriven = false;
    std::uint32_t ticks = 0; ///< what SDL_GetTicks says when the clock is driven
};

LibraryAnswers& libraryAnswers();
