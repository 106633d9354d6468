#include "recorded_calls.h"

#include "file_contents.h"

#include <SDL.h>
#include <SDL_image.h>
#include <SDL_net.h>
#include <SDL_ttf.h>

#include <dlfcn.h>

#include <cstdio>

namespace {

template <class Function>
Function* realFunction(Function* /*ours*/, const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

void record(const std::string& call)
{
    recordedCalls().push_back(call);
}

// A quit also tells how far the log is at that moment.
void recordQuit(const std::string& name)
{
    record(name + "() after " + std::to_string(logLines().size()) + " log lines");
}

std::string hexadecimal(unsigned number)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%X", number);
    return text;
}

} // namespace

std::vector<std::string>& recordedCalls()
{
    static std::vector<std::string> calls;
    return calls;
}

LibraryAnswers& libraryAnswers()
{
    static LibraryAnswers answers;
    return answers;
}

extern "C" {

DECLSPEC int SDLCALL SDL_Init(Uint32 flags)
{
    record("SDL_Init(" + hexadecimal(flags) + ")");
    const ForcedResult& forced = libraryAnswers().sdlInit;
    return forced.isForced ? forced.result : realFunction(SDL_Init, "SDL_Init")(flags);
}

DECLSPEC void SDLCALL SDL_Quit()
{
    recordQuit("SDL_Quit");
    realFunction(SDL_Quit, "SDL_Quit")();
}

DECLSPEC int SDLCALL SDLNet_Init()
{
    record("SDLNet_Init()");
    const ForcedResult& forced = libraryAnswers().netInit;
    return forced.isForced ? forced.result : realFunction(SDLNet_Init, "SDLNet_Init")();
}

DECLSPEC void SDLCALL SDLNet_Quit()
{
    recordQuit("SDLNet_Quit");
    realFunction(SDLNet_Quit, "SDLNet_Quit")();
}

DECLSPEC int SDLCALL IMG_Init(int flags)
{
    record("IMG_Init(" + std::to_string(flags) + ")");
    const ForcedResult& forced = libraryAnswers().imageInit;
    return forced.isForced ? forced.result : realFunction(IMG_Init, "IMG_Init")(flags);
}

DECLSPEC void SDLCALL IMG_Quit()
{
    recordQuit("IMG_Quit");
    realFunction(IMG_Quit, "IMG_Quit")();
}

DECLSPEC int SDLCALL TTF_Init()
{
    record("TTF_Init()");
    const ForcedResult& forced = libraryAnswers().fontInit;
    return forced.isForced ? forced.result : realFunction(TTF_Init, "TTF_Init")();
}

DECLSPEC void SDLCALL TTF_Quit()
{
    recordQuit("TTF_Quit");
    realFunction(TTF_Quit, "TTF_Quit")();
}

DECLSPEC int SDLCALL SDL_GL_SetAttribute(SDL_GLattr attribute, int value)
{
    record("SDL_GL_SetAttribute(" + std::to_string(attribute) + ", " + std::to_string(value) + ")");
    return realFunction(SDL_GL_SetAttribute, "SDL_GL_SetAttribute")(attribute, value);
}

DECLSPEC void SDLCALL SDL_DestroyWindow(SDL_Window* window)
{
    record("SDL_DestroyWindow()");
    realFunction(SDL_DestroyWindow, "SDL_DestroyWindow")(window);
}

DECLSPEC Uint32 SDLCALL SDL_GetTicks()
{
    const LibraryAnswers& answers = libraryAnswers();
    return answers.isClockDriven ? answers.ticks : realFunction(SDL_GetTicks, "SDL_GetTicks")();
}
}
