#include <xum/engine/engine_implementation.h>

#include <xum/devices/input_state.h>
#include <xum/engine/event_translator.h>

#include <SDL.h>

std::string EngineImplementation::getVersion()
{
    return "xum-engine 0.1 (build 0001)";
}

EngineEvent* EngineImplementation::getEvents()
{
    if (events.empty()) return nullptr;
    for (std::size_t i = 0; i + 1 < events.size(); ++i) events[i].setNext(&events[i + 1]);
    events.back().setNext(nullptr);
    return &events.front();
}

uint64 EngineImplementation::getTime()
{
    return clock;
}

bool EngineImplementation::update()
{
    events.clear(); // keeps its storage, so that a steady frame allocates nothing
    beginFrame();
    SDL_Event event;
    while (SDL_PollEvent(&event) != 0) {
        if (event.type == SDL_QUIT) {
            SDL_FlushEvent(SDL_POLLSENTINEL); // SDL's mark of where this poll ends: it would cut the next one short
            return false;
        }
        EngineEventType::Type type;
        if (translateEvent(event, type)) events.emplace_back(type);
    }
    advanceClock();
    return true;
}

void EngineImplementation::advanceClock()
{
    const std::uint32_t now = SDL_GetTicks();
    if (previousTick != noUpdateYet) clock += now - previousTick; // 32-bit arithmetic: right across the counter's wrap
    previousTick = now;
}
