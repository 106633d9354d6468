#include "message_boxes.h"

#ifdef _WIN32
#    include "replaced_import.h"
#endif

#include <SDL.h>

#include <cstdio>

namespace {

int messageBoxResult = 0;

} // namespace

std::vector<ShownMessageBox>& shownMessageBoxes()
{
    static std::vector<ShownMessageBox> boxes;
    return boxes;
}

void setMessageBoxResult(int result)
{
    messageBoxResult = result;
}

namespace {

int rememberMessageBox(Uint32 flags, const char* title, const char* message, SDL_Window* window)
{
    std::fprintf(stderr, "[[%s|%s]]\n", title, message);
    shownMessageBoxes().push_back({flags, title, message, window});
    return messageBoxResult;
}

} // namespace

#ifdef _WIN32

namespace {

[[maybe_unused]] const bool isReplaced =
    replaceImport("SDL_ShowSimpleMessageBox", reinterpret_cast<void*>(rememberMessageBox));

} // namespace

#else

// The dynamic linker prefers a program's own function to the one of a library.
extern "C" DECLSPEC int SDLCALL SDL_ShowSimpleMessageBox(Uint32 flags, const char* title, const char* message,
                                                         SDL_Window* window)
{
    return rememberMessageBox(flags, title, message, window);
}

#endif
