#include "view_switches.h"

#include "presentation_fixture.h"
#include "pushed_events.h"

#include <functional>

namespace {

class ViewKeys : public PresentationTest {
protected:
    void press(SDL_Keycode key)
    {
        pushKeyDown(key);
        application.getEngine().update();
        switches.handle(presentation);
        pushKey(SDL_KEYDOWN, key, true); // repeated by the keyboard
        application.getEngine().update();
        switches.handle(presentation);
        pushKeyUp(key);
        application.getEngine().update();
        switches.handle(presentation);
    }

    ViewSwitches switches = ViewSwitches(application.getInput());
};

} // namespace

TEST_F(ViewKeys, eachSwitchesOneThingOnAndOff)
{
    const std::pair<SDL_Keycode, std::function<bool()>> keys[] = {
        {SDLK_TAB, [&] { return switches.getStyle() == DrawStyle::Edges; }},
        {'c', [&] { return renderer.isCullingOn(); }},
        {'o', [&] { return renderer.isOcclusionViewOn(); }},
        {'l', [&] { return renderer.isLampShining(); }},
        {'b', [&] { return presentation.getLayers().debugShapes; }},
        {'f', [&] { return presentation.getLayers().effects; }},
        {'h', [&] { return presentation.getLayers().text; }},
    };
    for (const auto& one : keys) {
        const SDL_Keycode key = one.first;
        std::vector<bool> before;
        for (const auto& other : keys) before.push_back(other.second());
        press(key);
        for (std::size_t i = 0; i < before.size(); ++i)
            EXPECT_EQ(keys[i].second() != before[i], keys[i].first == key) << key << " " << keys[i].first;
        press(key);
        for (std::size_t i = 0; i < before.size(); ++i) EXPECT_EQ(keys[i].second(), before[i]) << key;
    }
}

TEST_F(ViewKeys, wireframeMayBeChosenAndSwitchedWithoutAKey)
{
    switches.setWireframe(true);
    EXPECT_EQ(switches.getStyle(), DrawStyle::Edges);
    switches.switchWireframe();
    EXPECT_EQ(switches.getStyle(), DrawStyle::Solids);
}
