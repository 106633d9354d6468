#include "message_boxes.h"

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

// The dynamic linker prefers a program's own function to the one of a library.
extern "C" DECLSPEC int SDLCALL SDL_ShowSimpleMessageBox(Uint32 flags, const char* title, const char* message,
                                                         SDL_Window* window)
{
    std::fprintf(stderr, "[[%s|%s]]\n", title, message);
    shownMessageBoxes().push_back({flags, title, message, window});
    return messageBoxResult;
}
