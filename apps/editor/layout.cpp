#include "layout.h"

#include <algorithm>

namespace {

constexpr int toolsWidth = 230;
constexpr int propertiesWidth = 270;
constexpr int consoleHeight = 150;
constexpr int statusHeight = 26;
constexpr int smallestMap = 160; // pixels in each direction, before a panel goes

/// Takes so much of the room, when enough of it is left for the map.
int take(int& room, int size)
{
    if (room - size < smallestMap) return 0;
    room -= size;
    return size;
}

} // namespace

Layout calculateLayout(const Vector2<int>& window, int menuHeight)
{
    int width = std::max(window.x, 0);
    int height = std::max(window.y - menuHeight, 0);
    const int status = take(height, statusHeight);
    const int tools = take(width, toolsWidth);
    const int properties = take(width, propertiesWidth);
    const int console = take(height, consoleHeight);

    const auto area = [&](int x, int y, int areaWidth, int areaHeight) {
        return ScreenArea{x, y, areaWidth, areaHeight, window.y};
    };
    Layout layout;
    layout.tools = area(0, menuHeight, tools, height);
    layout.map = area(tools, menuHeight, width, height);
    layout.properties = area(tools + width, menuHeight, properties, height);
    layout.console = area(0, menuHeight + height, window.x, console);
    layout.status = area(0, menuHeight + height + console, window.x, status);
    return layout;
}
