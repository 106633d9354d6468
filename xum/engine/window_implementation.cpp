#include <xum/engine/window_implementation.h>

#include <SDL.h>

namespace {

Uint32 windowFlags(bool resizable, bool fullscreen)
{
    if (fullscreen) return SDL_WINDOW_OPENGL | SDL_WINDOW_FULLSCREEN_DESKTOP;
    if (resizable) return SDL_WINDOW_OPENGL | SDL_WINDOW_RESIZABLE;
    return SDL_WINDOW_OPENGL;
}

} // namespace

WindowImplementation::WindowImplementation(const std::string& title, int width, int height, bool resizable,
                                           bool fullscreen)
    : handle(SDL_CreateWindow(title.c_str(), SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED, width, height,
                              windowFlags(resizable, fullscreen)))
{}

// SDL ignores a null window in each of these calls.
WindowImplementation::~WindowImplementation()
{
    SDL_DestroyWindow(handle);
}

SDL_Window* WindowImplementation::getHandle()
{
    return handle;
}

Vector2<int> WindowImplementation::getSize()
{
    Vector2<int> size; // stays (0, 0) where there is no window: SDL then writes nothing
    SDL_GL_GetDrawableSize(handle, &size.x, &size.y);
    return size;
}

std::string WindowImplementation::getTitle()
{
    return SDL_GetWindowTitle(handle);
}

void WindowImplementation::setTitle(const std::string& title)
{
    SDL_SetWindowTitle(handle, title.c_str());
}

void WindowImplementation::setFullscreen(bool fullscreen)
{
    SDL_SetWindowFullscreen(handle, fullscreen ? Uint32{SDL_WINDOW_FULLSCREEN_DESKTOP} : Uint32{0});
}
