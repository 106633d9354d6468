#include "stand_ins.h"

#include <SDL.h>

#include <dlfcn.h>

#include <utility>

namespace {

int refusedJoystick = -1;
int motionX = 0;
int motionY = 0;

template <class Function>
Function* realFunction(Function* /*ours*/, const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace

void refuseToOpenJoystick(int number)
{
    refusedJoystick = number;
}

std::vector<std::string>& mouseCalls()
{
    static std::vector<std::string> calls;
    return calls;
}

void moveMouseBy(int x, int y)
{
    motionX += x;
    motionY += y;
}

extern "C" {

DECLSPEC SDL_Joystick* SDLCALL SDL_JoystickOpen(int number)
{
    if (number == refusedJoystick) return nullptr;
    return realFunction(SDL_JoystickOpen, "SDL_JoystickOpen")(number);
}

DECLSPEC int SDLCALL SDL_ShowCursor(int toggle)
{
    if (toggle != SDL_QUERY) mouseCalls().push_back("SDL_ShowCursor(" + std::to_string(toggle) + ")");
    return realFunction(SDL_ShowCursor, "SDL_ShowCursor")(toggle);
}

DECLSPEC int SDLCALL SDL_SetRelativeMouseMode(SDL_bool enabled)
{
    mouseCalls().push_back("SDL_SetRelativeMouseMode(" + std::to_string(enabled) + ")");
    return realFunction(SDL_SetRelativeMouseMode, "SDL_SetRelativeMouseMode")(enabled);
}

DECLSPEC Uint32 SDLCALL SDL_GetRelativeMouseState(int* x, int* y)
{
    mouseCalls().push_back("SDL_GetRelativeMouseState()");
    const Uint32 buttons = realFunction(SDL_GetRelativeMouseState, "SDL_GetRelativeMouseState")(nullptr, nullptr);
    const int takenX = std::exchange(motionX, 0);
    const int takenY = std::exchange(motionY, 0);
    if (x != nullptr) *x = takenX;
    if (y != nullptr) *y = takenY;
    return buttons;
}
}
