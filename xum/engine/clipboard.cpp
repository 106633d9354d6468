#include <xum/engine/clipboard.h>

#include <SDL.h>

bool clipboardHasText()
{
    return SDL_HasClipboardText() == SDL_TRUE;
}

std::string clipboardText()
{
    char* buffer = SDL_GetClipboardText();
    if (buffer == nullptr) return {};
    std::string text(buffer);
    SDL_free(buffer);
    return text;
}

void setClipboardTextTo(const std::string& text)
{
    SDL_SetClipboardText(text.c_str());
}
