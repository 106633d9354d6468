#include <xum/engine/message_box.h>

#include <SDL.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

int showWithSDL(std::uint32_t flags, const char* title, const char* text)
{
    return SDL_ShowSimpleMessageBox(flags, title, text, nullptr);
}

bool areBoxesWanted()
{
    const char* setting = std::getenv("XUM_MESSAGE_BOXES");
    return setting == nullptr || std::strcmp(setting, "0") != 0;
}

} // namespace

MessageBoxFunction messageBoxFunction = showWithSDL;

void showMessageBox(const char* title, const char* text)
{
    // Kept on purpose: warnings show the error icon too and differ in their title only.
    if (areBoxesWanted() && messageBoxFunction(SDL_MESSAGEBOX_ERROR, title, text) == 0) return;
    std::fprintf(stderr, "%s: %s\n", title, text);
    std::fflush(stderr);
}
