#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct SDL_Window;

/// A message box that the library asked SDL to show. The test program answers in SDL's place.
struct ShownMessageBox {
    std::uint32_t flags;
    std::string title;
    std::string text;
    SDL_Window* parent;
};

/// All boxes since the start of the process. Each is also written to standard error as "[[TITLE|TEXT]]", which is what
/// death tests match on.
std::vector<ShownMessageBox>& shownMessageBoxes();

/// What SDL answers from now on; 0, shown, at the start.
void setMessageBoxResult(int result);
