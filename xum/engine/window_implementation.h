#pragma once

#include <xum/engine/window.h>

class WindowImplementation final : public Window {
public:
    /// Opens a window centred on the screen. fullscreen wins over resizable. A failure leaves the handle null.
    WindowImplementation(const std::string& title, int width, int height, bool resizable, bool fullscreen);
    ~WindowImplementation();

    WindowImplementation(const WindowImplementation&) = delete;
    WindowImplementation& operator=(const WindowImplementation&) = delete;

    SDL_Window* getHandle() override;
    Vector2<int> getSize() override;
    std::string getTitle() override;
    void setTitle(const std::string& title) override;
    void setFullscreen(bool fullscreen) override;

private:
    SDL_Window* handle;
};
