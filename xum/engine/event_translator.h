#pragma once

#include <xum/engine/engine.h>

union SDL_Event;

/// Feeds one SDL event to the process-wide input state, or, for a window event that the host is told of, returns true
/// and sets its type. Every other event is ignored. Needs no window and no device.
bool translateEvent(const SDL_Event& event, EngineEventType::Type& outType);
