#pragma once

#include <SDL.h>

#include <cstddef>
#include <cstring>

/// Puts events into SDL's queue as its drivers do; Engine::update takes them from there.

inline void pushEvent(Uint32 type)
{
    SDL_Event event = {};
    event.type = type;
    SDL_PushEvent(&event);
}

inline void pushKey(Uint32 type, SDL_Keycode key, bool isRepeat = false)
{
    SDL_Event event = {};
    event.type = type;
    event.key.state = type == SDL_KEYDOWN ? SDL_PRESSED : SDL_RELEASED;
    event.key.repeat = isRepeat ? 1 : 0;
    event.key.keysym.sym = key;
    SDL_PushEvent(&event);
}

inline void pushKeyDown(SDL_Keycode key)
{
    pushKey(SDL_KEYDOWN, key);
}

inline void pushKeyUp(SDL_Keycode key)
{
    pushKey(SDL_KEYUP, key);
}

/// At most 31 bytes, as SDL itself sends them.
inline void pushText(const char* utf8)
{
    SDL_Event event = {};
    event.type = SDL_TEXTINPUT;
    SDL_strlcpy(event.text.text, utf8, sizeof event.text.text);
    SDL_PushEvent(&event);
}

/// `type` is SDL_MOUSEBUTTONDOWN or SDL_MOUSEBUTTONUP.
inline void pushMouseButton(Uint32 type, Uint8 button)
{
    SDL_Event event = {};
    event.type = type;
    event.button.button = button;
    SDL_PushEvent(&event);
}

inline void pushWheel(Sint32 horizontal, Sint32 vertical, Uint32 direction = SDL_MOUSEWHEEL_NORMAL)
{
    SDL_Event event = {};
    event.type = SDL_MOUSEWHEEL;
    event.wheel.x = horizontal;
    event.wheel.y = vertical;
    event.wheel.direction = direction;
    SDL_PushEvent(&event);
}

inline void pushJoystickAxis(Uint8 axis, Sint16 value)
{
    SDL_Event event = {};
    event.type = SDL_JOYAXISMOTION;
    event.jaxis.axis = axis;
    event.jaxis.value = value;
    SDL_PushEvent(&event);
}

/// `type` is SDL_JOYBUTTONDOWN or SDL_JOYBUTTONUP.
inline void pushJoystickButton(Uint32 type, Uint8 button)
{
    SDL_Event event = {};
    event.type = type;
    event.jbutton.button = button;
    SDL_PushEvent(&event);
}

inline void pushWindowEvent(Uint8 change, Uint32 window = 0)
{
    SDL_Event event = {};
    event.type = SDL_WINDOWEVENT;
    event.window.event = change;
    event.window.windowID = window;
    SDL_PushEvent(&event);
}
