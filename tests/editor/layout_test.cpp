#include <layout.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace {

constexpr int menuHeight = 20;

std::string describe(const ScreenArea& area)
{
    if (area.isEmpty()) return "none";
    return std::to_string(area.width) + "x" + std::to_string(area.height) + " at " + std::to_string(area.x) + "," +
           std::to_string(area.y);
}

} // namespace

TEST(Layout, largeWindowHasEverything)
{
    const Layout layout = calculateLayout({1280, 800}, menuHeight);
    EXPECT_EQ(describe(layout.tools), "230x604 at 0,20");
    EXPECT_EQ(describe(layout.map), "780x604 at 230,20");
    EXPECT_EQ(describe(layout.properties), "270x604 at 1010,20");
    EXPECT_EQ(describe(layout.console), "1280x150 at 0,624");
    EXPECT_EQ(describe(layout.status), "1280x26 at 0,774");
    EXPECT_EQ(layout.map.screenHeight, 800);
}

TEST(Layout, panelsGoOneByOneBeforeTheMapDoes)
{
    const Layout narrow = calculateLayout({659, 800}, menuHeight);
    EXPECT_EQ(describe(narrow.properties), "none");
    EXPECT_EQ(describe(narrow.tools), "230x604 at 0,20");
    EXPECT_EQ(describe(narrow.map), "429x604 at 230,20");
    const Layout small = calculateLayout({200, 150}, menuHeight);
    EXPECT_EQ(describe(small.tools), "none");
    EXPECT_EQ(describe(small.console), "none");
    EXPECT_EQ(describe(small.status), "none");
    EXPECT_EQ(describe(small.map), "200x130 at 0,20");
}

TEST(Layout, lowWindowHasNoConsole)
{
    const Layout layout = calculateLayout({1280, 300}, menuHeight);
    EXPECT_EQ(describe(layout.console), "none");
    EXPECT_EQ(describe(layout.status), "1280x26 at 0,274");
    EXPECT_EQ(describe(layout.map), "780x254 at 230,20");
}

TEST(Layout, smallestWindowHasNothing)
{
    for (const Vector2<int> size : {Vector2<int>(1, 1), {0, 0}, {-5, -5}}) {
        const Layout layout = calculateLayout(size, menuHeight);
        EXPECT_EQ(describe(layout.map), "none");
        EXPECT_EQ(describe(layout.tools), "none");
        EXPECT_EQ(describe(layout.status), "none");
    }
}

TEST(Layout, everyWindowIsCoveredOnce)
{
    for (int width = 1; width < 900; width += 7) {
        for (int height = 1; height < 500; height += 7) {
            const Layout layout = calculateLayout({width, height}, menuHeight);
            int pixels = 0;
            for (const ScreenArea* area :
                 {&layout.tools, &layout.map, &layout.properties, &layout.console, &layout.status})
                if (!area->isEmpty()) pixels += area->width * area->height;
            EXPECT_EQ(pixels, width * std::max(height - menuHeight, 0)) << width << "x" << height;
        }
    }
}
