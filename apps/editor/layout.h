#pragma once

#include <xum/geometry/vector.h>

/// A rectangle of the screen, in pixels from the upper left.
struct ScreenArea {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    int screenHeight = 0;

    bool isEmpty() const { return width <= 0 || height <= 0; }
};

/// Where the parts of the editor are; what there is no room for is empty. The map comes first: in a small window it has
/// all of it.
struct Layout {
    ScreenArea tools;
    ScreenArea properties;
    ScreenArea console;
    ScreenArea status;
    ScreenArea map;
};

/// For a window of that size below a menu of that height.
Layout calculateLayout(const Vector2<int>& window, int menuHeight);
