#pragma once

#include <xum/geometry/vector.h>

#include <bitset>
#include <string>

union SDL_Event;
struct ImGuiContext;
class Window;

/// Dear ImGui on a window. The engine drains the system's events, so they are watched on their way.
class Gui {
public:
    /// Needs the window's OpenGL context to be current. Text is written with a font file, if it can be read.
    Gui(Window& window, const std::string& fontFile);
    ~Gui();
    Gui(const Gui&) = delete;
    Gui& operator=(const Gui&) = delete;

    /// After the engine's update. What is shown comes between this and draw.
    void begin(float seconds);

    /// Draws into the bound target and leaves the state of OpenGL as it was.
    void draw();

    /// Whether the mouse is over a panel, and whether something there takes the keys.
    bool wantsMouse() const;
    bool wantsKeyboard() const;

    /// In pixels from the upper left.
    Vector2<float> getMouse() const { return mouse; }

private:
    static int watch(void* gui, SDL_Event* event);
    void handle(const SDL_Event& event);

    ImGuiContext* context;
    Vector2<float> mouse = {-1, -1};
    bool buttons[3] = {};
    bool pressed[3] = {};  ///< since the last frame, even when it is up again
    std::bitset<512> keys; ///< by their scancodes
    std::bitset<512> pressedKeys;
    unsigned modifiers = 0; ///< when the last key was pressed
};
