#pragma once

#include <xum/engine/export.h>
#include <xum/geometry/vector.h>

#include <string>

struct SDL_Window;

/// One window with an OpenGL surface. Made by Engine::createWindow, given back to Engine::destroyWindow. A window that
/// could not be opened has a null handle, a size of (0, 0) and an empty title, and ignores every change.
/// Slot order is ABI.
class XUM_API Window {
public:
    /// SDL's window, owned by this object; null when it could not be opened.
    virtual SDL_Window* getHandle() = 0;

    /// The drawable size of the OpenGL surface in pixels: (width, height).
    virtual Vector2<int> getSize() = 0;

    /// UTF-8.
    /// @{
    virtual std::string getTitle() = 0;
    virtual void setTitle(const std::string& title) = 0;
    /// @}

    /// True switches to full screen at the desktop's resolution, false back to a window.
    virtual void setFullscreen(bool fullscreen) = 0;

protected:
    ~Window() = default;
};
