#include "headless.h"

#include <xum/engine/engine.h>

#include <SDL.h>
#include <benchmark/benchmark.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <vector>

// The frame pump beside a bare loop over SDL's queue that keeps a key table by the same rules.

namespace {

Engine* engine = nullptr;
std::array<unsigned char, 529> plainKeys;

void plainFrame()
{
    for (unsigned char& key : plainKeys) key &= 4;
    SDL_Event event;
    while (SDL_PollEvent(&event) != 0) {
        switch (event.type) {
        case SDL_KEYDOWN: plainKeys[event.key.keysym.sym & 511] |= 5; break;
        case SDL_KEYUP:
            plainKeys[event.key.keysym.sym & 511] =
                static_cast<unsigned char>((plainKeys[event.key.keysym.sym & 511] & 3) | 2);
            break;
        default: break;
        }
    }
    benchmark::DoNotOptimize(SDL_GetTicks());
    benchmark::DoNotOptimize(plainKeys);
}

void engineFrame()
{
    benchmark::DoNotOptimize(engine->update());
}

std::vector<SDL_Event> keyEvents(int count)
{
    std::vector<SDL_Event> events(static_cast<std::size_t>(count));
    for (std::size_t i = 0; i < events.size(); ++i) {
        events[i] = {};
        events[i].type = i % 2 == 0 ? SDL_KEYDOWN : SDL_KEYUP;
        events[i].key.keysym.sym = static_cast<SDL_Keycode>(SDLK_a + static_cast<int>(i / 2 % 26));
    }
    return events;
}

/// Queuing the events is part of both measurements.
void measureFrame(benchmark::State& state, void (*frame)())
{
    std::vector<SDL_Event> events = keyEvents(static_cast<int>(state.range(0)));
    const int count = static_cast<int>(events.size());
    frame();
    for (auto _ : state) {
        if (count != 0 && SDL_PeepEvents(events.data(), count, SDL_ADDEVENT, 0, 0) != count)
            state.SkipWithError("the queue is full");
        frame();
    }
    if (count != 0)
        state.counters["event"] =
            benchmark::Counter(count, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void registerFrames(int count)
{
    benchmark::RegisterBenchmark("frame/plain", measureFrame, plainFrame)->Arg(count)->ArgName("events");
    benchmark::RegisterBenchmark("frame/engine", measureFrame, engineFrame)->Arg(count)->ArgName("events");
}

} // namespace

int main(int argc, char** argv)
{
    prepareMeasurement();
    engine = initEngine(false);
    if (engine == nullptr) {
        std::fprintf(stderr, "The engine does not start: %s\n", SDL_GetError());
        return EXIT_FAILURE;
    }
    for (int count : {0, 10, 1000}) registerFrames(count);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    shutdownEngine(engine);
}
